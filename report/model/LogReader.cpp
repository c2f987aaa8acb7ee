#include "LogReader.hpp"

#include <optional>
#include <utility>

#include "EntryParser.hpp"
#include "ValueLine.hpp"

namespace Report {
namespace {

constexpr std::string_view overlapWarning = "WARNING: Shared memory overlap. Log is missing entries";
constexpr std::size_t mostOfEntry = std::size_t{4} << 10;  // kept beside an overlap

LogEntry rawEntry(const std::string& lines) {
    LogEntry entry;
    entry.text = lines;
    return entry;
}

}  // namespace

LogReader::LogReader(Part& partOfLog, bool withOverlaps, std::size_t longest, Memory& memoryOfPackage,
                     const LogForms* otherForms)
    : part(partOfLog),
      findsOverlaps(withOverlaps),
      maxEntry(longest),
      memory(memoryOfPackage),
      forms(otherForms) {
}

bool LogReader::line(std::string_view line) {
    if (findsOverlaps && line.starts_with(overlapWarning)) {
        return addOverlap();
    }
    const bool timed = startsEntry(line, forms);
    if (!timed && anyTime) {
        extendEntry(line);
        return true;
    }
    if (!timed && trimLine(line).empty()) {
        return true;
    }
    part.otherLines += timed ? 0 : 1;
    anyTime = anyTime || timed;
    const bool kept = endEntryAfterOverlap();
    beginEntry(line);
    return kept;
}

bool LogReader::finish(std::string_view rest, End /*end*/) {
    return (rest.empty() || line(rest)) && endEntryAfterOverlap();
}

void LogReader::beginEntry(std::string_view line) {
    entrySize = line.size();
    if (findsOverlaps) {
        entry = line.substr(0, mostOfEntry);
        after = after == After::awaited ? After::begun : after;
    }
}

void LogReader::extendEntry(std::string_view line) {
    entrySize += line.size() + 1;
    longEntry = longEntry || entrySize > maxEntry;
    if (findsOverlaps && entry.size() < mostOfEntry) {
        entry += '\n';
        entry += line.substr(0, mostOfEntry - entry.size());
    }
}

/// Several warnings without an entry between them are one overlap.
bool LogReader::addOverlap() {
    if (after == After::awaited) {
        return true;
    }
    if (!endEntryAfterOverlap() || !keep(2 * sizeof(Overlap) + entry.size())) {
        return false;
    }
    part.overlaps.emplace_back();
    if (!entry.empty()) {
        part.overlaps.back().before = rawEntry(entry);
    }
    after = After::awaited;
    return true;
}

bool LogReader::endEntryAfterOverlap() {
    if (after != After::begun) {
        return true;
    }
    after = After::complete;
    if (!keep(entry.size())) {
        return false;
    }
    part.overlaps.back().after = rawEntry(entry);
    return true;
}

bool LogReader::keep(std::size_t bytes) {
    const bool fits = memory.keepContent(bytes);
    keptBytes += fits ? bytes : 0;
    return fits;
}

void LogReader::discard() {
    part.otherLines = 0;
    part.overlaps.clear();
    memory.releaseContent(std::exchange(keptBytes, 0));
}

}  // namespace Report
