#include "RequestRecord.hpp"

#include <cstdint>
#include <utility>

#include "BoardPaths.hpp"

namespace Boardsim {
namespace {

constexpr std::uint64_t recordLimit = 4U << 20;

}  // namespace

RequestRecord::RequestRecord(std::string_view peer) : file(BoardPaths::receivedFile(peer), recordLimit) {
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
    file.addLine(std::move(line));
}

}  // namespace Boardsim
