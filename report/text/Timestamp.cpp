#include "Timestamp.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace Report {
namespace {

using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// Whether `text` starts with `form`, in which # is any digit and ? any byte.
bool hasForm(std::string_view text, std::string_view form) {
    bool fits = text.size() >= form.size();
    for (std::size_t place = 0; fits && place < form.size(); ++place) {
        const char expected = form[place];
        fits = expected == '#' ? isDigit(text[place]) : expected == '?' || expected == text[place];
    }
    return fits;
}

/// The number of two digits at a place.
int numberAt(std::string_view text, std::size_t place) {
    return (text[place] - '0') * 10 + (text[place + 1] - '0');
}

/// The time "##:##:##" at a place. 60 seconds are a leap second.
std::optional<seconds> clockAt(std::string_view text, std::size_t place) {
    const hours hour(numberAt(text, place));
    const minutes minute(numberAt(text, place + 3));
    const seconds second(numberAt(text, place + 6));
    if (hour.count() > 23 || minute.count() > 59 || second.count() > 60) {
        return std::nullopt;
    }
    return hour + minute + second;
}

/// Takes ".995104" from the start of `text`, with any number of digits. `mark` is a point or a comma.
microseconds takeFraction(std::string_view& text, char mark = '.') {
    if (!text.starts_with(mark) || !hasForm(text, "?#")) {
        return {};
    }
    constexpr std::size_t places = 6;
    const std::size_t size = std::min(text.find_first_not_of("0123456789", 1), text.size()) - 1;
    microseconds::rep fraction = 0;
    for (std::size_t place = 0; place < places; ++place) {
        fraction = fraction * 10 + (place < size ? text[place + 1] - '0' : 0);
    }
    text.remove_prefix(size + 1);
    return microseconds(fraction);
}

/// Takes "2026-11-22T02:46:40.995104" from the start of `text`. The fraction is optional. One of `separators`
/// is between date and time.
std::optional<Time> takeDateTime(std::string_view& text, std::string_view separators, char mark = '.') {
    constexpr std::string_view form = "####-##-##?##:##:##";
    if (!hasForm(text, form) || separators.find(text[10]) == std::string_view::npos) {
        return std::nullopt;
    }
    const auto date = std::chrono::year(numberAt(text, 0) * 100 + numberAt(text, 2)) /
                      std::chrono::month(static_cast<unsigned>(numberAt(text, 5))) /
                      std::chrono::day(static_cast<unsigned>(numberAt(text, 8)));
    const std::optional<seconds> clock = clockAt(text, 11);
    if (!date.ok() || !clock) {
        return std::nullopt;
    }
    text.remove_prefix(form.size());
    return std::chrono::sys_days(date) + *clock + takeFraction(text, mark);
}

/// The month with an English name of three letters, or an invalid one.
std::chrono::month monthOf(std::string_view name) {
    constexpr std::array<std::string_view, 12> names{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto* const found = std::ranges::find(names, name);
    return std::chrono::month(found == names.end() ? 0 : static_cast<unsigned>(found - names.begin()) + 1);
}

}  // namespace

std::optional<Time> takeUtcTime(std::string_view& text) {
    std::string_view rest = text;
    const std::optional<Time> time = takeDateTime(rest, "T");
    if (!time || !rest.starts_with('Z')) {
        return std::nullopt;
    }
    text = rest.substr(1);
    return time;
}

std::optional<SyslogTime> takeSyslogTime(std::string_view& text) {
    constexpr std::array<std::string_view, 3> forms{"??? ## ##:##:##", "???  # ##:##:##", "??? # ##:##:##"};
    const auto* const form =
        std::ranges::find_if(forms, [text](std::string_view candidate) { return hasForm(text, candidate); });
    if (form == forms.end()) {
        return std::nullopt;
    }
    const std::size_t clockPlace = form->size() - std::string_view("##:##:##").size();
    const int unit = text[clockPlace - 2] - '0';
    const int ten = isDigit(text[clockPlace - 3]) ? text[clockPlace - 3] - '0' : 0;
    const auto date = monthOf(text.substr(0, 3)) / std::chrono::day(static_cast<unsigned>(ten * 10 + unit));
    const std::optional<seconds> clock = clockAt(text, clockPlace);
    if (!date.ok() || !clock) {
        return std::nullopt;
    }
    text.remove_prefix(form->size());
    return SyslogTime{date, *clock};
}

std::optional<Time> parseRfc3339(std::string_view text) {
    const std::optional<Time> local = takeDateTime(text, "Tt ");
    const std::optional<minutes> offset = text == "Z" || text == "z" ? minutes() : parseOffset(text);
    return local && offset ? std::optional(*local - *offset) : std::nullopt;
}

std::optional<Time> parseLocalTime(std::string_view text) {
    const char mark = text.find(',') == std::string_view::npos ? '.' : ',';
    const std::optional<Time> local = takeDateTime(text, "T ", mark);
    return text.empty() ? local : std::nullopt;
}

std::optional<Time> parseEpoch(std::string_view text) {
    constexpr std::size_t fewest = 9;  // digits: fewer are another number
    constexpr std::size_t most = 11;
    const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
    seconds::rep count = 0;
    if (digits < fewest || digits > most) {
        return std::nullopt;
    }
    std::from_chars(text.data(), text.data() + digits, count);
    text.remove_prefix(digits);
    const Time time = Time(seconds(count)) + takeFraction(text);
    return text.empty() ? std::optional(time) : std::nullopt;
}

std::optional<minutes> parseOffset(std::string_view text) {
    constexpr std::array<std::string_view, 3> forms{"?##:##", "?####", "?##"};
    const auto* const form = std::ranges::find_if(forms, [text](std::string_view candidate) {
        return text.size() == candidate.size() && hasForm(text, candidate);
    });
    const bool west = text.starts_with('-');
    if (form == forms.end() || (!west && !text.starts_with('+'))) {
        return std::nullopt;
    }
    const hours hour(numberAt(text, 1));
    const minutes minute(text.size() > 3 ? numberAt(text, text.size() - 2) : 0);
    if (hour.count() > 23 || minute.count() > 59) {
        return std::nullopt;
    }
    return west ? -(hour + minute) : hour + minute;
}

}  // namespace Report
