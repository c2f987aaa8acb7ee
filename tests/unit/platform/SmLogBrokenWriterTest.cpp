// A writer that dies or stops during its operation while it holds the lock.

#include <chrono>
#include <csignal>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/time.h>

#include "ChildProcess.hpp"
#include "LogFixture.hpp"
#include "LogRing.hpp"
#include "SharedLog.hpp"
#include "TrapLine.hpp"

namespace {

using HostBoard::LogRing;
using HostBoard::SharedLog;
using testing::ElementsAre;

class SmLogBrokenWriterTest : public LogFixture {
protected:
    /// The work of a process: it appends a line and gets `signal` while it copies the line.
    std::function<bool()> appendingUnder(int signal) const {
        return [this, signal] {
            const TrapLine trap(lineLength, signal);
            const std::unique_ptr<SharedLog> log = SharedLog::open(name);
            return log != nullptr && log->append(trap.line());
        };
    }

    static constexpr std::size_t lineLength = LogRing::maxEntry;
};

TEST_F(SmLogBrokenWriterTest, KeepsAllEntriesWhenAWriterDies) {
    writeNumbered(0, 10);
    const Reading before = read(0);
    ChildProcess writer(appendingUnder(SIGKILL));
    ASSERT_TRUE(writer.endsBy(SIGKILL));

    EXPECT_EQ(read(0).text, before.text);
    EXPECT_EQ(read(before.end).text, "");
    writeNumbered(10, 10);
    EXPECT_EQ(keptTexts(), numbered(0, 20));
}

TEST_F(SmLogBrokenWriterTest, LosesOnlyTheOldestWhenAWriterDiesInAFullLog) {
    writeNumbered(0, 70000);
    const std::string before = read(0).text;
    ChildProcess writer(appendingUnder(SIGKILL));
    ASSERT_TRUE(writer.endsBy(SIGKILL));

    const std::string after = read(0).text;

    EXPECT_TRUE(before.ends_with("\n" + after));
    EXPECT_LE(before.size() - after.size(), 2 * lineLength);
    writeNumbered(70000, 1);
    EXPECT_THAT(read(0).text, testing::StartsWith(after));
}

TEST_F(SmLogBrokenWriterTest, StaysConsistentWhenWritersAreKilledAtAnyPoint) {
    for (int i = 0; i < 40; ++i) {
        ChildProcess writer([this] {
            while (true) {
                writeNumbered(0, 1000);
            }
            return true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(5 + i % 7));
        writer.send(SIGKILL);
        ASSERT_TRUE(writer.endsBy(SIGKILL));
        client().write(6, "Test", "after writer %d", i);
        EXPECT_EQ(keptTexts().back(), "after writer " + std::to_string(i));
    }
    for (const std::string& text : keptTexts()) {
        ASSERT_THAT(text, testing::MatchesRegex("entry [0-9]+|after writer [0-9]+"));
    }
}

TEST_F(SmLogBrokenWriterTest, WaitsForAStoppedWriterOnlyForALimitedTime) {
    writeNumbered(0, 1);
    const unsigned before = read(0).end;
    ChildProcess writer(appendingUnder(SIGSTOP));
    ASSERT_TRUE(writer.stops());

    client().write(6, "Test", "dropped");
    const Reading nothing = read(before);
    writer.send(SIGCONT);

    EXPECT_EQ(nothing.text, "");
    EXPECT_EQ(nothing.end, before);
    EXPECT_TRUE(writer.succeeds());
    writeNumbered(1, 1);
    const std::vector<std::string> kept = keptTexts();
    EXPECT_THAT(kept, ElementsAre("entry 0", testing::SizeIs(testing::Gt(lineLength / 2)), "entry 1"));
}

TEST_F(SmLogBrokenWriterTest, GivesANewProcessAClientWhileAWriterIsStopped) {
    ChildProcess writer(appendingUnder(SIGSTOP));
    ASSERT_TRUE(writer.stops());

    SmLog& newcomer = client();
    writer.send(SIGCONT);

    EXPECT_TRUE(writer.succeeds());
    newcomer.write(6, "Test", "at last");
    EXPECT_EQ(keptTexts().back(), "at last");
}

TEST_F(SmLogBrokenWriterTest, WaitsForTheSameTimeDespiteSignals) {
    writeNumbered(0, 1);
    ChildProcess writer(appendingUnder(SIGSTOP));
    ASSERT_TRUE(writer.stops());
    struct sigaction action {};
    action.sa_handler = [](int) {};  // and no SA_RESTART
    ::sigaction(SIGALRM, &action, nullptr);
    itimerval alarms{.it_interval = {.tv_sec = 0, .tv_usec = 7000},
                     .it_value = {.tv_sec = 0, .tv_usec = 7000}};
    ::setitimer(ITIMER_REAL, &alarms, nullptr);

    const auto start = std::chrono::steady_clock::now();
    const Reading nothing = read(0);
    const auto waited = std::chrono::steady_clock::now() - start;
    alarms = {};
    ::setitimer(ITIMER_REAL, &alarms, nullptr);

    EXPECT_EQ(nothing.text, "");
    EXPECT_GE(waited, std::chrono::seconds(1));
}

}  // namespace
