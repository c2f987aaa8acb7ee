#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Writes a file and creates its directories. Throws if that fails.
void writeFile(const std::string& path, std::string_view content);

/// The whole content of a file. Throws if it cannot be read.
std::string contentOfFile(const std::string& path);

/// The lines of a file, without their line ends.
std::vector<std::string> linesOfFile(const std::string& path);

/// The sorted paths of all regular files below `directory`, relative to it. Empty if the directory is
/// missing.
std::vector<std::string> filesBelow(const std::string& directory);

/// The path of a file or folder that the build creates beside this test program.
std::string besideThisProgram(const std::string& name);
