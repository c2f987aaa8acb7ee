#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "Command.hpp"
#include "Options.hpp"

namespace Report {

using AddOptions = void (*)(CLI::App&, Arguments&);

/// A subcommand, with the operands and options that it takes.
struct CommandRow {
    Command command;
    const char* name;
    const char* summary;
    const char* operands;
    const char* need;   ///< the operands in words
    std::size_t least;  ///< operands
    std::size_t most;
    bool takesStore;                    ///< the first operand is a store
    std::array<AddOptions, 6> options;  ///< null behind the last one
};

/// All subcommands, in the order of the help text.
std::span<const CommandRow> commandTable();

const CommandRow& rowOf(Command command);

/// The subcommand with a name; null if there is none.
const CommandRow* findRow(std::string_view name);

}  // namespace Report
