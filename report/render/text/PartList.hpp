#pragma once

#include <string>
#include <vector>

namespace Report {

/// The parts of one folder, or of several folders that hold parts of the same names.
struct PartFolder {
    std::string folder;              ///< such as "ti" or "mmi/{iwf,sfn}"; empty for parts outside a folder
    std::vector<std::string> names;  ///< without the folder, in alphabetical order
};

/// Groups names of parts by their folders, in alphabetical order. Sibling folders with the same names share a
/// row.
std::vector<PartFolder> byFolder(const std::vector<std::string>& parts);

}  // namespace Report
