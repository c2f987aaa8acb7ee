#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "PeerLogContent.hpp"
#include "RunningBoard.hpp"

namespace Boardsim {

/// The current log of this peer, as printable text; empty if there is none. Throws UnreadableFile.
PeerLogContent readPeerLog(const RunningBoard& board, std::string_view peer);

/// Follows the logs of all peers of one board.
class BoardTraffic {
public:
    /// The new lines since the last call, sorted by time, with the peer's name after the time. The first call
    /// returns all lines that are kept. An unreadable log counts as empty. Each call must pass the same
    /// board.
    std::vector<std::string> next(const RunningBoard& board);

private:
    struct Seen {
        std::uintmax_t size = 0;  // of the log file, in bytes
        std::uint64_t lines = 0;  // since the board started
    };

    std::vector<std::string> newLines(const RunningBoard& board, std::string_view peer);

    std::map<std::string, Seen, std::less<>> seen;  // by peer
};

}  // namespace Boardsim
