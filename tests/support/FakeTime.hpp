#pragma once

#include <string>

#include "Process.hpp"

/// Surroundings in which a process's clocks run `factor` times as fast. Its waits and pauses are shorter by
/// the same factor. Other processes keep the real time. Cannot be combined with tracing or injection.
Surroundings atSpeed(int factor, Surroundings surroundings = {});

/// The same only for the wall clock. The steady clock keeps the real time.
Surroundings withWallClockAtSpeed(int factor, Surroundings surroundings = {});

/// Surroundings in which a process's wall clock is stopped at `moment`, local time as "2040-02-29 12:34:56".
/// Its waits and pauses last as long as usual. Cannot be combined with tracing or injection.
Surroundings atMoment(const std::string& moment, Surroundings surroundings = {});
