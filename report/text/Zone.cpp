#include "Zone.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "SystemCall.hpp"
#include "Timestamp.hpp"
#include "UniqueFd.hpp"

namespace Report {
namespace {

using std::chrono::local_seconds;
using std::chrono::seconds;

constexpr const char* database = "/usr/share/zoneinfo/";
constexpr std::size_t longestName = 128;
constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
constexpr std::string_view digits = "0123456789";

std::mutex zoneInUse;  // the C library has one zone for all threads

/// Sets the C library's zone, and restores it at the end.
class ScopedZone {
public:
    explicit ScopedZone(const std::string& rules) {
        if (const char* const value = ::getenv("TZ")) {
            before = value;
        }
        set(rules);
    }
    ~ScopedZone() { set(before); }
    ScopedZone(const ScopedZone&) = delete;
    ScopedZone& operator=(const ScopedZone&) = delete;
    ScopedZone(ScopedZone&&) = delete;
    ScopedZone& operator=(ScopedZone&&) = delete;

private:
    static void set(const std::optional<std::string>& rules) {
        if (rules) {
            ::setenv("TZ", rules->c_str(), 1);
        } else {
            ::unsetenv("TZ");
        }
        ::tzset();
    }

    std::scoped_lock<std::mutex> lock{zoneInUse};
    std::optional<std::string> before;
};

bool consistsOf(std::string_view text, std::string_view first, std::string_view second,
                std::string_view third) {
    return std::ranges::all_of(text, [&](char byte) {
        return first.find(byte) != std::string_view::npos || second.find(byte) != std::string_view::npos ||
               third.find(byte) != std::string_view::npos;
    });
}

/// Whether the database has a zone of this name. Opens nothing outside the database.
bool isInDatabase(std::string_view name) {
    if (name.empty() || name.front() == '/' || !consistsOf(name, letters, digits, "/_+-")) {
        return false;
    }
    const std::string path = database + std::string(name);
    const Base::UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    std::array<char, 4> magic{};
    return file && ::read(file.get(), magic.data(), magic.size()) == ssize_t{magic.size()} &&
           std::string_view(magic.data(), magic.size()) == "TZif";
}

/// Takes the abbreviation at the start of a description of POSIX: at least three letters, or any text in <>.
/// Empty if there is none.
std::string_view takeAbbreviation(std::string_view& rules) {
    const bool quoted = rules.starts_with('<');
    rules.remove_prefix(quoted ? 1 : 0);
    const std::size_t end =
        std::min(quoted ? rules.find('>') : rules.find_first_not_of(letters), rules.size());
    const std::string_view name = rules.substr(0, end);
    rules.remove_prefix(std::min(end + (quoted ? 1 : 0), rules.size()));
    return name.size() < 3 ? std::string_view() : name;
}

/// Whether a text starts with an offset of at most 24 hours, such as "-3:30".
bool startsWithOffset(std::string_view text) {
    text.remove_prefix(text.starts_with('+') || text.starts_with('-') ? 1 : 0);
    const std::size_t length = std::min(text.find_first_not_of(digits), text.size());
    const std::string_view hours = text.substr(0, length);
    return length == 1 || (length == 2 && hours <= "24");
}

/// Whether the C library understands a description of POSIX. If not, it would take UTC.
bool isPosixRule(const std::string& rules) {
    std::string_view rest = rules;
    const std::string name(takeAbbreviation(rest));
    if (name.empty() || !startsWithOffset(rest) || !consistsOf(rest, letters, digits, "<>+-:,./")) {
        return false;
    }
    const ScopedZone zone(rules);
    return name == ::tzname[0];
}

std::tm fieldsOf(local_seconds local) {
    const std::time_t count = local.time_since_epoch().count();
    std::tm fields{};
    ::gmtime_r(&count, &fields);  // the fields of a time do not depend on its zone
    fields.tm_isdst = -1;         // unknown
    return fields;
}

}  // namespace

std::optional<Zone> Zone::find(std::string_view name) {
    Zone zone;
    if (name == "UTC" || name == "Z") {
        return zone;
    }
    if (const auto parsed = parseOffset(name)) {
        zone.offset = *parsed;
        return zone;
    }
    if (name.size() > longestName) {
        return std::nullopt;
    }
    name.remove_prefix(name.starts_with(':') ? 1 : 0);
    if (isInDatabase(name)) {
        zone.rules = ':' + std::string(name);
        return zone;
    }
    zone.rules = name;
    return isPosixRule(zone.rules) ? std::optional(zone) : std::nullopt;
}

Time Zone::toUtc(local_seconds local) const {
    return Time(local.time_since_epoch() - offsetAt(local));
}

local_seconds Zone::toLocal(Time time) const {
    const auto whole = std::chrono::floor<seconds>(time).time_since_epoch();
    if (rules.empty()) {
        return local_seconds(whole + offset);
    }
    const ScopedZone zone(rules);
    const std::time_t count = whole.count();
    std::tm fields{};
    ::localtime_r(&count, &fields);
    return local_seconds(whole + seconds(fields.tm_gmtoff));
}

seconds Zone::offsetAt(local_seconds local) const {
    if (rules.empty()) {
        return offset;
    }
    // Clocks are changed at full quarters of an hour only.
    const auto quarter = std::chrono::floor<std::chrono::duration<std::int64_t, std::ratio<900>>>(local);
    if (cachedQuarter != quarter) {
        const ScopedZone zone(rules);
        std::tm fields = fieldsOf(local);
        const std::time_t utc = ::mktime(&fields);
        cachedQuarter = quarter;
        cachedOffset = local.time_since_epoch() - seconds(utc);
    }
    return cachedOffset;
}

}  // namespace Report
