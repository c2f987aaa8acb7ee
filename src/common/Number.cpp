#include "Number.hpp"

#include <cerrno>
#include <cstdlib>
#include <limits>

namespace Korvel {

NumberError parseNumber(const std::string& text, int& value) {
    using Limits = std::numeric_limits<int>;
    char* end = nullptr;
    errno = 0;
    const long long number = std::strtoll(text.c_str(), &end, 10);
    if (end == text.c_str()) {
        return NumberError::noDigits;
    }
    if (errno == ERANGE || number < Limits::min() || number > Limits::max()) {
        return NumberError::outOfRange;
    }
    value = static_cast<int>(number);
    return NumberError::none;
}

}  // namespace Korvel
