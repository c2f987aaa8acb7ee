#pragma once

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Report {

enum class Command : std::uint8_t {
    check,
    show,
    html,
    json,
    diff,
    clean,
    restore,
    metrics,
    add,
    trend,
    exportTables
};

/// As the user writes it: "check".
std::string_view nameOf(Command command);

/// A wrong command line. what() is one line for the user.
class UsageError : public std::runtime_error {
public:
    UsageError(const std::string& message, std::optional<Command> subcommand)
        : std::runtime_error(message), command(subcommand) {}

    std::optional<Command> command;  ///< unknown if none was given
};

}  // namespace Report
