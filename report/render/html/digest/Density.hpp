#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "LogEntry.hpp"

namespace Report::Html {

/// Numbers of entries by level, in the order of the levels; the last is for entries without a level.
using LevelCounts = std::array<std::uint64_t, 5>;

/// The place of a level in LevelCounts.
std::size_t levelIndex(const std::optional<Level>& level);

/// One column of the picture.
struct DensityColumn {
    Time begin;
    Time end;
    LevelCounts counts{};
    bool afterGap = false;  ///< the picture leaves out the time between the column before and this one
};

/// Counts entries over time in one pass, without knowing the range of time beforehand. Its memory does not
/// depend on the number of entries.
class Density {
public:
    void add(const Time& time, const std::optional<Level>& level);

    /// At most about `most` columns of equal width. A time that dwarfs all others, such as that between the
    /// entries before and after the clock was set, becomes a gap.
    std::vector<DensityColumn> columns(std::size_t most) const;

private:
    void coarsen();

    std::map<std::int64_t, LevelCounts> bins;  ///< by time divided by the width, rounded down
    std::int64_t width = 1024;                 ///< microseconds, a power of two
};

}  // namespace Report::Html
