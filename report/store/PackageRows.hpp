#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <tuple>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include "Package.hpp"

namespace Report {

/// The rows of packages in a store. Each function throws SQLite::Exception.
class PackageRows {
public:
    /// `store` must outlive this object.
    explicit PackageRows(SQLite::Database& store);

    bool contains(const std::string& sha256);

    /// Adds all rows of a package, in the transaction of the caller. Returns false, and adds nothing, if
    /// there is a package with its checksum.
    bool add(const Package& package);

private:
    /// Part, title, name and occurrence.
    using Key = std::tuple<std::string, std::string, std::string, std::int64_t>;
    using Identifiers = std::map<Key, std::int64_t>;

    bool addPackage(const Package& package);
    void addParts(const Package& package, std::int64_t identifier);
    void addValues(const Package& package, std::int64_t identifier);
    void addFindings(const Package& package, std::int64_t identifier);
    Identifiers seriesOf(const std::string& board);
    std::int64_t addSeries(const std::string& board, const Key& key);

    SQLite::Database& database;
    SQLite::Statement findPackage;
    SQLite::Statement insertPackage;
    SQLite::Statement insertPart;
    SQLite::Statement findSeries;
    SQLite::Statement insertSeries;
    SQLite::Statement insertValue;
    SQLite::Statement insertFinding;
};

}  // namespace Report
