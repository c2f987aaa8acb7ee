#include "UsageCheck.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace Report {

namespace {

/// The subcommand that an app of CLI11 stands for; none for the program itself.
std::optional<Command> commandOf(const CLI::App& app) {
    const CommandRow* const row = findRow(app.get_name());
    return row == nullptr ? std::nullopt : std::optional(row->command);
}

/// CLI11 takes the next word for an empty value, and ignores the value of a flag.
void checkValue(const CLI::App& app, std::string_view word) {
    const std::size_t sign = word.find('=');
    if (!word.starts_with("--") || sign == std::string_view::npos) {
        return;
    }
    const std::string name(word.substr(0, sign));
    const CLI::Option* const option = app.get_option_no_throw(name);
    if (option != nullptr && option->get_items_expected_max() == 0) {
        throw UsageError(name + " takes no value", commandOf(app));
    }
    if (option != nullptr && sign + 1 == word.size()) {
        throw UsageError(name + " needs " + option->get_type_name(), commandOf(app));
    }
}

}  // namespace

void checkSubcommand(std::span<const char* const> words) {
    const std::string_view word = words.size() > 1 ? words[1] : "-";
    if (!word.starts_with('-') && findRow(word) == nullptr) {
        std::error_code ignored;
        const std::string hint =
            std::filesystem::exists(word, ignored)
                ? "; the subcommand comes first, as in 'korvel-report check " + std::string(word) + "'"
                : "";
        throw UsageError("unknown subcommand: " + (word.empty() ? "''" : std::string(word)) + hint,
                         std::nullopt);
    }
}

void checkValues(const CLI::App& app, std::span<const char* const> words) {
    const CLI::App* scope = &app;
    for (const std::string_view word : words.subspan(1)) {
        checkValue(*scope, word);
        if (scope == &app && findRow(word) != nullptr) {
            scope = app.get_subcommand(std::string(word));
        }
    }
}

void checkOperands(const CommandRow& row, const Arguments& arguments) {
    const std::vector<std::string>& files = arguments.files;
    if (arguments.explain && !files.empty()) {
        throw UsageError("--explain takes no package", row.command);
    }
    if (files.size() < row.least && !arguments.explain) {
        throw UsageError(std::string(row.name) + " needs " + row.need, row.command);
    }
    if (files.size() > row.most) {
        throw UsageError("unexpected argument: " + files[row.most], row.command);
    }
    if (row.takesStore && !files.empty() && (files.front() == "-" || files.front().empty())) {
        throw UsageError("the store must be a file", row.command);
    }
    if (row.command == Command::exportTables && files.back() == "-") {
        throw UsageError("the tables are several files, which need a directory", row.command);
    }
    if (std::ranges::count(files, "-") > 1) {
        throw UsageError("standard input can be read only once", row.command);
    }
    const std::size_t packages = files.size() - (row.takesStore ? 1 : 0);
    if (packages > 1 && arguments.runFile) {
        throw UsageError("--run needs a single package", row.command);
    }
}

std::string unexpected(const CLI::App& app, std::optional<Command> command, const std::string& word) {
    if (!word.starts_with('-') || word == "-") {
        return "unexpected argument: " + word;
    }
    const std::string option = word.substr(0, word.find('='));
    const auto takesOption = [&](const CommandRow& row) {
        return app.get_subcommand(row.name)->get_option_no_throw(option) != nullptr;
    };
    if (app.get_option_no_throw(option) == nullptr && std::ranges::none_of(commandTable(), takesOption)) {
        return "unknown option: " + option;
    }
    return !command || takesOption(rowOf(*command))
               ? option + " goes after the subcommand"
               : std::string(nameOf(*command)) + " has no option " + option;
}

std::string wrongNumber(const CLI::App& app, std::optional<Command> command, const std::string& message) {
    const std::string name = message.substr(0, message.find(':'));
    const CLI::App& scope = command ? *app.get_subcommand(rowOf(*command).name) : app;
    const CLI::Option* const option = scope.get_option_no_throw(name);
    if (option == nullptr) {
        return message;
    }
    return name + (option->count() > 0 ? " may be given only once" : " needs " + option->get_type_name());
}

}  // namespace Report
