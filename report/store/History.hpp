#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "SeriesName.hpp"

namespace Report {

/// A value at a time.
struct Point {
    std::int64_t time = 0;  ///< seconds since 1970
    double number = 0;
};

/// A value of a board in all its packages, from the oldest to the newest. Valid during a call.
struct Series {
    const SeriesName& name;
    std::span<const Point> points;  ///< not empty
};

/// Which packages of a store are considered.
struct HistoryChoice {
    std::optional<std::string> board;
    std::optional<std::int64_t> since;  ///< seconds since 1970
    std::optional<std::int64_t> until;
};

struct HistorySummary {
    std::uint64_t packages = 0;
    std::uint64_t boards = 0;
    std::uint64_t timeless = 0;  ///< further packages: those whose time or board is unknown, or clock not set
    std::int64_t first = 0;      ///< time of the oldest package
    std::int64_t last = 0;
    std::map<std::string, std::uint64_t> verdicts;
};

/// The values of a store over time, as they were when it was opened. Only packages with a known board, and a
/// known time by a clock that was set, have a place in time.
class History {
public:
    /// Throws StoreError, also if there is no store. So does each other function.
    History(std::string where, HistoryChoice what);
    History(const History&) = delete;
    History& operator=(const History&) = delete;
    History(History&&) = delete;
    History& operator=(History&&) = delete;
    ~History();

    HistorySummary summary();

    /// The boards, in the order of their names.
    std::vector<std::string> boards();

    /// Calls `visit` with each series of a board, in the order in which they were added.
    void forEachSeries(const std::string& board, const std::function<void(const Series&)>& visit);

private:
    class Reader;

    std::string path;
    std::unique_ptr<Reader> reader;
};

}  // namespace Report
