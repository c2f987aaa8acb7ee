#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Boardsim {

/// Makes untrusted bytes safe for one line on a terminal. Bytes other than printable ASCII become \xNN; text
/// beyond `longest` bytes is cut.
std::string printable(std::string_view bytes, std::size_t longest = 200);

/// Two lower-case hex digits per byte.
std::string hexText(std::string_view bytes);

}  // namespace Boardsim
