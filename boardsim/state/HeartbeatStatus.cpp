#include "HeartbeatStatus.hpp"

#include <charconv>
#include <system_error>
#include <utility>

#include "BoardPaths.hpp"
#include "TextFile.hpp"

namespace Boardsim {

HeartbeatStatus::HeartbeatStatus(std::string_view peerName, std::shared_ptr<LiveTraffic> boardTraffic)
    : peer(peerName), path(BoardPaths::heartbeatFile(peerName)), traffic(std::move(boardTraffic)) {
    writeTextFile(path, "0\n");
}

std::uint32_t HeartbeatStatus::value() const {
    const std::uint32_t status = valueInFile();
    const BoardState* board = traffic->board();
    return status != 0 || board == nullptr ? status : board->heartbeatOf(peer);
}

/// 0 if the file contains no number.
std::uint32_t HeartbeatStatus::valueInFile() const {
    std::uint32_t status = 0;
    try {
        const std::string text = readTextFile(path);
        std::from_chars(text.data(), text.data() + text.size(), status);
    } catch (const std::system_error&) {
        return 0;  // people may delete the file
    }
    return status;
}

}  // namespace Boardsim
