#include "PhysicalMemory.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include "Vask.h"

namespace Boardsim::PhysicalMemory {
namespace {

void put(std::uint32_t physical, const void* bytes, std::size_t size) {
    void* address = nullptr;
    if (vask_cma_phy_to_virt(physical, &address) != 0) {
        throw std::runtime_error("no physical memory");
    }
    std::memcpy(address, bytes, size);
}

/// A multicast Ethernet frame with text as payload.
std::array<unsigned char, frameLength> frame() {
    constexpr std::array<unsigned char, 14> header{0x01, 0x00, 0x5e, 0x00, 0x00, 0x01, 0x02,
                                                   0x00, 0x00, 0x00, 0x00, 0x01, 0x08, 0x00};
    constexpr std::string_view payload = "a frame of the simulated board";
    std::array<unsigned char, frameLength> bytes{};
    std::copy(header.begin(), header.end(), bytes.begin());
    std::copy(payload.begin(), payload.end(), bytes.begin() + header.size());
    return bytes;
}

}  // namespace

void fill() {
    // Bits 0 to 21 of these words are the length. The bits above are other fields.
    constexpr std::uint32_t otherBits = 0xc0000000;
    const std::array<std::uint32_t, 16> words{
        0x80000000 | frameLength, 0,     0x00010203, otherBits | frameLength, buffer + frameOffset, 0,
        otherBits | bufferLength, buffer};
    const auto bytes = frame();
    put(descriptor, words.data(), sizeof words);
    put(buffer + frameOffset, bytes.data(), bytes.size());
}

}  // namespace Boardsim::PhysicalMemory
