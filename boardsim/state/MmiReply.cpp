#include "MmiReply.hpp"

#include <algorithm>
#include <array>
#include <span>

#include "CounterText.hpp"
#include "TextFile.hpp"

namespace Boardsim {
namespace {

constexpr std::size_t datagramLimit = 512;

constexpr std::array<std::string_view, 14> socketInfo{
    "sockets open",          "sockets in use",       "sockets listening", "control socket descriptor",
    "user plane descriptor", "receive queue length", "send queue length", "receive buffer size",
    "send buffer size",      "address family",       "GTP-U port",        "peers resolved",
    "peers unresolved",      "last error number",
};
constexpr std::array<std::string_view, 16> socketCounters{
    "datagrams received", "datagrams sent",      "bytes received",         "bytes sent",
    "receive errors",     "send errors",         "would block on receive", "would block on send",
    "too long, dropped",  "too short, dropped",  "unknown peer, dropped",  "no buffer, dropped",
    "checksum errors",    "fragments passed on", "polls with data",        "polls without data",
};
constexpr std::array<std::string_view, 13> reassemblyCounters{
    "fragments received",    "first fragments",     "last fragments",          "contexts opened",
    "contexts completed",    "contexts timed out",  "contexts in use",         "contexts in use, highest",
    "overlapping fragments", "duplicate fragments", "fragments out of window", "no context left",
    "bytes reassembled",
};
constexpr std::array<std::string_view, 15> heapCounters{
    "bytes in all",
    "bytes in use",
    "bytes in use, highest",
    "bytes free",
    "largest free block",
    "smallest free block",
    "blocks in use",
    "blocks free",
    "allocations",
    "releases",
    "failed allocations",
    "shared blocks",
    "descriptor pool free",
    "descriptor pool in use",
    "descriptor pool lowest",
};

struct MmiCommand {
    std::string_view name;
    std::string_view title;
    std::span<const std::string_view> counters;
};

constexpr std::array commands{
    MmiCommand{"SocketSvcInfo", "socket service", socketInfo},
    MmiCommand{"SocketSvcCounters", "socket service counters", socketCounters},
    MmiCommand{"ReassemblyCounters", "reassembly counters", reassemblyCounters},
    MmiCommand{"HeapStats", "heap statistics", heapCounters},
};

}  // namespace

std::string mmiReplyText(std::string_view instance, const std::string& command) {
    const auto* row = std::ranges::find(commands, std::string_view(command), &MmiCommand::name);
    if (row == commands.end()) {
        return "Unknown command: " + command + "\n";
    }
    return counterText(std::string(instance) + ": " + std::string(row->title), row->counters);
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
