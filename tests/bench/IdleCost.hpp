#pragma once

#include <chrono>
#include <string>
#include <vector>

/// The cost of an idle long-running program.
struct IdleCost {
    double processorMsPerRound;
    double memoryMiB;  ///< private and file memory (RssAnon + RssFile)
};

/// Runs a program that works once every `period`, measures some rounds after the first one, and terminates
/// the program. Throws if the program ends earlier.
IdleCost measureIdleCost(const std::vector<std::string>& command, std::chrono::seconds period);
