// The requests to the dispatchers' MMI services, and how their replies are joined.

#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>

#include "Configuration.hpp"
#include "HeaderLine.hpp"
#include "MmiLogCollectorFixture.hpp"
#include "SignalStorm.hpp"
#include "VerboseMode.hpp"

namespace Configuration = Korvel::Configuration;

namespace {

const std::string timedOut = "poll(): Timed out while waiting for response\n";

class MmiLogCollectorTest : public MmiLogCollectorFixture {
protected:
    /// The console output for the one reply to an information command that IWF sent in `datagrams`.
    std::string shownOf(const Datagrams& datagrams) {
        selectIwf();
        answers(iwf, datagrams);
        EXPECT_EQ(collect(information), Printed{});
        return show().out;
    }

    static std::string shownInfo(const std::string& reply) {
        return headerLine("iwf Socket Service Info") + reply + "\n";
    }
};

/// True if no datagram waits at the collector's port 7778.
bool iwfRepliesAreRead() {
    std::ifstream sockets("/proc/net/udp");
    for (std::string line; std::getline(sockets, line);) {
        if (line.find(" 00000000:1E62 ") != std::string::npos) {
            return line.find(":00000000 00:") != std::string::npos;
        }
    }
    return true;
}

}  // namespace

TEST_F(MmiLogCollectorTest, SendsTheCommandsOfItsMaskInTheirOrder) {
    selectIwf();
    repeatsCommands(iwf);

    EXPECT_EQ(collect(statistics), Printed{});
    EXPECT_EQ(collect(information), Printed{});
    EXPECT_EQ(collect(everything), Printed{});

    EXPECT_EQ(iwf.requests(),
              (Datagrams{"SocketSvcCounters", "ReassemblyCounters", "HeapStats",  //
                         "SocketSvcInfo",                                         //
                         "SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"}));
}

TEST_F(MmiLogCollectorTest, JoinsTheDatagramsOfAReplyUpToTheMarker) {
    EXPECT_EQ(shownOf({"first\n", "second", "third\n", marker, "never read"}),
              shownInfo("first\nsecondthird\n"));
}

TEST_F(MmiLogCollectorTest, EndsAnEmptyReplyWithTheMarker) {
    EXPECT_EQ(shownOf({marker}), "");
    EXPECT_TRUE(succeeded);
}

TEST_F(MmiLogCollectorTest, KeepsTheTextUpToTheFirstZeroByte) {
    using namespace std::string_literals;
    EXPECT_EQ(shownOf({"text\0hidden"s, "\0nothing"s, "more\n"s, marker + "\0\0"s}), shownInfo("textmore\n"));
}

TEST_F(MmiLogCollectorTest, LimitsTheTextOfADatagramToTheSizeOfTheBuffer) {
    EXPECT_EQ(shownOf({std::string(513, 'a'), std::string(600, 'b'), "c", marker}),
              shownInfo(std::string(513, 'a') + std::string(513, 'b') + "c"));
}

TEST_F(MmiLogCollectorTest, DoesNotRecognizeAMarkerThatSharesItsDatagramWithText) {
    selectIwf();
    answers(iwf, {"text" + marker});
    EXPECT_EQ(collect(information), Printed{.err = timedOut});
    EXPECT_EQ(show().out, shownInfo("text" + marker));

    answers(iwf, {marker + "\n"});
    EXPECT_EQ(collect(information), Printed{.err = timedOut});
    EXPECT_EQ(show().out, shownInfo(marker + "\n"));
}

TEST_F(MmiLogCollectorTest, KeepsAnUnfinishedReply) {
    selectIwf();
    answers(iwf, {"begun"});

    EXPECT_EQ(collect(information), Printed{.err = timedOut});

    EXPECT_TRUE(succeeded);
    EXPECT_EQ(show().out, shownInfo("begun"));
}

TEST_F(MmiLogCollectorTest, EndsAReplyAtAnEmptyDatagram) {
    selectIwf();
    answers(iwf, {"begun", "", "never read", marker});

    EXPECT_EQ(collect(information), (Printed{.err = "recv(): Peer has performed an orderly shutdown\n"}));

    EXPECT_EQ(show().out, shownInfo("begun"));
}

TEST_F(MmiLogCollectorTest, QueriesIwfBeforeSfn) {
    selectSfn();
    selectIwf();
    std::string order;
    const auto note = [&order](const std::string& name) {
        return [&order, name](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
            order += name;
            reply(marker);
        };
    };
    iwf.answers(note("iwf "));
    sfn.answers(note("sfn "));

    EXPECT_EQ(collect(statistics), Printed{});

    EXPECT_EQ(order, "iwf iwf iwf sfn sfn sfn ");
}

TEST_F(MmiLogCollectorTest, QueriesOnlySfnFromItsOwnPortsIfOnlySfnIsSelected) {
    selectSfn();
    repeatsCommands(sfn);
    Korvel::setVerboseMode(true);

    EXPECT_EQ(collect(information),
              (Printed{.out = "Starting log collection from MMI service in dispatcher instance sfn...\n"
                              "Binding to port: 8778\n"
                              "Sending MMI request: SocketSvcInfo\n"
                              "Response received successfully\n"}));

    EXPECT_EQ(iwf.requests(), Datagrams{});
    EXPECT_EQ(sfn.requests(), Datagrams{"SocketSvcInfo"});
}

TEST_F(MmiLogCollectorTest, QueriesNobodyIfNothingIsSelected) {
    Korvel::setVerboseMode(true);

    EXPECT_EQ(collect(everything), Printed{});

    EXPECT_TRUE(succeeded);
    EXPECT_EQ(show(), Printed{});
}

TEST_F(MmiLogCollectorTest, PrintsItsStepsInVerboseMode) {
    selectIwf();
    answers(iwf, {"text", marker});
    Korvel::setVerboseMode(true);

    EXPECT_EQ(collect(statistics),
              (Printed{.out = "Starting log collection from MMI service in dispatcher instance iwf...\n"
                              "Binding to port: 7778\n"
                              "Sending MMI request: SocketSvcCounters\n"
                              "Response received successfully\n"
                              "Sending MMI request: ReassemblyCounters\n"
                              "Response received successfully\n"
                              "Sending MMI request: HeapStats\n"
                              "Response received successfully\n"}));
}

TEST_F(MmiLogCollectorTest, ContinuesAfterSignals) {
    selectIwf();
    iwf.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        constexpr int signalsForADatagram = 10;
        for (int count = 1; count <= 3; ++count) {
            const int target = SignalStorm::count() + signalsForADatagram;
            while (SignalStorm::count() < target) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            reply(std::to_string(count));
        }
        reply(marker);
    });
    const SignalStorm storm;

    EXPECT_EQ(collect(information), Printed{});

    EXPECT_EQ(show().out, shownInfo("123"));
}

TEST_F(MmiLogCollectorTest, KeepsAWholeReplyOfSixteenMebibytes) {
    selectIwf();
    Configuration::getConfig(Configuration::IWF).receiveBufferSize = 1U << 15U;
    iwf.answers([](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        for (int sent = 0; sent < 1 << 9; ++sent) {
            reply(std::string(1U << 15U, 'x'));
            while (!iwfRepliesAreRead()) {
                std::this_thread::yield();
            }
        }
        reply(marker);
    });

    EXPECT_EQ(collect(information), Printed{});

    EXPECT_TRUE(show().out == shownInfo(std::string(16U << 20U, 'x')));  // too long to print in a failure
}

TEST_F(MmiLogCollectorTest, CutsAnEndlessReplyAndContinues) {
    selectIwf();
    selectSfn();
    repeatsCommands(sfn);
    std::atomic<bool> over = false;
    const std::string piece(512, 'x');
    iwf.answers([&](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
        while (!over) {
            reply(piece);
        }
    });

    const Printed printed = collect(information);
    over = true;

    EXPECT_EQ(printed, (Printed{.err = "Reply to SocketSvcInfo does not end, cut\n"}));
    EXPECT_TRUE(succeeded);
    const std::string shown = show().out;  // too long to print in a failure
    EXPECT_EQ(shown.size(), shownInfo("").size() + (16U << 20U) +
                                (headerLine("sfn Socket Service Info") + "SocketSvcInfo\n").size());
    EXPECT_TRUE(shown == shownInfo(std::string(16U << 20U, 'x')) + headerLine("sfn Socket Service Info") +
                             "SocketSvcInfo\n");
}
