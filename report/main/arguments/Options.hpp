#pragma once

#include "Arguments.hpp"

namespace CLI {
class App;
}

namespace Report {

// Each function adds the options of one topic to a subcommand, or to the program. They write into
// `arguments`, which must outlive `app`. A wrong value throws CLI::ParseError while `app` parses.

/// What the package is: --board, --kind, --run, --no-run, --expect.
void addIdentity(CLI::App& app, Arguments& arguments);
/// --run and --no-run.
void addSidecar(CLI::App& app, Arguments& arguments);
/// --no-run alone.
void addNoSidecar(CLI::App& app, Arguments& arguments);
/// The limits of each package: --max-bytes and so on.
void addLimits(CLI::App& app, Arguments& arguments);
/// --rules and --explain.
void addRules(CLI::App& app, Arguments& arguments);
/// --output.
void addOutput(CLI::App& app, Arguments& arguments);
/// --no-pager.
void addPager(CLI::App& app, Arguments& arguments);
/// What is shown: --part, --log, --since, --until, --grep.
void addChoice(CLI::App& app, Arguments& arguments);
/// What is compared over time, and how it is shown: --board, --since, --until, --limit, --html.
void addTrend(CLI::App& app, Arguments& arguments);
/// --output, --map and --words.
void addCleaning(CLI::App& app, Arguments& arguments);
/// --map and --output.
void addRestoring(CLI::App& app, Arguments& arguments);

}  // namespace Report
