#include "BoardTraffic.hpp"

#include <algorithm>
#include <filesystem>
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
        for (const std::string& line : newLines(board, peer.name)) {
            news.push_back(withName(line, peer.name));
        }
    }
    std::ranges::stable_sort(news, {}, [](const std::string& line) {
        return std::string_view(line).substr(0, peerLogStampLength);
    });
    return news;
}

std::vector<std::string> BoardTraffic::newLines(const RunningBoard& board, std::string_view peer) {
    std::error_code missing;
    const std::uintmax_t size = std::filesystem::file_size(board.pathTo(BoardPaths::logFile(peer)), missing);
    Seen& known = seen[std::string(peer)];
    if (missing || size == known.size) {
        return {};
    }
    PeerLogContent content = readPeerLog(board, peer);
    const std::uint64_t passed = std::max(known.lines, content.dropped) - content.dropped;
    known = {size, content.dropped + content.lines.size()};
    content.lines.erase(content.lines.begin(), content.lines.begin() + static_cast<std::ptrdiff_t>(passed));
    return std::move(content.lines);
}
