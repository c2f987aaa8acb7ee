#include "SystemLogPeer.hpp"

#include <algorithm>

#include <fcntl.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace {

/// A record as one line: line ends and zeros at its end are the sender's habit, those inside it would
/// make two records of one.
std::string asLine(std::string text) {
    constexpr std::string_view breaks("\n\0", 2);
    text.erase(text.find_last_not_of(breaks) + 1);
    std::ranges::replace_if(
        text, [&](char each) { return breaks.find(each) != std::string_view::npos; }, ' ');
    return text + '\n';
}

}  // namespace

SystemLogPeer::SystemLogPeer(const std::string& path, const std::string& file)
    : log(checked(::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, mode_t{0644}),
                  "cannot write " + file)),
      socket(DatagramSocket::atPath(path)) {
}

void SystemLogPeer::serve() {
    const Datagram message = socket.receive();
    record.addDatagram(message.bytes);
    const std::string line = asLine(message.bytes);
    checked(::write(log.get(), line.data(), line.size()), "cannot write the system log");
}
