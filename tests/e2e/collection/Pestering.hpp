#pragma once

#include <vector>

#include "Process.hpp"

/// Sends these signals, one after the other and a few milliseconds apart, until the process has ended. How it
/// ended.
Outcome pester(Process& process, const std::vector<int>& signals);
