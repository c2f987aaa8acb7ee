#pragma once

#include <cstdint>
#include <string>

namespace Korvel {

enum class NumberError { none, noDigits, outOfRange };

/// Parses a decimal integer at the start of `text`. White space and a sign may come first; anything after the
/// digits is ignored. Writes `value` only if the result is NumberError::none.
[[nodiscard]] NumberError parseNumber(const std::string& text, int& value);

/// Parses an unsigned 32-bit number at the start of `text`, in `base` (0: C notation). White space and a sign
/// may come first; anything after the digits is ignored. Negative numbers are out of range. Writes `value`
/// only if the result is NumberError::none.
[[nodiscard]] NumberError parseUnsigned(const std::string& text, int base, std::uint32_t& value);

/// Parses a text that consists of one decimal number, as strtoul does. White space and a sign may come first:
/// "-1" is the largest number. With anything after the digits, the result is NumberError::noDigits. Writes
/// `value` only if the result is NumberError::none.
[[nodiscard]] NumberError parseWholeNumber(const std::string& text, unsigned long& value);

}  // namespace Korvel
