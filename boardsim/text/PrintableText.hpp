#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Boardsim {

/// Bytes that somebody sent, as text for a line on a terminal: bytes other than printable ASCII as \xNN, and
/// what goes on for more than `longest` bytes cut.
std::string printable(std::string_view bytes, std::size_t longest = 200);

}  // namespace Boardsim
