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

std::string_view withoutReturn(std::string_view line) {
    return line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0));
}

std::optional<SyslogTime> parseSyslogTime(std::string_view text) {
    const std::optional<SyslogTime> time = takeSyslogTime(text);
    return text.empty() ? time : std::nullopt;
}

/// Whether the time of another form can be read.
bool isTime(std::string_view text) {
    return parseRfc3339(text) || parseLocalTime(text) || parseEpoch(text) || parseSyslogTime(text);
}

}  // namespace

bool startsEntry(std::string_view line, const LogForms* forms) {
    std::string_view rest = line;
    if (takeUtcTime(rest)) {
        return true;
    }
    takePriority(rest);
    if (takeSyslogTime(rest)) {
        return true;
    }
    const std::optional<LogPieces> pieces =
        forms == nullptr ? std::nullopt : forms->find(withoutReturn(line));
    return pieces && isTime(pieces->time);
}

EntryParser::EntryParser(Zone zone, std::optional<Time> newest, std::shared_ptr<const LogForms> otherForms)
    : boardZone(std::move(zone)),
      latest(boardZone.toLocal(newest.value_or(Time())) + std::chrono::months(1)),
      forms(std::move(otherForms)) {
}

bool EntryParser::parse(std::string_view line, LogEntry& entry) const {
    line = withoutReturn(line);
    std::string_view rest = line;
    entry.time = takeUtcTime(rest);
    entry.level.reset();
    entry.tag.clear();
    if (entry.time) {
        skipBlank(rest);
        entry.level = takeLevel(rest);
        entry.tag = entry.level ? takeTag(rest) : std::string_view();
        entry.text = rest;
        return true;
    }
    if (parseSyslog(line, entry) || parseOther(line, entry)) {
        return true;
    }
    entry.text = line;
    return false;
}

bool EntryParser::parseSyslog(std::string_view line, LogEntry& entry) const {
    const std::optional<unsigned> priority = takePriority(line);
    const std::optional<SyslogTime> time = takeSyslogTime(line);
    if (!time) {
        return false;
    }
    skipBlank(line);
    entry.time = resolve(*time);
    entry.level = priority ? std::optional(levelOf(*priority)) : std::nullopt;
    entry.tag = takeSyslogTag(line);
    entry.text = line;
    return true;
}

bool EntryParser::parseOther(std::string_view line, LogEntry& entry) const {
    const std::optional<LogPieces> pieces = forms == nullptr ? std::nullopt : forms->find(line);
    const std::optional<Time> time = pieces ? resolve(pieces->time) : std::nullopt;
    if (time) {
        entry.time = time;
        entry.level = pieces->level;
        entry.tag = pieces->tag;
        entry.text = pieces->text;
    }
    return time.has_value();
}

LogEntry EntryParser::parseLines(std::string_view lines) const {
    const std::size_t end = std::min(lines.find('\n'), lines.size());
    LogEntry entry;
    parse(lines.substr(0, end), entry);
    entry.text += lines.substr(end);
    return entry;
}

/// The time of another form.
std::optional<Time> EntryParser::resolve(std::string_view text) const {
    if (const std::optional<Time> local = parseLocalTime(text)) {
        const auto whole = std::chrono::floor<std::chrono::seconds>(*local);
        return boardZone.toUtc(std::chrono::local_seconds(whole.time_since_epoch())) + (*local - whole);
    }
    if (const std::optional<SyslogTime> syslog = parseSyslogTime(text)) {
        return resolve(*syslog);
    }
    const std::optional<Time> time = parseRfc3339(text);
    return time ? time : parseEpoch(text);
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
