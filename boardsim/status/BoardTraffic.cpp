#include "BoardTraffic.hpp"

#include <algorithm>
#include <utility>

#include "BoardPaths.hpp"
#include "PeerCatalog.hpp"
#include "PrintableText.hpp"

namespace Boardsim {
namespace {

constexpr std::size_t nameWidth = 16;

/// Limits for an untrusted log and its lines. Peers write less.
constexpr std::size_t readableLog = std::size_t{1} << 20;
constexpr std::size_t readableLine = 1024;

std::string withName(const std::string& line, std::string_view peer) {
    std::string name(peer);
    name.resize(nameWidth, ' ');
    return line.substr(0, peerLogStampLength) + "  " + name + line.substr(peerLogStampLength + 1);
}

}  // namespace

PeerLogContent readPeerLog(const RunningBoard& board, std::string_view peer) {
    const std::string path = BoardPaths::logFile(peer);
    PeerLogContent content = parsePeerLog(board.files().read(path, readableLog).value_or(""));
    for (std::string& line : content.lines) {
        line = printable(line, readableLine);
    }
    return content;
}

std::vector<std::string> BoardTraffic::next(const RunningBoard& board) {
    std::vector<std::string> lines;
    for (const PeerEntry& peer : peerCatalog()) {
        for (const std::string& line : newLines(board, peer.name)) {
            lines.push_back(withName(line, peer.name));
        }
    }
    std::ranges::stable_sort(lines, {}, [](const std::string& line) {
        return std::string_view(line).substr(0, peerLogStampLength);
    });
    return lines;
}

std::vector<std::string> BoardTraffic::newLines(const RunningBoard& board, std::string_view peer) {
    Seen& known = seen[std::string(peer)];
    try {
        const auto size = board.files().size(BoardPaths::logFile(peer));
        if (!size || *size == known.size) {
            return {};
        }
        PeerLogContent content = readPeerLog(board, peer);
        const std::uint64_t passed = std::max(known.lines, content.dropped) - content.dropped;
        known = {*size, content.dropped + content.lines.size()};
        const auto old = std::min<std::uint64_t>(passed, content.lines.size());  // may have been cut
        content.lines.erase(content.lines.begin(), content.lines.begin() + static_cast<std::ptrdiff_t>(old));
        return std::move(content.lines);
    } catch (const UnreadableFile&) {
        return {};
    }
}

}  // namespace Boardsim
