#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "Boardsim.hpp"

namespace fs = std::filesystem;

TEST(BoardsimCommandTest, ExitsWithTheStatusOfTheCommand) {
    const struct {
        std::vector<std::string> arguments;
        int status;
        std::string err;
    } cases[] = {
        {{"--bare", "true"}, 0, ""},
        {{"--bare", "--", "sh", "-c", "exit 7"}, 7, ""},
        {{"--bare", "--", "sh", "-c", "kill -9 $$"}, 137, ""},
        {{"--bare", "--", "no-such-command"}, 127, "boardsim: no-such-command: No such file or directory\n"},
        {{"--bare", "--", "/usr"}, 126, "boardsim: /usr: Permission denied\n"},
    };
    for (const auto& [arguments, status, err] : cases) {
        SCOPED_TRACE(arguments.back());
        const Outcome outcome = boardsim(arguments);
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.err, err);
        EXPECT_EQ(outcome.out, "");
    }
}

TEST(BoardsimCommandTest, PassesArgumentsStreamsAndEnvironmentOn) {
    const Outcome outcome =
        boardsim({"--bare", "sh", "-c", "cat; echo \"$0|$1|$WORD\"; echo err >&2", "--first", "a  b"},
                 {.environment = {{"WORD", "passed"}}});

    EXPECT_EQ(outcome.out, "--first|a  b|passed\n");
    EXPECT_EQ(outcome.err, "err\n");
}

TEST(BoardsimCommandTest, RunsAShellByDefault) {
    const Outcome outcome = run({"sh", "-c", "echo 'echo $0; exit 3' | " BOARDSIM_PROGRAM " --bare"});

    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "bash\n");
}

TEST(BoardsimCommandTest, FindsItsOwnProgramsByNameAndByTheirPlaceOnTheHost) {
    const fs::path program = BOARDSIM_PROGRAM;
    const std::string relative = fs::relative(program);
    const std::string help = boardsim({"--help"}).out;

    EXPECT_EQ(boardsim({"--bare", "--", "boardsim", "--help"}).out, help);
    EXPECT_EQ(boardsim({"--bare", "--", program, "--help"}).out, help);
    EXPECT_EQ(boardsim({"--bare", "--", relative, "--help"}).out, help);
}

TEST(BoardsimCommandTest, EndsProcessesThatTheCommandLeavesRunning) {
    const Outcome outcome = onBoard({"--bare"}, "(trap '' TERM HUP; sleep 1000; sleep 1000) & echo started");

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "started\n");
}

TEST(BoardsimCommandTest, PrintsAShortHelp) {
    const Outcome outcome = boardsim({"-h"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(outcome.out.starts_with("Usage: boardsim "));
    EXPECT_LT(outcome.out.size(), boardsim({"--help"}).out.size());
}

TEST(BoardsimCommandTest, ShowsTheManualPagesOnTheBoard) {
    if (run({"sh", "-c", "command -v man"}).status != 0) {
        GTEST_SKIP() << "man is not installed (scripts/setup.sh installs it)";
    }
    const Outcome outcome = onBoard({"--bare"},
                                    "for page in korvel boardsim korvel-package fpdispatcher.conf; do "
                                    "man $page | sed -n '1s/ .*//p'; done");

    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "KORVEL(1)\nBOARDSIM(1)\nKORVEL-PACKAGE(5)\nFPDISPATCHER.CONF(5)\n");
}

TEST(BoardsimCommandTest, RefusesACommandLineThatMakesNoSense) {
    const struct {
        std::vector<std::string> arguments;
        std::string err;
    } cases[] = {
        {{"--colour"}, "boardsim: unknown option: --colour\n"},
        {{"-x"}, "boardsim: unknown option: -x\n"},
        {{"--secured=yes"}, "boardsim: unknown option: --secured=yes\n"},
        {{"--without"}, "boardsim: missing value: --without\n"},
        {{"--without", "nobody"},
         "boardsim: --without: unknown peer: 'nobody'\n"
         "boardsim: valid peers: system_log, netfp_master, netfp_proxy, netfp_server, resmgr_server, "
         "iwf_dispatcher, sfn_dispatcher\n"},
        {{"--fault", "nobody=silent"},
         "boardsim: --fault: unknown peer: 'nobody'\n"
         "boardsim: peers with faults: netfp_master, netfp_proxy, netfp_server, resmgr_server, "
         "iwf_dispatcher, sfn_dispatcher\n"},
        {{"--fault", "netfp_server=sad"},
         "boardsim: --fault: netfp_server has no fault 'sad'\n"
         "boardsim: valid faults: silent, slow:MS, dying, unended, short\n"},
        {{"--deployment", "moon"}, "boardsim: --deployment: unknown deployment: 'moon'\n"},
        {{"--cma-error", "x"}, "boardsim: --cma-error: not a number, or out of range: 'x'\n"},
        {{"--tmp-size", "0"}, "boardsim: --tmp-size: not a valid size: '0'\n"},
        {{"--config", "/no/file"}, "boardsim: cannot read /no/file: No such file or directory\n"},
        {{"--scenario", "/no/file"}, "boardsim: cannot read /no/file: No such file or directory\n"},
    };
    for (const auto& [arguments, err] : cases) {
        SCOPED_TRACE(err);
        const Outcome outcome = boardsim(arguments);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err, err);
    }
}
