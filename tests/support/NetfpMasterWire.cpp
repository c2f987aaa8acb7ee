#include "NetfpMasterWire.hpp"

#include "WireNumber.hpp"

namespace {

constexpr std::size_t requestSize = 148;
constexpr std::size_t responseSize = 272;
constexpr std::size_t requestIdOffset = 4;
constexpr std::size_t responseIdOffset = 8;

}  // namespace

std::string masterRequest(std::uint32_t type, std::uint32_t id, std::string_view body) {
    std::string bytes = littleEndian(type) + littleEndian(id);
    bytes.append(body).resize(requestSize);
    return bytes;
}

std::uint32_t idOfRequest(const std::string& request) {
    return numberAt(request, requestIdOffset);
}

std::string masterResponse(std::uint32_t id, std::int32_t errorCode, std::int32_t switchPort) {
    std::string bytes(responseIdOffset, '\xee');  // internal to the master, meaningless to a client
    bytes += littleEndian(id);
    bytes += littleEndian(static_cast<std::uint32_t>(errorCode));
    bytes += littleEndian(static_cast<std::uint32_t>(switchPort));
    bytes.resize(responseSize, '\xee');
    return bytes;
}
