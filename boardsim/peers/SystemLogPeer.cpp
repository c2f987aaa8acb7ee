#include "SystemLogPeer.hpp"

#include <algorithm>
#include <cstdint>

namespace Boardsim {
namespace {

constexpr std::uint64_t systemLogLimit = 4U << 20;

/// A record as one line. Removes line ends and zeros at the end; replaces others, because they would split
/// the record.
std::string asLine(std::string text) {
    constexpr std::string_view breaks("\n\0", 2);
    text.erase(text.find_last_not_of(breaks) + 1);
    std::ranges::replace_if(
        text, [&](char each) { return breaks.find(each) != std::string_view::npos; }, ' ');
    return text;
}

}  // namespace

SystemLogPeer::SystemLogPeer(const std::string& path, const std::string& recordsPath)
    : file(recordsPath, systemLogLimit), socket(ServerSocket::atPath(path)) {
}

void SystemLogPeer::serve() {
    const Datagram message = socket.receive();
    record.addDatagram(message.bytes);
    const std::string line = asLine(message.bytes);
    log.received(line, message.bytes.size());
    file.addLine(line);
}

}  // namespace Boardsim
