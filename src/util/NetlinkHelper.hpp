#pragma once

#include <chrono>
#include <cstddef>
#include <span>

#include "SmLog.hpp"
#include "UniqueFd.hpp"

namespace Util {

/// One end of an exchange over a netlink socket of the protocol NETLINK_USERSOCK: sends a payload after a
/// netlink header, receives one datagram. Does not interpret payloads, and does not check nlmsg_type,
/// nlmsg_len or the sender of received datagrams. Owns its descriptor. Reports every failure once, to the log
/// client (level 0, tag "NetlinkHelper"). Prints nothing and does not retry.
class NetlinkHelper {
public:
    /// Results of receive() instead of a length.
    static constexpr int timedOut = -1;
    static constexpr int failed = -2;

    /// `client` is not owned and must outlive this object. If it is null, failures are not reported.
    explicit NetlinkHelper(SmLog* client);
    NetlinkHelper(const NetlinkHelper&) = delete;
    NetlinkHelper& operator=(const NetlinkHelper&) = delete;
    NetlinkHelper(NetlinkHelper&&) = delete;
    NetlinkHelper& operator=(NetlinkHelper&&) = delete;
    virtual ~NetlinkHelper();

    /// Creates the socket and binds it to this process's id. If the socket is already open, fails and leaves
    /// it unchanged. If it cannot be bound, it stays open.
    bool open();

    /// Sends `length` bytes, at most 4096, to the port id `destination`. Requires an open socket, as does
    /// receive().
    bool send(const char* payload, unsigned length, unsigned destination, unsigned sequence);

    /// Waits up to `timeout` for one datagram and copies its payload, cut to `expected` bytes (at most 4096),
    /// into `buffer`. Returns the number of copied bytes and sets `sequence` to the header's nlmsg_seq;
    /// otherwise returns `timedOut` or `failed`. A negative time-out counts as zero.
    int receive(char* buffer, unsigned expected, std::chrono::milliseconds timeout, unsigned& sequence);

    /// Closes the socket. Fails if it is not open.
    bool close();

protected:
    void report(const char* format, ...) const __attribute__((format(printf, 2, 3)));

private:
    /// As receive(), for a received datagram.
    int unpack(std::span<const std::byte> datagram, char* buffer, unsigned& sequence) const;

    SmLog* log;
    Base::UniqueFd fd;
};

}  // namespace Util
