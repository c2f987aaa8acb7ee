#pragma once

#include <chrono>
#include <optional>
#include <string_view>
#include <variant>

#include "Time.hpp"

namespace Report {

/// A time that the user gives: a time in UTC, or a distance from the time of the package.
class Moment {
public:
    /// Reads the whole of a text in one of these forms:
    ///
    ///     2026-11-22T02:46:40.995104Z, 2026-11-22T03:46:40+01:00
    ///     2026-11-22 02:46:40, 2026-11-22 02:46:40 UTC, 2026-11-22T02:46:40, 2026-11-22 02:46, 2026-11-22
    ///     -10m, +30s: before or after the time of the package, in s, m, h or d
    static std::optional<Moment> parse(std::string_view text);

    /// No value for a distance if the time of the package is unknown.
    std::optional<Time> resolve(std::optional<Time> packageTime) const;

private:
    using Content = std::variant<Time, std::chrono::seconds>;

    explicit Moment(Content timeOrDistance) : content(timeOrDistance) {}

    static std::optional<Moment> parseDistance(std::string_view text);

    Content content;
};

}  // namespace Report
