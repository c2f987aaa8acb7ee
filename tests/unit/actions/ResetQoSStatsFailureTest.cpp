// System calls that fail under "resetqosstats", and dispatchers that cannot be reached.

#include "FailingCall.hpp"
#include "ResetQoSStatsFixture.hpp"

namespace Configuration = Korvel::Configuration;

namespace {

class ResetQoSStatsFailureTest : public ResetQoSStatsFixture {
protected:
    ResetQoSStatsFailureTest() {
        select(Configuration::IWF);
        answers(iwf, {"OK", marker});
    }

    bool resetFailing(const FailingCall& call) {
        bool success = false;
        runFailing(call, [&] { success = reset(); });
        return success;
    }
};

}  // namespace

TEST_F(ResetQoSStatsFailureTest, GivesUpWithoutASocket) {
    EXPECT_FALSE(resetFailing({.number = SYS_socket, .error = EMFILE}));

    EXPECT_EQ(printed, (Printed{.err = "Error while creating  socket, errno:24 Too many open files\n"}));
    EXPECT_EQ(iwf.requests(), Datagrams{});
}

TEST_F(ResetQoSStatsFailureTest, GivesUpIfItsPortCannotBeBound) {
    EXPECT_FALSE(resetFailing({.number = SYS_bind, .error = EACCES}));

    EXPECT_EQ(printed, (Printed{.err = "Error while binding  socket, errno:13 Permission denied\n"}));
    EXPECT_EQ(iwf.requests(), Datagrams{});
}

TEST_F(ResetQoSStatsFailureTest, GivesUpIfItsPortIsTakenAndWorksOnceItIsFree) {
    {
        const ScriptedPeer other = ScriptedPeer::atLocalPort(4141);
        EXPECT_FALSE(reset());
        EXPECT_EQ(printed,
                  (Printed{.err = "Error while binding  socket, errno:98 Address already in use\n"}));
        EXPECT_EQ(iwf.requests(), Datagrams{});
    }

    EXPECT_TRUE(reset());
    EXPECT_TRUE(reset());
}

TEST_F(ResetQoSStatsFailureTest, UsesASocketWithoutASendTimeOut) {
    EXPECT_TRUE(resetFailing({.number = SYS_setsockopt, .error = ENOBUFS}));

    EXPECT_EQ(printed, (Printed{.out = "OK\n"}));
}

TEST_F(ResetQoSStatsFailureTest, TimesOutIfTheRequestCannotBeSent) {
    EXPECT_FALSE(resetFailing({.number = SYS_sendto, .error = EPERM}));

    EXPECT_EQ(printed, (Printed{.err = "Error while sending QoS stats reset request to dispatcher, errno:1 "
                                       "Operation not permitted\n" +
                                       timedOut}));
    EXPECT_EQ(iwf.requests(), Datagrams{});
}

TEST_F(ResetQoSStatsFailureTest, TimesOutIfTheAddressIsInvalid) {
    Configuration::getConfig(Configuration::IWF).dispatcherAddress = "localhost";

    EXPECT_FALSE(reset());

    EXPECT_EQ(printed, (Printed{.err = "inet_pton error for address: localhost\n" + timedOut}));
    EXPECT_EQ(iwf.requests(), Datagrams{});
}

TEST_F(ResetQoSStatsFailureTest, TimesOutIfNobodyListens) {
    Configuration::getConfig(Configuration::IWF).dispatcherPort = 7776;

    EXPECT_FALSE(reset());

    EXPECT_EQ(printed, (Printed{.err = timedOut}));
}

TEST_F(ResetQoSStatsFailureTest, FailsIfWaitingForTheAnswerFails) {
    EXPECT_FALSE(resetFailing({.number = pollCall, .error = ENOMEM}));

    EXPECT_EQ(printed, (Printed{.err = "poll(): An error occured, errno: %sCannot allocate memory\n"}));
}

TEST_F(ResetQoSStatsFailureTest, TimesOutIfAnAnnouncedAnswerIsMissing) {
    EXPECT_FALSE(resetFailing(nothingThere));

    EXPECT_EQ(printed, (Printed{.err = timedOut}));
}

TEST_F(ResetQoSStatsFailureTest, FailsIfReceivingTheAnswerFails) {
    EXPECT_FALSE(resetFailing({.number = receiveCall, .error = EIO}));

    EXPECT_EQ(printed, (Printed{.err = "recv(): An error occured, errno: %sInput/output error\n"}));
}

TEST_F(ResetQoSStatsFailureTest, ReportsASocketThatCannotBeClosedAndSucceeds) {
    EXPECT_TRUE(resetFailing({.number = SYS_close, .error = EIO}));

    EXPECT_EQ(printed, (Printed{.out = "OK\n", .err = "ResetQosStats: Socket closing failed\n"}));
}
