#pragma once

#include <sys/socket.h>

namespace Base {

/// A socket address of any family as the generic type that the socket calls take. Points to `address`.
template <typename Address>
const sockaddr* genericAddress(const Address& address) {
    return reinterpret_cast<const sockaddr*>(&address);
}

}  // namespace Base
