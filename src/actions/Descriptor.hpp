#pragma once

#include <cstddef>
#include <cstdint>

namespace FPDisp {

/// A host packet descriptor of the SoC's packet queues (CPPI), as little-endian words of 32 bits; a view that
/// owns nothing. What is read lies in its first 32 bytes.
class Descriptor {
public:
    /// `memory` is not null and needs no alignment.
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
