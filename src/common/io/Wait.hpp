#pragma once

#include <chrono>
#include <optional>

namespace Korvel {

/// The time at which a wait ends; empty for a wait without limit.
using Deadline = std::optional<std::chrono::steady_clock::time_point>;

/// Clamps `limit` to the range from zero to one hundred years.
Deadline deadlineIn(std::chrono::milliseconds limit);
bool hasPassed(const Deadline& deadline);

enum class Readiness { ready, timedOut, failed };

/// Waits until `descriptor` is readable (or has an error) or until the deadline. Signals do not end the wait.
/// Polls at least once, even if the deadline has passed. Sets errno for Readiness::failed.
Readiness waitReadable(int descriptor, const Deadline& deadline);

/// As waitReadable(), until `descriptor` is writable.
Readiness waitWritable(int descriptor, const Deadline& deadline);

/// Sleeps for the whole time, regardless of signals.
void nap(std::chrono::milliseconds time);

}  // namespace Korvel
