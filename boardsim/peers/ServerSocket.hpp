#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <sys/socket.h>

#include "UniqueFd.hpp"

namespace Boardsim {

/// Where a datagram came from and an answer goes to.
struct Sender {
    sockaddr_storage address{};
    socklen_t length = 0;  ///< 0: the sender has no address and cannot be answered
};

struct Datagram {
    std::string bytes;
    Sender sender;
};

/// A server's bound datagram socket. Owns its descriptor and, where it has one, its socket file; both are
/// gone when the object is.
class ServerSocket {
public:
    /// Bound to the UNIX socket file `path`, in place of a file that an earlier run left behind and open
    /// to every user. Throws std::system_error.
    static ServerSocket atPath(const std::string& path);

    /// Bound to a UDP port of 127.0.0.1. Throws std::system_error.
    static ServerSocket atLocalPort(std::uint16_t port);

    /// Bound to a netlink port id of the user-socket protocol. Throws std::system_error.
    static ServerSocket atNetlinkPort(std::uint32_t portId);

    ServerSocket(const ServerSocket&) = delete;
    ServerSocket& operator=(const ServerSocket&) = delete;
    ServerSocket(ServerSocket&&) = default;
    ServerSocket& operator=(ServerSocket&&) = delete;
    ~ServerSocket();

    int descriptor() const { return socket.get(); }

    /// Waits for one datagram and takes it whole. Throws std::system_error.
    Datagram receive() const;

    /// Sends without waiting. False where the receiver is gone or its queue is full.
    bool send(std::string_view bytes, const Sender& receiver) const;

    /// From now on (until `disconnect`), a UDP receiver that is gone makes send() fail.
    void connect(const Sender& receiver) const;
    void disconnect() const;

private:
    ServerSocket(int family, int protocol, const sockaddr* address, socklen_t length, std::string path,
                 const std::string& what);

    Base::UniqueFd socket;
    std::string file;  // empty where the address is no path
};

}  // namespace Boardsim
