#include "LogChange.hpp"

#include <cstdint>
#include <map>
#include <string_view>

#include "PackageLoader.hpp"
#include "TextCounts.hpp"
#include "TextHash.hpp"

namespace Report {
namespace {

/// The parts of one log in both packages.
struct Sides {
    std::vector<const Part*> before;
    std::vector<const Part*> after;
};

/// "archive/dispatcher" for "archive.2/dispatcher/runtime". Other parts are logs of their own.
std::string logOf(std::string_view part) {
    const std::string_view folder = part.substr(0, part.find('/'));
    const std::size_t piece = part.rfind('/');
    if (folder != "archive" && !folder.starts_with("archive.")) {
        return std::string(part);
    }
    return "archive" + std::string(part.substr(folder.size(), piece - folder.size()));
}

std::uint64_t hashOf(const LogEntry& entry) {
    TextHash hash;
    hash.addNumber(entry.time ? static_cast<std::uint64_t>(entry.time->time_since_epoch().count()) : 0);
    hash.addNumber(entry.level ? static_cast<std::uint64_t>(*entry.level) + 1 : 0);
    hash.addText(entry.tag);
    hash.addText(entry.text);
    return hash.value();
}

std::vector<std::uint64_t> hashesOf(const Package& package, const Part& part, std::size_t maxLine) {
    std::vector<std::uint64_t> hashes;
    forEachEntry(package, part, maxLine, [&](const LogEntry& entry) {
        hashes.push_back(hashOf(entry));
        return true;
    });
    return hashes;
}

NewEntries newEntriesOf(const Package& package, const Part& part, TextCounts& known, std::size_t maxLine) {
    NewEntries entries{.part = &part};
    for (const std::uint64_t hash : hashesOf(package, part, maxLine)) {
        const bool isNew = !known.take(hash);
        entries.isNew.push_back(isNew);
        entries.count += isNew ? 1 : 0;
    }
    return entries;
}

}  // namespace

std::vector<LogChange> compareLogs(const Logs& before, const Logs& after, std::size_t maxLine) {
    std::map<std::string, Sides> logs;
    for (const Part* part : before.parts) {
        logs[logOf(part->name)].before.push_back(part);
    }
    for (const Part* part : after.parts) {
        logs[logOf(part->name)].after.push_back(part);
    }
    std::vector<LogChange> changes;
    for (const auto& [name, sides] : logs) {
        TextCounts known;
        for (const Part* part : sides.before) {
            known.raiseTo(TextCounts(hashesOf(*before.package, *part, maxLine)));
        }
        LogChange change{.log = name};
        for (const Part* part : sides.after) {
            // Two pieces of an archive can hold the same entries, so each piece is compared with all known
            // entries.
            known.putBack();
            NewEntries entries = newEntriesOf(*after.package, *part, known, maxLine);
            if (entries.count > 0) {
                change.count += entries.count;
                change.parts.push_back(std::move(entries));
            }
        }
        change.gone = known.neverTaken();
        if (change.count > 0) {
            changes.push_back(std::move(change));
        }
    }
    return changes;
}

void forEachNewEntry(const Package& package, const NewEntries& entries, std::size_t maxLine,
                     const std::function<bool(const LogEntry&)>& visit) {
    std::size_t place = 0;
    forEachEntry(package, *entries.part, maxLine,
                 [&](const LogEntry& entry) { return !entries.isNew[place++] || visit(entry); });
}

}  // namespace Report
