#include "Timeline.hpp"

#include <algorithm>
#include <numeric>

#include "PackageLoader.hpp"

namespace Report::Html {
namespace {

struct LogPart {
    const Package* package;
    const Part* part;
    TimelineLog log;
};

std::vector<LogPart> logPartsOf(const std::vector<View>& views) {
    std::vector<LogPart> logs;
    forEachView(views, [&](const View& view) {
        for (std::size_t index = 0; index < view->parts.size(); ++index) {
            const Part& part = view->parts[index];
            if (part.log && hasText(part)) {
                TimelineLog log;
                log.name = view.logPrefix + part.name;
                log.textId = textId(view, index);
                logs.push_back({view.package, &part, std::move(log)});
            }
        }
    });
    return logs;
}

void countEntry(TimelineLog& log, const LogEntry& entry) {
    ++log.counts.at(levelIndex(entry.level));
    if (entry.time) {
        log.first = log.first ? std::min(log.first, entry.time) : entry.time;
        log.last = log.last ? std::max(log.last, entry.time) : entry.time;
    }
}

/// Without the logs that have a text but no entry: the numbers in the entries change with them.
void removeEmptyLogs(Timeline& timeline) {
    std::vector<std::uint32_t> numbers(timeline.logs.size());
    std::vector<TimelineLog> logs;
    for (std::size_t index = 0; index < timeline.logs.size(); ++index) {
        numbers[index] = static_cast<std::uint32_t>(logs.size());
        const LevelCounts& counts = timeline.logs[index].counts;
        if (std::ranges::any_of(counts, [](std::uint64_t count) { return count > 0; })) {
            logs.push_back(std::move(timeline.logs[index]));
        }
    }
    timeline.logs = std::move(logs);
    for (KeptEntry& kept : timeline.entries) {
        for (std::uint32_t& log : kept.logs) {
            log = numbers[log];
        }
    }
}

void sumUp(Timeline& timeline) {
    for (const TimelineLog& log : timeline.logs) {
        for (std::size_t level = 0; level < log.counts.size(); ++level) {
            timeline.counts.at(level) += log.counts.at(level);
        }
        timeline.kept += log.kept;
    }
    timeline.all = std::accumulate(timeline.counts.begin(), timeline.counts.end(), std::uint64_t{0});
}

}  // namespace

Timeline timelineOf(const std::vector<View>& views, std::size_t maxLine, std::size_t bytes) {
    constexpr std::size_t mostColumns = 240;
    std::vector<LogPart> parts = logPartsOf(views);
    EntrySelection selection{bytes, parts.size()};
    Density density;
    Timeline timeline;
    for (LogPart& part : parts) {
        selection.beginLog(static_cast<std::uint32_t>(timeline.logs.size()));
        forEachEntry(*part.package, *part.part, maxLine, [&](const LogEntry& entry) {
            countEntry(part.log, entry);
            if (entry.time) {
                density.add(*entry.time, entry.level);
            }
            selection.add(entry);
            return true;
        });
        selection.endLog();
        timeline.logs.push_back(std::move(part.log));
    }
    timeline.columns = density.columns(mostColumns);
    timeline.entries = selection.take();
    for (const KeptEntry& kept : timeline.entries) {
        for (const std::uint32_t log : kept.logs) {
            ++timeline.logs[log].kept;
        }
    }
    removeEmptyLogs(timeline);
    sumUp(timeline);
    return timeline;
}

}  // namespace Report::Html
