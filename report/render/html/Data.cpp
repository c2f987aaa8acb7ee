#include "Data.hpp"

#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "PageFrame.hpp"
#include "Phrases.hpp"
#include "PlotData.hpp"
#include "SafeText.hpp"

namespace Report::Html {
namespace {

using Json = nlohmann::json;

std::string dataText(const Json& json) {
    return embeddable(json.dump(-1, ' ', true, Json::error_handler_t::replace));
}

/// Numbers texts that occur often.
class Dictionary {
public:
    std::size_t numberOf(const std::string& text) {
        const auto [place, added] = numbers.emplace(text, list.size());
        if (added) {
            list.push_back(forTerminal(text));
        }
        return place->second;
    }
    const Json& texts() const { return list; }

private:
    std::map<std::string, std::size_t> numbers;
    Json list = Json::array();
};

/// [microseconds since the entry before, level, number of the tag, logs, text].
Json entryData(const KeptEntry& kept, std::int64_t sinceLast, std::size_t tag) {
    std::string text = forTerminal(kept.entry.text, true);
    if (kept.leftOut > 0) {
        text += " (" + counted(kept.leftOut, "byte") + " left out)";
    }
    const Json logs = kept.logs.size() == 1 ? Json(kept.logs.front()) : Json(kept.logs);
    return Json::array({kept.entry.time ? Json(sinceLast) : Json(), levelIndex(kept.entry.level), tag, logs,
                        std::move(text)});
}

std::int64_t microsecondsOf(const Time& time) {
    return time.time_since_epoch().count();
}

void writeEntries(std::ostream& out, const std::vector<KeptEntry>& entries, Dictionary& tags) {
    std::int64_t last = 0;
    const char* separator = "";
    for (const KeptEntry& kept : entries) {
        const std::int64_t now = kept.entry.time ? microsecondsOf(*kept.entry.time) : last;
        out << separator << dataText(entryData(kept, now - last, tags.numberOf(kept.entry.tag)));
        last = now;
        separator = ",\n";
    }
}

Json columnData(const std::vector<DensityColumn>& columns) {
    Json list = Json::array();
    for (const DensityColumn& column : columns) {
        list.push_back({microsecondsOf(column.begin), microsecondsOf(column.end), column.afterGap ? 1 : 0,
                        column.counts});
    }
    return list;
}

std::vector<Plot> plotsOf(const Trend& trend) {
    std::vector<Plot> plots;
    for (const TrendPlot& plot : trend.plots) {
        Plot& added = plots.emplace_back(Plot{shortened(plot.part, 200), shortened(plot.name, 200), {}});
        for (const TrendLine& line : plot.lines) {
            PlotLine& numbers = added.lines.emplace_back(PlotLine{line.dispatcher, {}});
            for (const Value* const value : line.values) {
                numbers.numbers.push_back(value == nullptr ? Number() : value->number);
            }
        }
    }
    return plots;
}

}  // namespace

void writeTimelineData(std::ostream& out, const Timeline& timeline) {
    Json logs = Json::array();
    for (const TimelineLog& log : timeline.logs) {
        logs.push_back(forTerminal(shortened(log.name, 300)));
    }
    Dictionary tags;
    beginData(out, "timeline-data");
    out << "{\"logs\":" << dataText(logs) << ",\n\"columns\":" << dataText(columnData(timeline.columns))
        << ",\n\"entries\":[\n";
    writeEntries(out, timeline.entries, tags);
    out << "],\n\"tags\":" << dataText(tags.texts()) << "}";
    endData(out);
}

void writeTrendData(std::ostream& out, const std::vector<Trend>& trends) {
    std::vector<PlotSection> sections;
    for (const Trend& trend : trends) {
        PlotSection& section = sections.emplace_back(PlotSection{trendId(sections.size() + 1), {}, {}});
        for (const View* const view : trend.packages) {
            section.times.push_back(static_cast<double>(microsecondsOf(*view->package->time)) / 1e6);
        }
        section.plots = plotsOf(trend);
    }
    writePlotData(out, sections);
}

}  // namespace Report::Html
