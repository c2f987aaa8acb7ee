#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Boardsim.hpp"

namespace fs = std::filesystem;

TEST(BoardsimHostTest, ShowsEachPeerOnceInTheProcessList) {
    const Outcome outcome = boardsim({"ps", "aux"});

    for (const char* name : {"netfp_master", "netfp_proxy", "netfp_server", "resmgr_server", "iwf_dispatcher",
                             "sfn_dispatcher", "system_log"}) {
        SCOPED_TRACE(name);
        const std::size_t place = outcome.out.find(name);
        EXPECT_NE(place, std::string::npos);
        EXPECT_EQ(outcome.out.find(name, place + 1), std::string::npos);
    }
}

TEST(BoardsimHostTest, ShowsEachPeerToASearchThatExcludesTheProduct) {
    const Outcome outcome =
        boardsim({"sh", "-c",
                  "for p in /run/boardsim/peers/*; do readlink /proc/$(pidof ${p##*/})/exe; done | sort -u"});

    EXPECT_THAT(outcome.out,
                testing::AllOf(testing::StartsWith("/opt/board/"), testing::Not(testing::HasSubstr("korvel")),
                               testing::Not(testing::HasSubstr("grep"))));
}

TEST(BoardsimHostTest, StartsProcessIdsAboveTheNetlinkPorts) {
    std::istringstream ids(boardsim({"ps", "-e", "-o", "pid="}).out);
    int id = 0;
    ids >> id;
    EXPECT_EQ(id, 1);
    while (ids >> id) {
        EXPECT_GT(id, 300);
    }
}

TEST(BoardsimHostTest, IsRootWithoutCapabilitiesAndWithFilesOfItsOwn) {
    const Outcome outcome =
        onBoard({"--bare"},
                "id -un; hostname; pwd; echo $HOME; grep CapEff /proc/self/status; cut -d: -f1 /etc/passwd; "
                "ls /etc | grep -vxE 'groff|man_db.conf|manpath.config'");  // there if the host has man(1)

    EXPECT_EQ(outcome.out,
              "root\nboard\n/root\n/root\nCapEff:\t0000000000000000\nroot\nnobody\n"
              "alternatives\ngroup\nhostname\nhosts\nld.so.cache\npasswd\n");
}

TEST(BoardsimHostTest, LeavesNothingOnTheHost) {
    const std::string name = "boardsim_leak." + std::to_string(::getpid());

    const Outcome outcome =
        boardsim({"sh", "-c", "touch /tmp/$0 /dev/shm/$0 /run/$0 /ffs/$0 /rom/$0 /root/$0 /$0", name});

    EXPECT_EQ(outcome.status, 0) << outcome.err;
    for (const char* folder : {"/tmp/", "/dev/shm/", "/run/", "/ffs/", "/rom/", "/root/", "/"}) {
        std::error_code unreadable;
        EXPECT_FALSE(fs::exists(folder + name, unreadable)) << folder;
    }
}

TEST(BoardsimHostTest, CannotWriteToTheHostsPrograms) {
    const Outcome outcome =
        boardsim({"--bare", "--", "sh", "-c", "for f in /usr /opt/korvel /opt/board; do touch $f/x; done"});

    EXPECT_EQ(outcome.err,
              "touch: cannot touch '/usr/x': Read-only file system\n"
              "touch: cannot touch '/opt/korvel/x': Read-only file system\n"
              "touch: cannot touch '/opt/board/x': Read-only file system\n");
}

TEST(BoardsimHostTest, CannotWriteToSettingsOfTheHostsKernel) {
    const std::string writableSettings =
        "find /proc -regextype egrep -regex '/proc/([0-9]+|self|thread-self)' "
        "-prune -o -type f -writable -print";

    const Outcome outcome = boardsim({"--bare", "--", "sh", "-c", writableSettings});

    EXPECT_EQ(outcome.out, "");
}

TEST(BoardsimHostTest, CannotChangeTheHostsDeviceFiles) {
    // Sets the modes that they have on the host, in case it can.
    const std::string change =
        "cd /dev; for f in null zero full random urandom tty; do "
        "chmod 666 $f && echo $f; echo x > null && echo usable; done";

    const Outcome outcome = boardsim({"--bare", "--", "sh", "-c", change});

    EXPECT_EQ(outcome.out, "usable\nusable\nusable\nusable\nusable\nusable\n");
}

TEST(BoardsimHostTest, SendsNoSignalToTheHostsProcessGroupWithoutATerminal) {
    const Outcome outcome = run({"setsid", "--wait", "bash", "-c",
                                 "$0 --bare -- sh -c 'kill -KILL 0'; echo status $?", BOARDSIM_PROGRAM});

    EXPECT_EQ(outcome, (Outcome{.status = 0, .out = "status 137\n", .err = ""}));
}

TEST(BoardsimHostTest, HasANetworkOfItsOwn) {
    EXPECT_EQ(boardsim({"--bare", "--", "ls", "/sys/class/net"}).status, 2);
    EXPECT_EQ(boardsim({"--bare", "--", "sh", "-c", "sed 1,2d /proc/net/dev | cut -d: -f1"}).out, "    lo\n");
}

TEST(BoardsimHostTest, CannotUseTheKeysOfTheHostsSession) {
    EXPECT_EQ(boardsim({"--bare", "--", "/opt/korvel/tests/host_keys"}).out,
              "keyctl: Operation not permitted\n"
              "add_key: Operation not permitted\n"
              "request_key: Operation not permitted\n");
}

TEST(BoardsimHostTest, InheritsNoDescriptorsBeyondTheStandardOnes) {
    const Outcome outcome =
        run({"bash", "-c", "exec 77< /dev/null; exec $0 -- sh -c 'ls /proc/[0-9]*/fd/77'", BOARDSIM_PROGRAM});

    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "ls: cannot access '/proc/[0-9]*/fd/77': No such file or directory\n");
}

TEST(BoardsimHostTest, CollectsTheLogsOfLinux) {
    const Outcome outcome = boardsim({"sh", "-c",
                                      "logger -d --socket-errors=on hello; fp_linux_log_collect /tmp/w && ls "
                                      "/tmp/w/linux && cat /tmp/w/linux/cmdline.log"});

    EXPECT_EQ(outcome.out,
              "cmdline.log\ninterfaces.log\nmounts.log\nprocesses.log\nsystem.log\nuptime.log\n"
              "console=ttyS0,115200n8 root=/dev/ram0 rw mem=2G isolcpus=1,2,3\n");
}

TEST(BoardsimHostTest, RefusesToCollectWithoutAFolder) {
    const Outcome outcome = boardsim({"fp_linux_log_collect"});

    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "usage: fp_linux_log_collect DIR\n");
}

TEST(BoardsimHostTest, NeedsNoPrivilege) {
    // A copy, because others may not be able to read a folder of root.
    const fs::path copy = fs::path(testing::TempDir()) / ("boardsim." + std::to_string(::getpid()));
    const fs::path tree = fs::path(BOARDSIM_PROGRAM).parent_path().parent_path();
    for (const char* part : {"bin", PLATFORM_LIBRARIES}) {
        fs::create_directories(copy / part);
        fs::copy(tree / part, copy / part);
    }

    std::vector<std::string> command{
        copy / "bin/boardsim", "sh", "-c",
        "id -u; grep CapEff /proc/self/status; pidof netfp_master > /dev/null && touch /tmp/file; exit 5"};
    if (::geteuid() == 0) {
        const auto nobody = {"setpriv", "--reuid", "65534", "--regid", "65534", "--clear-groups"};
        command.insert(command.begin(), nobody.begin(), nobody.end());
    }

    const Outcome outcome = run(command);

    fs::remove_all(copy);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "0\nCapEff:\t0000000000000000\n");
    EXPECT_EQ(outcome.status, 5);
}
