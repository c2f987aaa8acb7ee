#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "PeerLogContent.hpp"
#include "RunningBoard.hpp"

namespace Boardsim {

/// The log of this peer as it stands, in printable text; an empty one where there is none. Throws
/// UnreadableFile.
PeerLogContent readPeerLog(const RunningBoard& board, std::string_view peer);

/// What all peers of one board receive and answer, as it happens.
class BoardTraffic {
public:
    /// The lines that came since the last call, in the order of their times, each with its peer's name behind
    /// the time. The first call gives all that are kept. A log that cannot be read has none. It is the same
    /// board each time.
    std::vector<std::string> next(const RunningBoard& board);

private:
    struct Seen {
        std::uintmax_t size = 0;  // of the log's file, bytes
        std::uint64_t lines = 0;  // since the board's start
    };

    std::vector<std::string> newLines(const RunningBoard& board, std::string_view peer);

    std::map<std::string, Seen, std::less<>> seen;  // of each peer
};

}  // namespace Boardsim
