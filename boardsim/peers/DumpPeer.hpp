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

/// The dump that a NetFP process writes when it gets SIGUSR1: DIRECTORY/NAME.log, in several pieces with
/// a pause between them, from the line "<NAME_dump>" to the line "</NAME_dump>".
class DumpPeer : public Peer {
public:
    /// `describeState` is asked at each signal for what stands between first and last line. Blocks SIGUSR1
    /// in the calling thread; no other thread of the process may leave it unblocked.
    DumpPeer(std::string processName, std::function<std::string()> describeState, Fault misbehaviour = {},
             const std::string& directory = "/tmp");

    /// The faults that the constructor takes.
    static std::vector<FaultKind> faultKinds();

    int descriptor() const override { return signals.get(); }
    void serve() override;

private:
    struct Acts;
    using Act = void (DumpPeer::*)() const;
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
    Act act;
    std::string path;
    Base::UniqueFd signals;
    RequestRecord record;
    PeerLog log;
};

}  // namespace Boardsim
