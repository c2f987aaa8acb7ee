#include "HistoryWords.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <string_view>

#include "TimeText.hpp"
#include "Words.hpp"

namespace Report {

namespace {

constexpr double largestWhole = 1e15;  // each whole number up to here has its own double

std::string formatted(double number, std::chars_format format, int precision) {
    std::array<char, 40> text{};
    char* const end = std::to_chars(text.data(), text.data() + text.size(), number, format, precision).ptr;
    return {text.data(), end};
}

bool isWhole(double number) {
    return std::abs(number) < largestWhole && std::abs(number - std::round(number)) == 0;
}

/// A number that is at least `large`, without its fraction.
double rounded(double number, double large) {
    const double size = std::abs(number);
    return size >= large && size < largestWhole ? std::round(number) : number;
}

std::string timeOf(std::int64_t seconds) {
    return secondsText(Time(std::chrono::seconds(seconds)));
}

}  // namespace

std::string numberText(double number) {
    constexpr double large = 1e5;  // a median of large numbers needs no digits behind the point
    const double shown = rounded(number, large);
    return isWhole(shown) ? formatted(shown, std::chars_format::fixed, 0)
                          : formatted(shown, std::chars_format::general, 6);
}

std::string hourlyText(const std::optional<double>& perHour) {
    if (!perHour) {
        return "-";
    }
    constexpr double large = 100;
    const double shown = rounded(*perHour, large);
    return (shown < 0 ? "" : "+") + (isWhole(shown) ? formatted(shown, std::chars_format::fixed, 0)
                                                    : formatted(shown, std::chars_format::general, 3));
}

std::string scoreText(double score) {
    constexpr double large = 1e9;  // in digits, it would fill the line
    return std::abs(score) < large ? formatted(score, std::chars_format::fixed, 1)
                                   : formatted(score, std::chars_format::general, 3);
}

std::string nameText(const SeriesName& name) {
    std::string title = name.title.substr(0, name.title.find_last_not_of(": \t") + 1);
    title += title.empty() ? "" : " / ";
    const std::string which = name.occurrence > 1 ? " (" + std::to_string(name.occurrence) + ")" : "";
    return name.part + ": " + title + name.name + which;
}

std::string scopeText(const HistorySummary& summary, const std::string* board) {
    return counted(summary.packages, "package") + " of " +
           (board == nullptr ? counted(summary.boards, "board") : *board);
}

std::string periodText(const HistorySummary& summary) {
    return summary.packages == 0 ? "" : timeOf(summary.first) + " to " + timeOf(summary.last);
}

std::string verdictsText(const HistorySummary& summary) {
    constexpr std::array<std::string_view, 6> verdicts{"whole", "incomplete", "not fully read",
                                                       "cut",   "altered",    "unreadable"};
    std::string text;
    for (const std::string_view verdict : verdicts) {
        if (const auto found = summary.verdicts.find(std::string(verdict)); found != summary.verdicts.end()) {
            text += (text.empty() ? "" : ", ") + grouped(found->second).append(" ").append(verdict);
        }
    }
    return text;
}

std::string leftOutText(const HistorySummary& summary) {
    if (summary.timeless == 0) {
        return "";
    }
    return counted(summary.timeless, "further package") +
           (summary.timeless == 1 ? " has no place in time: its" : " have no place in time: their") +
           " board or time is not known, or the clock was not set.";
}

std::string conclusionText(const FleetTrend& trend, const HistorySummary& summary) {
    if (summary.boards < fewestBoards) {
        return "What is usual is not known: a comparison needs " + std::to_string(fewestBoards) +
               " boards. See each board with --board.";
    }
    const std::size_t count = trend.outliers.size() + trend.leftOut;
    if (count == 0) {
        return "No value stands out.";
    }
    return counted(count, "value") + (count == 1 ? " stands out, on " : " stand out, on ") +
           counted(trend.boards, "board") + ".";
}

std::string conclusionText(const BoardTrend& trend) {
    return counted(trend.changed.size() + trend.leftOut, "value") + " changed, " + grouped(trend.constant) +
           " did not.";
}

std::vector<std::size_t> evenPlaces(std::size_t count, std::size_t most) {
    const std::size_t places = std::min(count, most);
    std::vector<std::size_t> even;
    for (std::size_t place = 0; place < places; ++place) {
        even.push_back(places == 1 ? 0 : place * (count - 1) / (places - 1));
    }
    return even;
}

std::string sparkline(std::span<const Point> points, std::size_t most) {
    constexpr std::array<std::string_view, 8> blocks{"\u2581", "\u2582", "\u2583", "\u2584",
                                                     "\u2585", "\u2586", "\u2587", "\u2588"};
    constexpr double steps = 7;
    const auto [lowest, highest] = std::ranges::minmax_element(points, {}, &Point::number);
    const double range = highest->number - lowest->number;
    std::string line;
    for (const std::size_t place : evenPlaces(points.size(), most)) {
        const double share = range > 0 ? (points[place].number - lowest->number) / range : 0;
        line += blocks.at(static_cast<std::size_t>(std::lround(std::clamp(share, 0.0, 1.0) * steps)));
    }
    return line;
}

}  // namespace Report
