#pragma once

#include <array>
#include <cstdint>

namespace Boardsim {

/// A dispatcher's main loop. It polls its sockets once per loop.
struct CpuState {
    std::uint64_t loops = 0;
    std::uint64_t busyLoops = 0;
    std::uint64_t busyPerMille = 0;  ///< of the last second
    std::uint64_t highestBusyPerMille = 0;
    std::uint64_t lateWakeUps = 0;
};

struct DmaState {
    static constexpr std::uint64_t channels = 16;

    std::uint64_t started = 0;
    std::uint64_t failed = 0;
    std::uint64_t timeOuts = 0;  ///< among the failed ones
    std::uint64_t inFlight = 0;  ///< one per channel in use
    std::uint64_t bytes = 0;
    std::uint64_t queueFull = 0;

    std::uint64_t completed() const { return started - failed - inFlight; }
};

struct BridgeState {
    std::uint64_t framesIn = 0;
    std::uint64_t flooded = 0;  ///< among the frames out
    std::uint64_t dropped = 0;
    std::uint64_t learnt = 0;
    std::uint64_t agedOut = 0;
};

/// One class of the send queue. Class 2 drops first.
struct QosClassState {
    std::uint64_t frames = 0;  ///< offered to the queue
    std::uint64_t dropped = 0;
};
using QosState = std::array<QosClassState, 3>;

/// Every datagram that arrives is sent, dropped for one reason, passed on as a fragment, or queued.
struct SocketState {
    static constexpr std::uint64_t opened = 12;
    static constexpr std::uint64_t listening = 2;
    static constexpr std::uint64_t peers = 48;
    static constexpr std::uint64_t queueLimit = 512;     ///< datagrams in the send queue
    static constexpr std::uint64_t backlogLimit = 1024;  ///< datagrams that wait to be received

    std::uint64_t received = 0;
    std::uint64_t sent = 0;
    std::uint64_t bytesReceived = 0;
    std::uint64_t bytesSent = 0;
    std::uint64_t receiveErrors = 0;
    std::uint64_t sendErrors = 0;
    std::uint64_t receivesBlocked = 0;
    std::uint64_t sendsBlocked = 0;
    std::uint64_t tooLong = 0;
    std::uint64_t tooShort = 0;
    std::uint64_t unknownPeer = 0;
    std::uint64_t noBuffer = 0;
    std::uint64_t badChecksum = 0;
    std::uint64_t fragments = 0;  ///< passed on to the reassembly

    std::uint64_t inUse = listening;  ///< sockets
    std::uint64_t resolvedPeers = 0;
    std::uint64_t backlog = 0;
    std::uint64_t queued = 0;
    std::uint64_t lastError = 0;  ///< errno
};

/// A context is opened by the first fragment of a datagram. The last fragment completes it.
struct ReassemblyState {
    std::uint64_t opened = 0;
    std::uint64_t completed = 0;
    std::uint64_t timedOut = 0;
    std::uint64_t highestInUse = 0;
    std::uint64_t overlapping = 0;
    std::uint64_t duplicate = 0;
    std::uint64_t outOfWindow = 0;
    std::uint64_t noContext = 0;
    std::uint64_t bytes = 0;

    std::uint64_t inUse() const { return opened - completed - timedOut; }
    std::uint64_t firstFragments() const { return opened + noContext; }
};

struct HeapState {
    static constexpr std::uint64_t bytes = std::uint64_t{16} << 20;
    static constexpr std::uint64_t fixed = std::uint64_t{3} << 20;  ///< bytes that are always in use
    static constexpr std::uint64_t blockSize = 1024;
    static constexpr std::uint64_t mostBlocks = (bytes - fixed) / blockSize;

    std::uint64_t allocations = 0;
    std::uint64_t releases = 0;
    std::uint64_t failed = 0;  ///< allocations
    std::uint64_t highestInUse = 0;
    std::uint64_t largestFree = 0;  ///< bytes of a block
    std::uint64_t smallestFree = 0;
    std::uint64_t freeBlocks = 0;

    std::uint64_t blocks() const { return allocations - releases; }
    std::uint64_t inUse() const { return fixed + blocks() * blockSize; }
    std::uint64_t free() const { return bytes - inUse(); }
};

struct PoolState {
    static constexpr std::uint64_t descriptors = 8192;

    std::uint64_t inUse = 0;
    std::uint64_t lowestFree = descriptors;

    std::uint64_t free() const { return descriptors - inUse; }
};

/// What happened in the last second alone. Numbers of datagrams, unless the name says otherwise.
struct LastSecond {
    std::uint64_t arrived = 0;    ///< from known hosts
    std::uint64_t strangers = 0;  ///< from unknown hosts
    std::uint64_t noBuffer = 0;   ///< from known hosts
    std::uint64_t fragmentsOfKnown = 0;
    std::uint64_t fragmentsOfStrangers = 0;
    std::uint64_t reassembled = 0;
    std::uint64_t qosDropped = 0;
    std::uint64_t sent = 0;
    std::uint64_t bytes = 0;  ///< received and sent
    std::uint64_t failedAllocations = 0;
    std::uint64_t dmaTimeOuts = 0;
};

/// All counters of a dispatcher, since the traffic began.
struct DispatcherState {
    CpuState cpu;
    DmaState dma;
    BridgeState bridge;
    QosState qos;
    SocketState sockets;
    ReassemblyState reassembly;
    HeapState heap;
    PoolState pool;
    LastSecond lastSecond;
    std::uint64_t stalledFor = 0;  ///< seconds since it became unhealthy; 0: healthy
};

}  // namespace Boardsim
