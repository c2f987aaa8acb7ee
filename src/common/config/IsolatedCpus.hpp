#pragma once

#include <string>

namespace Korvel {

/// Returns a mask of the CPUs 0 to 3 that "isolcpus=" on the kernel command line lists individually; bit n is
/// CPU n. Ignores ranges and other words of the list. Reads the kernel command line on each call until the
/// mask is not 0, then returns the cached mask.
unsigned getIsolatedCpuMask();

/// Parses the given kernel command line.
unsigned parseIsolatedCpus(const std::string& commandLine);

}  // namespace Korvel
