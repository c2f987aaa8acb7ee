#pragma once

#include <cstdint>
#include <mutex>
#include <vector>

#include "Mapping.hpp"
#include "SharedMemory.hpp"

namespace HostBoard {

/// A range of the board's physical addresses, simulated by a shared memory object that is created and mapped
/// on demand. A mapping keeps its address as long as the window exists. Thread-safe.
class PhysicalWindow {
public:
    /// `length` bytes from physical address `base`, in the object `memoryName` ("/" and a file name). The
    /// window is mapped in pieces that start at multiples of `step` bytes, a multiple of the page size. Each
    /// piece extends to the end of the next one, so at least `step` bytes are accessible from any address, up
    /// to the end of the window.
    PhysicalWindow(const char* memoryName, std::uint32_t base, std::uint64_t length, std::uint64_t step);

    bool contains(std::uint32_t physical) const;

    /// Sets `address` to the virtual address of `physical`, which the window must contain. Returns 0, or an
    /// errno value and leaves `address` unchanged.
    int translate(std::uint32_t physical, void*& address);

private:
    bool ensureOpen();
    Mapping& pieceAt(std::uint64_t start);

    const char* const name;
    const std::uint32_t firstAddress;
    const std::uint64_t windowLength;
    const std::uint64_t pieceStep;
    std::mutex mutex;
    SharedMemory memory;          // not open before the first translation
    std::vector<Mapping> pieces;  // by start; empty if not yet mapped
};

}  // namespace HostBoard
