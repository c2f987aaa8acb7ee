#include "HeartbeatStatus.hpp"

#include <charconv>
#include <system_error>

#include "BoardPaths.hpp"
#include "TextFile.hpp"

namespace Boardsim {

HeartbeatStatus::HeartbeatStatus(std::string_view peer) : path(BoardPaths::heartbeatFile(peer)) {
    writeTextFile(path, "0\n");
}

std::uint32_t HeartbeatStatus::value() const {
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
