#include "Timestamp.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

namespace Report {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::seconds;

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

/// Reads a text character by character. A take...() that does not fit makes everything fail.
class Scanner {
public:
    explicit Scanner(std::string_view bytes) : text(bytes) {}

    bool failed() const { return !fits; }
    bool atEnd() const { return text.empty(); }
    std::string_view rest() const { return text; }

    bool startsWith(std::string_view characters) const {
        return !text.empty() && characters.find(text.front()) != std::string_view::npos;
    }
    bool startsWithDigit() const { return !text.empty() && isDigit(text.front()); }

    /// Takes one of `characters`; returns it, or 0.
    char take(std::string_view characters) {
        fits = fits && startsWith(characters);
        return fits ? takeAny() : '\0';
    }

    /// Takes a number of `digits` digits, at most `highest`.
    int takeNumber(int digits, int highest) {
        int number = 0;
        for (int digit = 0; digit < digits; ++digit) {
            fits = fits && startsWithDigit();
            number = fits ? number * 10 + (takeAny() - '0') : 0;
        }
        fits = fits && number <= highest;
        return number;
    }

    /// Takes all digits that follow, at least one, as a fraction of a second.
    microseconds takeFraction() {
        fits = fits && startsWithDigit();
        microseconds fraction{};
        for (microseconds unit(100'000); fits && startsWithDigit(); unit /= 10) {
            fraction += (takeAny() - '0') * unit;
        }
        return fraction;
    }

    /// Takes "02:46:40". 60 is a leap second.
    seconds takeClock() {
        const hours hour(takeNumber(2, 23));
        take(":");
        const minutes minute(takeNumber(2, 59));
        take(":");
        return hour + minute + seconds(takeNumber(2, 60));
    }

    void fail() { fits = false; }

private:
    char takeAny() {
        const char byte = text.front();
        text.remove_prefix(1);
        return byte;
    }

    std::string_view text;
    bool fits = true;
};

/// Takes "2026-11-22T02:46:40.995104"; the fraction is optional.
Time takeDateTime(Scanner& scanner, std::string_view separators) {
    const std::chrono::year year(scanner.takeNumber(4, 9999));
    scanner.take("-");
    const std::chrono::month month(static_cast<unsigned>(scanner.takeNumber(2, 12)));
    scanner.take("-");
    const std::chrono::day day(static_cast<unsigned>(scanner.takeNumber(2, 31)));
    scanner.take(separators);
    const seconds clock = scanner.takeClock();
    microseconds fraction{};
    if (scanner.startsWith(".")) {
        scanner.take(".");
        fraction = scanner.takeFraction();
    }
    const std::chrono::year_month_day date = year / month / day;
    if (scanner.failed() || !date.ok()) {
        scanner.fail();
        return {};
    }
    return std::chrono::sys_days(date) + clock + fraction;
}

std::optional<minutes> takeOffset(Scanner& scanner) {
    const bool west = scanner.take("+-") == '-';
    const hours hour(scanner.takeNumber(2, 23));
    minutes minute{};
    if (!scanner.atEnd()) {
        if (scanner.startsWith(":")) {
            scanner.take(":");
        }
        minute = minutes(scanner.takeNumber(2, 59));
    }
    if (scanner.failed() || !scanner.atEnd()) {
        return std::nullopt;
    }
    return west ? -(hour + minute) : hour + minute;
}

/// The number of a month by its English name with three letters, or 0.
unsigned monthNumber(std::string_view name) {
    constexpr std::array<std::string_view, 12> names{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto* const found = std::ranges::find(names, name);
    return found == names.end() ? 0 : static_cast<unsigned>(found - names.begin()) + 1;
}

}  // namespace

std::optional<Time> takeUtcTime(std::string_view& text) {
    Scanner scanner(text);
    const Time time = takeDateTime(scanner, "T");
    scanner.take("Z");
    if (scanner.failed()) {
        return std::nullopt;
    }
    text = scanner.rest();
    return time;
}

std::optional<SyslogTime> takeSyslogTime(std::string_view& text) {
    constexpr std::size_t nameLength = 3;
    const unsigned month = monthNumber(text.substr(0, nameLength));
    if (month == 0) {
        return std::nullopt;
    }
    Scanner scanner(text.substr(nameLength));
    scanner.take(" ");
    bool oneDigit = scanner.startsWith(" ");
    if (oneDigit) {
        scanner.take(" ");
    }
    int day = scanner.takeNumber(1, 9);
    oneDigit = oneDigit || !scanner.startsWithDigit();
    if (!oneDigit) {
        day = day * 10 + scanner.takeNumber(1, 9);
    }
    scanner.take(" ");
    const SyslogTime time{std::chrono::month(month) / std::chrono::day(static_cast<unsigned>(day)),
                          scanner.takeClock()};
    if (scanner.failed() || !time.date.ok()) {
        return std::nullopt;
    }
    text = scanner.rest();
    return time;
}

std::optional<Time> parseRfc3339(std::string_view text) {
    Scanner scanner(text);
    const Time time = takeDateTime(scanner, "Tt ");
    if (scanner.startsWith("Zz")) {
        scanner.take("Zz");
        return scanner.failed() || !scanner.atEnd() ? std::nullopt : std::optional(time);
    }
    const std::optional<minutes> offset = takeOffset(scanner);
    return offset ? std::optional(time - *offset) : std::nullopt;
}

std::optional<minutes> parseOffset(std::string_view text) {
    Scanner scanner(text);
    return takeOffset(scanner);
}

}  // namespace Report
