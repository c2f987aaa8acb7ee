#include "EntryText.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "Names.hpp"
#include "SafeText.hpp"
#include "TimeText.hpp"

namespace Report {
namespace {

constexpr std::size_t timeWidth = 27;   // columns of a time with microseconds and a gap
constexpr std::size_t levelWidth = 12;  // columns of "information" and a gap
constexpr std::array levelInks{Ink::bad, Ink::warning, Ink::plain, Ink::faint};

}  // namespace

void writeEntry(TextWriter& text, const LogEntry& entry, std::size_t indent) {
    const std::string time = entry.time ? microsecondsText(*entry.time) : "";
    const std::string level = entry.level ? std::string(nameOf(*entry.level)) : "";
    const Ink ink = entry.level ? levelInks.at(static_cast<std::size_t>(*entry.level)) : Ink::plain;
    std::string line(indent, ' ');
    line += time + padding(timeWidth, time) + text.inked(ink, level) + padding(levelWidth, level);
    line += entry.tag.empty() ? "" : forTerminal(entry.tag) + ": ";
    std::string_view rest = entry.text;
    while (true) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        text.line(line + forTerminal(rest.substr(0, end)));
        if (end == rest.size()) {
            return;
        }
        rest.remove_prefix(end + 1);
        line = std::string(indent + timeWidth + levelWidth, ' ');
    }
}

}  // namespace Report
