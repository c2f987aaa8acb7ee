#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Package.hpp"
#include "Words.hpp"

namespace Report::Html {

/// A span of time in its largest unit: "42 s", "12 min", "3.5 d".
std::string spanText(std::chrono::microseconds span);

/// The time from one point to a later one. Times of a hostile package can be further apart than a span can
/// tell; the longest span stands for them.
std::chrono::microseconds spanBetween(const Time& begin, const Time& end);

/// A time in UTC: "2026-11-22 06:03:05". Empty without a time.
std::string timeText(const std::optional<Time>& time);

/// The same with microseconds.
std::string exactTimeText(const std::optional<Time>& time);

/// The first `most` bytes of a text, up to a whole character, with an ellipsis if that is not everything.
std::string shortened(std::string_view text, std::size_t most);

/// "12 more are left out." Empty for 0.
std::string leftOutNote(std::size_t number, std::string_view one, std::string_view many = {});

/// The class of the style that shows how bad something is: "good", "warn", "bad" or "calm".
std::string_view toneOf(State state);
std::string_view toneOf(Verdict verdict);
std::string_view toneOf(Severity severity);

}  // namespace Report::Html
