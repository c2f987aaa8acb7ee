#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "HistoryRenderers.hpp"
#include "Message.hpp"
#include "Output.hpp"
#include "Trends.hpp"

namespace Report {

namespace {

/// In seconds since 1970. A distance counts from the newest package.
std::optional<std::int64_t> secondsOf(const std::optional<Moment>& moment, std::int64_t newest) {
    const auto time = moment ? moment->resolve(Time(std::chrono::seconds(newest))) : std::nullopt;
    return time ? std::optional(std::chrono::floor<std::chrono::seconds>(*time).time_since_epoch().count())
                : std::nullopt;
}

HistoryChoice choiceOf(const Arguments& arguments) {
    HistoryChoice choice{arguments.board, {}, {}};
    if (arguments.since || arguments.until) {
        const std::int64_t newest = History(arguments.store, choice).summary().last;
        choice.since = secondsOf(arguments.since, newest);
        choice.until = secondsOf(arguments.until, newest);
    }
    return choice;
}

void writeBoard(std::ostream& out, const Arguments& arguments, const HistoryHead& head, History& history,
                const TextStyle& style) {
    const BoardTrend trend = boardTrend(history, *arguments.board, arguments.limit);
    if (arguments.asPage) {
        renderTrendPage(out, head, *arguments.board, trend);
    } else {
        renderTrend(out, head, *arguments.board, trend, style);
    }
}

void writeFleet(std::ostream& out, const Arguments& arguments, const HistoryHead& head, History& history,
                const TextStyle& style) {
    const FleetTrend trend = fleetTrend(history, arguments.limit);
    if (arguments.asPage) {
        renderTrendPage(out, head, trend);
    } else {
        renderTrend(out, head, trend, style);
    }
}

/// Why there is nothing to show of a board.
std::string withoutPackages(const Arguments& arguments, const HistorySummary& summary) {
    const std::string packages = "no package of board " + *arguments.board;
    if (summary.timeless > 0) {
        return packages + " has a place in time";
    }
    return arguments.since || arguments.until ? packages + " in this time" : packages;
}

}  // namespace

int trend(const Arguments& arguments) {
    History history(arguments.store, choiceOf(arguments));
    const HistoryHead head{arguments.store, history.summary()};
    if (arguments.board && head.summary.packages == 0) {
        complain(arguments.store + ": " + withoutPackages(arguments, head.summary));
        return exitTrouble;
    }
    Output output({arguments.output, arguments.pager && !arguments.asPage});
    output.write([&](std::ostream& out, const TextStyle& style) {
        const auto write = arguments.board ? writeBoard : writeFleet;
        write(out, arguments, head, history, style);
    });
    output.finish();
    return 0;
}

}  // namespace Report
