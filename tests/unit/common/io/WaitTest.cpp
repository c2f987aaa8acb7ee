#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Probe.hpp"
#include "SignalStorm.hpp"
#include "UniqueFd.hpp"
#include "Wait.hpp"

using namespace Korvel;
using namespace std::chrono_literals;
using std::chrono::steady_clock;

namespace {

/// A pipe. The tests wait for its ends.
class PipeWait : public testing::Test {
protected:
    PipeWait() {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        reader.reset(ends[0]);
        writer.reset(ends[1]);
    }

    void givenAByte() const { EXPECT_EQ(::write(writer.get(), "x", 1), 1); }

    void givenAFullPipe() const {
        ASSERT_EQ(::fcntl(writer.get(), F_SETFL, O_NONBLOCK), 0);
        const std::string piece(65536, 'x');
        while (::write(writer.get(), piece.data(), piece.size()) > 0) {
        }
        ASSERT_EQ(errno, EAGAIN);
    }

    static Deadline longPast() { return steady_clock::now() - 24h; }

    Base::UniqueFd reader;
    Base::UniqueFd writer;
};

using WaitReadable = PipeWait;
using WaitWritable = PipeWait;

TEST_F(WaitReadable, SucceedsIfDataIsAvailable) {
    givenAByte();

    EXPECT_EQ(waitReadable(reader.get(), deadlineIn(1h)), Readiness::ready);
    EXPECT_EQ(waitReadable(reader.get(), {}), Readiness::ready);
}

TEST_F(WaitReadable, ChecksOnceEvenAfterTheDeadline) {
    givenAByte();

    EXPECT_EQ(waitReadable(reader.get(), longPast()), Readiness::ready);
}

TEST_F(WaitReadable, TimesOutImmediatelyAfterTheDeadline) {
    EXPECT_EQ(waitReadable(reader.get(), longPast()), Readiness::timedOut);
}

TEST_F(WaitReadable, DoesNotTimeOutBeforeTheDeadline) {
    const Deadline deadline = deadlineIn(50ms);

    EXPECT_EQ(waitReadable(reader.get(), deadline), Readiness::timedOut);
    EXPECT_TRUE(hasPassed(deadline));
}

TEST_F(WaitReadable, KeepsItsDeadlineDespiteSignals) {
    const SignalStorm storm;
    const Deadline deadline = deadlineIn(200ms);

    EXPECT_EQ(waitReadable(reader.get(), deadline), Readiness::timedOut);
    EXPECT_TRUE(hasPassed(deadline));
    EXPECT_GT(SignalStorm::count(), 0);
}

TEST_F(WaitReadable, WaitsForLateDataDespiteSignals) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> late(::popen("sleep 0.2; echo late", "re"),
                                                               ::pclose);
    const SignalStorm storm;

    EXPECT_EQ(waitReadable(::fileno(late.get()), {}), Readiness::ready);
    EXPECT_GT(SignalStorm::count(), 0);
    std::array<char, 8> line{};
    EXPECT_STREQ(std::fgets(line.data(), line.size(), late.get()), "late\n");
}

TEST_F(WaitReadable, TreatsTheEndOfAPipeAsReadable) {
    writer.reset();

    EXPECT_EQ(waitReadable(reader.get(), {}), Readiness::ready);
}

TEST_F(WaitReadable, AcceptsADeadlineBeyondTheSystemsLimit) {
    givenAByte();

    EXPECT_EQ(waitReadable(reader.get(), deadlineIn(24h * 365)), Readiness::ready);
}

TEST_F(WaitReadable, FailsForAClosedDescriptor) {
    const int closed = reader.get();
    reader.reset();

    EXPECT_EQ(waitReadable(closed, {}), Readiness::failed);
    EXPECT_EQ(errno, EBADF);
}

TEST_F(WaitReadable, FailsWithoutADescriptor) {
    EXPECT_EQ(waitReadable(-1, {}), Readiness::failed);
    EXPECT_EQ(errno, EBADF);
}

TEST(WaitReadableUnderFaults, FailsIfTheSystemCallFails) {
    const Outcome outcome = probeInjected({.faults = {"?poll,ppoll:error=ENOMEM"}}, {"waitForInput"});

    EXPECT_EQ(outcome.out,
              "waits\n"
              "Cannot allocate memory\n");
    EXPECT_EQ(outcome.err, "");
}

TEST_F(WaitWritable, SucceedsIfThereIsRoom) {
    EXPECT_EQ(waitWritable(writer.get(), longPast()), Readiness::ready);
}

TEST_F(WaitWritable, KeepsItsDeadlineDespiteSignalsIfThereIsNoRoom) {
    givenAFullPipe();
    const SignalStorm storm;
    const Deadline deadline = deadlineIn(100ms);

    EXPECT_EQ(waitWritable(writer.get(), deadline), Readiness::timedOut);
    EXPECT_TRUE(hasPassed(deadline));
    EXPECT_GT(SignalStorm::count(), 0);
}

TEST(DeadlineTest, NeverPassesWithoutALimit) {
    EXPECT_FALSE(hasPassed({}));
}

TEST(DeadlineTest, PassesWhenItsTimeIsOver) {
    EXPECT_FALSE(hasPassed(deadlineIn(1h)));
    EXPECT_TRUE(hasPassed(deadlineIn(0ms)));
    EXPECT_TRUE(hasPassed(deadlineIn(-1ms)));
}

TEST(Nap, LastsItsWholeTimeDespiteSignals) {
    const SignalStorm storm;
    const auto begin = steady_clock::now();

    nap(200ms);

    EXPECT_GE(steady_clock::now() - begin, 200ms);
    EXPECT_GT(SignalStorm::count(), 0);
}

/// Runs until everything printed before the wait has arrived. Otherwise it never ends.
void expectOutputDuringTheWait(const std::string& function, const std::string& output) {
    std::array<int, 2> silentInput{};
    ASSERT_EQ(::pipe2(silentInput.data(), O_CLOEXEC), 0);
    const Base::UniqueFd reader(silentInput[0]);
    const Base::UniqueFd writer(silentInput[1]);
    ASSERT_EQ(::dup2(reader.get(), STDIN_FILENO), STDIN_FILENO);
    const Process waiting(probeCommand({function}));

    while (waiting.outSoFar() != output) {
        std::this_thread::sleep_for(10ms);
    }
}

TEST(WaitingProcess, ShowsWhatItPrintedBeforeAWait) {
    expectOutputDuringTheWait("waitForInput", "waits\n");
}

TEST(WaitingProcess, ShowsWhatItPrintedBeforeANap) {
    expectOutputDuringTheWait("napForAnHour", "naps\n");
}

}  // namespace
