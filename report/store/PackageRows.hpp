#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include "BoardSeries.hpp"
#include "Insertion.hpp"
#include "Package.hpp"

namespace Report {

/// The rows of packages in a store. Each function throws SQLite::Exception.
class PackageRows {
public:
    /// `store` must outlive this object.
    explicit PackageRows(SQLite::Database& store);

    /// Adds all rows of a package, in the transaction of the caller. Returns false, and adds nothing, if
    /// there is a package with its checksum, unless only that one was not fully read.
    bool add(const Package& package);

private:
    void removePartial(const std::string& sha256);
    bool addPackage(const Package& package);
    void addParts(const Package& package, std::int64_t identifier);
    void addValues(const Package& package, std::int64_t identifier);
    void addFindings(const Package& package, std::int64_t identifier);
    void readSeries(std::string_view board, BoardSeries& series);
    /// The number of the series for a value. Adds it if there is none.
    std::int64_t seriesFor(const Value& value, std::string_view board, BoardSeries& known);
    std::int64_t addSeries(std::string_view board, const SeriesKey& key);

    SQLite::Database& database;
    SQLite::Statement findPartial;
    Insertion insertPackage;
    Insertion insertPart;
    SQLite::Statement findSeries;
    Insertion insertSeries;
    Insertion insertValue;
    Insertion insertFinding;
};

}  // namespace Report
