#include "DispatcherSimulation.hpp"

#include <algorithm>
#include <cerrno>

#include "Share.hpp"

namespace Boardsim {
namespace {

using Draws = TrafficNoise::Draws;

constexpr std::uint64_t fullyBusy = 1000;     // per mille
constexpr std::uint64_t nearlyBusy = 950;     // per mille; beyond, the loop wakes up late
constexpr std::uint64_t usualLoops = 20'000;  // per second; fewer if there is work
constexpr std::uint64_t stalledLoops = 400;

/// The share of a second in which the dispatcher works, per mille.
std::uint64_t workOf(const LastSecond& second, std::uint64_t capacity, bool stalled) {
    const std::uint64_t own = second.arrived * 980 / capacity;
    const std::uint64_t strangers = second.strangers * 100 / capacity;
    return stalled ? fullyBusy : std::min(fullyBusy, own + strangers);
}

void countLoops(CpuState& cpu, std::uint64_t work, bool stalled, Draws& noise) {
    const std::uint64_t loops = stalled ? stalledLoops : usualLoops - work * 15;
    const std::uint64_t busy = perMille(loops, work);
    cpu.loops += loops;
    cpu.busyLoops += busy;
    cpu.busyPerMille = busy * 1000 / loops;
    cpu.highestBusyPerMille = std::max(cpu.highestBusyPerMille, cpu.busyPerMille);
    cpu.lateWakeUps += work > nearlyBusy ? (work - nearlyBusy) / 2 + noise.next(0, 3) : 0;
}

void moveData(DispatcherState& state, std::uint64_t work, bool stalled, Draws& noise) {
    DmaState& dma = state.dma;
    const LastSecond& second = state.lastSecond;
    const std::uint64_t started = second.arrived + second.sent;
    const std::uint64_t timeOuts = stalled ? noise.next(3, 8) : 0;
    dma.started += started;
    dma.timeOuts += timeOuts;
    dma.failed += timeOuts + (second.noBuffer > 0 ? started / 200 : 0);
    dma.inFlight = stalled ? DmaState::channels : 1 + work * 12 / 1000 + noise.next(0, 2);
    dma.bytes += second.bytes;
    dma.queueFull += work > nearlyBusy ? noise.next(5, 30) : 0;
    state.lastSecond.dmaTimeOuts = timeOuts;
}

void bridge(BridgeState& bridge, const LastSecond& second, Draws& noise) {
    constexpr std::uint64_t tableSize = 48;
    constexpr std::uint64_t agedPerSecond = 25;
    bridge.framesIn += second.arrived + second.strangers;
    bridge.dropped += perMille(second.strangers, 600) + (second.noBuffer > 0 ? second.arrived / 100 : 0);
    bridge.flooded += noise.next(0, 1) + second.strangers / 20;
    bridge.learnt += (bridge.learnt < tableSize ? 4 : 0) + noise.next(0, 10) / 10 + second.strangers / 600;
    const std::uint64_t known = bridge.learnt - bridge.agedOut;
    bridge.agedOut += std::min(std::max(known, tableSize) - tableSize, agedPerSecond);
}

/// The error of the last call that failed.
std::uint64_t errorOf(const LastSecond& second, const SocketState& sockets) {
    if (second.noBuffer > 0 || second.strangers > 0) {
        return ENOBUFS;
    }
    return sockets.queued > SocketState::queueLimit / 2 ? EAGAIN : sockets.lastError;
}

void describeSockets(DispatcherState& state, std::uint64_t work, bool stalled, Draws& noise) {
    constexpr std::uint64_t resolvedPerSecond = 8;
    SocketState& sockets = state.sockets;
    const std::uint64_t unreachable = stalled ? 6 : 0;
    sockets.receivesBlocked += noise.next(100, 200);
    sockets.inUse = 9 + noise.next(0, 1);
    sockets.resolvedPeers =
        std::min(SocketState::peers - unreachable, sockets.resolvedPeers + resolvedPerSecond);
    sockets.backlog = work >= fullyBusy    ? SocketState::backlogLimit - noise.next(0, 20)
                      : work >= nearlyBusy ? noise.next(50, 150)
                                           : noise.next(0, 6);
    sockets.lastError = errorOf(state.lastSecond, sockets);
}

}  // namespace

DispatcherSimulation::DispatcherSimulation(const TrafficNoise& ownNoise, std::uint64_t datagramsPerSecond)
    : noise(ownNoise), capacity(datagramsPerSecond), flow(datagramsPerSecond) {
    Draws atStart = noise.in(0);
    memory.advance(now, false, atStart);
}

void DispatcherSimulation::advance(std::uint64_t second, const ProfileLoad& load, bool stalled) {
    Draws draws = noise.in(second);
    now.lastSecond = {};
    flow.advance(now, load, stalled, draws);
    const std::uint64_t work = workOf(now.lastSecond, capacity, stalled);
    countLoops(now.cpu, work, stalled, draws);
    moveData(now, work, stalled, draws);
    bridge(now.bridge, now.lastSecond, draws);
    describeSockets(now, work, stalled, draws);
    memory.advance(now, load.leaks, draws);
    now.stalledFor = stalled ? now.stalledFor + 1 : 0;
}

}  // namespace Boardsim
