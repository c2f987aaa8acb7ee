#include "Schema.hpp"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include "StoreError.hpp"

namespace Report {

namespace {

// docs/packages-at-scale.md describes the columns.
constexpr const char* tables = R"(
CREATE TABLE package (
    id INTEGER PRIMARY KEY,
    sha256 TEXT NOT NULL UNIQUE,
    board TEXT,
    time INTEGER,
    clock_unset INTEGER NOT NULL,
    kind TEXT,
    verdict TEXT NOT NULL,
    cause TEXT,
    release TEXT,
    source TEXT NOT NULL,
    size INTEGER NOT NULL
) STRICT;
CREATE INDEX package_board ON package (board, time);
CREATE TABLE part (
    package INTEGER NOT NULL REFERENCES package,
    number INTEGER NOT NULL,
    name TEXT NOT NULL,
    expected INTEGER NOT NULL,
    state TEXT NOT NULL,
    cause TEXT,
    certainty TEXT,
    size INTEGER NOT NULL,
    time INTEGER,
    PRIMARY KEY (package, number)
) STRICT, WITHOUT ROWID;
CREATE TABLE series (
    id INTEGER PRIMARY KEY,
    board TEXT NOT NULL,
    part TEXT NOT NULL,
    title TEXT NOT NULL,
    name TEXT NOT NULL,
    occurrence INTEGER NOT NULL
) STRICT;
CREATE INDEX series_board ON series (board);
CREATE TABLE value (
    package INTEGER NOT NULL REFERENCES package,
    series INTEGER NOT NULL REFERENCES series,
    value ANY NOT NULL,
    PRIMARY KEY (package, series)
) STRICT, WITHOUT ROWID;
CREATE TABLE finding (
    package INTEGER NOT NULL REFERENCES package,
    number INTEGER NOT NULL,
    rule TEXT NOT NULL,
    severity TEXT NOT NULL,
    part TEXT,
    meaning TEXT NOT NULL,
    count INTEGER NOT NULL,
    PRIMARY KEY (package, number)
) STRICT, WITHOUT ROWID;
)";

int pragma(SQLite::Database& database, const char* name) {
    return database.execAndGet(std::string("PRAGMA ") + name).getInt();
}

bool isEmpty(SQLite::Database& database) {
    return pragma(database, "application_id") == 0 &&
           database.execAndGet("SELECT count(*) FROM sqlite_master").getInt() == 0;
}

}  // namespace

void prepareTables(SQLite::Database& database, const std::string& path) {
    if (isEmpty(database)) {
        SQLite::Transaction transaction(database, SQLite::TransactionBehavior::IMMEDIATE);
        if (isEmpty(database)) {  // another process may have been faster
            database.exec(tables);
            database.exec("PRAGMA application_id = " + std::to_string(storeIdentifier));
            database.exec("PRAGMA user_version = " + std::to_string(schemaVersion));
        }
        transaction.commit();
    }
    checkTables(database, path);
}

void checkTables(SQLite::Database& database, const std::string& path) {
    const int version = pragma(database, "user_version");
    if (pragma(database, "application_id") != storeIdentifier || version < 1) {
        throw StoreError(path + ": not a store of korvel-report");
    }
    if (version > schemaVersion) {
        throw StoreError(path + ": version " + std::to_string(version) +
                         " of the store is not known here; a newer korvel-report made it");
    }
}

}  // namespace Report
