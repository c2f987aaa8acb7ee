#pragma once

/// Coverage bits of the collector of state files.
namespace FuseCoverage {

inline constexpr unsigned information = 1;
inline constexpr unsigned statistics = 2;
inline constexpr unsigned log = 4;
inline constexpr unsigned everything = 7;

}  // namespace FuseCoverage
