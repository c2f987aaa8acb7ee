#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <sys/socket.h>

#include "UniqueFd.hpp"

namespace Boardsim {

/// The address of a client.
struct Sender {
    sockaddr_storage address{};
    socklen_t length = 0;  ///< 0: no address, so that no answer is possible
};

struct Datagram {
    std::string bytes;
    Sender sender;
};

/// A server's bound datagram socket. Owns its descriptor and its socket file, if it has one.
class ServerSocket {
public:
    /// Binds to the UNIX socket file `path` and makes it accessible to every user. Replaces a file that an
    /// earlier run left. Throws std::system_error.
    static ServerSocket atPath(const std::string& path);

    /// Binds to a UDP port of 127.0.0.1. Throws std::system_error.
    static ServerSocket atLocalPort(std::uint16_t port);

    /// Binds to a netlink port id of NETLINK_USERSOCK. Throws std::system_error.
    static ServerSocket atNetlinkPort(std::uint32_t portId);

    ServerSocket(const ServerSocket&) = delete;
    ServerSocket& operator=(const ServerSocket&) = delete;
    ServerSocket(ServerSocket&&) = default;
    ServerSocket& operator=(ServerSocket&&) = delete;
    ~ServerSocket();

    int descriptor() const { return socket.get(); }

    /// Waits for one datagram. Throws std::system_error.
    Datagram receive() const;

    /// Sends without waiting. Returns false if the receiver has exited or its queue is full.
    bool send(std::string_view bytes, const Sender& receiver) const;

    /// While connected, send() fails if a UDP receiver has closed its socket.
    void connect(const Sender& receiver) const;
    void disconnect() const;

private:
    ServerSocket(int family, int protocol, const sockaddr* address, socklen_t length, std::string path,
                 const std::string& what);

    Base::UniqueFd socket;
    std::string file;  // empty if the address is not a path
};

}  // namespace Boardsim
