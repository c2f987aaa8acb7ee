#include "RequestRecord.hpp"

#include <fcntl.h>
#include <unistd.h>

#include "BoardPaths.hpp"
#include "SystemCall.hpp"

RequestRecord::RequestRecord(std::string_view peer) {
    const std::string path = BoardPaths::receivedFile(peer);
    constexpr mode_t mode = 0644;
    file.reset(checked(::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, mode),
                       "cannot write " + path));
}

void RequestRecord::addDatagram(std::string_view bytes) const {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string line;
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        line += digits[byte >> 4U];
        line += digits[byte & 0xfU];
    }
    addLine(line);
}

void RequestRecord::addLine(std::string line) const {
    line += '\n';  // one write: a reader sees whole lines
    checked(::write(file.get(), line.data(), line.size()), "cannot record a request");
}
