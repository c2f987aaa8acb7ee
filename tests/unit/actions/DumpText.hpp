#pragma once

#include <string>
#include <string_view>

/// The hex dump of one byte or more, put together a line at a time with printf's conversions.
std::string dumpText(std::string_view bytes);

/// `size` bytes that tell where in a dump they are: no two stretches of 16 within 4 KiB are alike.
std::string patternOf(std::size_t size);
