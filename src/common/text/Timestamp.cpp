#include "Timestamp.hpp"

#include <ctime>
#include <iomanip>
#include <sstream>

namespace Korvel {
namespace {

std::string formatNow(const char* format) {
    const std::time_t now = std::time(nullptr);
    std::ostringstream text;
    if (const std::tm* const local = std::localtime(&now)) {
        text << std::put_time(local, format);
    }
    return text.str();
}

}  // namespace

std::string getTimestamp() {
    return formatNow("%y%m%d_%H%M%S");
}

std::string getCurrentDateTime() {
    return formatNow("%y-%m-%d %H:%M:%S");
}

}  // namespace Korvel
