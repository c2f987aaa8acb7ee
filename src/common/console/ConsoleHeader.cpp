#include "ConsoleHeader.hpp"

#include <iomanip>

#include "Console.hpp"

namespace Korvel {
namespace {

constexpr std::size_t lineWidth = 64;

const std::string& prefix() {
    static const std::string text = "### ";
    return text;
}

}  // namespace

void printLogHeader(const std::string& title) {
    const std::size_t used = prefix().size() + title.size();
    print(prefix(), title, " ");
    if (used < lineWidth) {
        print(std::setw(static_cast<int>(lineWidth - used)), std::setfill('#'), "\n");
    } else {
        print("###", "\n");
    }
}

}  // namespace Korvel
