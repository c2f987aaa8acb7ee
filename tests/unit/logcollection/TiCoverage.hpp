#pragma once

#include <string>

/// Coverage bits of the collector of the NetFP processes' dumps and of the SYSLIB log.
namespace TiCoverage {

inline constexpr unsigned server = 1;
inline constexpr unsigned proxy = 2;
inline constexpr unsigned everyProcess = 15;
inline constexpr unsigned syslib = 16;

}  // namespace TiCoverage

/// The note that the collector adds to an incomplete dump.
inline const std::string incompleteDump =
    "\n====> This log may be not complete, terminator pattern was not found <====\n";
