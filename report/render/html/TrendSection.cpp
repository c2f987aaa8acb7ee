#include "Phrases.hpp"
#include "Template.hpp"
#include "Trend.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t mostColumnsOfTrend = 12;

/// The packages that the table shows: the first, the last, and others evenly between them.
std::vector<std::size_t> shownPackages(std::size_t count) {
    const std::size_t columns = std::min(count, mostColumnsOfTrend);
    std::vector<std::size_t> shown;
    for (std::size_t column = 0; column < columns; ++column) {
        shown.push_back(column * (count - 1) / (columns - 1));
    }
    return shown;
}

Rows trendRows(const Trend& trend, const std::vector<std::size_t>& shown) {
    Rows rows;
    for (const TrendPlot& plot : trend.plots) {
        for (const TrendLine& line : plot.lines) {
            Rows cells;
            for (const std::size_t package : shown) {
                cells.push_back(Fields{}.set("text", line.values.at(package) == nullptr
                                                         ? std::string{}
                                                         : shortened(line.values.at(package)->text, 100)));
            }
            const std::string dispatcher = line.dispatcher.empty() ? "" : ", " + line.dispatcher;
            rows.push_back(Fields{}
                               .set("part", shortened(plot.part, 200) + dispatcher)
                               .set("name", shortened(plot.name, 200))
                               .set("cells", std::move(cells)));
        }
    }
    return rows;
}

}  // namespace

std::string trendHeading(const std::vector<Trend>& trends, std::size_t index) {
    constexpr const char* heading = "Values over time";
    return trends.size() == 1 ? heading : heading + (" of " + shortened(trends[index].board, 100));
}

void writeTrend(std::ostream& out, const std::vector<Trend>& trends, std::size_t index) {
    const Trend& trend = trends[index];
    const std::vector<std::size_t> shown = shownPackages(trend.packages.size());
    Rows columns;
    for (const std::size_t package : shown) {
        columns.push_back(Fields{}.set("time", timeText(trend.packages.at(package)->package->time)));
    }
    const std::size_t changed = trend.plots.size() + trend.leftOut;
    fill(out, "trend",
         Fields{}
             .set("id", trendId(index + 1))
             .set("heading", trendHeading(trends, index))
             .set("board", shortened(trend.board, 100))
             .set("summary", counted(changed, "value") + " changed between " +
                                 counted(trend.packages.size(), "package") + ", " + grouped(trend.unchanged) +
                                 " did not.")
             .set("any", !trend.plots.empty())
             .set("count", grouped(trend.plots.size()))
             .set("columns", std::move(columns))
             .set("rows", trendRows(trend, shown))
             .set("leftOut", leftOutNote(trend.leftOut, "value")));
}

}  // namespace Report::Html
