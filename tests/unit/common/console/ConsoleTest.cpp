#include <gtest/gtest.h>
#include <sys/resource.h>

#include "Console.hpp"
#include "OutputCapture.hpp"
#include "Probe.hpp"
#include "ResourceLimit.hpp"
#include "TestFiles.hpp"

namespace {

class Console : public testing::Test {
protected:
    void TearDown() override { Korvel::setVerboseMode(false); }

    OutputCapture console;
};

TEST_F(Console, PrintsThePiecesUnchanged) {
    Korvel::print("port ", 7, ' ', std::string("of eth0"));

    EXPECT_EQ(console.out(), "port 7 of eth0");
    EXPECT_EQ(console.err(), "");
}

TEST_F(Console, ShowsProgressOnlyInVerboseMode) {
    Korvel::progress("hidden");
    Korvel::setVerboseMode(true);
    Korvel::progress("step ", 2);

    EXPECT_EQ(console.out(), "step 2\n");
    EXPECT_EQ(console.err(), "");
}

TEST_F(Console, ReportsAFailureAsALineOnStandardError) {
    EXPECT_FALSE(Korvel::fail("no port ", 7));

    EXPECT_EQ(console.out(), "");
    EXPECT_EQ(console.err(), "no port 7\n");
}

TEST_F(Console, ReportsAFailureAfterALineThatWasLost) {
    std::cerr.setstate(std::ios::badbit);

    EXPECT_FALSE(Korvel::fail("no port ", 7));

    EXPECT_EQ(console.err(), "no port 7\n");
}

#ifndef __SANITIZE_ADDRESS__  // it needs terabytes of address space
TEST_F(Console, ReportsAFailureInFullWithoutMemory) {
    const std::string reason(std::size_t{1} << 20, 'x');
    {
        const ResourceLimit noMemory(RLIMIT_AS, 0);
        EXPECT_FALSE(Korvel::fail("no port: ", reason));
    }

    EXPECT_TRUE(console.err() == "no port: " + reason + '\n');  // too long to print in a failure
}
#endif

TEST_F(Console, ReportsWhyASystemCallFailed) {
    errno = ENOENT;
    EXPECT_FALSE(Korvel::failErrno("cannot open x: "));

    EXPECT_EQ(console.err(), "cannot open x: No such file or directory\n");
}

TEST_F(Console, ReportsTheNumberOfTheErrorBeforeTheReason) {
    errno = EACCES;
    EXPECT_FALSE(Korvel::failErrnoNumber("errno "));

    EXPECT_EQ(console.err(), "errno 13: Permission denied\n");
}

TEST_F(Console, SucceedsIfNoOutputWasLost) {
    Korvel::print("all of it\n");

    EXPECT_TRUE(Korvel::finishStandardOutput());
    EXPECT_EQ(console.out(), "all of it\n");
    EXPECT_EQ(console.err(), "");
}

TEST(ConsoleStreams, KeepTheOrderOfWriting) {
    const Outcome outcome = probe({"speak"}, {.together = true});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out,
              "first line\n"
              "second line\n"
              "third line\n"
              "fourth line\n"
              "fifth line\n"
              "true\n");
}

TEST(ConsoleStreams, ReportLostOutput) {
    const Outcome outcome = probe({"speakTwice"}, {.standardOutput = "/dev/full"});

    EXPECT_EQ(outcome.err, "Error while writing standard output: No space left on device\n");
}

TEST(ConsoleStreams, ReportTheReasonOfTheFirstLoss) {
    writeFile("/tmp/output", "");

    const Outcome outcome =
        probeInjected({.faults = {"write,writev:error=EIO:when=1"}, .path = "/tmp/output"}, {"speakTwice"},
                      {.standardOutput = "/tmp/output"});

    EXPECT_EQ(contentOfFile("/tmp/output"), "");
    EXPECT_EQ(outcome.err, "Error while writing standard output: Input/output error\n");
}

}  // namespace
