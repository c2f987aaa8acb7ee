#pragma once

#include <sys/socket.h>

namespace Base {

/// An address of any family as the socket calls take it. Points to `address`.
template <typename Address>
const sockaddr* genericAddress(const Address& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace Base
