#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Names.hpp"
#include "PackageLoader.hpp"
#include "PartChoice.hpp"
#include "SafeText.hpp"
#include "ShowSections.hpp"
#include "TimeText.hpp"
#include "Words.hpp"

namespace Report {
namespace {

constexpr std::size_t timeWidth = 27;   // columns of a time with microseconds and a gap
constexpr std::size_t levelWidth = 12;  // columns of "information" and a gap
constexpr std::array levelInks{Ink::bad, Ink::warning, Ink::plain, Ink::faint};

bool isChosen(const ShowChoice& choice, const LogEntry& entry) {
    const bool early = choice.since && (!entry.time || *entry.time < *choice.since);
    const bool late = choice.until && (!entry.time || *entry.time > *choice.until);
    return !early && !late && (!choice.grep || choice.grep->fits(entry.tag + ": " + entry.text));
}

std::string padded(std::string text, std::size_t columns) {
    text.resize(std::max(columns, text.size()), ' ');
    return text;
}

void writeEntry(TextWriter& text, const LogEntry& entry) {
    std::string line = padded(entry.time ? microsecondsText(*entry.time) : "", timeWidth);
    if (entry.level) {
        const auto ink = levelInks.at(static_cast<std::size_t>(*entry.level));
        line += text.inked(ink, padded(std::string(nameOf(*entry.level)), levelWidth));
    } else {
        line += padded("", levelWidth);
    }
    line += entry.tag.empty() ? "" : forTerminal(entry.tag) + ": ";
    std::string_view rest = entry.text;
    while (true) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        text.line(line + forTerminal(rest.substr(0, end)));
        if (end == rest.size()) {
            return;
        }
        rest.remove_prefix(end + 1);
        line = padded("", timeWidth + levelWidth);
    }
}

void writeLog(const ShowContext& show, const Package& package, const Part& part) {
    bool first = true;
    forEachEntry(package, part, show.choice.maxLine, [&](const LogEntry& entry) {
        if (isChosen(show.choice, entry)) {
            if (first) {
                show.text.heading(forTerminal(fullName(show.prefix, part)) + ": log, in UTC");
            }
            first = false;
            writeEntry(show.text, entry);
        }
        return true;
    });
}

}  // namespace

void writeLogs(const ShowContext& show, const Package& package) {
    for (const Part& part : package.parts) {
        if (part.log && show.selectsPart(part.name)) {
            writeLog(show, package, part);
        }
    }
}

}  // namespace Report
