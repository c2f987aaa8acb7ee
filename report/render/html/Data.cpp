#include "Data.hpp"

#include <map>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <type_traits>
#include <variant>

#include "Phrases.hpp"
#include "SafeText.hpp"

namespace Report::Html {
namespace {

using Json = nlohmann::json;

/// JSON without `<`, in ASCII: nothing in it ends the element or begins a comment.
std::string embeddable(const Json& json) {
    const std::string text = json.dump(-1, ' ', true, Json::error_handler_t::replace);
    std::string safe;
    safe.reserve(text.size());
    for (const char letter : text) {
        if (letter == '<') {
            safe += "\\u003c";
        } else {
            safe += letter;
        }
    }
    return safe;
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
        out << separator << embeddable(entryData(kept, now - last, tags.numberOf(kept.entry.tag)));
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

Json numberData(const Number& number) {
    return std::visit(
        [](auto value) {
            if constexpr (std::is_same_v<decltype(value), std::monostate>) {
                return Json();
            } else {
                return Json(value);
            }
        },
        number);
}

Json plotData(const TrendPlot& plot) {
    Json lines = Json::array();
    for (const TrendLine& line : plot.lines) {
        Json numbers = Json::array();
        for (const Value* const value : line.values) {
            numbers.push_back(value == nullptr ? Json() : numberData(value->number));
        }
        lines.push_back({{"label", line.dispatcher}, {"numbers", std::move(numbers)}});
    }
    return {{"part", forTerminal(shortened(plot.part, 200))},
            {"name", forTerminal(shortened(plot.name, 200))},
            {"lines", std::move(lines)}};
}

Json trendData(const Trend& trend, std::size_t number) {
    Json times = Json::array();
    for (const View* const view : trend.packages) {
        times.push_back(static_cast<double>(microsecondsOf(*view->package->time)) / 1e6);
    }
    Json plots = Json::array();
    for (const TrendPlot& plot : trend.plots) {
        plots.push_back(plotData(plot));
    }
    return {{"id", trendId(number)}, {"times", std::move(times)}, {"plots", std::move(plots)}};
}

void beginData(std::ostream& out, const char* identifier) {
    out << "<script type=\"application/json\" id=\"" << identifier << "\">";
}

}  // namespace

void writeTimelineData(std::ostream& out, const Timeline& timeline) {
    Json logs = Json::array();
    for (const TimelineLog& log : timeline.logs) {
        logs.push_back(forTerminal(shortened(log.name, 300)));
    }
    Dictionary tags;
    beginData(out, "timeline-data");
    out << "{\"logs\":" << embeddable(logs) << ",\n\"columns\":" << embeddable(columnData(timeline.columns))
        << ",\n\"entries\":[\n";
    writeEntries(out, timeline.entries, tags);
    out << "],\n\"tags\":" << embeddable(tags.texts()) << "}</script>\n";
}

void writeTrendData(std::ostream& out, const std::vector<Trend>& trends) {
    Json list = Json::array();
    for (std::size_t index = 0; index < trends.size(); ++index) {
        list.push_back(trendData(trends[index], index + 1));
    }
    beginData(out, "trend-data");
    out << embeddable(list) << "</script>\n";
}

}  // namespace Report::Html
