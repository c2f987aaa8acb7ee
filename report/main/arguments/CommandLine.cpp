#include "CommandLine.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CommandTable.hpp"
#include "HelpText.hpp"
#include "Options.hpp"
#include "UsageCheck.hpp"

namespace Report {

namespace {

/// "-h,--help" with a blank.
std::string spaced(std::string names) {
    const std::size_t comma = names.find(',');
    return comma == std::string::npos ? names : names.insert(comma + 1, 1, ' ');
}

std::vector<HelpGroup> groupsOf(const CLI::App& app) {
    std::vector<HelpGroup> groups;
    for (const std::string& title : app.get_groups()) {
        HelpGroup group{title, {}};
        for (const CLI::Option* const option : app.get_options()) {
            if (option->get_group() == title && option->nonpositional()) {
                const std::string type = option->get_type_size() == 0 ? "" : " " + option->get_type_name();
                group.rows.emplace_back(spaced(option->get_name(false, true)) + type,
                                        option->get_description());
            }
        }
        groups.push_back(std::move(group));
    }
    return groups;
}

std::string programHelp(const CLI::App& app) {
    HelpGroup commands{"Subcommands", {}};
    for (const CommandRow& row : commandTable()) {
        commands.rows.emplace_back(row.name, row.summary);
    }
    std::vector<HelpGroup> groups{commands};
    std::ranges::move(groupsOf(app), std::back_inserter(groups));
    return helpText("korvel-report SUBCOMMAND [OPTION...] PACKAGE...",
                    "Reads packages that korvel made. PACKAGE is a file, or - for standard input. "
                    "'korvel-report SUBCOMMAND --help' describes a subcommand.",
                    groups);
}

std::string commandHelp(const CLI::App& app, const CommandRow& row) {
    return helpText(std::string("korvel-report ") + row.name + " [OPTION...] " + row.operands, row.summary,
                    groupsOf(*app.get_subcommand(row.name)));
}

void addCommand(CLI::App& app, const CommandRow& row, CommandLine& commandLine) {
    CLI::App* const command = app.add_subcommand(row.name, row.summary);
    command->set_help_flag("-h,--help", "print this help text");
    command->add_option("operands", commandLine.arguments.files)->type_name("");
    for (const AddOptions add : row.options) {
        if (add != nullptr) {
            add(*command, commandLine.arguments);
        }
    }
    command->preparse_callback([&commandLine, &row](std::size_t) { commandLine.command = row.command; });
}

/// The command line as CLI11 sees it. It does not take "--" after an operand, so what follows is taken here.
void parse(std::span<const char* const> words, CommandLine& commandLine) {
    CLI::App app;
    app.require_subcommand(0, 1);
    app.set_help_flag("-h,--help", "print this help text");
    app.set_version_flag("--version", "korvel-report " KORVEL_VERSION "\n", "print the version");
    addRules(app, commandLine.arguments);
    for (const CommandRow& row : commandTable()) {
        addCommand(app, row, commandLine);
    }
    const auto mark = std::ranges::find(words, std::string_view("--"));
    const auto count = static_cast<std::size_t>(mark - words.begin());
    checkValues(app, words.first(count));
    try {
        app.parse(static_cast<int>(count), words.data());
    } catch (const CLI::CallForHelp&) {
        commandLine.text =
            commandLine.command ? commandHelp(app, rowOf(*commandLine.command)) : programHelp(app);
    } catch (const CLI::CallForVersion& version) {
        commandLine.text = version.what();
    } catch (const CLI::ExtrasError&) {
        throw UsageError(unexpected(app, commandLine.command, app.remaining(true).front()),
                         commandLine.command);
    } catch (const CLI::ArgumentMismatch& error) {
        throw UsageError(wrongNumber(app, commandLine.command, error.what()), commandLine.command);
    } catch (const CLI::ParseError& error) {
        throw UsageError(error.what(), commandLine.command);
    }
    if (commandLine.command && !commandLine.arguments.ruleFiles.empty() &&
        app.get_subcommand(rowOf(*commandLine.command).name)->get_option_no_throw("--rules") == nullptr) {
        throw UsageError(unexpected(app, commandLine.command, "--rules"), commandLine.command);
    }
    if (mark != words.end()) {
        std::ranges::copy(mark + 1, words.end(), std::back_inserter(commandLine.arguments.files));
    }
}

void takeStore(const CommandRow& row, Arguments& arguments) {
    if (row.takesStore && !arguments.files.empty()) {
        arguments.store = std::move(arguments.files.front());
        arguments.files.erase(arguments.files.begin());
    }
}

}  // namespace

CommandLine parseCommandLine(int argc, const char* const* argv) {
    const std::span<const char* const> words(argv, static_cast<std::size_t>(argc));
    CommandLine commandLine;
    checkSubcommand(words);
    parse(words, commandLine);
    if (commandLine.text) {
        return commandLine;
    }
    if (commandLine.command) {
        const CommandRow& row = rowOf(*commandLine.command);
        checkOperands(row, commandLine.arguments);
        takeStore(row, commandLine.arguments);
    } else if (!commandLine.arguments.explain) {
        throw UsageError("a subcommand is missing", std::nullopt);
    }
    return commandLine;
}

}  // namespace Report
