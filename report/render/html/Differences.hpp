#pragma once

#include <cstddef>
#include <iosfwd>
#include <utility>
#include <vector>

#include "Trend.hpp"
#include "View.hpp"

namespace Report::Html {

/// Packages of one board that follow each other in time: the earlier and the later one.
using Neighbours = std::vector<std::pair<const View*, const View*>>;

Neighbours neighboursOf(const std::vector<Trend>& trends);

/// Compares each two neighbours and writes the section with what differs. Writes nothing without neighbours.
void writeDifferences(std::ostream& out, const Neighbours& neighbours, std::size_t maxLine);

}  // namespace Report::Html
