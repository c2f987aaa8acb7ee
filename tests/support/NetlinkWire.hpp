#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <linux/netlink.h>

// The fast-path stack's netlink datagrams byte by byte: a header of 16 bytes, then the payload.

constexpr std::size_t netlinkLengthOffset = 0;
constexpr std::size_t netlinkSequenceOffset = 8;
constexpr std::size_t netlinkPortOffset = 12;
constexpr std::size_t netlinkPayloadOffset = 16;

/// A whole datagram. Its header holds the length, message type 1, no flags, and these two numbers.
std::string netlinkMessage(std::uint32_t sequence, std::uint32_t portId, std::string_view payload);

/// The payload of a heartbeat's or an add-interface response: a message type and a status.
std::string statusPayload(std::uint32_t messageType, std::uint32_t status);

/// The address of a netlink socket.
sockaddr_nl netlinkAddress(std::uint32_t portId);
