#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace Report {

/// Finds the users in listings of processes: a heading with PID, and USER or UID, and the lines below it as
/// long as they have a number as the process.
class ProcessListing {
public:
    /// The user that the next line of a text names, if it does. It points into the line.
    std::optional<std::string_view> userIn(std::string_view line);

    /// The next line begins another text.
    void reset() { columns.reset(); }

private:
    /// Counted from 0.
    struct Columns {
        std::size_t user = 0;
        std::size_t process = 0;
    };
    static std::optional<Columns> columnsOf(std::string_view heading);

    std::optional<Columns> columns;  ///< of the listing that the next line may continue
};

}  // namespace Report
