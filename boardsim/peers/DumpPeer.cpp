#include "DumpPeer.hpp"

#include <array>
#include <chrono>
#include <csignal>
#include <string_view>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

#include "FaultHandlers.hpp"
#include "SignalDescriptor.hpp"
#include "SystemCall.hpp"

namespace Boardsim {
namespace {

constexpr int usualPauseMs = 5;
constexpr std::size_t bodyPieces = 4;

}  // namespace

struct DumpPeer::Handlers {
    static constexpr std::array rows{
        FaultHandler<Handler>{{}, &DumpPeer::writeWhole},
        FaultHandler<Handler>{{"silent", "writes no dump"}, &DumpPeer::writeNothing},
        FaultHandler<Handler>{
            {"slow", "waits MS milliseconds before each of at most six pieces", "MS", 0, longestDelayMs},
            &DumpPeer::writeSlowly},
        FaultHandler<Handler>{{"dying", "dies in the middle of the dump"}, &DumpPeer::dieHalfway},
        FaultHandler<Handler>{{"unended", "leaves out the last line"}, &DumpPeer::writeUnended},
        FaultHandler<Handler>{{"short", "writes only the first and the last line, less than 64 bytes"},
                              &DumpPeer::writeShort},
    };
};

DumpPeer::DumpPeer(std::string processName, std::function<std::string()> describeState, Fault misbehaviour,
                   const std::string& directory)
    : name(std::move(processName)),
      state(std::move(describeState)),
      fault(std::move(misbehaviour)),
      handler(findHandler<Handler>(Handlers::rows, fault)),
      path(directory + "/" + name + ".log"),
      signals(openSignalDescriptor({SIGUSR1})),
      record(name),
      log(name, fault) {
}

std::vector<FaultKind> DumpPeer::faultKinds() {
    return kindsOf<Handler>(Handlers::rows);
}

void DumpPeer::serve() {
    readSignal(signals);
    record.addLine("SIGUSR1");
    log.received("SIGUSR1");
    (this->*handler)();
}

DumpPeer::Pieces DumpPeer::wholeDump() const {
    Pieces pieces{"<" + name + "_dump>\n"};
    const std::string body = state();
    const std::size_t size = body.size() / bodyPieces + 1;
    for (std::size_t start = 0; start < body.size(); start += size) {
        pieces.push_back(body.substr(start, size));
    }
    pieces.push_back("</" + name + "_dump>\n");
    return pieces;
}

void DumpPeer::writePieces(const Pieces& pieces, int pauseMs) const {
    constexpr mode_t mode = 0644;
    const Base::UniqueFd file(Base::checked(
        ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode), "cannot write " + path));
    std::size_t size = 0;
    for (const std::string& piece : pieces) {
        std::this_thread::sleep_for(std::chrono::milliseconds(pauseMs));
        const auto written = ::write(file.get(), piece.data(), piece.size());
        if (written < 0) {
            break;  // on a full disk the dump is incomplete, as on a board
        }
        size += static_cast<std::size_t>(written);
    }
    log.answered("dump in " + path, size);
}

void DumpPeer::writeWhole() const {
    writePieces(wholeDump(), usualPauseMs);
}

void DumpPeer::writeNothing() const {
    log.note("no dump");
}

void DumpPeer::writeSlowly() const {
    writePieces(wholeDump(), fault.number);
}

void DumpPeer::dieHalfway() const {
    Pieces pieces = wholeDump();
    pieces.resize(pieces.size() / 2);
    writePieces(pieces, usualPauseMs);
    log.note("it dies");
    throw PeerDeath();
}

void DumpPeer::writeUnended() const {
    Pieces pieces = wholeDump();
    pieces.pop_back();
    writePieces(pieces, usualPauseMs);
}

void DumpPeer::writeShort() const {
    const Pieces pieces = wholeDump();
    writePieces({pieces.front(), pieces.back()}, usualPauseMs);
}

}  // namespace Boardsim
