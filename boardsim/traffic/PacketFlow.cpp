#include "PacketFlow.hpp"

#include <algorithm>
#include <utility>

#include "Share.hpp"

namespace Boardsim {
namespace {

using Draws = TrafficNoise::Draws;

/// With fewer free descriptors, some datagrams find no buffer.
constexpr std::uint64_t fewDescriptors = 64;
constexpr std::uint64_t bytesOfStranger = 60;  // in each datagram
constexpr std::uint64_t bytesOfReassembled = 2400;

/// Drops most datagrams of strangers, for one reason each.
void dropStrangers(SocketState& sockets, const LastSecond& second) {
    const std::uint64_t dropped = second.strangers - second.fragmentsOfStrangers;
    const std::uint64_t tooShort = perMille(dropped, 150);
    const std::uint64_t tooLong = perMille(dropped, 50);
    const std::uint64_t badChecksum = perMille(dropped, 100);
    const std::uint64_t noBuffer = perMille(dropped, 100);
    sockets.tooShort += tooShort;
    sockets.tooLong += tooLong;
    sockets.badChecksum += badChecksum;
    sockets.noBuffer += noBuffer;
    sockets.unknownPeer += dropped - tooShort - tooLong - badChecksum - noBuffer;
}

void receive(SocketState& sockets, LastSecond& second, Draws& noise) {
    const std::uint64_t bytes = second.arrived * noise.next(480, 560) + second.strangers * bytesOfStranger;
    sockets.received += second.arrived + second.strangers;
    sockets.bytesReceived += bytes;
    sockets.noBuffer += second.noBuffer;
    sockets.fragments += second.fragmentsOfKnown + second.fragmentsOfStrangers;
    sockets.receiveErrors += second.noBuffer > 0 ? noise.next(1, 4) : 0;
    second.bytes += bytes;
    dropStrangers(sockets, second);
}

/// Adds the frames of one second to the classes. If the queue lacks room, class 2 is the first to lose
/// frames.
void classify(QosState& qos, std::uint64_t frames, std::uint64_t toDrop) {
    const std::uint64_t first = perMille(frames, 100);
    const std::uint64_t second = perMille(frames, 300);
    const QosState added{{{first}, {second}, {frames - first - second}}};
    for (std::size_t each = qos.size(); each-- > 0;) {
        const std::uint64_t dropped = std::min(toDrop, added[each].frames);
        qos[each].frames += added[each].frames;
        qos[each].dropped += dropped;
        toDrop -= dropped;
    }
}

void send(DispatcherState& state, std::uint64_t most, Draws& noise) {
    LastSecond& second = state.lastSecond;
    SocketState& sockets = state.sockets;
    const std::uint64_t offered =
        second.arrived - second.noBuffer - second.fragmentsOfKnown + second.reassembled;
    const std::uint64_t leaving = std::min(sockets.queued + offered, most);
    const std::uint64_t waiting = sockets.queued + offered - leaving;
    const std::uint64_t errors = second.noBuffer > 0 ? leaving / 100 : 0;
    sockets.queued = std::min(waiting, SocketState::queueLimit);
    second.qosDropped = waiting - sockets.queued;
    second.sent = leaving - errors;
    classify(state.qos, offered, second.qosDropped);
    const std::uint64_t bytes = second.sent * noise.next(480, 560);
    sockets.sent += second.sent;
    sockets.bytesSent += bytes;
    sockets.sendErrors += errors;
    sockets.sendsBlocked += sockets.queued > SocketState::queueLimit / 2 ? noise.next(10, 60) : 0;
    second.bytes += bytes;
}

}  // namespace

void PacketFlow::advance(DispatcherState& state, const ProfileLoad& load, bool stalled, Draws& noise) {
    LastSecond& second = state.lastSecond;
    const bool lacksDescriptors = state.pool.free() < fewDescriptors;
    second.arrived = perMille(perMille(capacity, load.own), noise.next(985, 1015));
    second.strangers = perMille(perMille(capacity, load.strangers), noise.next(900, 1100));
    second.noBuffer = lacksDescriptors ? perMille(second.arrived, noise.next(250, 350)) : 0;
    reassemble(state, lacksDescriptors, noise);
    receive(state.sockets, second, noise);
    const std::uint64_t share = stalled ? 100 : second.strangers > 0 ? 300 : 1000;
    send(state, perMille(capacity, share), noise);
}

/// Two fragments make a datagram. Those of strangers never do.
void PacketFlow::reassemble(DispatcherState& state, bool lacksDescriptors, Draws& noise) {
    ReassemblyState& reassembly = state.reassembly;
    LastSecond& second = state.lastSecond;
    const std::uint64_t begun = perMille(second.arrived, 40);
    const std::uint64_t withoutContext = lacksDescriptors ? begun / 2 : 0;
    const std::uint64_t opened = begun - withoutContext;
    const std::uint64_t strays = second.strangers / 1000;
    const std::uint64_t stillOpen = noise.next(0, 4);
    reassembly.timedOut += std::exchange(openOfStrangers, strays);
    second.reassembled = openOfKnown + opened - stillOpen;
    openOfKnown = stillOpen;
    reassembly.opened += opened + strays;
    reassembly.completed += second.reassembled;
    reassembly.noContext += withoutContext;
    reassembly.outOfWindow += withoutContext;  // their last fragments
    reassembly.duplicate += strays / 2;
    reassembly.overlapping += strays / 4;
    reassembly.bytes += second.reassembled * bytesOfReassembled;
    reassembly.highestInUse = std::max(reassembly.highestInUse, reassembly.inUse());
    second.fragmentsOfKnown = begun + second.reassembled + withoutContext;
    second.fragmentsOfStrangers = strays + strays / 2 + strays / 4;
}

}  // namespace Boardsim
