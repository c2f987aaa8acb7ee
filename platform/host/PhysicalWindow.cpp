#include "PhysicalWindow.hpp"

#include <algorithm>
#include <cerrno>

namespace HostBoard {
namespace {

/// Bytes behind a translated address that are sure to have memory, even when /dev/shm is full.
constexpr std::uint64_t reserved = std::uint64_t{64} << 10;

}  // namespace

PhysicalWindow::PhysicalWindow(const char* memoryName, std::uint32_t base, std::uint64_t length,
                               std::uint64_t step)
    : name(memoryName),
      firstAddress(base),
      windowLength(length),
      pieceStep(step),
      pieces(static_cast<std::size_t>((length + step - 1) / step)) {
}

bool PhysicalWindow::contains(std::uint32_t physical) const {
    return physical >= firstAddress && physical - firstAddress < windowLength;
}

int PhysicalWindow::translate(std::uint32_t physical, void*& address) {
    const std::lock_guard guard(mutex);
    const std::uint64_t offset = physical - firstAddress;
    const std::uint64_t start = offset - offset % pieceStep;
    if (!opened() || !memory.reserve(offset, std::min(reserved, windowLength - offset))) {
        return errno;
    }
    const Mapping& piece = pieceAt(start);
    if (!piece) {
        return errno;
    }
    address = &piece.bytes()[static_cast<std::size_t>(offset - start)];
    return 0;
}

/// Opens the memory unless it is open, and sees that it has its full length: somebody may have cut it.
bool PhysicalWindow::opened() {
    if (!memory) {
        memory = SharedMemory(name);
    }
    return memory && memory.grow(windowLength);
}

/// The piece that begins `start` bytes into the window; empty, with the reason in errno, when it cannot
/// be mapped.
Mapping& PhysicalWindow::pieceAt(std::uint64_t start) {
    Mapping& piece = pieces[static_cast<std::size_t>(start / pieceStep)];
    if (!piece) {
        piece = memory.map(start, std::min(2 * pieceStep, windowLength - start));
    }
    return piece;
}

}  // namespace HostBoard
