#include "DatagramClient.hpp"

#include <array>
#include <cstring>

#include <arpa/inet.h>
#include <linux/netlink.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "NetlinkWire.hpp"
#include "SocketAddress.hpp"
#include "SystemCall.hpp"

namespace {

sockaddr_un pathAddress(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), std::min(path.size(), sizeof address.sun_path - 1));
    return address;
}

}  // namespace

DatagramClient DatagramClient::ofPath(const std::string& serverPath, const std::string& ownPath) {
    Base::UniqueFd socket(Base::checked(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0), "socket"));
    const sockaddr_un own = pathAddress(ownPath);
    const sockaddr_un server = pathAddress(serverPath);
    ::unlink(ownPath.c_str());
    Base::checked(::bind(socket.get(), Base::genericAddress(own), sizeof own), "bind");
    Base::checked(::connect(socket.get(), Base::genericAddress(server), sizeof server), "connect");
    return DatagramClient(std::move(socket));
}

DatagramClient DatagramClient::ofPort(std::uint16_t port) {
    Base::UniqueFd socket(Base::checked(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0), "socket"));
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(port);
    server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    Base::checked(::connect(socket.get(), Base::genericAddress(server), sizeof server), "connect");
    return DatagramClient(std::move(socket));
}

DatagramClient DatagramClient::ofNetlinkPort(std::uint32_t portId) {
    Base::UniqueFd socket(
        Base::checked(::socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_USERSOCK), "socket"));
    const sockaddr_nl own = netlinkAddress(static_cast<std::uint32_t>(::getpid()));
    const sockaddr_nl server = netlinkAddress(portId);
    Base::checked(::bind(socket.get(), Base::genericAddress(own), sizeof own), "bind");
    Base::checked(::connect(socket.get(), Base::genericAddress(server), sizeof server), "connect");
    return DatagramClient(std::move(socket));
}

bool DatagramClient::send(std::string_view bytes) const {
    return ::send(socket.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) >= 0;
}

std::optional<std::string> DatagramClient::receive(std::chrono::milliseconds patience) const {
    pollfd wait{.fd = socket.get(), .events = POLLIN, .revents = 0};
    if (::poll(&wait, 1, static_cast<int>(patience.count())) != 1) {
        return std::nullopt;
    }
    std::array<char, 65536> buffer{};
    const auto count = ::recv(socket.get(), buffer.data(), buffer.size(), 0);
    return count < 0 ? std::nullopt
                     : std::optional(std::string(buffer.data(), static_cast<std::size_t>(count)));
}
