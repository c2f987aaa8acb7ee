#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "Mapping.hpp"
#include "SharedMemory.hpp"

namespace HostBoard {

/// A range of the board's physical addresses, played by a shared memory object that is created on demand
/// and mapped on request. What was mapped stays so, and stays where it is, for as long as the window
/// lives. Threads may use a window at once.
class PhysicalWindow {
public:
    /// `length` bytes from the physical address `base` on, in the object `memoryName` ("/" and a file
    /// name), mapped in pieces that begin at multiples of `step` bytes, itself a multiple of the page
    /// size. Every piece reaches to the end of the next one, so that at least `step` bytes from any
    /// address on can be used, as far as the window goes.
    PhysicalWindow(const char* memoryName, std::uint32_t base, std::uint64_t length, std::uint64_t step);

    bool contains(std::uint32_t physical) const;

    /// Stores where this process sees an address that the window contains. 0, or the errno value of what
    /// failed; `address` is then untouched.
    int translate(std::uint32_t physical, void*& address);

private:
    bool opened();
    Mapping& pieceAt(std::uint64_t start);

    const char* const name;
    const std::uint32_t firstAddress;
    const std::uint64_t windowLength;
    const std::uint64_t pieceStep;
    std::mutex mutex;
    SharedMemory memory;          // none until the first translation
    std::vector<Mapping> pieces;  // by start; empty where not yet asked for
};

}  // namespace HostBoard
