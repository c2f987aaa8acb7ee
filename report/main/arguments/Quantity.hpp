#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Report {

// Each reads the whole of a text. No value for another text and for a number that is too large.

/// A whole number above 0.
std::optional<std::uint64_t> parseCount(std::string_view text);

/// A number of bytes above 0, with K, M or G (also k, m or g) for 1024, 1024 * 1024 and 1024 * 1024 * 1024:
/// "64M".
std::optional<std::uint64_t> parseSize(std::string_view text);

/// Seconds as a decimal number, "0.5". Digits after the thousandths do not count, so the result can be 0.
std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text);

}  // namespace Report
