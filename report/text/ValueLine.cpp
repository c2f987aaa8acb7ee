#include "ValueLine.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

namespace Report {
namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view decimalDigits = "0123456789";
constexpr std::string_view hexadecimalDigits = "0123456789abcdefABCDEF";

std::string_view trimEnd(std::string_view text, std::string_view characters) {
    return text.substr(0, text.find_last_not_of(characters) + 1);
}

/// One or more digits.
bool areDigits(std::string_view text, std::string_view digits) {
    return !text.empty() && text.find_first_not_of(digits) == std::string_view::npos;
}

bool takeSign(std::string_view& text) {
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    return negative;
}

bool takeHexadecimalPrefix(std::string_view& text) {
    const bool present = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(present ? 2 : 0);
    return present;
}

Number integerOf(std::string_view digits, bool negative, int base) {
    constexpr std::uint64_t lowest = std::uint64_t{1} << 63U;  // the magnitude of the lowest signed number
    std::uint64_t magnitude = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude, base);
    if (result.ec != std::errc()) {
        return {};
    }
    if (magnitude < lowest) {
        const auto number = static_cast<std::int64_t>(magnitude);
        return negative ? -number : number;
    }
    if (negative) {
        return magnitude == lowest ? Number(std::numeric_limits<std::int64_t>::min()) : Number();
    }
    return magnitude;
}

Number decimalOf(std::string_view text) {
    double number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() ? Number(number) : Number();
}

}  // namespace

std::string_view trimLine(std::string_view line) {
    line = trimEnd(line, " \t\r");
    return line.substr(std::min(line.find_first_not_of(blanks), line.size()));
}

bool isNumber(std::string_view text) {
    takeSign(text);
    if (takeHexadecimalPrefix(text)) {
        return areDigits(text, hexadecimalDigits);
    }
    const std::size_t point = text.find('.');
    return areDigits(text.substr(0, point), decimalDigits) &&
           (point == std::string_view::npos || areDigits(text.substr(point + 1), decimalDigits));
}

Number numberOf(std::string_view text) {
    const bool negative = takeSign(text);
    if (takeHexadecimalPrefix(text)) {
        return integerOf(text, negative, 16);
    }
    if (text.find('.') == std::string_view::npos) {
        return integerOf(text, negative, 10);
    }
    const Number number = decimalOf(text);
    const double* const magnitude = std::get_if<double>(&number);
    return magnitude != nullptr && negative ? Number(-*magnitude) : number;
}

std::optional<ValueLine> parseValueLine(std::string_view line) {
    line = trimLine(line);
    // Most lines that are no values end here.
    if (line.empty() || hexadecimalDigits.find(line.back()) == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t separator = line.find_last_of(" \t:=");
    if (separator == std::string_view::npos || !isNumber(line.substr(separator + 1))) {
        return std::nullopt;
    }
    const std::string_view number = line.substr(separator + 1);
    const std::string_view left = line.substr(0, separator + 1);
    std::string_view name = trimEnd(left, blanks);
    if (name.ends_with(':') || name.ends_with('=')) {
        name = trimEnd(name.substr(0, name.size() - 1), blanks);
    } else if (left.size() - name.size() < 2) {
        return std::nullopt;
    }
    return name.empty() ? std::nullopt : std::optional(ValueLine{name, number});
}

}  // namespace Report
