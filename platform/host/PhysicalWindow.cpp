#include "PhysicalWindow.hpp"

#include <algorithm>
#include <cerrno>

namespace HostBoard {
namespace {

/// Bytes after a translated address that are allocated, so that accesses succeed even if /dev/shm is full.
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
    if (!ensureOpen() || !memory.reserve(offset, std::min(reserved, windowLength - offset))) {
        return errno;
    }
    const Mapping& piece = pieceAt(start);
    if (!piece) {
        return errno;
    }
    address = &piece.bytes()[static_cast<std::size_t>(offset - start)];
    return 0;
}

/// Opens the memory if necessary and restores its full length, which another process may have truncated.
bool PhysicalWindow::ensureOpen() {
    if (!memory) {
        memory = SharedMemory(name);
    }
    return memory && memory.grow(windowLength);
}

/// Returns the piece that starts `start` bytes into the window. Returns an empty mapping, with errno set, if
/// it cannot be mapped.
Mapping& PhysicalWindow::pieceAt(std::uint64_t start) {
    Mapping& piece = pieces[static_cast<std::size_t>(start / pieceStep)];
    if (!piece) {
        piece = memory.map(start, std::min(2 * pieceStep, windowLength - start));
    }
    return piece;
}

}  // namespace HostBoard
