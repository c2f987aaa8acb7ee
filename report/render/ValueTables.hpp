#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Package.hpp"

namespace Report {

/// A value of one dispatcher or of both. A part that belongs to no dispatcher has its values in the first
/// column.
struct ValueRow {
    std::string name;
    std::size_t occurrence = 1;
    std::array<const Value*, 2> cells{};  ///< null where a dispatcher does not have the value
    bool named = false;                   ///< a rule names it
    bool zero = true;                     ///< every number is zero
};

/// The values of a part under one title, or of both dispatchers' parts of the same name.
struct ValueTable {
    std::string part;   ///< without the dispatcher: "mmi/HeapStats" for "mmi/iwf/HeapStats"
    std::string title;  ///< without the dispatcher
    std::array<bool, 2>
        dispatchers{};  ///< iwf and sfn: which of them have a column; none: one column of no dispatcher
    std::vector<ValueRow> rows;  ///< first those that a rule names, then others that are not zero
};

/// The columns of a table: places in ValueRow::cells.
std::vector<std::size_t> columnsOf(const ValueTable& table);

/// The dispatcher of a column: "iwf", "sfn", or empty if the part belongs to none.
std::string_view dispatcherOf(const ValueTable& table, std::size_t column);

/// The title without the colon at its end.
std::string_view titleOf(const ValueTable& table);

/// The values of the parts that `selected` accepts by name, as tables in the order of the parts' names. The
/// package must outlive them.
std::vector<ValueTable> valueTables(const Package& package, const std::function<bool(const Value&)>& named,
                                    const std::function<bool(std::string_view)>& selected);

}  // namespace Report
