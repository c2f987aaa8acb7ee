#include "Decimal.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <utility>

namespace Report {
namespace {

constexpr std::size_t mostCharacters = 4096;
constexpr int hexadecimal = 16;
constexpr char decimalBase = 10;
constexpr std::string_view decimalDigits = "0123456789";

bool onlyDigits(std::string_view text) {
    return text.find_first_not_of(decimalDigits) == std::string_view::npos;
}

/// The decimal digits of hexadecimal ones. Empty for a text that is no number of 64 bits.
std::string fromHexadecimal(std::string_view text) {
    std::uint64_t number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number, hexadecimal);
    return error == std::errc() && stop == end ? std::to_string(number) : std::string();
}

/// Moves the point of a number to the right.
void addZeros(std::string& digits, std::size_t count) {
    if (!digits.empty()) {
        digits.append(count, '0');
    }
}

bool isLess(const std::string& left, const std::string& right) {
    return left.size() != right.size() ? left.size() < right.size() : left < right;
}

/// Adds two rows of digits, or subtracts the second from the first, which is not less, if `sign` is -1.
std::string combine(std::string digits, const std::string& other, int sign) {
    digits.insert(0, std::max(digits.size(), other.size()) - digits.size() + 1, '0');
    int carry = 0;
    for (std::size_t place = 1; place <= digits.size(); ++place) {
        char& digit = digits[digits.size() - place];
        const int right = place <= other.size() ? other[other.size() - place] - '0' : 0;
        const int sum = (digit - '0') + sign * right + carry;
        carry = sum < 0 ? -1 : sum / decimalBase;
        digit = static_cast<char>('0' + (sum + decimalBase) % decimalBase);
    }
    return digits;
}

}  // namespace

Decimal::Decimal(bool isNegative, std::string allDigits, std::size_t digitsAfterPoint)
    : negative(isNegative), digits(std::move(allDigits)), fraction(digitsAfterPoint) {
    while (fraction > 0 && !digits.empty() && digits.back() == '0') {
        digits.pop_back();
        --fraction;
    }
    digits.erase(0, digits.find_first_not_of('0'));
    if (digits.empty()) {
        negative = false;
        fraction = 0;
    }
}

std::optional<Decimal> Decimal::parse(std::string_view text) {
    if (text.size() > mostCharacters) {
        return std::nullopt;
    }
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    std::string digits;
    std::size_t fraction = 0;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        digits = fromHexadecimal(text.substr(2));
    } else {
        const std::size_t point = std::min(text.find('.'), text.size());
        digits = text.substr(0, point);
        const std::string_view after = text.substr(std::min(point + 1, text.size()));
        fraction = after.size();
        digits += after;
    }
    if (digits.empty() || !onlyDigits(digits)) {
        return std::nullopt;
    }
    return Decimal(negative, std::move(digits), fraction);
}

Decimal Decimal::minus(const Decimal& other) const {
    const std::size_t places = std::max(fraction, other.fraction);
    std::string left = digits;
    std::string right = other.digits;
    addZeros(left, places - fraction);
    addZeros(right, places - other.fraction);
    if (negative != other.negative) {
        return {negative, combine(std::move(left), right, 1), places};
    }
    const bool swapped = isLess(left, right);
    if (swapped) {
        left.swap(right);
    }
    return {negative != swapped, combine(std::move(left), right, -1), places};
}

std::string Decimal::signedText() const {
    if (isZero()) {
        return "0";
    }
    std::string text = digits;
    if (fraction > 0) {
        text.insert(0, fraction + 1 - std::min(fraction + 1, text.size()), '0');
        text.insert(text.size() - fraction, 1, '.');
    }
    return (negative ? '-' : '+') + text;
}

double Decimal::approximate() const {
    const std::string text = signedText();
    const char* start = text.data() + (text.starts_with('+') ? 1 : 0);
    double number = 0;
    const auto result = std::from_chars(start, text.data() + text.size(), number);
    if (result.ec == std::errc::result_out_of_range && digits.size() > fraction) {
        number =
            negative ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
    }
    return number;
}

}  // namespace Report
