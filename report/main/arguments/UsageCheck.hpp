#pragma once

#include <optional>
#include <span>
#include <string>

#include "Arguments.hpp"
#include "Command.hpp"
#include "CommandTable.hpp"

// What CLI11 takes although it is wrong, and what it refuses in words that do not help.

namespace Report {

/// Whether the first word can be a subcommand or an option. Throws UsageError if not.
void checkSubcommand(std::span<const char* const> words);

/// Values behind a `=`: CLI11 takes the next word for an empty value, and ignores the value of a flag. An
/// option in front of the subcommand is the program's. Throws UsageError.
void checkValues(const CLI::App& app, std::span<const char* const> words);

/// Conditions on the arguments of a subcommand as a whole. Throws UsageError.
void checkOperands(const CommandRow& row, const Arguments& arguments);

/// Says why CLI11 did not take a word of the command line.
std::string unexpected(const CLI::App& app, std::optional<Command> command, const std::string& word);

/// Says what is wrong with the number of an option's values. `message` is CLI11's; it begins with the option.
std::string wrongNumber(const CLI::App& app, std::optional<Command> command, const std::string& message);

}  // namespace Report
