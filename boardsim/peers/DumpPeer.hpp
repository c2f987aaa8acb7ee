#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Fault.hpp"
#include "Peer.hpp"
#include "PeerLog.hpp"
#include "RequestRecord.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

/// Writes the dump of a NetFP process on SIGUSR1. The file DIRECTORY/NAME.log starts with the line
/// "<NAME_dump>" and ends with "</NAME_dump>". It is written in several pieces, with a pause between them.
class DumpPeer : public Peer {
public:
    /// Each signal calls `describeState` for the lines between the first and the last. Blocks SIGUSR1 in the
    /// calling thread; no other thread of the process may leave it unblocked.
    DumpPeer(std::string processName, std::function<std::string()> describeState, Fault misbehaviour = {},
             const std::string& directory = "/tmp");

    static std::vector<FaultKind> faultKinds();

    int descriptor() const override { return signals.get(); }
    void serve() override;

private:
    struct Handlers;
    using Handler = void (DumpPeer::*)() const;
    using Pieces = std::vector<std::string>;

    Pieces wholeDump() const;
    void writePieces(const Pieces& pieces, int pauseMs) const;

    void writeWhole() const;
    void writeNothing() const;
    void writeSlowly() const;
    void dieHalfway() const;
    void writeUnended() const;
    void writeShort() const;

    std::string name;
    std::function<std::string()> state;
    Fault fault;
    Handler handler;
    std::string path;
    Base::UniqueFd signals;
    RequestRecord record;
    PeerLog log;
};

}  // namespace Boardsim
