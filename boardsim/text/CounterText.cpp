#include "CounterText.hpp"

#include <iomanip>
#include <sstream>

namespace Boardsim {

std::string counterText(std::string_view title, std::span<const CounterValue> values) {
    constexpr int nameWidth = 36;
    constexpr int valueWidth = 10;
    std::ostringstream out;
    out << title << '\n';
    for (const CounterValue& each : values) {
        out << "  " << std::left << std::setw(nameWidth) << each.name << std::right << std::setw(valueWidth)
            << each.value << '\n';
    }
    return out.str();
}

}  // namespace Boardsim
