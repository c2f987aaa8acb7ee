#pragma once

#include <iosfwd>
#include <vector>

#include "Timeline.hpp"
#include "Trend.hpp"

namespace Report::Html {

/// Each writes a block of JSON for the page's script. A browser never runs it, whatever texts it holds.
void writeTimelineData(std::ostream& out, const Timeline& timeline);
void writeTrendData(std::ostream& out, const std::vector<Trend>& trends);

}  // namespace Report::Html
