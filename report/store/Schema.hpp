#pragma once

#include <string>

#include <SQLiteCpp/Database.h>

namespace Report {

/// The layout of a store, as `PRAGMA user_version` holds it.
constexpr int schemaVersion = 1;

/// What `PRAGMA application_id` of a store holds, so that no other database is taken for one.
constexpr int storeIdentifier = 0x4b525354;

/// Makes the tables of an empty database, in a transaction of its own. Throws StoreError for a database that
/// is no store, or one of a newer version. `path` is for the message.
void prepareTables(SQLite::Database& database, const std::string& path);

/// Throws StoreError as prepareTables() does. Changes nothing.
void checkTables(SQLite::Database& database, const std::string& path);

}  // namespace Report
