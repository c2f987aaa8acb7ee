#pragma once

#include <string>
#include <string_view>

/// Paths that only the simulated board has. Those that it shares with the stand-in libraries are in
/// HostBoard.hpp.
namespace Boardsim::BoardPaths {

constexpr const char* scenario = "/run/boardsim/scenario.toml";
/// Copy of the --config file, before the board installs it.
constexpr const char* config = "/run/boardsim/fpdispatcher.conf";
/// The records that processes sent to /dev/log, one per line.
constexpr const char* systemLog = "/run/boardsim/system.log";
/// When the board's traffic began, on the monotonic clock.
constexpr const char* trafficStart = "/run/boardsim/traffic_start";
/// Link to boardsim: the name makes it the sandbox's first process.
constexpr const char* init = "/run/boardsim/init";
/// Link to boardsim: the name makes it the board's SSH server.
constexpr const char* sshServer = "/run/boardsim/ssh_server";
/// The board's private key for SSH, as its user gave it.
constexpr const char* hostKey = "/run/boardsim/host_key";
/// Where the SSH server keeps its own keys.
constexpr const char* serverKeys = "/etc/dropbear";
/// One log file per peer, for people.
constexpr const char* logDir = "/run/boardsim/log";
/// One file per peer with every byte that it received.
constexpr const char* receivedDir = "/run/boardsim/received";
/// One file per peer with the status that its heartbeats carry. People may change it.
constexpr const char* heartbeatDir = "/run/boardsim/heartbeat";
/// One link to boardsim per peer: the name makes it that peer.
constexpr const char* peersDir = "/run/boardsim/peers";

inline std::string logFile(std::string_view peer) {
    return std::string(logDir) + "/" + std::string(peer);
}
inline std::string receivedFile(std::string_view peer) {
    return std::string(receivedDir) + "/" + std::string(peer);
}
inline std::string heartbeatFile(std::string_view peer) {
    return std::string(heartbeatDir) + "/" + std::string(peer);
}
inline std::string peerProgram(std::string_view peer) {
    return std::string(peersDir) + "/" + std::string(peer);
}

}  // namespace Boardsim::BoardPaths
