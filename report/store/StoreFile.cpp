#include "StoreFile.hpp"

#include "Schema.hpp"

namespace Report {

namespace {

constexpr int patience = 60'000;  // milliseconds

/// SQLite takes an empty name and ":memory:" for a database that vanishes at the end.
std::string fileName(const std::string& path) {
    return path.starts_with('/') ? path : "./" + path;
}

}  // namespace

SQLite::Database openToAdd(const std::string& path) {
    SQLite::Database database(fileName(path),
                              SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_NOMUTEX, patience);
    prepareTables(database, path);
    return database;
}

SQLite::Database openToRead(const std::string& path) {
    // SQLite undoes unfinished writes only if it may write. It opens a file without write permission all the
    // same.
    SQLite::Database database(fileName(path), SQLite::OPEN_READWRITE | SQLite::OPEN_NOMUTEX, patience);
    database.exec("PRAGMA query_only = 1");
    checkTables(database, path);
    return database;
}

}  // namespace Report
