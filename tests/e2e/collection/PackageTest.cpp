#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <filesystem>

#include "FakeTime.hpp"
#include "FullDisk.hpp"
#include "PackageFixture.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

using PackageTest = PackageFixture;

const Words iwfMembers{
    "./",
    "./fuse/",
    "./fuse/iwf/",
    "./fuse/iwf/tracing_on.log",
    "./mmi/",
    "./mmi/iwf/",
    "./mmi/iwf/SocketSvcInfo.log",
};

/// The files that the board's command for its Linux logs adds.
const Words linuxMembers{
    "./linux/",           "./linux/cmdline.log",   "./linux/interfaces.log",
    "./linux/mounts.log", "./linux/processes.log", "./linux/system.log",
    "./linux/uptime.log",
};

Words sorted(Words words, const Words& more = {}) {
    words.insert(words.end(), more.begin(), more.end());
    std::sort(words.begin(), words.end());
    return words;
}

/// Local time in the form of a package's name.
std::string timeStamp() {
    const std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm local{};
    ::localtime_r(&now, &local);
    constexpr std::size_t century = 2;
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%Y%m%d_%H%M%S", &local);
    return text.data() + century;
}

TEST_F(PackageTest, PkgAlonePacksTheDumpOfEverythingAndPrintsNothing) {
    startBoard();

    const Outcome outcome = collect({"-d", "all", "pkg"});

    EXPECT_EQ(outcome, success());
    const Words packages = filesBelow(packageDir);
    ASSERT_EQ(packages.size(), std::size_t{1});
    EXPECT_EQ(filesIn(std::string(packageDir) + "/" + packages.front()), workFiles());
    EXPECT_EQ(workFiles().size(), std::size_t{2 * 3 + 1 + 2 * 4 + 4 + 1});
}

TEST_F(PackageTest, ThePlainPackageNameHasATimeBeyond32Bits) {
    startBoard();

    const Outcome outcome = collect({"-d", "iwf", "pkg", "dinf"}, atMoment("2040-02-29 12:34:56"));

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(filesBelow(packageDir), Words{"netfp_logs_400229_123456.tgz"});
}

TEST_F(PackageTest, ThePlainPackageNameHasTheTimeAndEarlierOnesStay) {
    startBoard();
    const std::string earlier = package("_200102_030405.tgz");
    writeFile(earlier, "an earlier package");

    const std::string before = package("_" + timeStamp() + ".tgz");
    const Outcome outcome = collect({"-d", "iwf", "pkg", "dinf"});
    const std::string after = package("_" + timeStamp() + ".tgz");

    EXPECT_EQ(outcome, success());
    const Words packages = filesBelow(packageDir);
    ASSERT_EQ(packages.size(), std::size_t{2});
    EXPECT_EQ(contentOfFile(earlier), "an earlier package");
    const std::string made = std::string(packageDir) + "/" + packages.back();
    EXPECT_EQ(made.size(), before.size());
    EXPECT_LE(before, made);
    EXPECT_LE(made, after);
    EXPECT_EQ(membersOf(made), sorted(iwfMembers));
}

TEST_F(PackageTest, ThePostMortemPackageReplacesTheLastOneAndHoldsTheLinuxLogs) {
    startBoard();
    writeFile(package("_post_mortem.tgz"), std::string(1'000'000, 'x'));

    const Outcome outcome = collect({"-d", "iwf", "pkg-pm", "dinf"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(filesBelow(packageDir), Words{"netfp_logs_post_mortem.tgz"});
    EXPECT_EQ(membersOf(package("_post_mortem.tgz")), sorted(iwfMembers, linuxMembers));
    EXPECT_EQ(filesIn(package("_post_mortem.tgz")), workFiles());
}

TEST_F(PackageTest, TheShutdownPackageReplacesTheLastOneAndHoldsTheLinuxLogs) {
    startBoard();
    writeFile(package("_shutdown.tgz"), std::string(1'000'000, 'x'));

    const Outcome outcome = collect({"-d", "iwf", "pkg-sdown", "dinf"});

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(filesBelow(packageDir), Words{"netfp_logs_shutdown.tgz"});
    EXPECT_EQ(membersOf(package("_shutdown.tgz")), sorted(iwfMembers, linuxMembers));
}

TEST_F(PackageTest, PackagesForPeopleAndForTheSupervisorIncludeTheLastPostMortemPackage) {
    startBoard();
    ASSERT_EQ(collect({"-d", "iwf", "pkg-pm", "dinf"}), success());
    const std::string postMortem = contentOfFile(package("_post_mortem.tgz"));

    EXPECT_EQ(collect({"-d", "iwf", "pkg-trs", "dinf"}), success());
    EXPECT_EQ(collect({"-d", "iwf", "pkg-sup", "dinf"}), success());

    EXPECT_EQ(filesBelow(packageDir),
              (Words{"netfp_logs.tgz", "netfp_logs_post_mortem.tgz", "netfp_logs_sup.tgz"}));
    Words members = sorted(iwfMembers, linuxMembers);
    members = sorted(members, {"./netfp_logs_post_mortem.tgz"});
    for (const char* suffix : {".tgz", "_sup.tgz"}) {
        SCOPED_TRACE(suffix);
        EXPECT_EQ(membersOf(package(suffix)), members);
        EXPECT_EQ(filesIn(package(suffix)).at("netfp_logs_post_mortem.tgz"), postMortem);
    }
}

TEST_F(PackageTest, WithoutAPostMortemPackageTheOthersAreStillCreated) {
    startBoard();
    for (const auto& [keyword, suffix] : {std::pair{"pkg-trs", ".tgz"}, std::pair{"pkg-sup", "_sup.tgz"}}) {
        SCOPED_TRACE(keyword);
        EXPECT_EQ(collect({"-d", "iwf", keyword, "dinf"}), success("", noPostMortem));
        EXPECT_EQ(membersOf(package(suffix)), sorted(iwfMembers, linuxMembers));
    }
}

TEST_F(PackageTest, OfSeveralKindsTheFirstIsCreated) {
    startBoard();
    const struct {
        Words keywords;
        std::string package;
    } cases[] = {
        {{"pkg-trs", "pkg-pm"}, "netfp_logs.tgz"},
        {{"pkg-pm", "pkg-trs"}, "netfp_logs.tgz"},
        {{"pkg-sdown", "pkg-pm", "pkg-sup", "pkg"}, "netfp_logs_sup.tgz"},
        {{"pkg", "pkg-sdown", "pkg-pm"}, "netfp_logs_post_mortem.tgz"},
        {{"pkg-sdown", "pkg"}, "netfp_logs_shutdown.tgz"},
    };
    for (const auto& [keywords, made] : cases) {
        SCOPED_TRACE(made);
        Words words{"-d", "iwf", "dinf"};
        words.insert(words.end(), keywords.begin(), keywords.end());

        EXPECT_EQ(collect(words).status, 0);

        EXPECT_EQ(filesBelow(packageDir), Words{made});
        fs::remove(std::string(packageDir) + "/" + made);
    }
}

TEST_F(PackageTest, AVerboseRunNamesThePackageAndListsItsMembers) {
    startBoard();
    const struct {
        std::string keyword;
        std::string suffix;
        std::string err;
    } cases[] = {
        {"pkg-trs", ".tgz", noPostMortem},
        {"pkg-sup", "_sup.tgz", noPostMortem},
        {"pkg-sdown", "_shutdown.tgz", ""},
        {"pkg-pm", "_post_mortem.tgz", ""},
    };
    for (const auto& [keyword, suffix, err] : cases) {
        SCOPED_TRACE(keyword);
        const Outcome outcome = collect({"-v", "-d", "iwf", keyword, "dstat"});

        EXPECT_EQ(outcome,
                  success(verboseStart("Communicating with iwf dispatcher\n", {"ti"}) +
                              "Starting log collection from fuse file system...\n"
                              "Reading /tmp/fuse/iwf/dispatcherCpu...\n"
                              "Reading /tmp/fuse/iwf/dmaStats...\n"
                              "Starting log collection from MMI service in dispatcher instance iwf...\n"
                              "Binding to port: 7778\n"
                              "Sending MMI request: SocketSvcCounters\n"
                              "Response received successfully\n"
                              "Sending MMI request: ReassemblyCounters\n"
                              "Response received successfully\n"
                              "Sending MMI request: HeapStats\n"
                              "Response received successfully\n"
                              "Creating " +
                              package(suffix) + " package...\n" + listingOf(package(suffix)),
                          err));
    }
}

TEST_F(PackageTest, OtherFilesOfTheWorkDirectoryArePackedAndStay) {
    startBoard();
    writeFile("/tmp/korvel/archive/old.log.gz", "archived");

    collect({"-d", "iwf", "pkg-pm", "dinf"});

    EXPECT_EQ(filesIn(package("_post_mortem.tgz")), workFiles());
    EXPECT_EQ(workFiles().at("archive/old.log.gz"), "archived");
}

TEST_F(PackageTest, DumpsThatArePrintedAreNotPacked) {
    startBoard();

    const Outcome outcome = collect({"-d", "iwf", "print", "pkg-pm", "dinf", "proxy"});

    EXPECT_EQ(outcome, success(printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands) +
                               section("netfp_proxy", dumpText("netfp_proxy"))));
    EXPECT_EQ(membersOf(package("_post_mortem.tgz")), sorted(iwfMembers, linuxMembers));
}

TEST_F(PackageTest, TheGatheringCommandGetsTheWorkDirectoryAndItsErrorsAreNotShown) {
    startBoard();
    const Surroundings surroundings = withCommand(
        "fp_linux_log_collect", "echo \"$#: $*\" > \"$1/arguments\"\necho unseen >&2\necho seen\n");

    const Outcome outcome = collect({"-d", "iwf", "pkg-pm", "dinf"}, surroundings);

    EXPECT_EQ(outcome, success("seen\n"));
    EXPECT_EQ(filesIn(package("_post_mortem.tgz")).at("arguments"), "1: /tmp/korvel\n");
}

TEST_F(PackageTest, WithoutTheGatheringCommandThePackageIsStillCreated) {
    startBoard();
    const std::string path = searchPath();
    const Surroundings surroundings{
        .environment = {{"PATH", path.substr(0, path.find(':')) + ":/usr/bin:/bin"}}};

    const Outcome outcome = collect({"-d", "iwf", "pkg-pm", "dinf"}, surroundings);

    EXPECT_EQ(outcome, success("", gathering + std::string("exited with error, exit code: 127\n")));
    EXPECT_EQ(membersOf(package("_post_mortem.tgz")), sorted(iwfMembers));
}

TEST_F(PackageTest, WithoutThePackageDirectoryTheRunStillSucceeds) {
    startBoard();
    fs::remove_all("/ffs/run");

    const Outcome outcome = collect({"-d", "iwf", "print", "pkg-pm", "dinf"});

    EXPECT_EQ(outcome, success(printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands),
                               "Command: /bin/tar -czf /ffs/run/logs/netfp_logs_post_mortem.tgz -C "
                               "/tmp/korvel/ ./ 2> /dev/null exited with error, exit code: 2\n"));
}

TEST_F(PackageTest, OnAFullDiskThePackageIsReportedAndTheLogsAreStillPrinted) {
    startBoard();
    const FullDisk disk("/ffs");

    const Outcome outcome = collect({"-d", "iwf", "print", "pkg-pm", "dinf"});

    EXPECT_EQ(outcome, success(printedStates("iwf", infoStates) + printedReplies("iwf", infoCommands),
                               "Command: /bin/tar -czf /ffs/run/logs/netfp_logs_post_mortem.tgz -C "
                               "/tmp/korvel/ ./ 2> /dev/null exited with error, exit code: 2\n"));
    EXPECT_EQ(contentOfFile(package("_post_mortem.tgz")), "");
}

}  // namespace
