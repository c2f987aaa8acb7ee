#include "Number.hpp"

#include <cerrno>
#include <cstdlib>
#include <limits>

namespace Korvel {

namespace {

/// Determines the base from C notation. strtoll() could do this, but newer C libraries than the board's
/// accept more prefixes.
int detectBase(const std::string& text) {
    const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
    const std::size_t digits = start == std::string::npos ? text.size() : text.find_first_not_of("+-", start);
    const std::string prefix = digits == std::string::npos ? "" : text.substr(digits, 2);
    if (prefix == "0x" || prefix == "0X") {
        return 16;
    }
    return prefix.starts_with('0') ? 8 : 10;
}

/// Accepts any number in the range of `Value`.
template <typename Value>
NumberError parse(const char* text, int base, Value& value) {
    using Limits = std::numeric_limits<Value>;
    char* end = nullptr;
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
    constexpr int decimal = 10;
    return parse(text.c_str(), decimal, value);
}

NumberError parseUnsigned(const std::string& text, int base, std::uint32_t& value) {
    return parse(text.c_str(), base == 0 ? detectBase(text) : base, value);
}

NumberError parseWholeNumber(const std::string& text, unsigned long& value) {
    constexpr int decimal = 10;
    char* end = nullptr;
    errno = 0;
    const unsigned long number = std::strtoul(text.c_str(), &end, decimal);
    if (end == text.c_str() || *end != '\0') {
        return NumberError::noDigits;
    }
    if (errno == ERANGE) {
        return NumberError::outOfRange;
    }
    value = number;
    return NumberError::none;
}

}  // namespace Korvel
