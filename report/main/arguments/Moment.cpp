#include "Moment.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "Quantity.hpp"
#include "Timestamp.hpp"

namespace Report {
namespace {

using namespace std::chrono_literals;

struct Unit {
    char letter;
    std::chrono::seconds length;
};

constexpr std::array units{Unit{'s', 1s}, Unit{'m', 1min}, Unit{'h', 1h}, Unit{'d', 24h}};

constexpr std::size_t dateLength = 10;         // of 2026-11-22
constexpr std::size_t lengthWithMinutes = 16;  // of 2026-11-22 02:46
constexpr std::string_view utc = " UTC";       // as the program prints times

/// A time without its zone or without its end, in the form of RFC 3339.
std::string completed(std::string_view text) {
    const bool inUtc = text.ends_with(utc) && text.size() > dateLength + utc.size();
    text.remove_suffix(inUtc ? utc.size() : 0);
    const std::string whole(text);
    if (text.size() == dateLength) {
        return whole + "T00:00:00Z";
    }
    if (text.size() == lengthWithMinutes) {
        return whole + ":00Z";
    }
    const bool hasZone = text.find_first_of("Zz+-", dateLength) != std::string_view::npos;
    return hasZone && !inUtc ? whole : whole + "Z";
}

}  // namespace

std::optional<Moment> Moment::parse(std::string_view text) {
    if (text.starts_with('-') || text.starts_with('+')) {
        return parseDistance(text);
    }
    const std::optional<Time> time = parseRfc3339(completed(text));
    return time ? std::optional(Moment(*time)) : std::nullopt;
}

std::optional<Moment> Moment::parseDistance(std::string_view text) {
    const auto* const unit = std::ranges::find(units, text.back(), &Unit::letter);
    constexpr std::uint64_t most = 1'000'000;
    const std::optional<std::uint64_t> count = parseCount(text.substr(1, text.size() - 2));
    if (unit == units.end() || !count || *count > most) {
        return std::nullopt;
    }
    const std::chrono::seconds distance = unit->length * static_cast<std::int64_t>(*count);
    return Moment(text.front() == '-' ? -distance : distance);
}

std::optional<Time> Moment::resolve(std::optional<Time> packageTime) const {
    if (const auto* const time = std::get_if<Time>(&content)) {
        return *time;
    }
    return packageTime ? std::optional<Time>(*packageTime + std::get<std::chrono::seconds>(content))
                       : std::nullopt;
}

}  // namespace Report
