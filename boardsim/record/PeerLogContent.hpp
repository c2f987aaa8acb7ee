#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Boardsim {

/// Bytes of the time in front of each line.
constexpr std::size_t peerLogStampLength = 24;

/// What a peer's log tells. Its lines are
///     2026-11-21T10:15:02.123Z <- what was received
///     2026-11-21T10:15:02.124Z -> what was answered
///     2026-11-21T10:15:02.124Z -- what else is to be said
/// and where older ones were dropped, a first line of the last kind that counts them. Other lines
/// are passed over.
struct PeerLogContent {
    std::vector<std::string> lines;  ///< those that are kept
    std::uint64_t dropped = 0;       ///< lines before them
    std::uint64_t received = 0;      ///< since the board's start, like the next one
    std::uint64_t answered = 0;
};

PeerLogContent parsePeerLog(std::string_view text);

/// The line that takes the place of `dropped`, the beginning of a log.
std::string peerLogEpitaph(std::string_view dropped);

/// A line of the log for this moment. `direction` is "<-", "->" or "--".
std::string peerLogLine(std::string_view direction, std::string_view text);

}  // namespace Boardsim
