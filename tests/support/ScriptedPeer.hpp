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

/// A server with scripted answers on a thread of its own. It records each datagram that it receives. Without
/// a script it is silent.
class ScriptedPeer {
public:
    /// Sends one datagram to the client without waiting. False if the client is gone or its queue is full.
    using Reply = std::function<bool(std::string_view bytes)>;

    /// Handles a request. Runs on the peer's thread and must end.
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

    /// Applies to requests that arrive from now on.
    void answers(Answer answer);

    /// The bytes of each request so far.
    std::vector<std::string> requests() const;

    /// The same. Waits until there are at least `count`.
    std::vector<std::string> awaitRequests(std::size_t count) const;

private:
    class Script;
    class Service;

    explicit ScriptedPeer(Boardsim::ServerSocket socket);

    std::shared_ptr<Script> script;  // shared with the peer's thread
    std::unique_ptr<Boardsim::PeerThread> thread;
};
