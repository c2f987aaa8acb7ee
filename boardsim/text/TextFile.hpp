#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Boardsim {

/// Puts `text` into the file at `path`, in place of what it held. Throws std::system_error.
void writeTextFile(const std::string& path, std::string_view text);

/// What an open file holds from its position on, at most `limit` bytes of it. Throws std::system_error.
std::string readBeginning(int descriptor, std::size_t limit);

/// The first bytes of the file at `path`, at most `limit`. Throws std::system_error.
std::string readBeginning(const std::string& path, std::size_t limit);

/// Everything that the file at `path` holds. Throws std::system_error.
std::string readTextFile(const std::string& path);

/// The lines of `text` without their line ends.
std::vector<std::string> linesOf(const std::string& text);

}  // namespace Boardsim
