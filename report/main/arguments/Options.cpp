#include "Options.hpp"

#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "Names.hpp"
#include "Quantity.hpp"

namespace Report {

namespace {

constexpr const char* timeForm =
    "a time: write '2026-11-22 02:46' (UTC), '2026-11-22T02:46:40Z' or -10m (s, m, h, d)";

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

/// 0 is for no limit.
std::optional<std::uint64_t> parseLimit(std::string_view text) {
    return text == "0" ? std::numeric_limits<std::uint64_t>::max() : parseCount(text);
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

void addMapping(CLI::App& app, Arguments& arguments) {
    app.add_option("--map", arguments.map, "the file of originals and replacements (default: OUT.map)")
        ->type_name("FILE");
}

}  // namespace

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

void addChoice(CLI::App& app, Arguments& arguments) {
    app.add_option("--part", arguments.part, "only this part or directory, such as mmi/sfn/HeapStats")
        ->type_name("NAME");
    app.add_flag("--log", arguments.logsOnly, "only log entries");
    addParsed(app, "--since", "TIME", arguments.since, Moment::parse, timeForm,
              "only log entries from TIME on: '2026-11-22 02:46', or -10m from the package's time");
    addParsed(app, "--until", "TIME", arguments.until, Moment::parse, timeForm,
              "only log entries up to TIME");
    addRead<PatternError>(
        app, "--grep", "PATTERN",
        [&arguments](const std::string& expression) { arguments.grep = readPattern(expression); },
        "only log entries and lines of text that a regular expression fits");
}

void addTrend(CLI::App& app, Arguments& arguments) {
    app.add_option("--board", arguments.board, "only this board: the values that changed")->type_name("NAME");
    addParsed(app, "--since", "TIME", arguments.since, Moment::parse, timeForm,
              "only packages from TIME on: '2026-11-22 02:46', or -7d from the newest package");
    addParsed(app, "--until", "TIME", arguments.until, Moment::parse, timeForm, "only packages up to TIME");
    addParsed(app, "--limit", "N", arguments.limit, parseLimit, "a number, or 0 for all",
              "at most N values; 0: all of them (default: 20)");
    app.add_flag("--html", arguments.asPage, "make a page with plots for a browser");
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

}  // namespace Report
