#include "Tables.hpp"

#include <ostream>
#include <string_view>
#include <utility>

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include "ColumnText.hpp"
#include "CsvLine.hpp"
#include "StoreFile.hpp"

namespace Report {

namespace {

void addField(CsvLine& line, const SQLite::Column& value) {
    const int type = value.getType();
    if (type == SQLite::Null) {
        line.addUnknown();
    } else if (type == SQLite::INTEGER) {
        line.add(value.getInt64());
    } else if (type == SQLite::FLOAT) {
        line.add(value.getDouble());
    } else {
        line.add(textOf(value));
    }
}

void writeNames(const SQLite::Statement& rows, CsvLine& line, std::ostream& out) {
    for (int column = 0; column < rows.getColumnCount(); ++column) {
        line.add(std::string_view(rows.getColumnName(column)));
    }
    out << line.end();
}

}  // namespace

/// A database in a transaction. SQLite keeps a moment from the first access in a transaction on.
class Tables::Moment {
public:
    explicit Moment(const std::string& path) : database(openToRead(path)), transaction(database) {
        database.execAndGet("SELECT count(*) FROM sqlite_master");
    }

    std::uint64_t write(const std::string& table, std::ostream& out) const;

private:
    SQLite::Database database;
    SQLite::Transaction transaction;
};

std::uint64_t Tables::Moment::write(const std::string& table, std::ostream& out) const {
    SQLite::Statement rows(database, "SELECT * FROM " + table + " ORDER BY 1, 2");
    CsvLine line;
    writeNames(rows, line, out);
    std::uint64_t count = 0;
    for (; rows.executeStep(); ++count) {
        for (int column = 0; column < rows.getColumnCount(); ++column) {
            addField(line, rows.getColumn(column));
        }
        out << line.end();
    }
    return count;
}

Tables::Tables(std::string where) : path(std::move(where)) {
    useStore(path, [this] { moment = std::make_unique<Moment>(path); });
}

Tables::~Tables() = default;

std::uint64_t Tables::write(const std::string& table, std::ostream& out) {
    return useStore(path, [&] { return moment->write(table, out); });
}

}  // namespace Report
