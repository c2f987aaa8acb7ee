#include "UnixAddress.hpp"

#include <cerrno>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>

#include "DatagramSocket.hpp"
#include "SocketAddress.hpp"

namespace Korvel {
namespace {

bool setAddress(sockaddr_un& address, const std::string& path) {
    address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) {
        errno = ENAMETOOLONG;
        return false;
    }
    std::memcpy(address.sun_path, path.data(), path.size());
    return true;
}

}  // namespace

bool bindToPath(int socket, const std::string& path) {
    sockaddr_un address{};
    return setAddress(address, path) && ::bind(socket, Base::genericAddress(address), sizeof address) == 0;
}

bool sendToPath(int socket, const std::string& path, const void* data, std::size_t size) {
    if (data == nullptr) {
        errno = EFAULT;
        return false;
    }
    sockaddr_un address{};
    return setAddress(address, path) && sendDatagram(socket, {static_cast<const std::byte*>(data), size},
                                                     Base::genericAddress(address), sizeof address);
}

}  // namespace Korvel
