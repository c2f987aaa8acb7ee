// The output does not depend on the environment of the program. Scripts compare it byte for byte.

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Process.hpp"

using Boardsim::Board;

namespace {

/// A shell command that starts the program.
struct World {
    std::vector<std::string> shell = {"sh", "-c"};
    Surroundings surroundings = {};
};

/// Command lines of every kind of job. Addresses in a process differ from those on the board by their size.
const std::vector<std::string> commandLines{
    "korvel --help",
    "korvel iiii",
    "korvel -v getport eth1 | sed 's/response ID: [0-9]*/response ID: NUMBER/'",
    "korvel getport ffff",
    "korvel mirrorport enable eth0 eth3",
    "korvel portswap eth1 eth2",
    "korvel addmulticastmac 01:00:5e:00:00:01 eth0 100",
    "korvel print master",
    "korvel loopbackport disable eth2",
    "korvel -d all resetqosstats",
    "korvel mem_dump 0xeb700040 60 | sed 's/0x[0-9a-f]\\{9,\\}/POINTER/'",
    "korvel desc_dump 0xeb6b6100 | sed 's/0x[0-9a-f]\\{9,\\}/POINTER/'",
    "korvel add_interface eth4",
    "korvel add_interface eth4",
    "korvel -d all print dinf dstat",
    "korvel -v -d all dump dinf server | sed 's/pid:[0-9]*/pid:PID/'",
    "korvel pkg-sup",
    "korvel pkg-pm; tar -tzf /ffs/run/logs/netfp_logs_post_mortem.tgz | sort",
    "rm -r /tmp/korvel; touch /tmp/korvel; korvel dump dinf; rm /tmp/korvel",
};

/// The whole output of these command lines, one after the other on one board.
std::string transcript(World world) {
    std::filesystem::remove_all("/tmp/korvel");
    std::filesystem::remove("/ffs/run/logs/netfp_logs_post_mortem.tgz");
    const Board board({});
    world.surroundings.together = true;
    std::string text;
    for (const std::string& line : commandLines) {
        std::vector<std::string> command = world.shell;
        command.push_back(line);
        const Outcome outcome = run(command, world.surroundings);
        text += "$ " + line + "\n" + outcome.out + "status " + std::to_string(outcome.status) + "\n";
    }
    return text;
}

World inLocale(const std::string& locale) {
    return {.surroundings = {.environment = {{"LANG", locale}, {"LOCPATH", "/tmp/locales"}, {"LC_ALL", ""}}}};
}

std::string withoutCarriageReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

}  // namespace

TEST(EnvironmentTest, OutputIsTheSameWithStandardInputClosed) {
    EXPECT_EQ(transcript({.surroundings = {.closedDescriptors = {0}}}), transcript({}));
}

TEST(EnvironmentTest, OutputIsTheSameWithoutATerminalType) {
    EXPECT_EQ(transcript({.shell = {"env", "-u", "TERM", "sh", "-c"}}), transcript({}));
}

TEST(EnvironmentTest, OutputIsTheSameOnATerminalAndWithoutOne) {
    const World terminal{.shell = {"script", "--quiet", "--return", "/dev/null", "--command"}};
    EXPECT_EQ(withoutCarriageReturns(transcript(terminal)),
              transcript({.shell = {"setsid", "-w", "sh", "-c"}}));
}

TEST(EnvironmentTest, OutputIsTheSameInEveryLanguage) {
    ASSERT_EQ(run({"mkdir", "/tmp/locales"}).status, 0);
    ASSERT_EQ(run({"localedef", "-i", "tr_TR", "-f", "UTF-8", "/tmp/locales/tr_TR.UTF-8"}).err, "");
    ASSERT_EQ(run({"date", "-d", "2026-01-01", "+%A"}, inLocale("tr_TR.UTF-8").surroundings).out,
              "Perşembe\n");

    const std::string inC = transcript(inLocale("C"));
    EXPECT_EQ(transcript(inLocale("C.UTF-8")), inC);
    EXPECT_EQ(transcript(inLocale("tr_TR.UTF-8")), inC);
}
