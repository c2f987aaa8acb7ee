#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Boardsim {

/// Length of the time stamp at the start of each line.
constexpr std::size_t peerLogStampLength = 24;

/// The content of a peer's log. Its lines are
///     2026-11-21T10:15:02.123Z <- what was received
///     2026-11-21T10:15:02.124Z -> what was answered
///     2026-11-21T10:15:02.124Z -- any other event
/// If older lines were dropped, the first line is a note (--) that counts them. Other lines are ignored.
struct PeerLogContent {
    std::vector<std::string> lines;  ///< lines that are kept
    std::uint64_t dropped = 0;       ///< lines dropped before them
    std::uint64_t received = 0;      ///< both since the board started
    std::uint64_t answered = 0;
};

PeerLogContent parsePeerLog(std::string_view text);

/// The line that replaces `dropped`, the older part of a log.
std::string peerLogDropSummary(std::string_view dropped);

/// A log line with the current time. `direction` is "<-", "->" or "--".
std::string peerLogLine(std::string_view direction, std::string_view text);

}  // namespace Boardsim
