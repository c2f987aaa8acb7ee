#include "PeerLogContent.hpp"

#include <array>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <utility>

#include "TextFile.hpp"
#include "UtcText.hpp"

namespace Boardsim {
namespace {

constexpr std::size_t textOffset = peerLogStampLength + 4;
constexpr const char* dropSummaryFormat =
    "%" SCNu64 " lines before these were dropped: %" SCNu64 " received, %" SCNu64 " answered";

std::string stampOf(std::chrono::system_clock::time_point moment) {
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(moment.time_since_epoch());
    std::array<char, 16> fraction{};
    std::snprintf(fraction.data(), fraction.size(), ".%03dZ", static_cast<int>(milliseconds.count() % 1000));
    return utcText(std::chrono::floor<std::chrono::seconds>(milliseconds).count()) + fraction.data();
}

bool takeDropSummary(const std::string& line, PeerLogContent& content) {
    PeerLogContent counts;
    const bool found =
        line.size() > textOffset && std::sscanf(line.c_str() + textOffset, dropSummaryFormat, &counts.dropped,
                                                &counts.received, &counts.answered) == 3;
    if (found) {
        content = counts;
    }
    return found;
}

/// The arrow after the time stamp; empty if the line is not a log line.
std::string_view directionOf(std::string_view line) {
    return line.size() < textOffset ? "" : line.substr(peerLogStampLength + 1, 2);
}

void takeLine(const std::string& line, PeerLogContent& content) {
    const std::string_view direction = directionOf(line);
    content.received += direction == "<-" ? 1U : 0U;
    content.answered += direction == "->" ? 1U : 0U;
    content.lines.push_back(line);
}

}  // namespace

PeerLogContent parsePeerLog(std::string_view text) {
    PeerLogContent content;
    bool first = true;
    for (const std::string& line : linesOf(std::string(text))) {
        const bool isDropSummary = std::exchange(first, false) && takeDropSummary(line, content);
        if (!isDropSummary && !directionOf(line).empty()) {
            takeLine(line, content);
        }
    }
    return content;
}

std::string peerLogDropSummary(std::string_view dropped) {
    const PeerLogContent content = parsePeerLog(dropped);
    std::array<char, 160> text{};
    std::snprintf(text.data(), text.size(), dropSummaryFormat,
                  static_cast<std::uint64_t>(content.dropped + content.lines.size()), content.received,
                  content.answered);
    return peerLogLine("--", text.data());
}

std::string peerLogLine(std::string_view direction, std::string_view text) {
    return stampOf(std::chrono::system_clock::now()) + " " + std::string(direction) + " " + std::string(text);
}

}  // namespace Boardsim
