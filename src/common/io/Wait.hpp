#pragma once

#include <chrono>
#include <optional>

namespace Korvel {

/// The moment at which a wait ends; empty for a wait without limit.
using Deadline = std::optional<std::chrono::steady_clock::time_point>;

/// A limit below zero counts as zero, and one beyond a hundred years as that.
Deadline deadlineIn(std::chrono::milliseconds limit);
bool hasPassed(const Deadline& deadline);

enum class Readiness { ready, timedOut, failed };

/// Waits until `descriptor` has something to read (or an error to fetch) or the deadline is there. A
/// signal does not end the wait. Looks at least once, however late it is. `failed` leaves errno set.
Readiness waitReadable(int descriptor, const Deadline& deadline);

/// The same, for room to write.
Readiness waitWritable(int descriptor, const Deadline& deadline);

/// Sleeps for the whole time, whatever signals arrive.
void nap(std::chrono::milliseconds time);

}  // namespace Korvel
