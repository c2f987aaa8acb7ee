#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Boardsim {
class PeerThread;
class ServerSocket;
}  // namespace Boardsim

/// A server that answers each datagram as it was told beforehand, on a thread of its own, and keeps what
/// it received. Silent until told what to answer.
class ScriptedPeer {
public:
    /// Sends one datagram to the client without waiting. False where the client is gone or has no room.
    using Reply = std::function<bool(std::string_view bytes)>;

    /// What to do with a request; runs on the peer's thread and must come to an end.
    using Answer = std::function<void(const std::string& request, const Reply& reply)>;

    /// Servers at a UNIX socket's path, at a UDP port of 127.0.0.1, and at a netlink port id of the
    /// user-socket protocol.
    static ScriptedPeer atPath(const std::string& path);
    static ScriptedPeer atLocalPort(std::uint16_t port);
    static ScriptedPeer atNetlinkPort(std::uint32_t portId);

    ScriptedPeer(const ScriptedPeer&) = delete;
    ScriptedPeer& operator=(const ScriptedPeer&) = delete;
    ScriptedPeer(ScriptedPeer&&) = delete;
    ScriptedPeer& operator=(ScriptedPeer&&) = delete;
    ~ScriptedPeer();

    /// Holds for requests that arrive from now on.
    void answers(Answer answer);

    /// The bytes of each request so far.
    std::vector<std::string> requests() const;

    /// The same, once there are `count` at least.
    std::vector<std::string> awaitRequests(std::size_t count) const;

private:
    class Script;
    class Service;

    explicit ScriptedPeer(Boardsim::ServerSocket socket);

    std::shared_ptr<Script> script;  // shared with the peer's thread
    std::unique_ptr<Boardsim::PeerThread> thread;
};
