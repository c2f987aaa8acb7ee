#pragma once

#include <cstddef>
#include <string_view>

#include <SQLiteCpp/Column.h>

namespace Report {

/// The text of a column that is not NULL. It is valid until the next step of the statement.
inline std::string_view textOf(const SQLite::Column& column) {
    const char* const text = column.getText();  // first: the size is that of the text
    return {text, static_cast<std::size_t>(column.getBytes())};
}

}  // namespace Report
