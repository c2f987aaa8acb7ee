// The exchange with the NetFP master on the caller's descriptor.

#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

#include <gtest/gtest.h>
#include <unistd.h>

#include "FailingCall.hpp"
#include "NetFPMasterSocket.hpp"
#include "NetfpMasterWire.hpp"
#include "Printed.hpp"
#include "ScriptedPeer.hpp"
#include "SignalStorm.hpp"
#include "TestFiles.hpp"
#include "UniqueFd.hpp"
#include "VerboseMode.hpp"

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr std::uint32_t id = 0xfedcba98;
constexpr int tenthsOfAnHour = 36000;  // longer than any test

class NetFPMasterSocketTest : public testing::Test {
protected:
    void TearDown() override { Korvel::setVerboseMode(false); }

    void connect(const std::string& path = "/tmp/client") {
        printed = printedBy([&] { socket.reset(Korvel::connectAndBindToLinuxSocket(path)); });
    }

    bool send(const std::string& path = "/tmp/master") {
        NetfpMaster_Request request{};
        request.type = NETFP_MASTER_GET_SWITCH_PORT;
        request.requestId = id;
        bool done = false;
        printed = printedBy([&] { done = Korvel::sendNetFPRequest(socket.get(), path, &request); });
        return done;
    }

    bool receiveInto(NetfpMaster_Response* place, int retries) {
        bool done = false;
        printed = printedBy([&] { done = Korvel::receiveNetFpResponse(socket.get(), place, id, retries); });
        return done;
    }

    bool receive(int retries = tenthsOfAnHour) { return receiveInto(&response, retries); }

    /// Connects and sends a request. The master answers with these datagrams.
    void givenAnswers(std::vector<std::string> datagrams) {
        master.answers([datagrams = std::move(datagrams)](const std::string& /*request*/,
                                                          const ScriptedPeer::Reply& reply) {
            for (const std::string& datagram : datagrams) {
                while (!reply(datagram)) {
                    std::this_thread::yield();
                }
            }
        });
        connect();
        ASSERT_TRUE(send());
    }

    std::string responseBytes() const {
        std::string bytes(sizeof response, '\0');
        std::memcpy(bytes.data(), &response, sizeof response);
        return bytes;
    }

    ScriptedPeer master = ScriptedPeer::atPath("/tmp/master");
    Base::UniqueFd socket;
    NetfpMaster_Response response{};
    Printed printed;
};

}  // namespace

TEST_F(NetFPMasterSocketTest, BindsAPathInPlaceOfAnyFile) {
    writeFile("/tmp/client", "left behind");

    connect();

    EXPECT_TRUE(socket);
    EXPECT_EQ(printed, Printed{});
    EXPECT_TRUE(fs::is_socket("/tmp/client"));
}

TEST_F(NetFPMasterSocketTest, PrintsItsStepsInVerboseMode) {
    Korvel::setVerboseMode(true);

    connect();

    EXPECT_EQ(printed, (Printed{.out = "Opening Linux Socket for response from server\n"
                                       "Binding to Linux client Socket \"/tmp/client\"\n"}));
}

TEST_F(NetFPMasterSocketTest, ReportsAFailedSocketCall) {
    runFailing({.number = SYS_socket, .error = EMFILE}, [&] { connect(); });

    EXPECT_EQ(socket.get(), -1);
    EXPECT_EQ(printed, (Printed{.err = "Socket Creation Failed: 24: Too many open files\n"}));
}

TEST_F(NetFPMasterSocketTest, ReportsAPathThatCannotBeBound) {
    const struct {
        std::string path;
        std::string message;
    } cases[] = {
        {"/tmp/missing/client", "Failed to Bind to Linux Socket: 2: No such file or directory\n"},
        {std::string(108, 'c'), "Failed to Bind to Linux Socket: 36: File name too long\n"},
    };
    for (const auto& [path, message] : cases) {
        connect(path);

        EXPECT_EQ(socket.get(), -1);
        EXPECT_EQ(printed, Printed{.err = message});
    }
}

TEST_F(NetFPMasterSocketTest, SendsTheRequestWithTheCallersIdentifier) {
    givenAnswers({masterResponse(id, 0)});

    EXPECT_EQ(printed, Printed{});
    ASSERT_TRUE(receive());
    EXPECT_EQ(master.requests(), std::vector{masterRequest(4, id, "")});
}

TEST_F(NetFPMasterSocketTest, ReportsAFailedSend) {
    connect();
    const struct {
        std::string path;
        std::string message;
    } cases[] = {
        {"/tmp/nobody", "Failed to Send to Linux Socket: 2: No such file or directory\n"},
        {std::string(108, 'm'), "Failed to Send to Linux Socket: 36: File name too long\n"},
    };
    for (const auto& [path, message] : cases) {
        EXPECT_FALSE(send(path));
        EXPECT_EQ(printed, Printed{.err = message});
    }
}

TEST_F(NetFPMasterSocketTest, TimesOutIfTheMastersQueueIsFull) {
    const Base::UniqueFd deaf(Korvel::connectAndBindToLinuxSocket("/tmp/deaf"));
    connect();

    while (send("/tmp/deaf")) {
    }

    EXPECT_EQ(printed, (Printed{.err = "Failed to Send to Linux Socket: 11: Resource temporarily "
                                       "unavailable\n"}));
}

TEST_F(NetFPMasterSocketTest, AcceptsTheResponseWithTheIdentifierAndAnyErrorCode) {
    givenAnswers({masterResponse(id, -5, 3)});

    EXPECT_TRUE(receive());

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(responseBytes(), masterResponse(id, -5, 3));
}

TEST_F(NetFPMasterSocketTest, DropsOtherDatagrams) {
    std::vector<std::string> datagrams;
    for (int i = 0; i < 34; ++i) {
        datagrams.insert(datagrams.end(),
                         {masterResponse(id + 1, 0, 1), "", masterResponse(id, 0, 1).substr(0, 11)});
    }
    datagrams.push_back(masterResponse(id, 0, 4));
    givenAnswers(datagrams);

    EXPECT_TRUE(receive(50));  // fewer than there are datagrams

    EXPECT_EQ(responseBytes(), masterResponse(id, 0, 4));
}

TEST_F(NetFPMasterSocketTest, NeedsOnlyTheIdentifierAndFillsUpWithZeros) {
    for (const auto size : std::initializer_list<std::size_t>{12, 15, 16}) {
        givenAnswers({masterResponse(id, -5, 4).substr(0, size)});

        EXPECT_TRUE(receive());

        EXPECT_EQ(responseBytes(), masterResponse(id, -5, 4).substr(0, size) + std::string(272 - size, '\0'));
    }
}

TEST_F(NetFPMasterSocketTest, ReadsTheFirst272BytesOfALongerDatagram) {
    givenAnswers({masterResponse(id, 0, 4) + "surplus"});

    EXPECT_TRUE(receive());

    EXPECT_EQ(responseBytes(), masterResponse(id, 0, 4));
}

TEST_F(NetFPMasterSocketTest, GivesUpSilentlyAndLeavesTheResponseUnchanged) {
    givenAnswers({masterResponse(id - 1, 0, 4)});

    EXPECT_FALSE(receive(2));

    EXPECT_EQ(printed, Printed{});
    EXPECT_EQ(responseBytes(), std::string(272, '\0'));
}

TEST_F(NetFPMasterSocketTest, WaitsWithoutLimitForZeroRetriesDespiteSignals) {
    master.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        while (SignalStorm::count() < manySignals) {
            std::this_thread::sleep_for(1ms);
        }
        reply(masterResponse(id, 0, 2));
    });
    connect();
    const SignalStorm storm;
    ASSERT_TRUE(send());

    EXPECT_TRUE(receive(0));

    EXPECT_EQ(responseBytes(), masterResponse(id, 0, 2));
}

TEST_F(NetFPMasterSocketTest, ReportsAFailedReceive) {
    EXPECT_FALSE(receive());  // without a socket

    EXPECT_EQ(printed, (Printed{.err = "Failed to receive from Linux Socket: 9: Bad file descriptor\n"}));
}

TEST_F(NetFPMasterSocketTest, RefusesANullPointerForTheResponse) {
    connect();

    EXPECT_FALSE(receiveInto(nullptr, tenthsOfAnHour));

    EXPECT_EQ(printed, (Printed{.err = "Failed to receive from Linux Socket: 14: Bad address\n"}));
}
