#pragma once

#include <string>

/// The header line for `title` on the console: 64 characters and a line end.
std::string headerLine(const std::string& title);
