#pragma once

#include <chrono>
#include <cstddef>
#include <span>

#include "SmLog.hpp"
#include "UniqueFd.hpp"

namespace Util {

/// One end of an exchange over a netlink socket of the user-socket protocol: a payload behind a netlink
/// header goes out, one datagram comes in. Knows nothing of what payloads mean; neither nlmsg_type, nlmsg_len
/// nor the sender of what arrives is judged.
/// Owns its descriptor. Every failure is reported once, to the log client (level 0, tag "NetlinkHelper");
/// nothing is printed, and no exchange is tried again.
class NetlinkHelper {
public:
    /// What receive() gives in place of a length.
    static constexpr int timedOut = -1;
    static constexpr int failed = -2;

    /// `client` is not owned and must outlive this object; null: failures go unreported.
    explicit NetlinkHelper(SmLog* client);
    NetlinkHelper(const NetlinkHelper&) = delete;
    NetlinkHelper& operator=(const NetlinkHelper&) = delete;
    NetlinkHelper(NetlinkHelper&&) = delete;
    NetlinkHelper& operator=(NetlinkHelper&&) = delete;
    virtual ~NetlinkHelper();

    /// Creates the socket and binds it to this process's id. One that is open stays as it is and is a
    /// failure. A socket that cannot be bound stays open.
    bool open();

    /// Sends `length` bytes, at most 4096, to the port id `destination`. Needs a socket, as does receive().
    bool send(const char* payload, unsigned length, unsigned destination, unsigned sequence);

    /// Waits up to `timeout` for one datagram and copies its payload, cut to `expected` bytes (at most 4096),
    /// into `buffer`. Returns how many bytes that were, and sets `sequence` to the header's nlmsg_seq; else
    /// `timedOut` or `failed`. A time-out below zero counts as zero.
    int receive(char* buffer, unsigned expected, std::chrono::milliseconds timeout, unsigned& sequence);

    /// Closes the socket; where there is none, that is a failure.
    bool close();

protected:
    void report(const char* format, ...) const __attribute__((format(printf, 2, 3)));

private:
    /// As receive(), of a datagram that has come.
    int unpack(std::span<const std::byte> datagram, char* buffer, unsigned& sequence) const;

    SmLog* log;
    Base::UniqueFd fd;
};

}  // namespace Util
