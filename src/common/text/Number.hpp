#pragma once

#include <cstdint>
#include <string>

namespace Korvel {

enum class NumberError { none, noDigits, outOfRange };

/// Reads a decimal integer at the start of `text`: white space and a sign may stand before it, anything
/// behind its digits is ignored. Writes `value` only where the result is NumberError::none.
[[nodiscard]] NumberError parseNumber(const std::string& text, int& value);

/// Reads an unsigned number of 32 bits at the start of `text`, in `base` (0: as C's notation says). White
/// space and a sign may stand before it, anything behind its digits is ignored; below zero is out of range.
/// Writes `value` only where the result is NumberError::none.
[[nodiscard]] NumberError parseUnsigned(const std::string& text, int base, std::uint32_t& value);

/// Reads a text that is one decimal number, in front of which white space and a sign may stand, as the
/// platform's strtoul does: "-1" is the greatest number. With anything behind its digits it has noDigits.
/// Writes `value` only where the result is NumberError::none.
[[nodiscard]] NumberError parseWholeNumber(const std::string& text, unsigned long& value);

}  // namespace Korvel
