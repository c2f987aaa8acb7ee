#pragma once

#include <string>

namespace Korvel {

enum class NumberError { none, noDigits, outOfRange };

/// Reads a decimal integer at the start of `text`: white space and a sign may stand before it, anything
/// behind its digits is ignored. Writes `value` only where the result is NumberError::none.
[[nodiscard]] NumberError parseNumber(const std::string& text, int& value);

}  // namespace Korvel
