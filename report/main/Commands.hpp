#pragma once

#include <string>

#include "Arguments.hpp"

namespace Report {

// Each runs a subcommand and returns its exit status. A package that cannot be read is reported on standard
// error; the others are still read. They throw OutputError and RuleError, and std::system_error for a file
// of --rules or --run that cannot be read.

int check(const Arguments& arguments);
int show(const Arguments& arguments);
int html(const Arguments& arguments);
int json(const Arguments& arguments);
int diff(const Arguments& arguments);
int clean(const Arguments& arguments);
int restoreFile(const Arguments& arguments);
int metrics(const Arguments& arguments);
int add(const Arguments& arguments);
int trend(const Arguments& arguments);
int exportTables(const Arguments& arguments);

/// Prints a rule for --explain, or a list of all rules if its name is empty.
int explain(const Arguments& arguments, const std::string& rule);

}  // namespace Report
