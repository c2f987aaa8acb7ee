#pragma once

#include <string>

namespace Korvel {

/// The CPUs 0 to 3 that the kernel command line's "isolcpus=" names one by one, CPU n as bit n. Ranges and
/// other words of the list count for nothing. Asked of the kernel until the answer is not 0, then kept.
unsigned getIsolatedCpuMask();

/// The same, of a given kernel command line.
unsigned parseIsolatedCpus(const std::string& commandLine);

}  // namespace Korvel
