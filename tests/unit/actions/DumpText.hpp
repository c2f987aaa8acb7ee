#pragma once

#include <string>
#include <string_view>

/// The hex dump of one byte or more, built line by line with printf's conversions.
std::string dumpText(std::string_view bytes);

/// `size` bytes that show their place in a dump: no two stretches of 16 bytes within 4 KiB are equal.
std::string patternOf(std::size_t size);
