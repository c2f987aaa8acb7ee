#pragma once

namespace Report {

/// Wrong usage, a file that cannot be read, a result that cannot be written. diff has another status for
/// them.
constexpr int exitTrouble = 3;
constexpr int exitTroubleOfDiff = 2;

}  // namespace Report
