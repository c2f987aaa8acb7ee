#pragma once

#include <string>

/// Remove white space (see isspace()) in place: at the start, at the end, at both.
void ltrim(std::string& text);
void rtrim(std::string& text);
void trim(std::string& text);
