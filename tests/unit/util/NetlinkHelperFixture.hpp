#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <sys/socket.h>

#include "NetlinkHelper.hpp"
#include "SmLog.hpp"
#include "UniqueFd.hpp"

inline constexpr unsigned peerPort = 110;  ///< port id of the peer that the test plays
inline constexpr unsigned untouched = 0xdeadbeef;
inline constexpr std::chrono::hours longerThanAnyTest{1};

/// A transport with a shared-memory log. It is not open yet.
class NetlinkHelperFixture : public testing::Test {
protected:
    using Reports = std::vector<std::string>;

    /// The reports of the transport since the last call.
    Reports reports();

    /// A single report with this text.
    static Reports reported(const std::string& text) { return {"0 NetlinkHelper: " + text}; }

    bool send(std::string_view payload, unsigned destination, unsigned sequence = 0) {
        return helper.send(payload.data(), static_cast<unsigned>(payload.size()), destination, sequence);
    }

    /// This process's port id, which the transport binds.
    static unsigned ownPort();

    /// A socket with this port id that nobody reads. If it cannot be opened, it is empty and errno is set.
    static Base::UniqueFd socketAt(unsigned portId);

    /// Puts these bytes into the queue of the socket with this process's port id.
    void arrives(std::string_view datagram) const;

    SmLog* log = SmLog::getClientInstance("dispatcher_log_memory", 3);
    Util::NetlinkHelper helper{log};

private:
    std::size_t reportsSeen = 0;
    Base::UniqueFd stranger{::socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, 2)};
};
