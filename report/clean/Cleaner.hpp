#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Limits.hpp"

namespace Report {

struct CleanRequest {
    std::string package;                 ///< path, or "-"
    std::string output;                  ///< path of the clean package
    std::string map;                     ///< path of the mapping; read first if it exists, then written
    std::optional<std::string> words;    ///< path of --words
    std::optional<std::string> runFile;  ///< sidecar to clean with the package; it is written to OUTPUT.run
    Limits limits;
};

/// Why a package was not cleaned or restored. what() is one line for the user.
class CleanRefusal;

/// Makes a clean copy of a package, and of its sidecar, and writes the mapping. Either all of them are
/// complete, or none is left. Throws CleanRefusal.
void cleanPackage(const CleanRequest& request);

struct RestoreRequest {
    std::string input;  ///< a clean package or any text; "-" is standard input
    std::string map;
    std::optional<std::string> output;  ///< else standard output
    Limits limits;
};

/// Undoes the replacements of a mapping in one pass. Throws CleanRefusal.
void restore(const RestoreRequest& request);

}  // namespace Report
