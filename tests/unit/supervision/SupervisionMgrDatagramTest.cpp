// How the supervision handles unusual answers and other datagrams.

#include <filesystem>

#include "NetlinkWire.hpp"
#include "SupervisionCycleFixture.hpp"

namespace {

class SupervisionMgrDatagramTest : public SupervisionCycleFixture {
protected:
    /// Runs a cycle in which `oddity` arrives before the right answers.
    int cycleWith(const std::string& oddity) {
        return cycle({oddity, iwfAnswer(), sfnAnswer(), proxyAnswer()});
    }
};

}  // namespace

TEST_F(SupervisionMgrDatagramTest, IgnoresLengthTypeAndFlagsInTheHeader) {
    supervise({iwf});
    const std::string restOfHeader = iwfAnswer().substr(netlinkSequenceOffset);

    EXPECT_EQ(cycle({std::string(netlinkSequenceOffset, '\xa5') + restOfHeader, proxyAnswer()}), healthy);

    expectLogged({});
}

TEST_F(SupervisionMgrDatagramTest, ReportsAnotherMessageWithTheDispatchersNumber) {
    supervise({iwf, sfn});
    const std::vector<std::uint32_t> types{0, dispatcherRequest, proxyResponse};

    for (const std::uint32_t type : types) {
        EXPECT_EQ(cycleWith(netlinkMessage(dispatcherSequence, iwfPort, statusPayload(type, 1))), healthy);
    }

    EXPECT_EQ(printed, Printed{});
    expectLogged({types.size(), error("Dispatcher Heartbeat: unexpected return message type")});
}

TEST_F(SupervisionMgrDatagramTest, ReportsAnotherMessageWithTheNumberOfNetfpProxy) {
    supervise({iwf, sfn});
    const std::vector<std::uint32_t> types{0, proxyRequest, dispatcherResponse};

    for (const std::uint32_t type : types) {
        EXPECT_EQ(cycleWith(netlinkMessage(proxySequence, proxyPort, statusPayload(type, 1))), healthy);
    }

    EXPECT_EQ(printed, Printed{});
    expectLogged({types.size(), error("NetfpProxy Heartbeat: unexpected return message type")});
}

TEST_F(SupervisionMgrDatagramTest, ReportsNumbersThatItDidNotSend) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycleWith(netlinkMessage(100, proxyPort, statusPayload(proxyResponse, 1))), healthy);
    EXPECT_EQ(cycleWith(netlinkMessage(0xffffffff, iwfPort, statusPayload(dispatcherResponse, 1))), healthy);

    EXPECT_EQ(printed, Printed{});
    expectLogged({error("Unexpected netlink sequence number: 100"),
                  error("Unexpected netlink sequence number: 4294967295")});
}

TEST_F(SupervisionMgrDatagramTest, IgnoresALateAnswerToAnEarlierCycle) {
    supervise({iwf, sfn});
    const std::string late = proxyAnswer(1);
    ASSERT_EQ(cycle({iwfAnswer(), sfnAnswer(), proxyAnswer()}), healthy);

    EXPECT_EQ(cycleWith(late), healthy);

    EXPECT_EQ(printed, Printed{});
    expectLogged({error("Unexpected netlink sequence number: 101")});
}

TEST_F(SupervisionMgrDatagramTest, ReportsDatagramsThatAreTooShort) {
    supervise({iwf, sfn});
    const std::string whole = iwfAnswer(1);

    for (const auto size : std::initializer_list<std::size_t>{1, 15, 16, 20, 23}) {
        EXPECT_EQ(cycleWith(whole.substr(0, size)), healthy);
    }

    EXPECT_EQ(printed, Printed{});
    expectLogged({error("Unexpected message size: 1"), error("Unexpected message size: 15"),
                  error("Unexpected message size: 16"), error("Unexpected message size: 20"),
                  error("Unexpected message size: 23")});
}

TEST_F(SupervisionMgrDatagramTest, ReadsTheFirst24BytesOfALongerDatagram) {
    supervise({iwf, sfn});

    EXPECT_EQ(cycle({iwfAnswer() + '\x55', sfnAnswer() + std::string(376, '\x55'),
                     proxyAnswer() + std::string(60000, '\x55')}),
              healthy);
    EXPECT_EQ(cycle({iwfAnswer(1) + std::string(376, '\0'), sfnAnswer(), proxyAnswer()}), stop);

    expectLogged({error("Heartbeat status: IWF Dispatcher:ERROR SFN Dispatcher:OK NetfpProxy: OK")});
}

TEST_F(SupervisionMgrDatagramTest, FindsTheAnswersAfterAThousandForeignDatagrams) {
    std::filesystem::remove("/dev/log");  // the system log cannot hold that many records
    supervise({iwf, sfn});
    std::vector<std::string> datagrams;
    std::vector<std::string> records;
    for (std::uint32_t sequence = 1000; sequence < 2000; ++sequence) {
        datagrams.push_back(netlinkMessage(sequence, iwfPort, statusPayload(dispatcherResponse, 1)));
        records.push_back("0 Supervision: Unexpected netlink sequence number: " + std::to_string(sequence));
    }
    datagrams.insert(datagrams.end(), {iwfAnswer(), sfnAnswer(), proxyAnswer()});

    EXPECT_EQ(cycle(datagrams), healthy);

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(sharedMemoryLog(), records);
}
