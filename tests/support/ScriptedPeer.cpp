#include "ScriptedPeer.hpp"

#include <condition_variable>
#include <mutex>
#include <utility>

#include "Peer.hpp"
#include "PeerThread.hpp"
#include "ServerSocket.hpp"

using Boardsim::Datagram;
using Boardsim::Peer;
using Boardsim::PeerThread;
using Boardsim::ServerSocket;

/// The state that both threads share.
class ScriptedPeer::Script {
public:
    void tell(Answer next) {
        const std::lock_guard lock(mutex);
        answer = std::move(next);
    }

    /// Records the request and returns its answer.
    Answer take(const std::string& request) {
        const std::lock_guard lock(mutex);
        received.push_back(request);
        changed.notify_all();
        return answer;
    }

    std::vector<std::string> awaitRequests(std::size_t count) const {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return received.size() >= count; });
        return received;
    }

private:
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    Answer answer = [](const std::string& /*request*/, const Reply& /*reply*/) {};
    std::vector<std::string> received;
};

class ScriptedPeer::Service : public Peer {
public:
    Service(std::shared_ptr<Script> told, ServerSocket bound)
        : script(std::move(told)), socket(std::move(bound)) {}

    int descriptor() const override { return socket.descriptor(); }

    void serve() override {
        const Datagram request = socket.receive();
        script->take(request.bytes)(
            request.bytes, [&](std::string_view bytes) { return socket.send(bytes, request.sender); });
    }

private:
    std::shared_ptr<Script> script;
    ServerSocket socket;
};

ScriptedPeer::ScriptedPeer(ServerSocket socket)
    : script(std::make_shared<Script>()),
      thread(std::make_unique<PeerThread>(std::make_unique<Service>(script, std::move(socket)))) {
}

ScriptedPeer::~ScriptedPeer() = default;

ScriptedPeer ScriptedPeer::atPath(const std::string& path) {
    return ScriptedPeer(ServerSocket::atPath(path));
}

ScriptedPeer ScriptedPeer::atLocalPort(std::uint16_t port) {
    return ScriptedPeer(ServerSocket::atLocalPort(port));
}

ScriptedPeer ScriptedPeer::atNetlinkPort(std::uint32_t portId) {
    return ScriptedPeer(ServerSocket::atNetlinkPort(portId));
}

void ScriptedPeer::answers(Answer answer) {
    script->tell(std::move(answer));
}

std::vector<std::string> ScriptedPeer::requests() const {
    return awaitRequests(0);
}

std::vector<std::string> ScriptedPeer::awaitRequests(std::size_t count) const {
    return script->awaitRequests(count);
}
