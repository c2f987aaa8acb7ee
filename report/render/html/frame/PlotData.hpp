#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "Package.hpp"

namespace Report::Html {

/// A line of a plot.
struct PlotLine {
    std::string label;            ///< empty if it needs none
    std::vector<Number> numbers;  ///< one for each time; the empty one where there is none
};

/// A value over time.
struct Plot {
    std::string part;
    std::string name;
    std::vector<PlotLine> lines;
};

/// The plots of a section of the page, over the same times.
struct PlotSection {
    std::string id;             ///< of the section
    std::vector<double> times;  ///< seconds since 1970
    std::vector<Plot> plots;
};

/// Writes the block of data from which the script draws plots. Makes the texts safe.
void writePlotData(std::ostream& out, const std::vector<PlotSection>& sections);

}  // namespace Report::Html
