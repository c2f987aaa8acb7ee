#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>

namespace Report {

/// The tables of a store. Each refers only to those before it.
inline constexpr std::array storeTables{"package", "part", "series", "value", "finding"};

/// The tables of a store as they were when it was opened, even if another process adds packages. That process
/// can write only after this object is gone.
class Tables {
public:
    /// Throws StoreError, also if there is no store.
    explicit Tables(std::string where);
    Tables(const Tables&) = delete;
    Tables& operator=(const Tables&) = delete;
    Tables(Tables&&) = delete;
    Tables& operator=(Tables&&) = delete;
    ~Tables();

    /// Writes a table as CSV: a line of column names, and a line for each row, in the order of the keys.
    /// Returns the number of rows. Throws StoreError, and what `out` throws.
    std::uint64_t write(const std::string& table, std::ostream& out);

private:
    class Moment;

    std::string path;
    std::unique_ptr<Moment> moment;
};

}  // namespace Report
