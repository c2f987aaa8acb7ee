#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Korvel {

enum class NumberError { none, noDigits, outOfRange };

/// Reads a decimal integer at the start of `text`: white space and a sign may stand before it, anything
/// behind its digits is ignored. Writes `value` only where the result is NumberError::none.
[[nodiscard]] NumberError parseNumber(const std::string& text, int& value);

/// Reads an unsigned number of 32 bits at the start of `text`, in `base` (0: as C's notation says). White
/// space and a sign may stand before it; below zero is out of range. `length` is where its digits end,
/// counted from the start. Writes both only where the result is NumberError::none.
[[nodiscard]] NumberError parseUnsigned(const std::string& text, int base, std::uint32_t& value,
                                        std::size_t& length);

}  // namespace Korvel
