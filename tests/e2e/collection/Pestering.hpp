#pragma once

#include <vector>

#include "Process.hpp"

/// Sends these signals one after the other, a few milliseconds apart, until the process has ended. Returns
/// its outcome.
Outcome pester(Process& process, const std::vector<int>& signals);
