#include "NetfpMasterWire.hpp"

namespace {

constexpr std::size_t requestSize = 148;
constexpr std::size_t responseSize = 272;
constexpr std::size_t requestIdOffset = 4;
constexpr std::size_t responseIdOffset = 8;

}  // namespace

std::string littleEndian(std::uint32_t number) {
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<char>(static_cast<unsigned char>(number >> shift)));
    }
    return bytes;
}

std::string masterRequest(std::uint32_t type, std::uint32_t id, std::string_view body) {
    std::string bytes = littleEndian(type) + littleEndian(id);
    bytes.append(body).resize(requestSize);
    return bytes;
}

std::uint32_t idOfRequest(const std::string& request) {
    std::uint32_t id = 0;
    for (unsigned place = 0; place < 4; ++place) {
        const auto byte = static_cast<unsigned char>(request.at(requestIdOffset + place));
        id |= static_cast<std::uint32_t>(byte) << (8 * place);
    }
    return id;
}

std::string masterResponse(std::uint32_t id, std::int32_t errorCode, std::int32_t switchPort) {
    std::string bytes(responseIdOffset, '\xee');  // the master's own, without meaning to a client
    bytes += littleEndian(id);
    bytes += littleEndian(static_cast<std::uint32_t>(errorCode));
    bytes += littleEndian(static_cast<std::uint32_t>(switchPort));
    bytes.resize(responseSize, '\xee');
    return bytes;
}
