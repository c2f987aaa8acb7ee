#include "ServerSocket.hpp"

#include <array>
#include <cstring>
#include <stdexcept>

#include <arpa/inet.h>
#include <linux/netlink.h>
#include <netinet/in.h>
#include <sys/stat.h>
#include <sys/un.h>

#include "SocketAddress.hpp"
#include "SystemCall.hpp"

namespace Boardsim {

ServerSocket::ServerSocket(int family, int protocol, const sockaddr* address, socklen_t length,
                           std::string path, const std::string& what)
    : socket(Base::checked(::socket(family, SOCK_DGRAM | SOCK_CLOEXEC, protocol), "socket")),
      file(std::move(path)) {
    Base::checked(::bind(socket.get(), address, length), what);
}

ServerSocket ServerSocket::atPath(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        throw std::length_error("socket path too long: " + path);
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    ::unlink(path.c_str());
    ServerSocket bound(AF_UNIX, 0, Base::genericAddress(address), sizeof address, path,
                       "cannot bind " + path);
    constexpr mode_t everyone = 0666;
    Base::checked(::chmod(path.c_str(), everyone), "chmod " + path);
    return bound;
}

ServerSocket ServerSocket::atLocalPort(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return {AF_INET,        0,  Base::genericAddress(address),
            sizeof address, {}, "cannot bind UDP port " + std::to_string(port)};
}

ServerSocket ServerSocket::atNetlinkPort(std::uint32_t portId) {
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_pid = portId;
    return {AF_NETLINK,
            NETLINK_USERSOCK,
            Base::genericAddress(address),
            sizeof address,
            {},
            "cannot bind netlink port id " + std::to_string(portId)};
}

ServerSocket::~ServerSocket() {
    if (socket.get() >= 0 && !file.empty()) {
        ::unlink(file.c_str());
    }
}

Datagram ServerSocket::receive() const {
    std::array<char, 65536> buffer{};
    Sender sender;
    sender.length = sizeof sender.address;
    const auto count =
        Base::checked(Base::uninterrupted([&] {
                          return ::recvfrom(socket.get(), buffer.data(), buffer.size(), 0,
                                            reinterpret_cast<sockaddr*>(&sender.address), &sender.length);
                      }),
                      "recvfrom");
    return {std::string(buffer.data(), static_cast<std::size_t>(count)), sender};
}

bool ServerSocket::send(std::string_view bytes, const Sender& receiver) const {
    return ::sendto(socket.get(), bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                    Base::genericAddress(receiver.address), receiver.length) >= 0;
}

void ServerSocket::connect(const Sender& receiver) const {
    Base::checked(::connect(socket.get(), Base::genericAddress(receiver.address), receiver.length),
                  "connect");
}

void ServerSocket::disconnect() const {
    sockaddr nobody{};
    nobody.sa_family = AF_UNSPEC;
    Base::checked(::connect(socket.get(), &nobody, sizeof nobody), "disconnect");
}

}  // namespace Boardsim
