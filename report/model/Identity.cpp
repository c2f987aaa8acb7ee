#include "Identity.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "EntryParser.hpp"
#include "MemberName.hpp"
#include "Zone.hpp"

namespace Report {
namespace {

using std::chrono::sys_days;

std::optional<std::string> boardOf(const Package& package, const LoadOptions& options) {
    if (options.board) {
        return options.board;
    }
    const std::string* const board = package.sidecar ? package.sidecar->find("board") : nullptr;
    if (board != nullptr && !board->empty()) {
        return *board;
    }
    const std::string_view stem = stemOf(package.source);
    if (package.source == "-" || stem.empty() || kindOfFile(stem) != Kind::unknown) {
        return std::nullopt;
    }
    return std::string(stem);
}

/// The newest time of a member that is a part and no package.
std::optional<Time> newestTime(const Package& package) {
    std::optional<Time> newest;
    for (const Part& part : package.parts) {
        // What is nested too deeply can be a package, too.
        const bool nested = part.package || part.end.limit == Limit::depth;
        if (!nested && part.time) {
            newest = std::max(newest, part.time);
        }
    }
    return newest;
}

std::optional<Time> timeOf(const Package& package) {
    std::optional<Time> time;
    if (package.sidecar) {
        const std::optional<Time> ended = package.sidecar->ended();
        time = ended ? ended : package.sidecar->began();
    }
    return time ? time : newestTime(package);
}

bool isClockUnset(Time time, Time now) {
    constexpr Time firstBoards = sys_days(std::chrono::year(2010) / 1 / 1);
    constexpr std::chrono::minutes tolerance(5);  // two clocks that are set still differ
    return time < firstBoards || time > now + tolerance;
}

/// The last entry of a log as far as the log's tail holds it, with all of its lines.
std::string lastEntry(const Part& log, const LogForms* forms) {
    std::string_view text = log.tail;
    text.remove_suffix(text.ends_with('\n') ? 1 : 0);
    if (log.textSize > log.tail.size()) {
        text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    }
    for (std::size_t start = text.size(); start != std::string_view::npos;) {
        start = start == 0 ? std::string_view::npos : text.rfind('\n', start - 1);
        const std::string_view entry = text.substr(start + 1);
        if (startsEntry(entry.substr(0, entry.find('\n')), forms)) {
            return std::string(entry);
        }
    }
    return {};
}

/// The part that holds what an archive's runtime.log continues: middle.log.gz, else startup.log.gz.
const Part* earlierPiece(const Package& package, const Part& runtime) {
    constexpr std::array<std::string_view, 2> pieces{"middle", "startup"};
    const std::string folder = runtime.name.substr(0, runtime.name.size() - baseName(runtime.name).size());
    for (const std::string_view piece : pieces) {
        const auto found = std::ranges::find(package.parts, folder + std::string(piece), &Part::name);
        if (found != package.parts.end()) {
            return &*found;
        }
    }
    return nullptr;
}

/// If entries were overwritten just after the archive began a new runtime.log, the entry before them is the
/// last one of the earlier piece.
void completeOverlap(const Package& package, Part& part) {
    if (part.overlaps.empty() || part.overlaps.front().before || baseName(part.name) != "runtime") {
        return;
    }
    if (const Part* const earlier = earlierPiece(package, part)) {
        const std::string entry = lastEntry(*earlier, package.forms.get());
        if (!entry.empty()) {
            part.overlaps.front().before.emplace().text = entry;
        }
    }
}

void completeEntries(Package& package) {
    const EntryParser parser = parserFor(package);
    for (Part& part : package.parts) {
        completeOverlap(package, part);
        for (Overlap& overlap : part.overlaps) {
            for (std::optional<LogEntry>* const entry : {&overlap.before, &overlap.after}) {
                if (*entry) {
                    *entry = parser.parseLines((*entry)->text);
                }
            }
        }
    }
}

/// Completes a package whose board, zone and time are known, and the nested ones.
// NOLINTNEXTLINE(misc-no-recursion): --max-depth bounds the recursion
void complete(Package& package, Time now) {
    package.clockUnset = package.time && isClockUnset(*package.time, now);
    completeEntries(package);
    for (Package& nested : package.nested) {
        nested.board = package.board;
        nested.zone = package.zone;
        nested.forms = package.forms;
        nested.time = newestTime(nested);
        complete(nested, now);
    }
}

}  // namespace

void identify(Package& package, const LoadOptions& options) {
    package.board = boardOf(package, options);
    package.kind = options.kind.value_or(kindOfFile(stemOf(package.source)));
    package.time = timeOf(package);
    const std::string* const zone = package.sidecar ? package.sidecar->find("zone") : nullptr;
    if (zone != nullptr && Zone::find(*zone)) {
        package.zone = *zone;
    }
    package.forms = options.forms;
    complete(package, options.now);
}

EntryParser parserFor(const Package& package) {
    return {(package.zone ? Zone::find(*package.zone) : std::nullopt).value_or(Zone()), package.time,
            package.forms};
}

}  // namespace Report
