#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

// Messages of the fast-path stack on netlink sockets of the protocol NETLINK_USERSOCK. Each message is the
// payload after struct nlmsghdr, without padding, in the board's byte order. The message type is the first
// word of the payload; nlmsg_type is always 1. A response repeats the nlmsg_seq of its request. nlmsg_pid is
// the sender's port id, which distinguishes the two dispatchers.

/// The fixed port ids of the processes that receive requests. A client's port id is its process id.
enum FastPath_PortId : std::uint32_t {
    FASTPATH_NETFP_PROXY_PORT_ID = 110,
    FASTPATH_IWF_DISPATCHER_PORT_ID = 120,
    FASTPATH_SFN_DISPATCHER_PORT_ID = 130,
};

enum FastPath_MessageType : std::uint32_t {
    FASTPATH_DISPATCHER_HEARTBEAT_REQ = 13,
    FASTPATH_DISPATCHER_HEARTBEAT_RESP = 14,
    FASTPATH_NETFP_PROXY_HEARTBEAT_REQ = 17,
    FASTPATH_NETFP_PROXY_HEARTBEAT_RESP = 18,
    FASTPATH_ADD_INTERFACE_REQ = 23,
    FASTPATH_ADD_INTERFACE_RESP = 24,
};

/// Requests the health status of a dispatcher or of netfp_proxy.
struct FastPath_HeartbeatReq {
    std::uint32_t messageType;
};

struct FastPath_HeartbeatResp {
    std::uint32_t messageType;
    std::uint32_t status;  ///< 0: healthy
};

/// Asks netfp_proxy to manage a Linux network interface.
struct NetfpProxy_AddInterfaceReq {
    std::uint32_t messageType;
    char interfaceName[32];  ///< zero-padded and zero-terminated
};

struct NetfpProxy_AddInterfaceResp {
    std::uint32_t messageType;
    std::uint32_t status;  ///< 0: success; otherwise netfp_proxy's failure code
};

static_assert(std::endian::native == std::endian::little, "the wire has the board's byte order");
static_assert(std::is_trivially_copyable_v<FastPath_HeartbeatReq> &&
              std::is_standard_layout_v<FastPath_HeartbeatReq>);
static_assert(offsetof(FastPath_HeartbeatReq, messageType) == 0 && sizeof(FastPath_HeartbeatReq) == 4);
static_assert(std::is_trivially_copyable_v<FastPath_HeartbeatResp> &&
              std::is_standard_layout_v<FastPath_HeartbeatResp>);
static_assert(offsetof(FastPath_HeartbeatResp, messageType) == 0);
static_assert(offsetof(FastPath_HeartbeatResp, status) == 4 && sizeof(FastPath_HeartbeatResp) == 8);
static_assert(std::is_trivially_copyable_v<NetfpProxy_AddInterfaceReq> &&
              std::is_standard_layout_v<NetfpProxy_AddInterfaceReq>);
static_assert(offsetof(NetfpProxy_AddInterfaceReq, messageType) == 0);
static_assert(offsetof(NetfpProxy_AddInterfaceReq, interfaceName) == 4);
static_assert(sizeof(NetfpProxy_AddInterfaceReq) == 36);
static_assert(std::is_trivially_copyable_v<NetfpProxy_AddInterfaceResp> &&
              std::is_standard_layout_v<NetfpProxy_AddInterfaceResp>);
static_assert(offsetof(NetfpProxy_AddInterfaceResp, messageType) == 0);
static_assert(offsetof(NetfpProxy_AddInterfaceResp, status) == 4 && sizeof(NetfpProxy_AddInterfaceResp) == 8);
