#pragma once

#include <cstddef>
#include <cstdint>

namespace FPDisp {

/// A non-owning view of a host packet descriptor of the SoC's packet queues (CPPI): little-endian 32-bit
/// words. Reads only the first 32 bytes.
class Descriptor {
public:
    /// `memory` must not be null and needs no alignment.
    explicit Descriptor(const void* memory) : words(memory) {}

    std::uint32_t getBufLength() const { return word(3) & lengthMask; }      ///< bytes
    std::uint32_t getBufPtr() const { return word(4); }                      ///< physical address
    std::uint32_t getOrigBufLength() const { return word(6) & lengthMask; }  ///< bytes
    std::uint32_t getOrigBufPtr() const { return word(7); }                  ///< physical address

private:
    static constexpr std::uint32_t lengthMask = 0x3FFFFF;  // bits 0 to 21

    std::uint32_t word(std::size_t index) const;

    const void* words;
};

}  // namespace FPDisp
