#include "OccupiedPort.hpp"

#include <stdexcept>
#include <string>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

OccupiedPort::OccupiedPort(std::uint16_t port) : socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_ANY);
    if (::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        ::close(socket);
        throw std::runtime_error("cannot bind port " + std::to_string(port));
    }
}

OccupiedPort::~OccupiedPort() {
    ::close(socket);
}
