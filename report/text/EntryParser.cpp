#include "EntryParser.hpp"

#include <algorithm>
#include <charconv>
#include <utility>

namespace Report {
namespace {

constexpr std::string_view tagEnd = ": ";

/// Takes "<11>" from the start of `text`.
std::optional<unsigned> takePriority(std::string_view& text) {
    constexpr unsigned highest = 191;
    if (!text.starts_with('<')) {
        return std::nullopt;
    }
    unsigned priority = 0;
    const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), priority);
    if (error != std::errc() || end == text.data() + text.size() || *end != '>' || priority > highest) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()) + 1);
    return priority;
}

/// The level of a priority of syslog, by its severity.
Level levelOf(unsigned priority) {
    constexpr unsigned severities = 8;
    switch (priority % severities) {
        case 4:
            return Level::warning;
        case 5:
        case 6:
            return Level::information;
        case 7:
            return Level::debug;
        default:
            return Level::error;
    }
}

/// Takes "0 " from the start of `text`.
std::optional<Level> takeLevel(std::string_view& text) {
    if (text.size() < 2 || text[0] < '0' || text[0] > '3' || text[1] != ' ') {
        return std::nullopt;
    }
    const auto level = static_cast<Level>(text[0] - '0');
    text.remove_prefix(2);
    return level;
}

/// Takes "TAG: " from the start of `text`. Without a text, the blank may be missing.
std::string_view takeTag(std::string_view& text) {
    const std::size_t end = text.find(tagEnd);
    std::string_view tag;
    if (end != std::string_view::npos) {
        tag = text.substr(0, end);
        text.remove_prefix(end + tagEnd.size());
    } else if (text.ends_with(':')) {
        tag = std::exchange(text, {});
        tag.remove_suffix(1);
    }
    return tag;
}

/// The same for syslog, where a host may be before the tag, and many texts have a colon but no tag.
std::string_view takeSyslogTag(std::string_view& text) {
    const std::string_view whole = text;
    const std::string_view tag = takeTag(text);
    const std::size_t host = tag.find(' ');
    const std::string_view name = tag.substr(host == std::string_view::npos ? 0 : host + 1);
    if (name.find(' ') != std::string_view::npos) {
        text = whole;
        return {};
    }
    return name;
}

void skipBlank(std::string_view& text) {
    text.remove_prefix(text.starts_with(' ') ? 1 : 0);
}

}  // namespace

bool startsEntry(std::string_view line) {
    if (takeUtcTime(line)) {
        return true;
    }
    takePriority(line);
    return takeSyslogTime(line).has_value();
}

EntryParser::EntryParser(Zone zone, std::optional<Time> newest)
    : boardZone(std::move(zone)),
      latest(boardZone.toLocal(newest.value_or(Time())) + std::chrono::months(1)) {
}

bool EntryParser::parse(std::string_view line, LogEntry& entry) const {
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    entry.time = takeUtcTime(line);
    entry.level.reset();
    entry.tag.clear();
    if (entry.time) {
        skipBlank(line);
        entry.level = takeLevel(line);
        entry.tag = entry.level ? takeTag(line) : std::string_view();
        entry.text = line;
        return true;
    }
    std::string_view rest = line;
    const std::optional<unsigned> priority = takePriority(rest);
    const std::optional<SyslogTime> time = takeSyslogTime(rest);
    if (!time) {
        entry.text = line;
        return false;
    }
    skipBlank(rest);
    entry.time = resolve(*time);
    entry.level = priority ? std::optional(levelOf(*priority)) : std::nullopt;
    entry.tag = takeSyslogTag(rest);
    entry.text = rest;
    return true;
}

LogEntry EntryParser::parseLines(std::string_view lines) const {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    LogEntry entry;
    parse(lines.substr(0, end), entry);
    entry.text += lines.substr(end);
    return entry;
}

Time EntryParser::resolve(const SyslogTime& time) const {
    const std::chrono::local_days latestDay = std::chrono::floor<std::chrono::days>(latest);
    std::chrono::year year = std::chrono::year_month_day(latestDay).year();
    // The 29th of February is missing in up to seven years in a row.
    while (!(year / time.date).ok() || std::chrono::local_days(year / time.date) + time.time > latest) {
        --year;
    }
    return boardZone.toUtc(std::chrono::local_days(year / time.date) + time.time);
}

}  // namespace Report
