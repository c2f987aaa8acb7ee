#pragma once

#include <string>

#include "Process.hpp"

/// Surroundings in which a process's clocks run `factor` times as fast, and its waits and pauses are as
/// much shorter. Other processes keep the real time. Not together with tracing or injection.
Surroundings atSpeed(int factor, Surroundings surroundings = {});

/// The same for the wall clock alone: the steady one keeps the real time.
Surroundings withWallClockAtSpeed(int factor, Surroundings surroundings = {});

/// Surroundings in which a process's wall clock stands at `moment`, local time as "2040-02-29 12:34:56". Its
/// waits and pauses last as long as ever. Not together with tracing or injection, either.
Surroundings atMoment(const std::string& moment, Surroundings surroundings = {});
