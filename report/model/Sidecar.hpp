#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Time.hpp"

namespace Report {

/// What PACKAGE.run says about the run that made a package: lines `key: value`, an empty line, and then the
/// standard error of the run as it came.
struct Sidecar {
    std::map<std::string, std::string, std::less<>> keys;     ///< without `probe`
    std::vector<std::pair<std::string, std::string>> probes;  ///< name and result of `probe: NAME: RESULT`
    std::string standardError;

    /// The value of a key, or nullptr.
    const std::string* find(std::string_view key) const;
    /// Unknown if the key is missing or is no time.
    std::optional<Time> began() const;
    std::optional<Time> ended() const;
};

/// Parses the text of a sidecar. Returns no value, and the reason in `error`, for a text that is not one: a
/// line before the empty line has another form, a key occurs twice, the format is unknown, or the empty line
/// is missing because the text was cut. Accepts unknown keys.
std::optional<Sidecar> parseSidecar(std::string_view text, std::string& error);

/// Whether a sidecar was used.
enum class SidecarState : std::uint8_t {
    used,
    absent,      ///< no file beside the package, or switched off
    foreign,     ///< its checksum is missing or not the package's: not used
    unreadable,  ///< not a sidecar, larger than 1 MiB, or not readable: not used
};

/// A sidecar that was looked for.
struct SidecarResult {
    SidecarState state = SidecarState::absent;
    std::string error;  ///< why it is foreign or unreadable
    std::optional<Sidecar> sidecar;
};

/// Why a sidecar does not belong to the package with this checksum, which is empty if it is unknown. Empty if
/// the sidecar does.
std::string whyForeign(const Sidecar& sidecar, std::string_view sha256);

/// Reads the sidecar of a package with the checksum `sha256`. `named` says that the user named the file: it
/// may then be a pipe, and SidecarError is thrown if it cannot be read. Otherwise only a regular file is
/// read.
SidecarResult readSidecar(const std::string& path, bool named, std::string_view sha256);

}  // namespace Report
