#include "MemoryUse.hpp"

#include <algorithm>

namespace Boardsim {
namespace {

using Draws = TrafficNoise::Draws;

constexpr std::uint64_t usualBlocks = 1200;
constexpr std::uint64_t usualDescriptors = 900;
constexpr std::uint64_t smallestBlock = 64;  // bytes

/// Raises or lowers the number of blocks. Besides, each second releases and allocates `churn` blocks.
void setBlocks(HeapState& heap, std::uint64_t wanted, std::uint64_t churn) {
    const std::uint64_t before = heap.blocks();
    heap.allocations += churn + std::max(wanted, before) - before;
    heap.releases += churn + std::max(wanted, before) - wanted;
    heap.highestInUse = std::max(heap.highestInUse, heap.inUse());
}

/// The more blocks have leaked, the smaller the pieces between them.
void splitFreeMemory(HeapState& heap, std::uint64_t leakedBlocks) {
    const std::uint64_t free = heap.free();
    heap.largestFree = free * 3 / (4 + leakedBlocks / 1000);
    heap.smallestFree = std::min(smallestBlock, heap.largestFree);
    heap.freeBlocks = free == 0 ? 0
                                : 1 + std::min(60 + leakedBlocks / 20,
                                               (free - heap.largestFree) / std::max(heap.smallestFree, {1}));
}

}  // namespace

void MemoryUse::advance(DispatcherState& state, bool leaks, Draws& noise) {
    allocate(state, leaks, noise);
    takeDescriptors(state, leaks, noise);
}

void MemoryUse::allocate(DispatcherState& state, bool leaks, Draws& noise) {
    leakedBlocks += leaks ? noise.next(160, 200) : 0;
    const std::uint64_t needed =
        usualBlocks + state.sockets.queued + 4 * state.reassembly.inUse() + noise.next(0, 40);
    const std::uint64_t room = HeapState::mostBlocks - noise.next(0, 16);
    const std::uint64_t lacking = std::max(needed + leakedBlocks, room) - room;
    leakedBlocks -= lacking;  // a failed allocation cannot leak
    state.lastSecond.failedAllocations = lacking;
    state.heap.failed += lacking;
    setBlocks(state.heap, needed + leakedBlocks, state.lastSecond.arrived / 2);
    splitFreeMemory(state.heap, leakedBlocks);
}

void MemoryUse::takeDescriptors(DispatcherState& state, bool leaks, Draws& noise) {
    leakedDescriptors += leaks ? noise.next(95, 110) : 0;
    const std::uint64_t needed =
        usualDescriptors + state.sockets.queued + state.reassembly.inUse() + noise.next(0, 30);
    const std::uint64_t room = PoolState::descriptors - noise.next(0, 15);
    leakedDescriptors = std::min(leakedDescriptors, room - needed);
    state.pool.inUse = needed + leakedDescriptors;
    state.pool.lowestFree = std::min(state.pool.lowestFree, state.pool.free());
}

}  // namespace Boardsim
