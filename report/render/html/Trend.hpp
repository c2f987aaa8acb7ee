#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "RuleSet.hpp"
#include "View.hpp"

namespace Report::Html {

/// One value over time: a line of a plot.
struct TrendLine {
    std::string dispatcher;            ///< empty if the value belongs to none
    std::vector<const Value*> values;  ///< one for each package; null where it is not
};

/// A value that changed over time, of both dispatchers.
struct TrendPlot {
    std::string part;
    std::string name;
    bool watched = false;  ///< a rule names it
    std::vector<TrendLine> lines;
};

/// The packages of one board, from the oldest to the newest.
struct Trend {
    std::string board;
    std::vector<const View*> packages;
    std::vector<TrendPlot> plots;  ///< those that rules name first
    std::size_t unchanged = 0;     ///< values that all packages have alike
    std::size_t leftOut = 0;       ///< values that changed and are not in `plots`
};

/// The trend of each board that has several packages with a known time.
std::vector<Trend> trendsOf(const std::vector<View>& views, const RuleSet& rules);

/// The identifier of the section of a trend. Numbers begin at 1.
std::string trendId(std::size_t number);

/// The heading of that section.
std::string trendHeading(const std::vector<Trend>& trends, std::size_t index);

/// Writes the section.
void writeTrend(std::ostream& out, const std::vector<Trend>& trends, std::size_t index);

}  // namespace Report::Html
