#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Report {

/// A number as exact decimal digits. Knows no rounding and no overflow.
class Decimal {
public:
    /// Parses a sign, then digits with an optional decimal point, or 0x with hexadecimal digits. Returns no
    /// value for anything else, for hexadecimal numbers beyond 64 bits, and for numbers of more than 4096
    /// characters.
    static std::optional<Decimal> parse(std::string_view text);

    /// This number minus another one.
    Decimal minus(const Decimal& other) const;

    bool isZero() const { return digits.empty(); }
    bool isNegative() const { return negative; }

    /// With a sign unless it is zero: "+12", "-0.5", "0".
    std::string signedText() const;
    /// The nearest number, or infinity.
    double approximate() const;

private:
    Decimal(bool isNegative, std::string allDigits, std::size_t digitsAfterPoint);

    bool negative;
    std::string digits;    ///< without the point and without leading zeros; empty for zero
    std::size_t fraction;  ///< digits after the point; the last one is no zero
};

}  // namespace Report
