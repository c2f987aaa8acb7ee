#include "Number.hpp"

#include <cerrno>
#include <cstdlib>
#include <limits>

namespace Korvel {

namespace {

/// Any number from `Value`'s range; `end` points behind its digits.
template <typename Value>
NumberError parse(const char* text, int base, Value& value, char*& end) {
    using Limits = std::numeric_limits<Value>;
    errno = 0;
    const long long number = std::strtoll(text, &end, base);
    if (end == text) {
        return NumberError::noDigits;
    }
    if (errno == ERANGE || number < Limits::min() || number > Limits::max()) {
        return NumberError::outOfRange;
    }
    value = static_cast<Value>(number);
    return NumberError::none;
}

}  // namespace

NumberError parseNumber(const std::string& text, int& value) {
    char* end = nullptr;
    return parse(text.c_str(), 10, value, end);
}

NumberError parseUnsigned(const std::string& text, int base, std::uint32_t& value, std::size_t& length) {
    char* end = nullptr;
    const NumberError error = parse(text.c_str(), base, value, end);
    if (error == NumberError::none) {
        length = static_cast<std::size_t>(end - text.c_str());
    }
    return error;
}

}  // namespace Korvel
