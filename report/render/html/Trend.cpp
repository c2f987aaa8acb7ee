#include "Trend.hpp"

#include <algorithm>
#include <functional>
#include <map>
#include <tuple>
#include <utility>

#include "ValueTables.hpp"

namespace Report::Html {
namespace {

constexpr std::size_t mostPlots = 300;

/// Collects the values of the packages of one board.
class TrendCollector {
public:
    explicit TrendCollector(std::size_t packages) : count(packages) {}

    void add(const ValueTable& table, const ValueRow& row, std::size_t package) {
        const auto [place, added] =
            places.emplace(std::tuple{table.part, table.title, row.name, row.occurrence}, plots.size());
        if (added) {
            plots.push_back({table.part, row.name, false, {}});
        }
        TrendPlot& plot = plots[place->second];
        plot.watched = plot.watched || row.named;
        for (const std::size_t column : columnsOf(table)) {
            lineOf(plot, dispatcherOf(table, column)).values.at(package) = row.cells.at(column);
        }
    }

    /// All plots, in the order in which their values came.
    std::vector<TrendPlot> take() { return std::move(plots); }

private:
    TrendLine& lineOf(TrendPlot& plot, std::string_view dispatcher) const {
        const auto line = std::ranges::find(plot.lines, dispatcher, &TrendLine::dispatcher);
        if (line != plot.lines.end()) {
            return *line;
        }
        plot.lines.push_back({std::string{dispatcher}, std::vector<const Value*>(count)});
        return plot.lines.back();
    }

    std::size_t count;
    std::vector<TrendPlot> plots;
    std::map<std::tuple<std::string, std::string, std::string, std::size_t>, std::size_t> places;
};

bool isConstant(const TrendPlot& plot) {
    const auto textOf = [](const Value* value) { return value == nullptr ? std::string{} : value->text; };
    return std::ranges::all_of(plot.lines, [&](const TrendLine& line) {
        return std::ranges::all_of(
            line.values, [&](const Value* value) { return textOf(value) == textOf(line.values.front()); });
    });
}

Trend trendOf(const std::string& board, std::vector<const View*> packages, const RuleSet& rules) {
    std::ranges::stable_sort(packages, {}, [](const View* view) { return view->package->time; });
    TrendCollector collector{packages.size()};
    for (std::size_t index = 0; index < packages.size(); ++index) {
        for (const ValueTable& table : tablesOf(*packages[index], rules)) {
            for (const ValueRow& row : table.rows) {
                collector.add(table, row, index);
            }
        }
    }
    Trend trend;
    trend.board = board;
    trend.packages = std::move(packages);
    trend.plots = collector.take();
    trend.unchanged = std::erase_if(trend.plots, isConstant);
    std::stable_partition(trend.plots.begin(), trend.plots.end(), std::mem_fn(&TrendPlot::watched));
    if (trend.plots.size() > mostPlots) {
        trend.leftOut = trend.plots.size() - mostPlots;
        trend.plots.erase(trend.plots.begin() + mostPlots, trend.plots.end());
    }
    return trend;
}

}  // namespace

std::vector<Trend> trendsOf(const std::vector<View>& views, const RuleSet& rules) {
    std::map<std::string, std::vector<const View*>> boards;
    for (const View& view : views) {
        if (view->board && view->time && !view->clockUnset) {
            boards[*view->board].push_back(&view);
        }
    }
    std::vector<Trend> trends;
    for (auto& [board, packages] : boards) {
        if (packages.size() > 1) {
            trends.push_back(trendOf(board, std::move(packages), rules));
        }
    }
    return trends;
}

std::string trendId(std::size_t number) {
    return "trend-" + std::to_string(number);
}

}  // namespace Report::Html
