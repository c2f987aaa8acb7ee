#pragma once

#include <string>

#include "BoardPaths.hpp"
#include "DatagramSocket.hpp"
#include "Peer.hpp"
#include "RequestRecord.hpp"
#include "UniqueFd.hpp"

/// The board's system log: takes records from /dev/log and keeps them in a file, one a line.
class SystemLogPeer : public Peer {
public:
    explicit SystemLogPeer(const std::string& path = "/dev/log",
                           const std::string& file = BoardPaths::systemLog);

    int descriptor() const override { return socket.descriptor(); }
    void serve() override;

private:
    UniqueFd log;
    DatagramSocket socket;
    RequestRecord record{"system_log"};
};
