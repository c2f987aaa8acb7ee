#include <algorithm>
#include <array>
#include <chrono>
#include <numeric>
#include <ostream>

#include "Names.hpp"
#include "Phrases.hpp"
#include "Template.hpp"
#include "Timeline.hpp"

namespace Report::Html {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t gapWidth = 4;  // columns of the picture

struct Lane {
    const char* name;
    const char* tone;
    std::size_t firstLevel;  ///< in LevelCounts
    std::size_t lastLevel;
};

constexpr std::array lanes{Lane{"errors", "bad", 0, 0}, Lane{"warnings", "warn", 1, 1},
                           Lane{"others", "calm", 2, 4}};

std::uint64_t countIn(const Lane& lane, const LevelCounts& counts) {
    return std::accumulate(counts.begin() + static_cast<std::ptrdiff_t>(lane.firstLevel),
                           counts.begin() + static_cast<std::ptrdiff_t>(lane.lastLevel) + 1,
                           std::uint64_t{0});
}

struct LanePicture {
    std::string bars;
    std::string gaps;
    std::size_t width = 0;
    std::uint64_t highest = 0;
    Time busiest;
};

/// A bar for each column. The least bar has a height that can be seen.
LanePicture drawLane(const Lane& lane, const std::vector<DensityColumn>& columns) {
    constexpr double height = 100;
    constexpr double leastBar = 8;
    LanePicture picture;
    for (const DensityColumn& column : columns) {
        if (countIn(lane, column.counts) > picture.highest) {
            picture.highest = countIn(lane, column.counts);
            picture.busiest = column.begin;
        }
    }
    for (const DensityColumn& column : columns) {
        if (column.afterGap) {
            picture.gaps += 'M' + std::to_string(picture.width + 1) + " 0v100m2 0v-100";
            picture.width += gapWidth;
        }
        const std::uint64_t count = countIn(lane, column.counts);
        if (count > 0) {
            const double share = static_cast<double>(count) / static_cast<double>(picture.highest);
            const auto top = static_cast<int>(height - std::max(share * height, leastBar));
            picture.bars += 'M' + std::to_string(picture.width) + " 100V" + std::to_string(top) + "h1V100z";
        }
        ++picture.width;
    }
    return picture;
}

Rows laneRows(const Timeline& timeline) {
    Rows rows;
    for (const Lane& lane : lanes) {
        const LanePicture picture = drawLane(lane, timeline.columns);
        const std::uint64_t count = countIn(lane, timeline.counts);
        std::string about = grouped(count) + ' ' + lane.name;
        if (picture.highest > 0) {
            about += ", most of them around " + timeText(picture.busiest);
        }
        rows.push_back(Fields{}
                           .set("name", lane.name)
                           .set("tone", lane.tone)
                           .set("count", grouped(count))
                           .set("width", std::to_string(picture.width))
                           .set("bars", picture.bars)
                           .set("gaps", picture.gaps)
                           .set("about", about));
    }
    return rows;
}

Rows gapRows(const Timeline& timeline) {
    Rows rows;
    for (std::size_t index = 1; index < timeline.columns.size(); ++index) {
        if (timeline.columns[index].afterGap) {
            const Time begin = timeline.columns[index - 1].end;
            const Time end = timeline.columns[index].begin;
            rows.push_back(Fields{}
                               .set("separator", rows.empty() ? "" : ", and ")
                               .set("text", spanText(spanBetween(begin, end)) + " without entries from " +
                                                timeText(begin) + " to " + timeText(end)));
        }
    }
    return rows;
}

Rows logRows(const Timeline& timeline, std::size_t most) {
    Rows rows;
    for (const TimelineLog& log : timeline.logs) {
        if (rows.size() == most) {
            break;
        }
        Rows counts;
        for (const std::uint64_t count : log.counts) {
            counts.push_back(Fields{}.set("number", grouped(count)));
        }
        const std::uint64_t all = std::accumulate(log.counts.begin(), log.counts.end(), std::uint64_t{0});
        rows.push_back(Fields{}
                           .set("name", shortened(log.name, 300))
                           .set("target", log.textId)
                           .set("counts", std::move(counts))
                           .set("leftOut", grouped(all - log.kept))
                           .set("first", timeText(log.first))
                           .set("last", timeText(log.last)));
    }
    return rows;
}

std::string_view levelTone(const std::optional<Level>& level) {
    constexpr std::array<std::string_view, 2> tones{"bad", "warn"};
    const std::size_t index = levelIndex(level);
    return index < tones.size() ? tones.at(index) : "calm";
}

std::string logNames(const Timeline& timeline, const KeptEntry& kept) {
    std::string names = shortened(timeline.logs[kept.logs.front()].name, 100);
    if (kept.logs.size() > 1) {
        names += " +" + std::to_string(kept.logs.size() - 1);
    }
    return names;
}

/// The entries that a reader without JavaScript sees: errors and warnings first, then the newest.
std::vector<const KeptEntry*> excerptOf(const std::vector<KeptEntry>& entries, std::size_t most) {
    std::vector<const KeptEntry*> newest;
    newest.reserve(entries.size());
    for (const KeptEntry& kept : entries) {
        newest.push_back(&kept);
    }
    std::ranges::reverse(newest);
    std::stable_partition(newest.begin(), newest.end(),
                          [](const KeptEntry* kept) { return isUrgent(kept->entry); });
    newest.resize(std::min(newest.size(), most));
    std::ranges::sort(newest);  // in the order of the entries, which is that of their addresses
    return newest;
}

Rows excerptRows(const Timeline& timeline, const std::vector<const KeptEntry*>& excerpt) {
    constexpr std::size_t longestExcerpt = 500;
    Rows rows;
    for (const KeptEntry* const kept : excerpt) {
        rows.push_back(Fields{}
                           .set("time", exactTimeText(kept->entry.time))
                           .set("levelName", kept->entry.level ? nameOf(*kept->entry.level) : "")
                           .set("tone", levelTone(kept->entry.level))
                           .set("log", logNames(timeline, *kept))
                           .set("tag", shortened(kept->entry.tag, 100))
                           .set("text", shortened(kept->entry.text, longestExcerpt)));
    }
    return rows;
}

Rows levelRows() {
    Rows rows;
    for (const Level level : {Level::error, Level::warning, Level::information, Level::debug}) {
        rows.push_back(
            Fields{}.set("value", std::to_string(static_cast<int>(level))).set("name", nameOf(level)));
    }
    rows.push_back(Fields{}.set("value", "4").set("name", "without level"));
    return rows;
}

std::string millisecondText(const std::optional<Time>& time) {
    constexpr std::size_t rest = 3;
    std::string text = exactTimeText(time);
    text.resize(text.size() - std::min(text.size(), rest));
    return text;
}

/// The beginning and the end of a span of time. If it is short, they have milliseconds.
struct Ends {
    std::string first;
    std::string last;
};

Ends endsOf(const Time& first, const Time& last) {
    const auto text = spanBetween(first, last) < 10s ? millisecondText : timeText;
    return {text(first), text(last)};
}

Ends endsOfPicture(const Timeline& timeline) {
    const auto& columns = timeline.columns;
    return columns.empty() ? Ends{} : endsOf(columns.front().begin, columns.back().end);
}

/// Nothing if no entry has a time.
std::optional<Ends> endsOfEntries(const Timeline& timeline) {
    std::vector<Time> times;
    for (const TimelineLog& log : timeline.logs) {
        if (log.first && log.last) {
            times.insert(times.end(), {*log.first, *log.last});
        }
    }
    if (times.empty()) {
        return std::nullopt;
    }
    const auto [first, last] = std::ranges::minmax(times);
    return endsOf(first, last);
}

std::string summaryOf(const Timeline& timeline) {
    std::string text =
        counted(timeline.all, "entry", "entries") + " in " + counted(timeline.logs.size(), "log");
    if (const auto ends = endsOfEntries(timeline)) {
        text += ", from " + ends->first + " to " + ends->last + " UTC";
    }
    return text + ". An entry that several logs contain is listed once.";
}

std::string cutNote(const Timeline& timeline) {
    if (timeline.kept == timeline.all) {
        return {};
    }
    return "This page leaves out " + counted(timeline.all - timeline.kept, "entry", "entries") +
           " and holds " + grouped(timeline.kept) +
           ": the last entries of each log, then errors and warnings, then all others, newest first.";
}

}  // namespace

void writeTimeline(std::ostream& out, const Timeline& timeline) {
    constexpr std::size_t mostRows = 200;
    constexpr std::size_t mostLogs = 500;
    const auto excerpt = excerptOf(timeline.entries, mostRows);
    const Ends ends = endsOfPicture(timeline);
    fill(out, "timeline",
         Fields{}
             .set("none", timeline.all == 0)
             .set("any", timeline.all > 0)
             .set("summary", summaryOf(timeline))
             .set("cut", cutNote(timeline))
             .set("lanes", laneRows(timeline))
             .setList("gaps", gapRows(timeline))
             .set("first", ends.first)
             .set("last", ends.last)
             .set("logCount", grouped(timeline.logs.size()))
             .set("logs", logRows(timeline, mostLogs))
             .set("logsLeftOut",
                  leftOutNote(timeline.logs.size() - std::min(timeline.logs.size(), mostLogs), "log"))
             .set("levels", levelRows())
             .set("excerptNote",
                  excerpt.size() == timeline.entries.size()
                      ? std::string{}
                      : "This table has " + counted(excerpt.size(), "entry", "entries") +
                            ": errors and warnings first, then the newest. With JavaScript, the "
                            "page shows all that it holds.")
             .set("rows", excerptRows(timeline, excerpt)));
}

}  // namespace Report::Html
