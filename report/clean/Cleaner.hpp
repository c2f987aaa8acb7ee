#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CleanRefusal.hpp"
#include "Limits.hpp"

namespace Report {

struct CleanRequest {
    std::string package;                 ///< path, or "-"
    std::string output;                  ///< path of the clean package
    std::string map;                     ///< path of the mapping; read first if it exists, then written
    std::optional<std::string> words;    ///< path of --words
    std::optional<std::string> runFile;  ///< sidecar to clean with the package; it is written to OUTPUT.run
    Limits limits;
    bool summary = false;  ///< whether a note says what was replaced
};

/// Makes a clean copy of a package, and of its sidecar, and writes the mapping. Either all of them are
/// complete, or none is left. Returns notes for the user, a line each: words that stay, a sidecar that is
/// left out, and at the end what was replaced. Throws CleanRefusal.
///
/// The package is read three times: to collect originals, to write the copy, and to check the copy. The time
/// limit is for the first reading; the other limits are for each of them. The check looks for originals, and
/// restores all texts.
std::vector<std::string> cleanPackage(const CleanRequest& request);

struct RestoreRequest {
    std::string input;  ///< a clean package or any text; "-" is standard input
    std::string map;
    std::optional<std::string> output;   ///< else standard output
    std::optional<std::string> runFile;  ///< sidecar to restore with a package; it is written to OUTPUT.run
    Limits limits;
};

/// Undoes the replacements of a mapping in one pass. What begins like gzip is a package, and everything else
/// is text. A package to a file must be whole, and its sidecar gets the checksum of the restored package.
/// Returns notes for the user. Throws CleanRefusal.
std::vector<std::string> restore(const RestoreRequest& request);

}  // namespace Report
