#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Report {

/// Options or subcommands with their meanings, under a title.
struct HelpGroup {
    std::string title;
    std::vector<std::pair<std::string, std::string>> rows;
};

/// The help text of the program or of a subcommand, in 80 columns.
std::string helpText(const std::string& usage, const std::string& summary,
                     const std::vector<HelpGroup>& groups);

}  // namespace Report
