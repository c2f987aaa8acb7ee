#pragma once

#include <string>

/// The line of 64 characters and a line end that the console shows above what `title` names.
std::string headerLine(const std::string& title);
