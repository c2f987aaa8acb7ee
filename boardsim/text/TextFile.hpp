#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Boardsim {

/// Replaces the content of the file at `path`. Throws std::system_error.
void writeTextFile(const std::string& path, std::string_view text);

/// The same, so that readers see either the old content or the new one. If it throws, the old content stays.
void replaceTextFile(const std::string& path, std::string_view text);

/// Writes the whole text to an open file. Throws std::system_error with `what`.
void writeText(int descriptor, std::string_view text, const std::string& what);

/// Reads at most `limit` bytes from the current position. Throws std::system_error.
std::string readBeginning(int descriptor, std::size_t limit);

/// Reads at most the first `limit` bytes of the file at `path`. Throws std::system_error.
std::string readBeginning(const std::string& path, std::size_t limit);

/// Reads the whole file at `path`. Throws std::system_error.
std::string readTextFile(const std::string& path);

std::vector<std::string> linesOf(const std::string& text);

}  // namespace Boardsim
