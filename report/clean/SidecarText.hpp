#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Sidecar.hpp"
#include "TokenScanner.hpp"

namespace Report {

/// A sidecar that belongs to a package.
struct UsedSidecar {
    std::string text;
    Sidecar content;
};

/// Reads the sidecar of the package with this checksum. One that is no sidecar, or another package's, is left
/// out, with a note for the user. Throws std::system_error if the file cannot be read.
std::optional<UsedSidecar> readUsedSidecar(const std::string& path, std::string_view sha256,
                                           std::vector<std::string>& notes);

/// Shows the tokens in the values and in the standard error of a sidecar to a handler, and returns the text
/// as the handler left it. The keys remain. `text` must be a sidecar: see parseSidecar().
std::string handleSidecar(std::string text, TokenHandler& handler);

/// The text with another checksum of the package.
std::string withChecksum(std::string text, std::string_view sha256);

}  // namespace Report
