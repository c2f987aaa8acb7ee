#include "MmiReply.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include <sys/socket.h>

#include "CounterText.hpp"
#include "TextFile.hpp"

namespace Boardsim {
namespace {

constexpr std::size_t datagramLimit = 512;

using State = DispatcherState;
using Row = Counter<State>;

constexpr std::array socketInfo{
    Row{"sockets open", [](const State&) { return SocketState::opened; }},
    Row{"sockets in use", [](const State& s) { return s.sockets.inUse; }},
    Row{"sockets listening", [](const State&) { return SocketState::listening; }},
    Row{"control socket descriptor", [](const State&) { return std::uint64_t{7}; }},
    Row{"user plane descriptor", [](const State&) { return std::uint64_t{9}; }},
    Row{"receive queue length", [](const State& s) { return s.sockets.backlog; }},
    Row{"send queue length", [](const State& s) { return s.sockets.queued; }},
    Row{"receive buffer size", [](const State&) { return std::uint64_t{1} << 20; }},
    Row{"send buffer size", [](const State&) { return std::uint64_t{1} << 19; }},
    Row{"address family", [](const State&) { return std::uint64_t{AF_INET}; }},
    Row{"GTP-U port", [](const State&) { return std::uint64_t{2152}; }},
    Row{"peers resolved", [](const State& s) { return s.sockets.resolvedPeers; }},
    Row{"peers unresolved", [](const State& s) { return SocketState::peers - s.sockets.resolvedPeers; }},
    Row{"last error number", [](const State& s) { return s.sockets.lastError; }},
};
constexpr std::array socketCounters{
    Row{"datagrams received", [](const State& s) { return s.sockets.received; }},
    Row{"datagrams sent", [](const State& s) { return s.sockets.sent; }},
    Row{"bytes received", [](const State& s) { return s.sockets.bytesReceived; }},
    Row{"bytes sent", [](const State& s) { return s.sockets.bytesSent; }},
    Row{"receive errors", [](const State& s) { return s.sockets.receiveErrors; }},
    Row{"send errors", [](const State& s) { return s.sockets.sendErrors; }},
    Row{"would block on receive", [](const State& s) { return s.sockets.receivesBlocked; }},
    Row{"would block on send", [](const State& s) { return s.sockets.sendsBlocked; }},
    Row{"too long, dropped", [](const State& s) { return s.sockets.tooLong; }},
    Row{"too short, dropped", [](const State& s) { return s.sockets.tooShort; }},
    Row{"unknown peer, dropped", [](const State& s) { return s.sockets.unknownPeer; }},
    Row{"no buffer, dropped", [](const State& s) { return s.sockets.noBuffer; }},
    Row{"checksum errors", [](const State& s) { return s.sockets.badChecksum; }},
    Row{"fragments passed on", [](const State& s) { return s.sockets.fragments; }},
    Row{"polls with data", [](const State& s) { return s.cpu.busyLoops; }},
    Row{"polls without data", [](const State& s) { return s.cpu.loops - s.cpu.busyLoops; }},
};
constexpr std::array reassemblyCounters{
    Row{"fragments received", [](const State& s) { return s.sockets.fragments; }},
    Row{"first fragments", [](const State& s) { return s.reassembly.firstFragments(); }},
    Row{"last fragments", [](const State& s) { return s.reassembly.completed; }},
    Row{"contexts opened", [](const State& s) { return s.reassembly.opened; }},
    Row{"contexts completed", [](const State& s) { return s.reassembly.completed; }},
    Row{"contexts timed out", [](const State& s) { return s.reassembly.timedOut; }},
    Row{"contexts in use", [](const State& s) { return s.reassembly.inUse(); }},
    Row{"contexts in use, highest", [](const State& s) { return s.reassembly.highestInUse; }},
    Row{"overlapping fragments", [](const State& s) { return s.reassembly.overlapping; }},
    Row{"duplicate fragments", [](const State& s) { return s.reassembly.duplicate; }},
    Row{"fragments out of window", [](const State& s) { return s.reassembly.outOfWindow; }},
    Row{"no context left", [](const State& s) { return s.reassembly.noContext; }},
    Row{"bytes reassembled", [](const State& s) { return s.reassembly.bytes; }},
};
constexpr std::array heapCounters{
    Row{"bytes in all", [](const State&) { return HeapState::bytes; }},
    Row{"bytes in use", [](const State& s) { return s.heap.inUse(); }},
    Row{"bytes in use, highest", [](const State& s) { return s.heap.highestInUse; }},
    Row{"bytes free", [](const State& s) { return s.heap.free(); }},
    Row{"largest free block", [](const State& s) { return s.heap.largestFree; }},
    Row{"smallest free block", [](const State& s) { return s.heap.smallestFree; }},
    Row{"blocks in use", [](const State& s) { return s.heap.blocks(); }},
    Row{"blocks free", [](const State& s) { return s.heap.freeBlocks; }},
    Row{"allocations", [](const State& s) { return s.heap.allocations; }},
    Row{"releases", [](const State& s) { return s.heap.releases; }},
    Row{"failed allocations", [](const State& s) { return s.heap.failed; }},
    Row{"shared blocks", [](const State& s) { return s.heap.blocks() / 8; }},
    Row{"descriptor pool free", [](const State& s) { return s.pool.free(); }},
    Row{"descriptor pool in use", [](const State& s) { return s.pool.inUse; }},
    Row{"descriptor pool lowest", [](const State& s) { return s.pool.lowestFree; }},
};

struct MmiCommand {
    std::string_view name;
    std::string_view title;
    std::span<const Row> counters;
};

constexpr std::array commands{
    MmiCommand{"SocketSvcInfo", "socket service", socketInfo},
    MmiCommand{"SocketSvcCounters", "socket service counters", socketCounters},
    MmiCommand{"ReassemblyCounters", "reassembly counters", reassemblyCounters},
    MmiCommand{"HeapStats", "heap statistics", heapCounters},
};

}  // namespace

std::string mmiReplyText(std::string_view instance, const std::string& command,
                         const DispatcherState* state) {
    const auto* row = std::ranges::find(commands, std::string_view(command), &MmiCommand::name);
    if (row == commands.end()) {
        return "Unknown command: " + command + "\n";
    }
    return counterText(std::string(instance) + ": " + std::string(row->title),
                       counterValues(row->counters, state));
}

std::vector<std::string> mmiDatagrams(const std::string& text) {
    std::vector<std::string> datagrams{""};
    for (const std::string& line : linesOf(text)) {
        const std::string whole = line.substr(0, datagramLimit - 1) + "\n";
        if (datagrams.back().size() + whole.size() > datagramLimit) {
            datagrams.emplace_back();
        }
        datagrams.back() += whole;
    }
    return datagrams;
}

}  // namespace Boardsim
