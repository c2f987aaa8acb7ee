#include <array>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/netlink.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include "DatagramSocket.hpp"
#include "FailingCall.hpp"
#include "Probe.hpp"
#include "ResourceLimit.hpp"
#include "SignalStorm.hpp"
#include "SocketAddress.hpp"

using namespace Korvel;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

template <typename Value>
Value optionOf(const Base::UniqueFd& socket, int option) {
    Value value{};
    socklen_t size = sizeof value;
    EXPECT_EQ(::getsockopt(socket.get(), SOL_SOCKET, option, &value, &size), 0);
    return value;
}

/// The send time-out of the socket.
std::chrono::microseconds sendLimit(const Base::UniqueFd& socket) {
    const auto limit = optionOf<timeval>(socket, SO_SNDTIMEO);
    return std::chrono::seconds(limit.tv_sec) + std::chrono::microseconds(limit.tv_usec);
}

/// A peer with a socket at /tmp/peer that reads only when the test does, and a socket to send to it.
class DatagramSocket : public testing::Test {
protected:
    DatagramSocket() { EXPECT_EQ(::bind(peer.get(), peerAddress(), sizeof(sockaddr_un)), 0); }

    void TearDown() override { ::unlink("/tmp/peer"); }

    bool send(std::string_view text) const {
        return sendDatagram(socket.get(), std::as_bytes(std::span(text)), peerAddress(), sizeof(sockaddr_un));
    }

    void fillTheQueueOfThePeer() const {
        while (::sendto(socket.get(), "x", 1, MSG_DONTWAIT, peerAddress(), sizeof(sockaddr_un)) == 1) {
        }
        ASSERT_EQ(errno, EAGAIN);
    }

    std::string received() const {
        std::array<char, 4096> buffer{};
        const ssize_t length = ::recv(peer.get(), buffer.data(), buffer.size(), MSG_DONTWAIT);
        return length < 0 ? std::strerror(errno)
                          : std::string(buffer.data(), static_cast<std::size_t>(length));
    }

    /// About a second, minus the error of a coarse clock.
    static constexpr auto atLeast = 950ms;

    Base::UniqueFd socket = openDatagramSocket(AF_UNIX);
    Base::UniqueFd peer{::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)};

private:
    static const sockaddr* peerAddress() {
        static const sockaddr_un address{.sun_family = AF_UNIX, .sun_path = "/tmp/peer"};
        return Base::genericAddress(address);
    }
};

/// A socket at /tmp/peer that receives datagrams.
class ReceiveDatagram : public DatagramSocket {
protected:
    static constexpr std::size_t untouched = 4711;

    void arrives(std::string_view datagram) const { ASSERT_TRUE(send(datagram)); }

    Arrival receive(std::chrono::milliseconds limit = 1h) {
        return receiveDatagram(peer.get(), std::as_writable_bytes(std::span(buffer)), deadlineIn(limit),
                               size);
    }

    /// With a datagram in the queue.
    Arrival receiveUnder(const FailingCall& call, std::chrono::milliseconds limit = 1h) {
        arrives("there");
        Arrival arrival{};
        runFailing(call, [&] {
            arrival = receive(limit);
            reason = errno;
        });
        return arrival;
    }

    std::string text() const { return {buffer.data(), size}; }

    std::array<char, 16> buffer{};
    std::size_t size = untouched;
    int reason = 0;
};

TEST_F(DatagramSocket, IsClosedInChildren) {
    EXPECT_EQ(::fcntl(socket.get(), F_GETFD), FD_CLOEXEC);
}

TEST_F(DatagramSocket, LimitsEverySendToASecond) {
    EXPECT_EQ(sendLimit(socket), 1s);
}

TEST_F(DatagramSocket, SendsAWholeDatagram) {
    EXPECT_TRUE(send("one"));
    EXPECT_TRUE(send(""));
    EXPECT_TRUE(send(std::string(4000, 'x')));

    EXPECT_EQ(received(), "one");
    EXPECT_EQ(received(), "");
    EXPECT_EQ(received(), std::string(4000, 'x'));
    EXPECT_EQ(received(), "Resource temporarily unavailable");
}

TEST_F(DatagramSocket, ReportsThatNobodyIsAtTheAddress) {
    peer.reset();

    EXPECT_FALSE(send("one"));
    EXPECT_EQ(errno, ECONNREFUSED);
}

TEST_F(DatagramSocket, GivesUpOnAPeerThatNeverReadsAfterASecond) {
    fillTheQueueOfThePeer();
    const auto begin = steady_clock::now();

    EXPECT_FALSE(send("one too many"));

    EXPECT_EQ(errno, EAGAIN);
    EXPECT_GE(steady_clock::now() - begin, atLeast);
}

TEST_F(DatagramSocket, GivesUpOnAPeerThatNeverReadsAfterASecondOfSignals) {
    fillTheQueueOfThePeer();
    const SignalStorm storm;
    const auto begin = steady_clock::now();

    EXPECT_FALSE(send("one too many"));

    EXPECT_EQ(errno, EAGAIN);
    EXPECT_GE(steady_clock::now() - begin, atLeast);
    EXPECT_GT(SignalStorm::count(), 0);
}

TEST_F(DatagramSocket, WaitsAWholeSecondAgainAfterAnInterruptedSend) {
    fillTheQueueOfThePeer();
    {
        const SignalStorm storm;
        EXPECT_FALSE(send("one too many"));
    }

    EXPECT_EQ(sendLimit(socket), 1s);
}

TEST_F(ReceiveDatagram, ReadsAWholeDatagram) {
    arrives("one");
    arrives("");

    EXPECT_EQ(receive(), Arrival::datagram);
    EXPECT_EQ(text(), "one");
    EXPECT_EQ(receive(), Arrival::datagram);
    EXPECT_EQ(text(), "");
}

TEST_F(ReceiveDatagram, CutsADatagramToItsBuffer) {
    arrives("a datagram of 25 bytes...");

    EXPECT_EQ(receive(), Arrival::datagram);

    EXPECT_EQ(text(), "a datagram of 25");
}

TEST_F(ReceiveDatagram, EndsAtTheDeadlineIfNothingArrives) {
    const auto begin = steady_clock::now();

    EXPECT_EQ(receive(100ms), Arrival::timedOut);

    EXPECT_GE(steady_clock::now() - begin, 100ms);
    EXPECT_EQ(size, untouched);
}

TEST_F(ReceiveDatagram, EndsAtTheDeadlineIfAnAnnouncedDatagramIsMissing) {
    const auto begin = steady_clock::now();

    EXPECT_EQ(receiveUnder(nothingThere, 100ms), Arrival::timedOut);

    EXPECT_GE(steady_clock::now() - begin, 100ms);
    EXPECT_EQ(size, untouched);
}

TEST_F(ReceiveDatagram, DistinguishesAFailedWaitFromAFailedReceive) {
    EXPECT_EQ(receiveUnder({.number = pollCall, .error = ENOMEM}), Arrival::waitFailed);
    EXPECT_EQ(reason, ENOMEM);
    EXPECT_EQ(receiveUnder({.number = receiveCall, .error = EIO}), Arrival::receiveFailed);
    EXPECT_EQ(reason, EIO);
    EXPECT_EQ(size, untouched);
}

TEST(SendDatagram, FailsIfTheSystemSendsOnlyAPart) {
    for (const auto& [taken, answer] : {std::pair("0", "false\n"), {"4", "false\n"}, {"5", "true\n"}}) {
        SCOPED_TRACE(taken);
        const Outcome outcome =
            probeInjected({.faults = {std::string("sendto:retval=") + taken}}, {"sendDatagram", "whole"});

        EXPECT_EQ(outcome.out, answer);
        EXPECT_EQ(outcome.err, "");
    }
}

TEST(OpenDatagramSocket, UsesTheGivenProtocol) {
    const Base::UniqueFd socket = openDatagramSocket(AF_NETLINK, NETLINK_USERSOCK);

    EXPECT_EQ(optionOf<int>(socket, SO_DOMAIN), AF_NETLINK);
    EXPECT_EQ(optionOf<int>(socket, SO_TYPE), SOCK_DGRAM);
    EXPECT_EQ(optionOf<int>(socket, SO_PROTOCOL), NETLINK_USERSOCK);
    EXPECT_EQ(sendLimit(socket), 1s);
    EXPECT_EQ(::fcntl(socket.get(), F_GETFD), FD_CLOEXEC);
}

TEST(OpenDatagramSocket, ReportsAnUnknownProtocol) {
    EXPECT_FALSE(openDatagramSocket(AF_NETLINK, 1000));
    EXPECT_EQ(errno, EPROTONOSUPPORT);
}

TEST(OpenDatagramSocket, ReportsAnUnknownFamily) {
    EXPECT_FALSE(openDatagramSocket(AF_MAX));
    EXPECT_EQ(errno, EAFNOSUPPORT);
}

TEST(OpenDatagramSocket, ReportsThatNoDescriptorsAreLeft) {
    const ResourceLimit noDescriptors(RLIMIT_NOFILE, 0);

    EXPECT_FALSE(openDatagramSocket(AF_UNIX));
    EXPECT_EQ(errno, EMFILE);
}

TEST(OpenDatagramSocket, SucceedsIfTheSendTimeOutCannotBeSet) {
    const Outcome outcome = probeInjected({.faults = {"setsockopt:error=ENOMEM"}}, {"openDatagramSocket"});

    EXPECT_EQ(outcome.out, "open\n");
    EXPECT_EQ(outcome.err, "");
}

}  // namespace
