#include <filesystem>

#include "CollectionFixture.hpp"
#include "TestFiles.hpp"
#include "TextFile.hpp"

using Boardsim::linesOf;

namespace {

/// What a run reports about failed system calls, and what it still does.
class CollectionSystemCallTest : public CollectionFixture {
protected:
    const Words request{"-d", "all", "dump", "dinf"};

    /// The files of a run in which each instance's reply did or did not arrive.
    static Files filesWith(const Files& iwf, const Files& sfn) {
        return together({stateFiles("iwf", infoStates), stateFiles("sfn", infoStates), iwf, sfn});
    }

    static Files filesWithoutReplies() {
        return filesWith(emptyReplyFiles("iwf", infoCommands), emptyReplyFiles("sfn", infoCommands));
    }

    static Files filesOfSfnOnly() {
        return filesWith(emptyReplyFiles("iwf", infoCommands), replyFiles("sfn", infoCommands));
    }

    static Files allFiles() {
        return filesWith(replyFiles("iwf", infoCommands), replyFiles("sfn", infoCommands));
    }

    /// The number of the close() call, counted from 1, that closes the socket of this port.
    static int closeOfPort(const std::string& port, const Words& arguments) {
        Words command{"strace", "--quiet=all", "-yy", "-e", "trace=close", "-o", "/tmp/calls", "korvel"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        run(command, {.environment = {{"ASAN_OPTIONS", "detect_leaks=0"}}});
        int count = 0;
        for (const std::string& line : linesOf(contentOfFile("/tmp/calls"))) {
            count += line.starts_with("close(") ? 1 : 0;
            if (line.find("UDP:[0.0.0.0:" + port + "]") != std::string::npos) {
                return count;
            }
        }
        return 0;
    }
};

TEST_F(CollectionSystemCallTest, AFailedSocketCallSkipsAllInstances) {
    startBoard();
    EXPECT_EQ(collectInjected({{"socket:error=EMFILE"}}, request),
              success("", "Error while opening socket, errno: Too many open files\n"));
    EXPECT_EQ(workFiles(), filesWithoutReplies());
}

TEST_F(CollectionSystemCallTest, AFailedAddressReuseSkipsAllInstances) {
    startBoard();
    EXPECT_EQ(collectInjected({{"setsockopt:error=ENOMEM"}}, request),
              success("", "setsockopt SO_REUSEADDR error: Cannot allocate memory\n"));
    EXPECT_EQ(workFiles(), filesWithoutReplies());
}

TEST_F(CollectionSystemCallTest, AFailedBindSkipsAllInstances) {
    startBoard();
    EXPECT_EQ(collectInjected({{"bind:error=EACCES"}}, request),
              success("", "Error while binding socket, errno: Permission denied\n"));
    EXPECT_EQ(workFiles(), filesWithoutReplies());
}

TEST_F(CollectionSystemCallTest, ACommandThatCannotBeSentIsReportedAndTheNextOneIsSent) {
    startBoard();

    const Outcome outcome =
        collectInjected({{"sendto:error=EPERM:when=1"}}, {"-d", "iwf", "dump", "print", "dstat"});

    EXPECT_EQ(
        outcome,
        success(
            printedStates("iwf", statsStates) + printedReplies("iwf", {"ReassemblyCounters", "HeapStats"}),
            "Sending command SocketSvcCounters to MmiSvc failed, errno: Operation not permitted\n"));
    EXPECT_EQ(workFiles(),
              together({stateFiles("iwf", statsStates), emptyReplyFiles("iwf", {"SocketSvcCounters"}),
                        replyFiles("iwf", {"ReassemblyCounters", "HeapStats"})}));
    EXPECT_EQ(requestsTo("iwf_dispatcher"), (Words{"ReassemblyCounters", "HeapStats"}));
}

TEST_F(CollectionSystemCallTest, AnInterruptedSendIsRepeated) {
    startBoard();
    EXPECT_EQ(collectInjected({{"sendto:error=EINTR:when=1"}}, request), success());
    EXPECT_EQ(workFiles(), allFiles());
}

TEST_F(CollectionSystemCallTest, AFailedWaitEndsTheReply) {
    startBoard();
    EXPECT_EQ(collectInjected({{"poll,ppoll:error=ENOMEM:when=1"}}, request),
              success("", "poll(): An error occured, errno: Cannot allocate memory\n"));
    EXPECT_EQ(workFiles(), filesOfSfnOnly());
}

TEST_F(CollectionSystemCallTest, AnInterruptedWaitContinues) {
    startBoard();
    EXPECT_EQ(collectInjected({{"poll,ppoll:error=EINTR:when=1+2"}}, request), success());
    EXPECT_EQ(workFiles(), allFiles());
}

TEST_F(CollectionSystemCallTest, AFailedReceiveEndsTheReply) {
    startBoard();
    EXPECT_EQ(collectInjected({{"recvfrom:error=EIO:when=1"}}, request),
              success("", "recv(): An error occured, errno: Input/output error\n"));
    EXPECT_EQ(workFiles(), filesOfSfnOnly());
}

TEST_F(CollectionSystemCallTest, AnAnnouncedButMissingDatagramIsWaitedForAgain) {
    startBoard();
    EXPECT_EQ(collectInjected({{"recvfrom:error=EAGAIN:when=1"}}, request), success());
    EXPECT_EQ(workFiles(), allFiles());
}

TEST_F(CollectionSystemCallTest, ASocketThatCannotBeClosedIsReportedAndTheNextInstanceIsAsked) {
    startBoard();
    const int number = closeOfPort("7778", request);
    ASSERT_GT(number, 0);
    std::filesystem::remove_all(workDir);

    const Outcome outcome = collectInjected({{"close:error=EIO:when=" + std::to_string(number)}}, request);

    EXPECT_EQ(outcome, success("", "Error while closing socket, errno: Input/output error\n"));
    EXPECT_EQ(workFiles(), allFiles());
}

TEST_F(CollectionSystemCallTest, CommandsThatCannotBeStartedAreReportedAndEverythingIsPrinted) {
    startBoard();

    const Outcome outcome = collectInjected({{"clone,clone3,fork,vfork:error=EAGAIN"}},
                                            {"-d", "iwf", "print", "dump", "dinf", "proxy"});

    const auto unstarted = [](const std::string& command) {
        return "Error while executing " + command + " command, errno: Resource temporarily unavailable\n";
    };
    EXPECT_EQ(outcome,
              success(printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands) +
                          section("netfp_proxy", ""),
                      unstarted("mkdir -p /tmp/korvel/fuse") + unstarted("mkdir -p /tmp/korvel/mmi") +
                          unstarted("mkdir -p /tmp/korvel/ti") + unstarted(listing) +
                          unstarted("mkdir -p /tmp/korvel/fuse/iwf/") +
                          "Error while opening /tmp/korvel/fuse/iwf/tracing_on.log\n" +
                          unstarted("mkdir -p /tmp/korvel/mmi/iwf/") +
                          "Error while creating directory: /tmp/korvel/mmi/iwf/\n"));
}

TEST_F(CollectionSystemCallTest, ACommandWithAnUnknownExitStatusIsReported) {
    startBoard();
    std::filesystem::create_directories("/tmp/korvel/fuse");

    // The first child reads the kernel's command line.
    const Outcome outcome = collectInjected({{"wait4:error=ECHILD:when=2"}}, {"-d", "iwf", "dump", "dlog"});

    EXPECT_EQ(outcome, success("",
                               "Error while executing mkdir -p /tmp/korvel/fuse command, errno: No child "
                               "processes\n"));
    EXPECT_EQ(filesBelow(workDir), Words{"fuse/HistoryLog.log"});
}

TEST_F(CollectionSystemCallTest, ACommandThatASignalEndsIsReported) {
    startBoard();
    // The shell may have become the command, or may be waiting for it.
    const Surroundings surroundings =
        withCommand("mkdir", "[ \"$(cat /proc/$PPID/comm)\" = sh ] && kill -KILL $PPID\nkill -KILL $$\n");

    const Outcome outcome = collect({"-d", "iwf", "dump", "dinf"}, surroundings);

    const auto killed = [](const std::string& directory) {
        return "Command: mkdir -p " + directory + " was signalled: 9\n";
    };
    EXPECT_EQ(outcome, success("", killed("/tmp/korvel/fuse") + killed("/tmp/korvel/mmi") +
                                       killed("/tmp/korvel/fuse/iwf/") +
                                       "Error while opening /tmp/korvel/fuse/iwf/tracing_on.log\n" +
                                       killed("/tmp/korvel/mmi/iwf/") +
                                       "Error while creating directory: /tmp/korvel/mmi/iwf/\n"));
}

TEST_F(CollectionSystemCallTest, AFullConsoleIsReportedOnceAndSpoilsNoFile) {
    startBoard();

    const Outcome outcome =
        collect({"-v", "-d", "all", "print", "dump", "dinf"}, {.standardOutput = "/dev/full"});

    EXPECT_EQ(outcome, failure("", "Error while writing standard output: No space left on device\n"));
    EXPECT_EQ(workFiles(), allFiles());
}

TEST_F(CollectionSystemCallTest, WithoutDescriptorsForTheDirectoryFilesAreReportedAndEverythingIsPrinted) {
    startBoard();

    const Outcome outcome = collectInjected({.faults = {"openat:error=EMFILE"}, .path = "/tmp/korvel/mmi"},
                                            {"-d", "iwf", "print", "dump", "dinf"});

    EXPECT_EQ(outcome, success(printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands),
                               "Error while opening /tmp/korvel/mmi/iwf/SocketSvcInfo.log\n"));
    EXPECT_EQ(workFiles(), stateFiles("iwf", infoStates));
}

TEST_F(CollectionSystemCallTest, TooFewDescriptorsForTheShellAreEnoughForTheRest) {
    startBoard();
    const std::vector<int> inherited{3, 4, 5, 6, 7, 8, 9};  // the parent of the tests may have left some

    const Outcome outcome = collect({"-d", "iwf", "print", "dump", "dinf", "proxy"},
                                    {.closedDescriptors = inherited, .limits = {{RLIMIT_NOFILE, 9}}});

    // The shell saves its own descriptors at numbers from 10.
    EXPECT_EQ(outcome, success(printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands) +
                                   section("netfp_proxy", ""),
                               "sh: 1: 1: Invalid argument\nCommand: " + std::string(listing) +
                                   " exited with error, exit code: 2\n"));
    EXPECT_EQ(workFiles(), together({stateFiles("iwf", infoStates), replyFiles("iwf", infoCommands)}));
}

TEST_F(CollectionSystemCallTest, AListingOfProcessesThatCannotBeReadIsReported) {
    startBoard();
    const Injection injection{.faults = {"read:error=EIO"}, .path = "/tmp/korvelpids.tmp"};

    EXPECT_EQ(collectInjected(injection, {"dump", "netfp"}),
              success("", "Error while reading /tmp/korvelpids.tmp: Input/output error\n"));
}

TEST_F(CollectionSystemCallTest, ADeploymentFileThatCannotBeCheckedIsReported) {
    startBoard();
    const Injection injection{
        .faults = {"access:error=EIO"}, .path = "/rom/private/is_master", .inChildren = true};

    EXPECT_EQ(collectInjected(injection, {"print", "proxy"}).err,
              "Error while reading /rom/private/is_master: Input/output error\n");
}

TEST_F(CollectionSystemCallTest, AStateDirectoryThatCannotBeCheckedIsReported) {
    startBoard();
    const Injection injection{
        .faults = {"newfstatat:error=EIO"}, .path = "/tmp/fuse/sfn/", .inChildren = true};

    EXPECT_EQ(collectInjected(injection, {"-d", "iwf", "print", "dstat"}).err,
              "Error while reading /tmp/fuse/sfn/: Input/output error\n");
}

}  // namespace
