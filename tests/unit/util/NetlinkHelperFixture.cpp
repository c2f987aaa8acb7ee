#include "NetlinkHelperFixture.hpp"

#include <linux/netlink.h>
#include <unistd.h>

#include "LogEntries.hpp"
#include "NetlinkWire.hpp"
#include "SocketAddress.hpp"

NetlinkHelperFixture::Reports NetlinkHelperFixture::reports() {
    Reports all = logEntries("dispatcher_log_memory");
    all.erase(all.begin(), all.begin() + static_cast<Reports::difference_type>(reportsSeen));
    reportsSeen += all.size();
    return all;
}

unsigned NetlinkHelperFixture::ownPort() {
    return static_cast<unsigned>(::getpid());
}

Base::UniqueFd NetlinkHelperFixture::socketAt(unsigned portId) {
    Base::UniqueFd socket(::socket(AF_NETLINK, SOCK_DGRAM | SOCK_CLOEXEC, NETLINK_USERSOCK));
    const sockaddr_nl address = netlinkAddress(portId);
    if (::bind(socket.get(), Base::genericAddress(address), sizeof address) != 0) {
        socket.reset();
    }
    return socket;
}

void NetlinkHelperFixture::arrives(std::string_view datagram) const {
    const sockaddr_nl address = netlinkAddress(ownPort());
    ASSERT_EQ(::sendto(stranger.get(), datagram.data(), datagram.size(), 0, Base::genericAddress(address),
                       sizeof address),
              static_cast<ssize_t>(datagram.size()));
}
