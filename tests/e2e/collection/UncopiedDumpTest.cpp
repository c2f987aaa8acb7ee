#include <filesystem>

#include <sys/stat.h>

#include "CollectionFixture.hpp"
#include "ForeignOwner.hpp"
#include "FullDisk.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// Dumps that cannot be copied. Each is reported once for all tries, left in its place, and printed as far as
/// it can be read.
class UncopiedDumpTest : public CollectionFixture {
protected:
    static constexpr const char* source = "/tmp/netfp_proxy.log";
    static constexpr const char* copy = "/tmp/korvel/ti/netfp_proxy.log";

    UncopiedDumpTest() { startBoard(); }

    static std::string unwritten(const std::string& reason, const std::string& process = "netfp_proxy") {
        return "Error while writing /tmp/korvel/ti/" + process + ".log: " + reason + "\n";
    }

    static std::string unread(const std::string& reason) {
        return "Error while reading /tmp/netfp_proxy.log: " + reason + "\n";
    }

    /// The folder of the dumps cannot be created.
    static Surroundings withoutDumpFolder() {
        return withCommand("mkdir", "case $2 in */ti) exit 1;; esac\nexec /bin/mkdir \"$@\"\n");
    }

    static constexpr const char* unmade =
        "Command: mkdir -p /tmp/korvel/ti exited with error, exit code: 1\n";

    static void expectDumpStays(const std::string& process = "netfp_proxy") {
        EXPECT_EQ(contentOfFile("/tmp/" + process + ".log"), dumpText(process));
    }

    /// Keeps the proxy from writing its dump. Something else is at the path of the dump.
    void keepProxyFromWriting() { startBoardWithFaults({"netfp_proxy=silent"}); }
};

TEST_F(UncopiedDumpTest, ADirectoryInPlaceOfTheCopyIsReportedAndTheDumpPrinted) {
    fs::create_directories(copy);

    const Outcome outcome = collect({"print", "dump", "proxy"});

    EXPECT_EQ(outcome, success(section("netfp_proxy", dumpText("netfp_proxy")), unwritten("Is a directory")));
    expectDumpStays();
}

TEST_F(UncopiedDumpTest, AFolderThatCannotBeCreatedIsReportedForEachDumpAndEachIsPrinted) {
    const Outcome outcome = collect({"print", "proxy", "server"}, withoutDumpFolder());

    EXPECT_EQ(outcome, success(section("netfp_proxy", dumpText("netfp_proxy")) +
                                   section("netfp_server", dumpText("netfp_server")),
                               unmade + unwritten("No such file or directory") +
                                   unwritten("No such file or directory", "netfp_server")));
    expectDumpStays();
    expectDumpStays("netfp_server");
}

TEST_F(UncopiedDumpTest, AFileInPlaceOfTheWorkDirectoryIsReportedAndTheDumpPrinted) {
    writeFile(workDir, "a file");

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, section("netfp_proxy", dumpText("netfp_proxy")));
    EXPECT_THAT(outcome.err, testing::EndsWith(unwritten("Not a directory")));
    expectDumpStays();
}

TEST_F(UncopiedDumpTest, AFullDiskIsReportedAndTheDumpPrinted) {
    const Outcome outcome =
        collectInjected({.faults = {"write:error=ENOSPC"}, .path = copy}, {"print", "dump", "proxy"});

    EXPECT_EQ(outcome,
              success(section("netfp_proxy", dumpText("netfp_proxy")), unwritten("No space left on device")));
    expectDumpStays();
}

TEST_F(UncopiedDumpTest, AnotherUsersLinkInPlaceOfTheCopyIsReportedAndTheDumpPrinted) {
    fs::create_directories("/tmp/korvel/ti");
    writeFile("/tmp/elsewhere", "precious");
    fs::create_symlink("/tmp/elsewhere", copy);
    Injection injection = foreignOwnerOf(copy);
    const std::string faultOfFirstLook = injection.faults.front();
    injection.faults.front() = faultOfFirstLook.substr(0, faultOfFirstLook.rfind(":when="));

    const Outcome outcome = collectInjected(injection, {"print", "dump", "proxy"});

    EXPECT_EQ(outcome,
              success(section("netfp_proxy", dumpText("netfp_proxy")), unwritten("Permission denied")));
    expectDumpStays();
    EXPECT_EQ(contentOfFile("/tmp/elsewhere"), "precious");
}

TEST_F(UncopiedDumpTest, ADirectoryInPlaceOfADumpIsReportedAndStays) {
    keepProxyFromWriting();
    fs::create_directory(source);

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome, success(section("netfp_proxy", incompleteNote), unread("Is a directory")));
    EXPECT_TRUE(fs::is_directory(source));
}

TEST_F(UncopiedDumpTest, ADumpThatMayNotBeReadIsReportedAndStays) {
    keepProxyFromWriting();
    writeFile(source, dumpText("netfp_proxy"));
    fs::permissions(source, fs::perms::none);

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome, success(section("netfp_proxy", incompleteNote), unread("Permission denied")));
    EXPECT_TRUE(fs::exists(source));
}

TEST_F(UncopiedDumpTest, ADumpThatFailsInTheMiddleIsReportedAndKeptUpToThere) {
    keepProxyFromWriting();
    const std::string text(100'000, '.');
    writeFile(source, text);

    const Outcome outcome = collectInjected(
        {.faults = {"read:error=EIO:when=2+"}, .path = source, .inChildren = true}, {"dump", "proxy"});

    EXPECT_EQ(outcome, success("", unread("Input/output error")));
    EXPECT_EQ(workFiles(), (Files{{"ti/netfp_proxy.log", text.substr(0, 65536)}}));
    EXPECT_EQ(contentOfFile(source), text);
}

TEST_F(UncopiedDumpTest, AFolderThatPrintingRemovedLosesTheLaterDumpsSilently) {
    const Outcome outcome = collect({"print", "proxy", "server", "master"});

    EXPECT_EQ(outcome,
              success(section("netfp_proxy", dumpText("netfp_proxy")) +
                      section("netfp_server", incompleteNote) + section("netfp_master", incompleteNote)));
    for (const std::string& process : netfpProcesses) {
        EXPECT_FALSE(fs::exists("/tmp/" + process + ".log"));
    }
}

}  // namespace
