#pragma once

#include <string>

#include "BoardPaths.hpp"
#include "BoundedFile.hpp"
#include "Peer.hpp"
#include "PeerLog.hpp"
#include "RequestRecord.hpp"
#include "ServerSocket.hpp"

namespace Boardsim {

/// The board's system log: receives records at /dev/log and writes them to a file, one per line.
class SystemLogPeer : public Peer {
public:
    explicit SystemLogPeer(const std::string& path = "/dev/log",
                           const std::string& recordsPath = BoardPaths::systemLog);

    int descriptor() const override { return socket.descriptor(); }
    void serve() override;

private:
    BoundedFile file;
    ServerSocket socket;
    RequestRecord record{"system_log"};
    PeerLog log{"system_log"};
};

}  // namespace Boardsim
