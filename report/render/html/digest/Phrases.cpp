#include "Phrases.hpp"

#include <array>
#include <cstdio>

#include "TimeText.hpp"

namespace Report::Html {
std::string spanText(std::chrono::microseconds span) {
    struct Unit {
        double seconds;
        const char* name;
    };
    constexpr std::array units{Unit{1, "s"}, Unit{60, "min"}, Unit{3600, "h"}, Unit{86400, "d"},
                               Unit{31557600, "years"}};
    const double seconds = std::chrono::duration<double>(span).count();
    const Unit* unit = units.data();
    for (const Unit& candidate : units) {
        unit = seconds >= candidate.seconds ? &candidate : unit;
    }
    const double number = seconds / unit->seconds;
    const int decimals = number < 10 && unit->seconds > 1 ? 1 : 0;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f %s", decimals, number, unit->name);
    return text.data();
}

std::chrono::microseconds spanBetween(const Time& begin, const Time& end) {
    std::int64_t span = 0;
    if (__builtin_sub_overflow(end.time_since_epoch().count(), begin.time_since_epoch().count(), &span)) {
        return std::chrono::microseconds::max();
    }
    return std::chrono::microseconds{span};
}

std::string timeText(const std::optional<Time>& time) {
    constexpr std::size_t fraction = 7;
    std::string text = exactTimeText(time);
    text.resize(text.empty() ? 0 : text.size() - fraction);
    return text;
}

std::string exactTimeText(const std::optional<Time>& time) {
    return time ? microsecondsText(*time) : std::string{};
}

std::string shortened(std::string_view text, std::size_t most) {
    if (text.size() <= most) {
        return std::string{text};
    }
    constexpr auto continues = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
    std::size_t end = most;
    while (end > 0 && most - end < 3 && continues(text[end])) {
        --end;
    }
    return std::string{text.substr(0, end)} + "…";
}

std::string leftOutNote(std::size_t number, std::string_view one, std::string_view many) {
    if (number == 0) {
        return {};
    }
    return counted(number, one, many) + (number == 1 ? " more is" : " more are") + " left out of this page.";
}

std::string_view toneOf(State state) {
    switch (state) {
        case State::present:
            return "good";
        case State::stale:
        case State::empty:
            return "warn";
        case State::notRead:
            return "calm";
        case State::missing:
        case State::cut:
        case State::unreadable:
            break;
    }
    return "bad";
}

std::string_view toneOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::whole:
            return "good";
        case Verdict::incomplete:
        case Verdict::notFullyRead:
            return "warn";
        case Verdict::cut:
        case Verdict::altered:
        case Verdict::unreadable:
            break;
    }
    return "bad";
}

std::string_view toneOf(Severity severity) {
    switch (severity) {
        case Severity::error:
            return "bad";
        case Severity::warning:
            return "warn";
        case Severity::note:
            break;
    }
    return "calm";
}

}  // namespace Report::Html
