#pragma once

#include <optional>
#include <string_view>

#include "Value.hpp"

namespace Report {

/// A line `NAME  NUMBER`, `NAME: NUMBER` or `NAME = NUMBER`.
struct ValueLine {
    std::string_view name;
    std::string_view number;  ///< as written
};

/// Removes blanks (space, tab) from both ends of a line, and a CR from its end.
std::string_view trimLine(std::string_view line);

/// Reads a line as a value. Between the name and the number are two or more blanks, or a colon or an equals
/// sign with any blanks around it. The number goes to the end of the line.
std::optional<ValueLine> parseValueLine(std::string_view line);

/// Whether all of `text` is a number: decimal or with 0x, an integer or with a decimal point, with or
/// without a sign, and without an exponent.
bool isNumber(std::string_view text);

/// The number of such a text. An integer is signed if it fits into std::int64_t.
Number numberOf(std::string_view text);

}  // namespace Report
