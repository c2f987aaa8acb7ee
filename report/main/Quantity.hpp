#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Report {

/// Each reads the whole of a text. No value for another text, for 0 and for a number that is too large.

/// A whole number.
std::optional<std::uint64_t> parseCount(std::string_view text);

/// A number of bytes, with K, M or G for 1024, 1024 * 1024 and 1024 * 1024 * 1024: "64M".
std::optional<std::uint64_t> parseSize(std::string_view text);

/// Seconds, with at most three digits after a decimal point: "0.5".
std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text);

}  // namespace Report
