#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Puts `text` into the file at `path`, in place of what it held. Throws std::system_error.
void writeTextFile(const std::string& path, std::string_view text);

/// Everything that the file at `path` holds. Throws std::system_error.
std::string readTextFile(const std::string& path);

/// The lines of `text` without their line ends.
std::vector<std::string> linesOf(const std::string& text);
