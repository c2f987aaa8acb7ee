#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Expectation.hpp"
#include "Limits.hpp"
#include "Moment.hpp"
#include "Package.hpp"
#include "TextPattern.hpp"

namespace Report {

/// The arguments of a subcommand, checked as far as they can be without a package. Those that a subcommand
/// does not take are as they are here.
struct Arguments {
    std::vector<std::string> files;  ///< packages, the text of restore, or the directory of export
    std::string store;               ///< the first operand of the subcommands that take one
    Limits limits;

    std::optional<std::string> board;
    std::optional<Kind> kind;
    std::optional<std::string> runFile;
    bool useRun = true;
    Expectation expectation;

    std::vector<std::string> ruleFiles;
    std::optional<std::string> explain;  ///< a rule; empty if all of them are wanted

    std::optional<std::string> output;
    bool pager = true;

    std::optional<std::string> part;
    std::size_t limit = 20;  ///< rows of a trend
    bool asPage = false;     ///< a trend as HTML
    bool logsOnly = false;
    std::optional<Moment> since;
    std::optional<Moment> until;
    std::optional<TextPattern> grep;

    std::optional<std::string> map;
    std::optional<std::string> words;
};

}  // namespace Report
