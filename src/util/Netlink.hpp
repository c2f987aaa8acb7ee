#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "NetlinkHelper.hpp"

namespace Util {

/// Exchanges messages with one netlink peer. All requests are of type `Req`, all responses of type `Resp`.
template <typename Req, typename Resp>
class Netlink : public NetlinkHelper {
    static_assert(std::is_trivially_copyable_v<Req> && std::is_trivially_copyable_v<Resp>,
                  "messages go over the wire byte by byte");

public:
    /// `peer` is the peer's port id; for `client` see NetlinkHelper.
    Netlink(int peer, SmLog* client) : NetlinkHelper(client), destination(peer) {}

    bool send(const Req& request, unsigned sequence) {
        return NetlinkHelper::send(reinterpret_cast<const char*>(&request), sizeof request,
                                   static_cast<unsigned>(destination), sequence);
    }

    /// Returns true if a payload of the response's size was received. A longer payload is cut to that size; a
    /// shorter one is reported as a failure. `sequence` is the nlmsg_seq of its header.
    bool receive(Resp& response, std::chrono::milliseconds timeout, unsigned& sequence) {
        const int size =
            NetlinkHelper::receive(reinterpret_cast<char*>(&response), sizeof response, timeout, sequence);
        if (size == timedOut || size == failed) {
            return false;
        }
        if (static_cast<std::size_t>(size) != sizeof response) {
            report("Wrong received message size: %u, expected: %u", static_cast<unsigned>(size),
                   static_cast<unsigned>(sizeof response));
            return false;
        }
        return true;
    }

    bool receive(Resp& response, std::chrono::milliseconds timeout) {
        unsigned sequence = 0;
        return receive(response, timeout, sequence);
    }

private:
    const std::int32_t destination;
};

}  // namespace Util
