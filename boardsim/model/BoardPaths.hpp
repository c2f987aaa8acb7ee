#pragma once

#include <string>
#include <string_view>

/// The simulated board's own files, beside those that HostBoard names. Tools of the board do not know
/// them; people and tests do.
namespace Boardsim::BoardPaths {

constexpr const char* scenario = "/run/boardsim/scenario.toml";
/// Copy of the file given with --config, before it is installed.
constexpr const char* config = "/run/boardsim/fpdispatcher.conf";
/// What the board's processes sent to /dev/log, a record a line.
constexpr const char* systemLog = "/run/boardsim/system.log";
/// The program under the name of the sandbox's first process.
constexpr const char* init = "/run/boardsim/init";
/// One file a peer: what it received and answered, for people.
constexpr const char* logDir = "/run/boardsim/log";
/// One file a peer: what it received, byte for byte.
constexpr const char* receivedDir = "/run/boardsim/received";
/// One file a peer: the status in its heartbeats, a number that people may change.
constexpr const char* heartbeatDir = "/run/boardsim/heartbeat";
/// The program under each peer's name.
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
