#include <atomic>
#include <chrono>
#include <thread>

#include "CollectionFixture.hpp"
#include "MmiReply.hpp"
#include "ScriptedPeer.hpp"
#include "TestFiles.hpp"

using Boardsim::mmiDatagrams;
using Boardsim::mmiEndOfMessage;
using Boardsim::mmiReplyText;

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::size_t replyLimit = 16U << 20U;
constexpr auto replyTimeLimit = 60s;

/// Endless replies of the MMI service, and replies to an earlier command.
class MmiEndlessReplyTest : public CollectionFixture {
protected:
    static constexpr const char* infoFile = "/tmp/korvel/mmi/iwf/SocketSvcInfo.log";

    /// The first `size` bytes of a text that repeats itself.
    static std::string repeated(const std::string& part, std::size_t size) {
        std::string text;
        while (text.size() < size) {
            text += part;
        }
        text.resize(size);
        return text;
    }
};

TEST_F(MmiEndlessReplyTest, AReplyIsCutAtSixteenMebibytesAndTheRunContinues) {
    startBoardWithFaults({"iwf_dispatcher=endless"});

    const Outcome outcome = collect({"-d", "all", "dump", "dinf"});

    EXPECT_EQ(outcome, success("", "Reply to SocketSvcInfo does not end, cut\n"));
    const std::string part = mmiDatagrams(mmiReplyText("iwf", "SocketSvcInfo")).front();
    EXPECT_TRUE(contentOfFile(infoFile) == repeated(part, replyLimit)) << "16 MiB differ";
    EXPECT_EQ(contentOfFile("/tmp/korvel/mmi/sfn/SocketSvcInfo.log"), mmiReplyText("sfn", "SocketSvcInfo"));
}

TEST_F(MmiEndlessReplyTest, AReplyThatKeepsTricklingIsCutAfterAMinuteAndTheRunContinues) {
    startBoardWithout({"iwf_dispatcher"});
    std::atomic<bool> over = false;
    std::string sent;
    const Clock::time_point start = Clock::now();
    Outcome outcome;
    {
        ScriptedPeer dispatcher = ScriptedPeer::atLocalPort(7777);
        dispatcher.answers([&](const std::string& /*request*/, const ScriptedPeer::Reply& reply) {
            for (int line = 0; !over; ++line) {
                const std::string text = "still counting " + std::to_string(line) + "\n";
                sent += text;
                reply(text);
                std::this_thread::sleep_for(40ms);
            }
        });

        outcome = collect({"-d", "all", "dump", "dinf", "dlog"});

        over = true;
    }

    EXPECT_GE(Clock::now() - start, replyTimeLimit);
    EXPECT_EQ(outcome, success("",
                               "Error while opening /tmp/fuse/iwf/tracing_on\n"
                               "Reply to SocketSvcInfo does not end, cut\n"
                               "Output of /tmp/korvel/fuse/iwf/tracing_on.log is empty\n"));
    const std::string reply = contentOfFile(infoFile);
    EXPECT_NE(reply, "");
    EXPECT_EQ(reply, sent.substr(0, reply.size()));
    EXPECT_EQ(contentOfFile("/tmp/korvel/mmi/sfn/SocketSvcInfo.log"), mmiReplyText("sfn", "SocketSvcInfo"));
}

TEST_F(MmiEndlessReplyTest, ALateReplyIsReadAsTheReplyToTheNextCommand) {
    startBoardWithout({"iwf_dispatcher"});
    std::string late;
    ScriptedPeer dispatcher = ScriptedPeer::atLocalPort(7777);
    dispatcher.answers([&](const std::string& request, const ScriptedPeer::Reply& reply) {
        if (!late.empty()) {
            reply("reply to " + late + "\n");
            reply(mmiEndOfMessage);
        }
        late = request;
    });

    const Outcome outcome = collect({"-d", "iwf", "dump", "dstat", "slog"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err,
              "Error while opening /tmp/fuse/iwf/dispatcherCpu\n"
              "Error while opening /tmp/fuse/iwf/dmaStats\n" +
                  lines(1, timedOut) +
                  "Output of /tmp/korvel/fuse/iwf/dispatcherCpu.log is empty\n"
                  "Output of /tmp/korvel/fuse/iwf/dmaStats.log is empty\n");
    Files files = workFiles();
    files.erase("ti/syslib_sm_log.log");
    EXPECT_EQ(files, (Files{{"mmi/iwf/SocketSvcCounters.log", ""},
                            {"mmi/iwf/ReassemblyCounters.log", "reply to SocketSvcCounters\n"},
                            {"mmi/iwf/HeapStats.log", "reply to ReassemblyCounters\n"}}));
}

}  // namespace
