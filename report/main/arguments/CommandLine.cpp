#include "CommandLine.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "HelpText.hpp"
#include "Names.hpp"
#include "Quantity.hpp"

namespace Report {
namespace {

/// Adds an option whose value `parse` reads. `form` says what a value looks like.
template <typename Target, typename Parse>
CLI::Option* addParsed(CLI::App& app, const std::string& name, const char* type, Target& target, Parse parse,
                       const std::string& form, const std::string& help) {
    const auto read = [&target, parse, form, name](const std::string& text) {
        const auto value = parse(text);
        if (!value) {
            throw CLI::ValidationError(name + " '" + text + "'", "not " + form);
        }
        target = static_cast<Target>(*value);
    };
    return app.add_option_function<std::string>(name, read, help)->type_name(type);
}

/// Adds an option whose value `read` reads. It throws an exception of type `Error` for a value that is wrong.
template <typename Error, typename Read>
CLI::Option* addRead(CLI::App& app, const std::string& name, const char* type, Read read,
                     const std::string& help) {
    const auto checked = [read, name](const std::string& text) {
        try {
            read(text);
        } catch (const Error& error) {
            throw CLI::ValidationError(name + " '" + text + "'", error.what());
        }
    };
    return app.add_option_function<std::string>(name, checked, help)->type_name(type);
}

std::chrono::milliseconds readSeconds(const std::string& text) {
    const std::optional<std::chrono::milliseconds> seconds = parseSeconds(text);
    if (!seconds) {
        throw std::invalid_argument("not a number of seconds, such as 0.5");
    }
    if (seconds->count() == 0) {
        throw std::invalid_argument("too small");
    }
    return *seconds;
}

void addLimits(CLI::App& app, Arguments& arguments) {
    constexpr const char* size = "a size, such as 64M";
    constexpr const char* count = "a number above 0";
    Limits& limits = arguments.limits;
    for (CLI::Option* const option : {
             addParsed(app, "--max-bytes", "SIZE", limits.maxBytes, parseSize, size,
                       "inflated bytes, in all layers together (default: 2G)"),
             addParsed(app, "--max-members", "N", limits.maxMembers, parseCount, count,
                       "members, in all layers together (default: 100000)"),
             addParsed(app, "--max-line", "SIZE", limits.maxLine, parseSize, size,
                       "length of a line (default: 1M)"),
             addParsed(app, "--max-name", "SIZE", limits.maxName, parseSize, size,
                       "length of a member's name (default: 4K)"),
             addParsed(app, "--max-depth", "N", limits.maxDepth, parseCount, count,
                       "layers; the package itself is the first (default: 8)"),
             addRead<std::invalid_argument>(
                 app, "--max-seconds", "SECONDS",
                 [&limits](const std::string& text) { limits.maxTime = readSeconds(text); },
                 "processor time (default: 10)"),
             addParsed(app, "--max-memory", "SIZE", limits.maxMemory, parseSize, size,
                       "memory (default: 64M)"),
         }) {
        option->group("Limits of each package; a SIZE is in bytes, or ends in K, M or G");
    }
}

void addNoSidecar(CLI::App& app, Arguments& arguments) {
    app.add_flag_callback(
        "--no-run", [&arguments] { arguments.useRun = false; }, "read no sidecar");
}

void addSidecar(CLI::App& app, Arguments& arguments) {
    auto* const run = app.add_option("--run", arguments.runFile, "the sidecar (default: PACKAGE.run)");
    addNoSidecar(app, arguments);
    run->type_name("FILE")->excludes("--no-run");
}

void addIdentity(CLI::App& app, Arguments& arguments) {
    app.add_option("--board", arguments.board,
                   "the board's name (default: that of the sidecar, or the file's name)")
        ->type_name("NAME");
    addParsed(app, "--kind", "KEYWORD", arguments.kind, kindOfKeyword,
              "pkg, pkg-trs, pkg-sup, pkg-pm or pkg-sdown",
              "the keyword that made the package (default: by the file's name)");
    addSidecar(app, arguments);
    addRead<ExpectationError>(
        app, "--expect", "KEYWORDS",
        [&arguments](const std::string& text) { arguments.expectation = parseExpectation(text); },
        "the coverage keywords of the run, such as 'dinf server' (default: by the directories in the "
        "package)");
}

void addRules(CLI::App& app, Arguments& arguments) {
    app.add_option("--rules", arguments.ruleFiles, "add the rules in FILE; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false);
    app.add_option_function<std::string>(
           "--explain", [&arguments](const std::string& rule) { arguments.explain = rule; },
           "print a rule, or without ID all of them; takes no package")
        ->type_name("[ID]")
        ->expected(0, 1);
}

void addOutput(CLI::App& app, Arguments& arguments) {
    app.add_option("-o,--output", arguments.output,
                   "write to FILE; it is replaced only when the result is complete")
        ->type_name("FILE");
}

void addPager(CLI::App& app, Arguments& arguments) {
    app.add_flag_callback(
        "--no-pager", [&arguments] { arguments.pager = false; }, "use no pager on a terminal");
}

TextPattern readPattern(const std::string& expression) {
    try {
        return TextPattern(expression);
    } catch (const PatternError& error) {
        std::string reason = error.what();
        const std::string repeated = ": " + expression;  // the user sees it in front of the reason
        if (reason.ends_with(repeated)) {
            reason.resize(reason.size() - repeated.size());
        }
        throw PatternError("not a regular expression: " + reason);
    }
}

void addChoice(CLI::App& app, Arguments& arguments) {
    constexpr const char* time =
        "a time: write '2026-11-22 02:46' (UTC), '2026-11-22T02:46:40Z' or -10m (s, m, h, d)";
    app.add_option("--part", arguments.part, "only this part or directory, such as mmi/sfn/HeapStats")
        ->type_name("NAME");
    app.add_flag("--log", arguments.logsOnly, "only log entries");
    addParsed(app, "--since", "TIME", arguments.since, Moment::parse, time,
              "only log entries from TIME on: '2026-11-22 02:46', or -10m from the package's time");
    addParsed(app, "--until", "TIME", arguments.until, Moment::parse, time, "only log entries up to TIME");
    addRead<PatternError>(
        app, "--grep", "PATTERN",
        [&arguments](const std::string& expression) { arguments.grep = readPattern(expression); },
        "only log entries and lines of text that a regular expression fits");
}

void addMapping(CLI::App& app, Arguments& arguments) {
    app.add_option("--map", arguments.map, "the file of originals and replacements (default: OUT.map)")
        ->type_name("FILE");
}

void addCleaning(CLI::App& app, Arguments& arguments) {
    app.add_option("-o,--output", arguments.output, "the clean package")->type_name("OUT")->required();
    addMapping(app, arguments);
    app.add_option("--words", arguments.words, "also replace the words in FILE, one a line")
        ->type_name("FILE");
}

void addRestoring(CLI::App& app, Arguments& arguments) {
    addMapping(app, arguments);
    app.get_option("--map")->description("the file of originals and replacements (default: FILE.map)");
    addOutput(app, arguments);
}

using AddOptions = void (*)(CLI::App&, Arguments&);

constexpr std::size_t any = 1'000'000;

/// A subcommand, with the operands and options that it takes.
struct Row {
    Command command;
    const char* name;
    const char* summary;
    const char* operands;
    const char* need;   ///< the operands in words
    std::size_t least;  ///< operands
    std::size_t most;
    std::vector<AddOptions> options;
};

const std::vector<Row>& rows() {
    static const std::vector<Row> table{
        {Command::check,
         "check",
         "Tell whether packages can be trusted, and why not.",
         "PACKAGE...",
         "a package",
         1,
         any,
         {addIdentity, addOutput, addLimits}},
        {Command::show,
         "show",
         "Print packages: verdict, findings, values, logs.",
         "PACKAGE...",
         "a package",
         1,
         any,
         {addChoice, addPager, addIdentity, addRules, addOutput, addLimits}},
        {Command::html,
         "html",
         "Make a page that shows packages in a browser.",
         "PACKAGE...",
         "a package",
         1,
         any,
         {addIdentity, addRules, addOutput, addLimits}},
        {Command::json,
         "json",
         "Print packages as JSON.",
         "PACKAGE...",
         "a package",
         1,
         any,
         {addIdentity, addRules, addOutput, addLimits}},
        {Command::diff,
         "diff",
         "Print what differs between two packages.",
         "EARLIER LATER",
         "two packages: EARLIER LATER",
         2,
         2,
         {addPager, addNoSidecar, addOutput, addLimits}},
        {Command::clean,
         "clean",
         "Copy a package without its addresses and names.",
         "PACKAGE -o OUT",
         "a package",
         1,
         1,
         {addCleaning, addSidecar, addLimits}},
        {Command::restore,
         "restore",
         "Put the addresses and names back into a package or a text.",
         "FILE",
         "a file",
         1,
         1,
         {addRestoring, addSidecar, addLimits}},
        {Command::metrics,
         "metrics",
         "Print the newest values of each board for Prometheus.",
         "PACKAGE...",
         "a package",
         1,
         any,
         {addIdentity, addOutput, addLimits}},
    };
    return table;
}

const Row* rowOf(Command command) {
    return &*std::ranges::find(rows(), command, &Row::command);
}

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
    for (const Row& row : rows()) {
        commands.rows.emplace_back(row.name, row.summary);
    }
    std::vector<HelpGroup> groups{commands};
    std::ranges::move(groupsOf(app), std::back_inserter(groups));
    return helpText("korvel-report SUBCOMMAND [OPTION...] PACKAGE...",
                    "Reads packages that korvel made. PACKAGE is a file, or - for standard input. "
                    "'korvel-report SUBCOMMAND --help' describes a subcommand.",
                    groups);
}

std::string commandHelp(const CLI::App& app, const Row& row) {
    return helpText(std::string("korvel-report ") + row.name + " [OPTION...] " + row.operands, row.summary,
                    groupsOf(app));
}

void addCommand(CLI::App& app, const Row& row, CommandLine& commandLine) {
    CLI::App* const command = app.add_subcommand(row.name, row.summary);
    command->set_help_flag("-h,--help", "print this help text");
    command->add_option("operands", commandLine.arguments.files)->type_name("");
    for (const AddOptions add : row.options) {
        add(*command, commandLine.arguments);
    }
    command->preparse_callback([&commandLine, &row](std::size_t) { commandLine.command = row.command; });
}

/// Conditions on the arguments as a whole.
void checkOperands(const Row& row, const Arguments& arguments) {
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
    if (std::ranges::count(files, "-") > 1) {
        throw UsageError("standard input can be read only once", row.command);
    }
    if (files.size() > 1 && arguments.runFile) {
        throw UsageError("--run needs a single package", row.command);
    }
}

void checkSubcommand(std::span<const char* const> words) {
    const std::string_view word = words.size() > 1 ? words[1] : "-";
    if (!word.starts_with('-') && std::ranges::find(rows(), word, &Row::name) == rows().end()) {
        std::error_code ignored;
        const std::string hint =
            std::filesystem::exists(word, ignored)
                ? "; the subcommand comes first, as in 'korvel-report check " + std::string(word) + "'"
                : "";
        throw UsageError("unknown subcommand: " + (word.empty() ? "''" : std::string(word)) + hint,
                         std::nullopt);
    }
}

/// The subcommand that an app of CLI11 stands for; none for the program itself.
std::optional<Command> commandOf(const CLI::App& app) {
    const auto row = std::ranges::find(rows(), std::string_view(app.get_name()), &Row::name);
    return row == rows().end() ? std::nullopt : std::optional(row->command);
}

/// Says why a word of the command line was not taken.
std::string unexpected(const CLI::App& app, std::optional<Command> command, const std::string& word) {
    if (!word.starts_with('-') || word == "-") {
        return "unexpected argument: " + word;
    }
    const std::string option = word.substr(0, word.find('='));
    const auto takesOption = [&](const Row& row) {
        return app.get_subcommand(row.name)->get_option_no_throw(option) != nullptr;
    };
    if (app.get_option_no_throw(option) == nullptr && std::ranges::none_of(rows(), takesOption)) {
        return "unknown option: " + option;
    }
    return !command || takesOption(*rowOf(*command))
               ? option + " goes after the subcommand"
               : std::string(nameOf(*command)) + " has no option " + option;
}

/// Says what is wrong with the number of an option's values. CLI11's message begins with the option.
std::string wrongNumber(const CLI::App& app, std::optional<Command> command, const std::string& message) {
    const std::string name = message.substr(0, message.find(':'));
    const CLI::App& scope = command ? *app.get_subcommand(rowOf(*command)->name) : app;
    const CLI::Option* const option = scope.get_option_no_throw(name);
    if (option == nullptr) {
        return message;
    }
    return name + (option->count() > 0 ? " may be given only once" : " needs " + option->get_type_name());
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

/// Checks the words before CLI11 reads them. An option that is no subcommand's goes before it.
void checkValues(const CLI::App& app, std::span<const char* const> words) {
    const CLI::App* scope = &app;
    for (const std::string_view word : words.subspan(1)) {
        checkValue(*scope, word);
        if (const auto row = std::ranges::find(rows(), word, &Row::name);
            scope == &app && row != rows().end()) {
            scope = app.get_subcommand(row->name);
        }
    }
}

/// The command line as CLI11 sees it. It does not take "--" after an operand, so what follows is taken here.
void parse(std::span<const char* const> words, CommandLine& commandLine) {
    CLI::App app;
    app.require_subcommand(0, 1);
    app.set_help_flag("-h,--help", "print this help text");
    app.set_version_flag("--version", "korvel-report " KORVEL_VERSION "\n", "print the version");
    addRules(app, commandLine.arguments);
    for (const Row& row : rows()) {
        addCommand(app, row, commandLine);
    }
    const auto mark = std::ranges::find(words, std::string_view("--"));
    const auto count = static_cast<std::size_t>(mark - words.begin());
    checkValues(app, words.first(count));
    try {
        app.parse(static_cast<int>(count), words.data());
    } catch (const CLI::CallForHelp&) {
        const auto* const row = commandLine.command ? rowOf(*commandLine.command) : nullptr;
        commandLine.text =
            row == nullptr ? programHelp(app) : commandHelp(*app.get_subcommand(row->name), *row);
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
        app.get_subcommand(rowOf(*commandLine.command)->name)->get_option_no_throw("--rules") == nullptr) {
        throw UsageError(unexpected(app, commandLine.command, "--rules"), commandLine.command);
    }
    if (mark != words.end()) {
        std::ranges::copy(mark + 1, words.end(), std::back_inserter(commandLine.arguments.files));
    }
}

}  // namespace

std::string_view nameOf(Command command) {
    return rowOf(command)->name;
}

CommandLine parseCommandLine(int argc, const char* const* argv) {
    const std::span<const char* const> words(argv, static_cast<std::size_t>(argc));
    CommandLine commandLine;
    checkSubcommand(words);
    parse(words, commandLine);
    if (commandLine.text) {
        return commandLine;
    }
    if (commandLine.command) {
        checkOperands(*rowOf(*commandLine.command), commandLine.arguments);
    } else if (!commandLine.arguments.explain) {
        throw UsageError("a subcommand is missing", std::nullopt);
    }
    return commandLine;
}

}  // namespace Report
