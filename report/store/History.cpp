#include "History.hpp"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include "StoreFile.hpp"

namespace Report {

namespace {

// ?1 to ?3 are the board, or NULL for all, and the first and the last time.
constexpr const char* inTime = "board IS NOT NULL AND time IS NOT NULL AND NOT clock_unset";
constexpr const char* chosen = "(?1 IS NULL OR board = ?1) AND (time IS NULL OR time BETWEEN ?2 AND ?3)";

constexpr double largest = 1e300;  // differences and sums of such numbers are still finite

/// A text stands for a number that is too large for an integer, decimal or hexadecimal.
double numberOf(const SQLite::Column& value) {
    return value.isText() ? std::strtod(value.getText(), nullptr) : value.getDouble();
}

/// The rows of one board while they are read.
struct BoardRows {
    struct Row {
        std::int64_t identifier = 0;
        SeriesName name;
        std::vector<Point> points;
    };
    std::vector<Row> rows;  // by identifier

    void add(std::int64_t series, Point point) {
        const auto row = std::ranges::lower_bound(rows, series, {}, &Row::identifier);
        if (row != rows.end() && row->identifier == series) {
            row->points.push_back(point);
        }
    }
};

}  // namespace

class History::Reader {
public:
    Reader(const std::string& path, HistoryChoice what)
        : choice(std::move(what)),
          database(openToRead(path)),
          transaction(database),
          packages(database, std::string("SELECT id, time FROM package WHERE board = ? AND ") + inTime +
                                 " AND time BETWEEN ? AND ? ORDER BY time, id"),
          series(database,
                 "SELECT id, part, title, name, occurrence FROM series WHERE board = ? ORDER BY id"),
          values(database, "SELECT series, value FROM value WHERE package = ?") {
        database.execAndGet("SELECT count(*) FROM sqlite_master");  // all is read as it is from here on
    }

    HistorySummary summary();
    std::vector<std::string> boards();
    void forEachSeries(const std::string& board, const std::function<void(const Series&)>& visit);

private:
    SQLite::Statement query(const std::string& what, const std::string& rest) {
        SQLite::Statement statement(database, "SELECT " + what + " FROM package WHERE " + chosen + rest);
        if (choice.board) {
            statement.bind(1, *choice.board);
        }
        statement.bind(2, since());
        statement.bind(3, until());
        return statement;
    }
    std::int64_t since() const { return choice.since.value_or(std::numeric_limits<std::int64_t>::min()); }
    std::int64_t until() const { return choice.until.value_or(std::numeric_limits<std::int64_t>::max()); }
    void readValues(BoardRows& board, std::int64_t package, std::int64_t time);

    HistoryChoice choice;
    SQLite::Database database;
    SQLite::Transaction transaction;
    SQLite::Statement packages;
    SQLite::Statement series;
    SQLite::Statement values;
};

HistorySummary History::Reader::summary() {
    HistorySummary result;
    const std::string isInTime = std::string("(") + inTime + ")";
    SQLite::Statement all =
        query("count(*) FILTER (WHERE " + isInTime + "), count(DISTINCT board) FILTER (WHERE " + isInTime +
                  "), count(*), min(time) FILTER (WHERE " + isInTime + "), max(time) FILTER (WHERE " +
                  isInTime + ")",
              "");
    if (all.executeStep()) {
        result.packages = static_cast<std::uint64_t>(all.getColumn(0).getInt64());
        result.boards = static_cast<std::uint64_t>(all.getColumn(1).getInt64());
        result.timeless = static_cast<std::uint64_t>(all.getColumn(2).getInt64()) - result.packages;
        result.first = all.getColumn(3).getInt64();
        result.last = all.getColumn(4).getInt64();
    }
    SQLite::Statement verdicts = query("verdict, count(*)", " AND " + isInTime + " GROUP BY verdict");
    while (verdicts.executeStep()) {
        result.verdicts.emplace(verdicts.getColumn(0).getString(),
                                static_cast<std::uint64_t>(verdicts.getColumn(1).getInt64()));
    }
    return result;
}

std::vector<std::string> History::Reader::boards() {
    std::vector<std::string> names;
    SQLite::Statement rows = query("DISTINCT board", std::string(" AND ") + inTime + " ORDER BY board");
    while (rows.executeStep()) {
        names.push_back(rows.getColumn(0).getString());
    }
    return names;
}

void History::Reader::forEachSeries(const std::string& board,
                                    const std::function<void(const Series&)>& visit) {
    BoardRows found;
    series.reset();
    series.bind(1, board);
    while (series.executeStep()) {
        BoardRows::Row& row = found.rows.emplace_back();
        row.identifier = series.getColumn(0).getInt64();
        row.name = {series.getColumn(1).getString(), series.getColumn(2).getString(),
                    series.getColumn(3).getString(), series.getColumn(4).getInt64()};
    }
    packages.reset();
    packages.bind(1, board);
    packages.bind(2, since());
    packages.bind(3, until());
    while (packages.executeStep()) {
        readValues(found, packages.getColumn(0).getInt64(), packages.getColumn(1).getInt64());
    }
    for (const BoardRows::Row& row : found.rows) {
        if (!row.points.empty()) {
            visit({row.name, row.points});
        }
    }
}

void History::Reader::readValues(BoardRows& board, std::int64_t package, std::int64_t time) {
    values.reset();
    values.bind(1, package);
    while (values.executeStep()) {
        board.add(values.getColumn(0).getInt64(),
                  {time, std::clamp(numberOf(values.getColumn(1)), -largest, largest)});
    }
}

History::History(std::string where, HistoryChoice what) : path(std::move(where)) {
    useStore(path, [&] { reader = std::make_unique<Reader>(path, std::move(what)); });
}

History::~History() = default;

HistorySummary History::summary() {
    return useStore(path, [this] { return reader->summary(); });
}

std::vector<std::string> History::boards() {
    return useStore(path, [this] { return reader->boards(); });
}

void History::forEachSeries(const std::string& board, const std::function<void(const Series&)>& visit) {
    useStore(path, [&] { reader->forEachSeries(board, visit); });
}

}  // namespace Report
