#pragma once

#include "Process.hpp"

/// Surroundings in which a process's clocks run `factor` times as fast, and its waits and pauses are as
/// much shorter. Other processes keep the real time. Not together with tracing or injection.
Surroundings atSpeed(int factor, Surroundings surroundings = {});
