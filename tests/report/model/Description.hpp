#pragma once

#include <string>

#include "Package.hpp"

namespace ReportTest {

/// Everything that the loader found in a package, a line for each row, in the order of the rows. Leaves out
/// what has its default, checksums, tails and texts.
std::string describe(const Report::Package& package);

/// "2026-11-22 08:30:33.5 error TAG: text"; what is unknown is left out.
std::string describe(const Report::LogEntry& entry);

/// "2026-11-22 08:30:33.5", or "-" for an unknown time.
std::string describe(const std::optional<Report::Time>& time);

}  // namespace ReportTest
