#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include "Time.hpp"

namespace Report {

/// Inserts rows into one table: each column of a row in turn, then insert(). Each function throws
/// SQLite::Exception.
class Insertion {
public:
    /// `statement` has a `?` for each column, 10 at most.
    Insertion(SQLite::Database& database, const char* statement) : row(database, statement) {}

    Insertion& add(std::int64_t number);
    Insertion& add(double number);
    /// Bytes that are not UTF-8 become U+FFFD.
    Insertion& add(std::string_view text);
    /// In seconds since 1970; NULL if there is none.
    Insertion& add(const std::optional<Time>& time);
    /// 1 or 0
    Insertion& addFlag(bool flag) { return add(std::int64_t{flag ? 1 : 0}); }
    /// NULL if it is empty.
    Insertion& addUnlessEmpty(std::string_view text) { return text.empty() ? addNull() : add(text); }

    /// Returns the number of inserted rows: none if the statement ignores this one.
    int insert();

private:
    Insertion& addNull();

    SQLite::Statement row;
    int column = 0;
    std::array<std::string, 10> texts;  // the statement reads them
};

}  // namespace Report
