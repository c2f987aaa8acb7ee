#include "PeerLog.hpp"

#include <cstdint>

#include "BoardPaths.hpp"
#include "PeerLogContent.hpp"
#include "PrintableText.hpp"

namespace Boardsim {
namespace {

constexpr std::uint64_t peerLogLimit = 256U << 10;

std::string remarkOf(std::string_view size, std::string_view fault) {
    const std::string_view comma = size.empty() || fault.empty() ? "" : ", ";
    const std::string remark = std::string(size) + std::string(comma) + std::string(fault);
    return remark.empty() ? "" : " (" + remark + ")";
}

std::string sizeText(std::size_t bytes) {
    return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
}

}  // namespace

PeerLog::PeerLog(std::string_view peer, const Fault& misbehaviour)
    : fault(misbehaviour.kind.empty() ? "" : "fault " + misbehaviour.text),
      file(BoardPaths::logFile(peer), peerLogLimit, peerLogDropSummary) {
}

void PeerLog::received(std::string_view what, std::size_t bytes) const {
    add("<-", what, remarkOf(sizeText(bytes), ""));
}

void PeerLog::received(std::string_view what) const {
    add("<-", what, "");
}

void PeerLog::answered(std::string_view what, std::size_t bytes) const {
    add("->", what, remarkOf(sizeText(bytes), fault));
}

void PeerLog::note(std::string_view what) const {
    add("--", what, remarkOf("", fault));
}

void PeerLog::add(std::string_view direction, std::string_view what, const std::string& remark) const {
    file.addLine(peerLogLine(direction, printable(what) + remark));
}

}  // namespace Boardsim
