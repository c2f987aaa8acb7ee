// Files that other users own or planted. The users are real: the board's root, and people who share its /tmp.

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "PackageFixture.hpp"
#include "TestFiles.hpp"
#include "TrustedOpen.hpp"

namespace fs = std::filesystem;

namespace {

constexpr uid_t root = 0;
constexpr uid_t alice = 1001;
constexpr uid_t bob = 1002;

class ForeignFileTest : public PackageFixture {
protected:
    static constexpr const char* workFile = "/tmp/korvel/fuse/iwf/tracing_on.log";
    static constexpr const char* notOpened = "Error while opening /tmp/korvel/fuse/iwf/tracing_on.log\n";
    static constexpr const char* replyNotOpened =
        "Error while opening /tmp/korvel/mmi/iwf/SocketSvcInfo.log\n";
    static constexpr const char* state = "/tmp/fuse/iwf/tracing_on";
    static constexpr const char* stateNotOpened =
        "Error while opening /tmp/fuse/iwf/tracing_on\n"
        "Output of /tmp/korvel/fuse/iwf/tracing_on.log is empty\n";
    static constexpr const char* precious = "/tmp/precious";
    static constexpr const char* pidFile = "/tmp/korvelpids.tmp";
    static constexpr const char* dump = "/tmp/netfp_proxy.log";
    static constexpr const char* dumpRefused =
        "Error while reading /tmp/netfp_proxy.log: Permission denied\n";

    static inline const Words information{"-d", "iwf", "dump", "dinf"};

    static Files informationFiles() {
        return together({stateFiles("iwf", infoStates), replyFiles("iwf", infoCommands)});
    }

    static Outcome collectAs(uid_t user, const Words& arguments) {
        return collect(arguments, {.user = user});
    }

    /// Creates a collection by Alice, then changes a state.
    void haveAliceCollect() {
        startBoard();
        ASSERT_EQ(collectAs(alice, information), success());
        ASSERT_EQ(ownerOf(workFile), alice);
        writeFile(state, "since then\n");
    }

    /// Starts a board where this file and its folder belong to Alice.
    void haveFolderOfAliceWith(const std::string& path) {
        startBoard();
        ASSERT_EQ(::chown(path.c_str(), alice, alice), 0);
        ASSERT_EQ(::chown(fs::path(path).parent_path().c_str(), alice, alice), 0);
    }

    /// Lets Alice plant something at the state's file in her work directory.
    static void plant(const std::string& command) {
        fs::remove(workFile);
        ASSERT_EQ(run({"sh", "-c", command}, {.user = alice}), success());
    }

    /// A file that only root may read.
    static void writePrecious() {
        writeFile(precious, "precious");
        fs::permissions(precious, fs::perms::owner_read | fs::perms::owner_write);
    }

    static void writeFileOf(uid_t owner, const std::string& path, const std::string& text) {
        writeFile(path, text);
        ASSERT_EQ(::chown(path.c_str(), owner, owner), 0);
    }

    /// For a link, the owner of the link itself.
    static uid_t ownerOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
        return status.st_uid;
    }

    /// A process of this user that the process list shows as netfp_proxy. Its shell runs `onSignal` for each
    /// dump request.
    static std::unique_ptr<Process> startProxy(uid_t user, const std::string& onSignal) {
        const std::string script = "trap '" + onSignal + "' USR1; echo ready; while :; do sleep 0.02; done";
        auto proxy = std::make_unique<Process>(
            Words{"bash", "-c", "exec -a netfp_proxy bash -c \"$1\"", "bash", script},
            Surroundings{.user = user});
        await([&] { return proxy->outSoFar() == "ready\n"; });
        return proxy;
    }

    template <typename Condition>
    static void await(Condition condition) {
        while (!condition()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    /// The errno value if `user` may not open the file to append to it. Otherwise 0.
    static int appendingErrorOf(uid_t user, const std::string& path) {
        const pid_t child = ::fork();
        if (child == 0) {
            const bool opened = ::setuid(user) == 0 &&
                                static_cast<bool>(Korvel::openTrusted(path, Korvel::SharedFile::refuse));
            ::_exit(opened ? 0 : errno);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WEXITSTATUS(status);
    }
};

TEST_F(ForeignFileTest, APackageOfRootHasItsOwnLogsAfterACollectionByAUser) {
    haveAliceCollect();

    EXPECT_EQ(
        collect({"-d", "iwf", "pkg-pm", "dump", "dinf"}, withCommand("fp_linux_log_collect", "exit 0\n")),
        success());

    EXPECT_EQ(workFiles(), informationFiles());
    EXPECT_EQ(filesIn(package("_post_mortem.tgz")), informationFiles());
    EXPECT_EQ(ownerOf(workFile), root);
}

TEST_F(ForeignFileTest, AUserMayNotReplaceFilesInAWorkDirectoryOfRoot) {
    startBoard();
    ASSERT_EQ(collect(information), success());
    const Files expected = workFiles();
    writeFile(state, "since then\n");

    EXPECT_EQ(collectAs(alice, information), success("", std::string(notOpened) + replyNotOpened));

    EXPECT_EQ(workFiles(), expected);
}

TEST_F(ForeignFileTest, AUserMayNotReplaceAnotherUsersFileInAStickyFolder) {
    haveAliceCollect();
    const std::string before = contentOfFile(workFile);
    fs::permissions(fs::path(workFile).parent_path(), fs::perms::all | fs::perms::sticky_bit);

    const Outcome outcome = collectAs(bob, information);

    EXPECT_EQ(outcome, success("", std::string(notOpened) + replyNotOpened));
    EXPECT_EQ(contentOfFile(workFile), before);
}

/// Without the kernel's protection of hard links, Alice could create this one. Here root creates it for her.
TEST_F(ForeignFileTest, AFileOfRootIsNotWrittenToThroughAHardLink) {
    haveAliceCollect();
    writePrecious();
    fs::remove(workFile);
    fs::create_hard_link(precious, workFile);

    EXPECT_EQ(collect(information), success());

    EXPECT_EQ(contentOfFile(precious), "precious");
    EXPECT_EQ(fs::hard_link_count(precious), 1);
    EXPECT_EQ(workFiles(), informationFiles());
}

TEST_F(ForeignFileTest, AFileOfRootIsNotWrittenToThroughALinkOfAUser) {
    haveAliceCollect();
    writePrecious();
    plant(std::string("ln -s ") + precious + " " + workFile);

    EXPECT_EQ(collect(information), success("", notOpened));

    EXPECT_EQ(contentOfFile(precious), "precious");
}

TEST_F(ForeignFileTest, NothingIsWrittenThroughALinkInPlaceOfAFolder) {
    haveAliceCollect();
    fs::create_directory("/tmp/elsewhere");
    ASSERT_EQ(
        run({"sh", "-c", "cd /tmp/korvel/fuse && rm -r iwf && ln -s /tmp/elsewhere iwf"}, {.user = alice}),
        success());

    EXPECT_EQ(collect(information), success("", notOpened));

    EXPECT_EQ(filesBelow("/tmp/elsewhere"), Words{});
}

TEST_F(ForeignFileTest, NothingIsReadThroughALinkOfAUser) {
    startBoardWithFaults({"netfp_proxy=silent"});
    writePrecious();
    ASSERT_EQ(run({"ln", "-s", precious, dump}, {.user = alice}), success());

    EXPECT_EQ(collect({"dump", "proxy"}), success("", dumpRefused));

    EXPECT_EQ(workFiles(), Files{});
    EXPECT_EQ(ownerOf(dump), alice);
}

/// Whoever is first can create /tmp/fuse/iwf. Without the kernel's protection of hard links, a link can be
/// there.
TEST_F(ForeignFileTest, NothingIsReadThroughAHardLinkInAFolderOfAUser) {
    haveFolderOfAliceWith(state);
    writePrecious();
    fs::remove(state);
    fs::create_hard_link(precious, state);

    EXPECT_EQ(collect(information), success("", stateNotOpened));

    EXPECT_EQ(workFiles(), replyFiles("iwf", infoCommands));
}

TEST_F(ForeignFileTest, AStateWithTwoNamesIsReadIfItBelongsToTheUserOfItsFolder) {
    haveFolderOfAliceWith(state);
    fs::create_hard_link(state, "/tmp/other");

    EXPECT_EQ(collect(information), success());

    EXPECT_EQ(workFiles(), informationFiles());
}

TEST_F(ForeignFileTest, ADumpOfTheProcessOwnerIsRead) {
    startBoardWithout({"netfp_proxy"});
    writeFile("/tmp/prepared", dumpText("netfp_proxy"));
    const std::unique_ptr<Process> proxy = startProxy(alice, "cp /tmp/prepared /tmp/netfp_proxy.log");

    EXPECT_EQ(collect({"dump", "proxy"}), success());

    EXPECT_EQ(workFiles(), dumpFiles({"netfp_proxy"}));
    EXPECT_FALSE(fs::exists(dump));
}

TEST_F(ForeignFileTest, ADumpOfAThirdUserIsNotReadAndStays) {
    startBoardWithout({"netfp_proxy"});
    writeFileOf(bob, dump, dumpText("netfp_proxy"));
    const std::unique_ptr<Process> proxy = startProxy(alice, ":");

    EXPECT_EQ(collect({"dump", "proxy"}), success("", dumpRefused));

    EXPECT_EQ(workFiles(), Files{});
    EXPECT_EQ(ownerOf(dump), bob);
    EXPECT_EQ(contentOfFile(dump), dumpText("netfp_proxy"));
}

TEST_F(ForeignFileTest, ADumpThatAUserPlantedForAProcessOfRootIsNotRead) {
    startBoardWithFaults({"netfp_proxy=silent"});
    writeFileOf(alice, dump, dumpText("netfp_proxy"));

    EXPECT_EQ(collect({"dump", "proxy"}), success("", dumpRefused));

    EXPECT_EQ(workFiles(), Files{});
}

TEST_F(ForeignFileTest, AProcessListingOfAnotherUserSkipsEveryProcess) {
    startBoard();
    writeFileOf(alice, pidFile, "root 7 netfp_proxy\n");

    const Outcome outcome = collectAs(bob, {"-v", "dump", "proxy"});

    EXPECT_EQ(outcome, success(verboseStart("", {"fuse", "mmi"}) +
                                   "Starting log collection from TI...\n"
                                   "Sending 'kill -10' signal to netfp_proxy [pid:0]...\n"
                                   "Invalid pid for netfp_proxy [pid:0], process may not be running, "
                                   "skipping\n",
                               "Error while opening /tmp/korvelpids.tmp\n"));
    EXPECT_EQ(contentOfFile(pidFile), "root 7 netfp_proxy\n");
}

TEST_F(ForeignFileTest, AProcessListingIsNotWrittenThroughALinkOfAnotherUser) {
    startBoard();
    ASSERT_EQ(run({"ln", "-s", "/tmp/created", pidFile}, {.user = alice}), success());

    EXPECT_EQ(collectAs(bob, {"dump", "proxy"}), success("", "Error while opening /tmp/korvelpids.tmp\n"));

    EXPECT_FALSE(fs::exists("/tmp/created"));
}

/// The folder could become a link before the shell opens it.
TEST_F(ForeignFileTest, AProcessListingIsNotWrittenToAFolderOfAnotherUser) {
    startBoard();
    ASSERT_EQ(run({"mkdir", pidFile}, {.user = alice}), success());

    EXPECT_EQ(collect({"dump", "proxy"}), success("", "Error while opening /tmp/korvelpids.tmp\n"));

    EXPECT_EQ(workFiles(), Files{});
}

/// Another user could plant a link before the shell creates the file.
TEST_F(ForeignFileTest, AProcessListingThatCannotBeCreatedIsNotLeftToTheShell) {
    startBoard();

    EXPECT_EQ(collectInjected({.faults = {"openat:error=ENOSPC:when=1"}, .path = pidFile}, {"dump", "proxy"}),
              success("", "Error while opening /tmp/korvelpids.tmp\n"));

    EXPECT_FALSE(fs::exists(pidFile));
}

TEST_F(ForeignFileTest, RootReplacesAProcessListingOfAnotherUser) {
    startBoard();
    writeFileOf(alice, pidFile, "root 7 netfp_proxy\n");

    EXPECT_EQ(collect({"dump", "proxy"}), success());

    EXPECT_EQ(workFiles(), dumpFiles({"netfp_proxy"}));
    EXPECT_FALSE(fs::exists(pidFile));
}

TEST_F(ForeignFileTest, AnArchiveOfAUserIsReplacedByThatOfRoot) {
    startBoard();
    const std::string archive = "/tmp/korvel/archive/dispatcher/runtime.log";
    writeFileOf(alice, archive, "");

    Process archiver({"korvel", "archive"});
    await([&] { return ownerOf(archive) == root && fs::file_size(archive) > 0; });
    ::kill(archiver.pid(), SIGTERM);

    EXPECT_EQ(archiver.wait(), (Outcome{128 + SIGTERM, "", ""}));
}

TEST_F(ForeignFileTest, NothingIsAppendedToAnotherUsersText) {
    writeFileOf(alice, "/tmp/log", "");
    fs::permissions("/tmp/log", fs::perms::all);
    writeFileOf(bob, "/tmp/linked", "");
    fs::create_hard_link("/tmp/linked", "/tmp/other");

    EXPECT_EQ(appendingErrorOf(alice, "/tmp/log"), 0);
    EXPECT_EQ(appendingErrorOf(bob, "/tmp/log"), EACCES);
    EXPECT_EQ(appendingErrorOf(root, "/tmp/log"), EACCES);
    EXPECT_EQ(appendingErrorOf(bob, "/tmp/linked"), EACCES);
}

}  // namespace
