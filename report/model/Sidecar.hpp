#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Time.hpp"

namespace Report {

/// What PACKAGE.run tells about the run that made a package: lines `key: value`, an empty line, and then the
/// standard error of the run as it came.
struct Sidecar {
    std::map<std::string, std::string> keys;                  ///< without `probe`
    std::vector<std::pair<std::string, std::string>> probes;  ///< name and result
    std::string standardError;

    /// The value of a key, or nullptr.
    const std::string* find(std::string_view key) const;
    std::optional<Time> began() const;
    std::optional<Time> ended() const;
};

/// Parses the text of a sidecar. Returns no value, and the reason in `error`, for a text that is not one,
/// such as one with an unknown format. Never fails on unknown keys.
std::optional<Sidecar> parseSidecar(std::string_view text, std::string& error);

/// Whether a sidecar was used.
enum class SidecarState : std::uint8_t {
    used,
    absent,      ///< no file beside the package, or switched off
    foreign,     ///< its checksum is missing or not the package's: not used
    unreadable,  ///< not a sidecar, too large or not readable: not used
};

}  // namespace Report
