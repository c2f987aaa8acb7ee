#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

// Datagrams of the NetFP master's UNIX socket: one request and one response, both of fixed size and in the
// board's byte order.

enum NetfpMaster_MessageType : std::uint32_t {
    NETFP_MASTER_GET_SWITCH_PORT = 4,
    NETFP_MASTER_RENAME_INTERFACE = 6,
    NETFP_MASTER_SET_PORT_MIRRORING = 14,
    NETFP_MASTER_ADD_MULTICAST_MAC = 17,
};

enum Netfp_Direction : std::uint32_t {
    Netfp_Direction_INBOUND = 1,
    Netfp_Direction_OUTBOUND = 2,
};

/// Body of NETFP_MASTER_GET_SWITCH_PORT.
struct NetfpMaster_GetSwitchPort {
    char interfaceName[32];  ///< zero-padded; not terminated if all 32 bytes are used
};

/// Body of NETFP_MASTER_SET_PORT_MIRRORING.
struct NetfpMaster_SetPortMirroring {
    std::uint32_t enable;  ///< 1 enables, 0 disables
    Netfp_Direction direction;
    std::uint8_t fromPort;   ///< mirrored switch port
    std::uint8_t toPort;     ///< switch port that receives the copies
    std::uint8_t unused[2];  ///< 0
};

/// Body of NETFP_MASTER_RENAME_INTERFACE: renames the Linux interface behind a switch port.
/// Both names are zero-padded and zero-terminated.
struct NetfpMaster_RenameInterface {
    char currentName[32];
    char newName[32];
};

/// Body of NETFP_MASTER_ADD_MULTICAST_MAC: admits frames to a multicast address.
struct NetfpMaster_AddMulticastMac {
    char regionName[32];  ///< lookup table that receives the filter; zero-padded
    std::uint16_t etherType;
    std::uint16_t vlanId;
    std::uint32_t ignoreVlan;  ///< 1: frames of every VLAN match
    std::uint8_t unused[6];    ///< 0
    std::uint8_t mac[6];
    char interfaceName[32];  ///< zero-padded and zero-terminated
    std::uint32_t always1;   ///< meaning known only to the master
};

struct NetfpMaster_Request {
    NetfpMaster_MessageType type;
    std::uint32_t requestId;  ///< set by the sender; the response repeats it
    union {
        std::uint8_t bytes[140];  ///< first, so that `{}` clears the whole body
        NetfpMaster_GetSwitchPort getSwitchPort;
        NetfpMaster_RenameInterface renameInterface;
        NetfpMaster_SetPortMirroring setPortMirroring;
        NetfpMaster_AddMulticastMac addMulticastMac;
    } body;
};

struct NetfpMaster_Response {
    std::uint8_t head[8];     ///< reserved for the master
    std::uint32_t requestId;  ///< of the answered request
    std::int32_t errorCode;   ///< 0: success
    std::int32_t switchPort;  ///< answer to NETFP_MASTER_GET_SWITCH_PORT
    std::uint8_t rest[252];   ///< depends on the message type
};

static_assert(std::endian::native == std::endian::little, "the wire has the board's byte order");
static_assert(std::is_trivially_copyable_v<NetfpMaster_Request> &&
              std::is_standard_layout_v<NetfpMaster_Request>);
static_assert(offsetof(NetfpMaster_Request, type) == 0 && offsetof(NetfpMaster_Request, requestId) == 4);
static_assert(offsetof(NetfpMaster_Request, body) == 8 && sizeof(NetfpMaster_Request) == 148);
static_assert(offsetof(NetfpMaster_SetPortMirroring, enable) == 0);
static_assert(offsetof(NetfpMaster_SetPortMirroring, direction) == 4);
static_assert(offsetof(NetfpMaster_SetPortMirroring, fromPort) == 8);
static_assert(offsetof(NetfpMaster_SetPortMirroring, toPort) == 9);
static_assert(sizeof(NetfpMaster_SetPortMirroring) == 12);
static_assert(offsetof(NetfpMaster_RenameInterface, currentName) == 0);
static_assert(offsetof(NetfpMaster_RenameInterface, newName) == 32);
static_assert(sizeof(NetfpMaster_RenameInterface) == 64);
static_assert(offsetof(NetfpMaster_AddMulticastMac, regionName) == 0);
static_assert(offsetof(NetfpMaster_AddMulticastMac, etherType) == 32);
static_assert(offsetof(NetfpMaster_AddMulticastMac, vlanId) == 34);
static_assert(offsetof(NetfpMaster_AddMulticastMac, ignoreVlan) == 36);
static_assert(offsetof(NetfpMaster_AddMulticastMac, mac) == 46);
static_assert(offsetof(NetfpMaster_AddMulticastMac, interfaceName) == 52);
static_assert(offsetof(NetfpMaster_AddMulticastMac, always1) == 84);
static_assert(sizeof(NetfpMaster_AddMulticastMac) == 88);
static_assert(std::is_trivially_copyable_v<NetfpMaster_Response> &&
              std::is_standard_layout_v<NetfpMaster_Response>);
static_assert(offsetof(NetfpMaster_Response, requestId) == 8);
static_assert(offsetof(NetfpMaster_Response, errorCode) == 12);
static_assert(offsetof(NetfpMaster_Response, switchPort) == 16 && sizeof(NetfpMaster_Response) == 272);
