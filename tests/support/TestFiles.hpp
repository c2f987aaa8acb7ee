#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Writes a file, its directories included. Throws where that fails.
void writeFile(const std::string& path, std::string_view content);

/// Every byte of a file; throws where it cannot be read.
std::string contentOfFile(const std::string& path);

/// The lines of a file, without their line ends.
std::vector<std::string> linesOfFile(const std::string& path);

/// The paths of all regular files below `directory`, relative to it, in order. Empty where there is no such
/// directory.
std::vector<std::string> filesBelow(const std::string& directory);

/// The path of a file or folder that the build lays beside this test program.
std::string besideThisProgram(const std::string& name);
