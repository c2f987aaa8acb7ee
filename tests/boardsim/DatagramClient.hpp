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
    /// Of a UNIX datagram socket; the client's own socket is bound to `ownPath`.
    static DatagramClient ofPath(const std::string& serverPath, const std::string& ownPath);

    /// Of a UDP port of this machine.
    static DatagramClient ofPort(std::uint16_t port);

    /// Of a netlink port id of the user-socket protocol; the client's own port id is the process id, so that
    /// there is one at a time.
    static DatagramClient ofNetlinkPort(std::uint32_t portId);

    /// False, with errno, where the peer cannot be reached.
    bool send(std::string_view bytes) const;

    /// The next datagram; none when the peer stays silent for longer than a peer that answers at all.
    std::optional<std::string> receive(std::chrono::milliseconds patience = std::chrono::seconds(10)) const;

    /// True when nothing comes for a while. Right after an answer that is the last one this is certain,
    /// since a peer sends all that it has to say at once.
    bool nothingMore() const { return !receive(std::chrono::milliseconds(100)); }

private:
    explicit DatagramClient(Base::UniqueFd connected) : socket(std::move(connected)) {}

    Base::UniqueFd socket;
};
