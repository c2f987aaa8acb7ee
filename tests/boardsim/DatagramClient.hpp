#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "UniqueFd.hpp"

/// A client of one peer, on a real socket.
class DatagramClient {
public:
    /// A client of a UNIX datagram socket. Its own socket is bound to `ownPath`.
    static DatagramClient ofPath(const std::string& serverPath, const std::string& ownPath);

    /// A client of a UDP port of this machine.
    static DatagramClient ofPort(std::uint16_t port);

    /// A client of a netlink port id of the user-socket protocol. Its own port id is the process id, so there
    /// can be only one.
    static DatagramClient ofNetlinkPort(std::uint32_t portId);

    /// False with errno set if the peer cannot be reached.
    bool send(std::string_view bytes) const;

    /// The next datagram. None if the peer is silent for longer than any peer needs to answer.
    std::optional<std::string> receive(std::chrono::milliseconds patience = std::chrono::seconds(10)) const;

    /// True if nothing arrives for a while. This is certain right after the last answer, because a peer sends
    /// all its datagrams at once.
    bool nothingMore() const { return !receive(std::chrono::milliseconds(100)); }

private:
    explicit DatagramClient(Base::UniqueFd connected) : socket(std::move(connected)) {}

    Base::UniqueFd socket;
};
