#include "BoardTraffic.hpp"

#include <algorithm>
#include <cstdio>
#include <system_error>
#include <utility>

#include "BoardPaths.hpp"
#include "PeerCatalog.hpp"
#include "TextFile.hpp"

namespace {

constexpr std::size_t nameWidth = 16;

std::string withName(const std::string& line, std::string_view peer) {
    std::string name(peer);
    name.resize(nameWidth, ' ');
    return line.substr(0, peerLogStampLength) + "  " + name + line.substr(peerLogStampLength + 1);
}

}  // namespace

PeerLogContent readPeerLog(const RunningBoard& board, std::string_view peer) {
    try {
        return parsePeerLog(readTextFile(board.pathTo(BoardPaths::logFile(peer))));
    } catch (const std::system_error&) {
        return {};  // a board that has no such peer, or has just begun
    }
}

std::vector<std::string> BoardTraffic::next(const RunningBoard& board) {
    std::vector<std::string> news;
    for (const PeerEntry& peer : peerCatalog()) {
        const PeerLogContent content = readPeerLog(board, peer.name);
        std::uint64_t& known = seen[std::string(peer.name)];
        const std::uint64_t passed = std::max(known, content.dropped) - content.dropped;
        for (std::size_t i = passed; i < content.lines.size(); ++i) {
            news.push_back(withName(content.lines[i], peer.name));
        }
        known = std::max(known, content.dropped + content.lines.size());
    }
    std::ranges::stable_sort(news, {}, [](const std::string& line) {
        return std::string_view(line).substr(0, peerLogStampLength);
    });
    return news;
}
