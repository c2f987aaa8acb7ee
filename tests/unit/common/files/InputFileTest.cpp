#include <cstring>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include "ForeignOwner.hpp"
#include "InputFile.hpp"
#include "OutputCapture.hpp"
#include "Probe.hpp"
#include "Shell.hpp"
#include "SocketAddress.hpp"
#include "TestFiles.hpp"

using namespace Korvel;

namespace {

namespace fs = std::filesystem;

constexpr const char* inputPath = "/tmp/file";

std::string openingOf(const std::string& name) {
    const InputFile file(name);
    return file.isOpen() ? "open" : std::strerror(errno);
}

TEST(InputFile, OpensOnlyRegularFiles) {
    writeFile(inputPath, "");
    fs::create_directory("/tmp/folder");
    fs::create_symlink("file", "/tmp/link");
    fs::create_symlink("nowhere", "/tmp/dangling");
    fs::create_symlink("circle", "/tmp/circle");
    ASSERT_EQ(::mkfifo("/tmp/fifo", S_IRUSR | S_IWUSR), 0);
    const sockaddr_un address{.sun_family = AF_UNIX, .sun_path = "/tmp/socket"};
    const Base::UniqueFd socket(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    ASSERT_EQ(::bind(socket.get(), Base::genericAddress(address), sizeof address), 0);

    EXPECT_EQ(openingOf(inputPath), "open");
    EXPECT_EQ(openingOf("/tmp/link"), "open");
    EXPECT_EQ(openingOf("/proc/self/status"), "open");
    EXPECT_EQ(openingOf("/tmp/absent"), "No such file or directory");
    EXPECT_EQ(openingOf("/tmp/dangling"), "No such file or directory");
    EXPECT_EQ(openingOf("/tmp/circle"), "Too many levels of symbolic links");
    EXPECT_EQ(openingOf("/tmp/folder"), "Is a directory");
    EXPECT_EQ(openingOf("/tmp/fifo"), "No such device or address");
    EXPECT_EQ(openingOf("/tmp/socket"), "No such device or address");
    EXPECT_EQ(openingOf("/dev/zero"), "No such device or address");
    EXPECT_EQ(openingOf(""), "No such file or directory");
}

TEST(InputFile, IsClosedInChildren) {
    writeFile(inputPath, "");
    OutputCapture console;
    EXPECT_TRUE(executeCommand("ls /proc/self/fd"));
    const std::string without = console.out();

    const InputFile file(inputPath);
    EXPECT_TRUE(executeCommand("ls /proc/self/fd"));

    EXPECT_TRUE(file.isOpen());
    EXPECT_EQ(console.out(), without);
}

TEST(InputFile, ReadsFromStartToEnd) {
    writeFile(inputPath, "abcdefgh");
    InputFile file(inputPath);
    std::string buffer(5, '?');

    EXPECT_EQ(file.read(buffer), 5U);
    EXPECT_EQ(buffer, "abcde");
    EXPECT_EQ(file.read(buffer), 3U);
    EXPECT_EQ(buffer, "fghde");
    EXPECT_EQ(file.read(buffer), 0U);
}

TEST(InputFile, ReportsAFailureToDetermineItsType) {
    writeFile(inputPath, "");

    const Outcome outcome =
        probeInjected({.faults = {"newfstatat:error=EIO"}, .path = inputPath}, {"openInputFile", inputPath});

    EXPECT_EQ(outcome.out, "Input/output error\n");
}

TEST(InputFile, ContinuesAfterASignal) {
    writeFile(inputPath, "all of it");

    for (const std::string call : {"openat", "read"}) {
        const Outcome outcome =
            probeInjected({.faults = {call + ":error=EINTR:when=1"}, .path = inputPath, .inChildren = true},
                          {"readFile", inputPath});

        EXPECT_EQ(outcome.out, "all of it\n");
        EXPECT_EQ(outcome.err, "");
    }
}

TEST(InputFile, IsRefusedThroughALinkOfAnotherUser) {
    writeFile(inputPath, "");
    fs::create_symlink("file", "/tmp/link");

    const Outcome outcome = probeInjected(foreignOwnerOf("/tmp/link"), {"openInputFile", "/tmp/link"});

    EXPECT_EQ(outcome.out, "Permission denied\n");
}

TEST(InputFile, IsRefusedIfItHasAnotherNameAndAnOwnerIsRequired) {
    writeFile(inputPath, "");
    EXPECT_TRUE(InputFile(inputPath, ::geteuid()).isOpen());

    fs::create_hard_link(inputPath, "/tmp/other");

    EXPECT_FALSE(InputFile(inputPath, ::geteuid()).isOpen());
    EXPECT_STREQ(std::strerror(errno), "Permission denied");
    EXPECT_TRUE(InputFile(inputPath).isOpen());
}

TEST(InputFile, KeepsTheStateFromTheTimeOfItsOpening) {
    writeFile(inputPath, "one");
    struct stat status {};
    ASSERT_EQ(::stat(inputPath, &status), 0);

    const InputFile file(inputPath);

    EXPECT_EQ(file.state(), FileState(status));
    EXPECT_EQ(file.state().size, 3);
}

}  // namespace
