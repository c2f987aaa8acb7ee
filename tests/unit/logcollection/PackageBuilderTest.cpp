// Packages of the work directory.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "BoardCommand.hpp"
#include "PackageBuilder.hpp"
#include "PackageFolder.hpp"
#include "Printed.hpp"
#include "Process.hpp"
#include "TestFiles.hpp"
#include "VerboseMode.hpp"

namespace fs = std::filesystem;

namespace {

constexpr unsigned plain = 6;  // output-mode masks by keyword
constexpr unsigned withoutTimestamp = 14;
constexpr unsigned forSupervisor = 22;
constexpr unsigned postMortem = 38;
constexpr unsigned onShutdown = 70;

const std::string postMortemPackage = packageFolder + "/netfp_logs_post_mortem.tgz";

const std::string copyFailed =
    "Command: cp /ffs/run/logs/netfp_logs_post_mortem.tgz /tmp/korvel 2> /dev/null exited with error, exit "
    "code: 1\n";

class PackageBuilderTest : public testing::Test {
protected:
    void SetUp() override {
        fs::remove_all(packageFolder);
        fs::create_directories(packageFolder);
        fs::remove_all("/tmp/korvel");
        writeFile("/tmp/korvel/ti/netfp_proxy.log", "dump");
    }

    void TearDown() override { Korvel::setVerboseMode(false); }

    static Printed build(unsigned outputMask) {
        return printedBy(
            [&] { Korvel::PackageBuilder("/tmp/korvel", "/ffs/run/logs/netfp_logs").build(outputMask); });
    }

    static std::vector<std::string> members(const std::string& package) {
        std::istringstream listing(run({"tar", "-tzf", packageFolder + "/" + package}).out);
        std::vector<std::string> names;
        for (std::string name; std::getline(listing, name);) {
            names.push_back(name);
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    /// Writes its arguments to a file in the work directory.
    const BoardCommand gathering{"fp_linux_log_collect", "echo noise >&2; echo \"$@\" > $1/linux.log"};
};

}  // namespace

TEST_F(PackageBuilderTest, PutsTheTimeOnlyIntoTheNameOfThePlainPackage) {
    EXPECT_EQ(build(plain), Printed{});

    const std::vector<std::string> packages = filesBelow(packageFolder);
    ASSERT_THAT(packages, testing::ElementsAre(testing::MatchesRegex("netfp_logs_[0-9]{6}_[0-9]{6}[.]tgz")));
    EXPECT_EQ(members(packages[0]), (std::vector<std::string>{"./", "./ti/", "./ti/netfp_proxy.log"}));
}

TEST_F(PackageBuilderTest, GivesTheOtherKindsAFixedNameAndGathersForThem) {
    writeFile(postMortemPackage, "earlier");
    const struct {
        unsigned mask;
        std::string package;
        std::vector<std::string> members;
    } cases[] = {
        {postMortem, "netfp_logs_post_mortem.tgz", {"./", "./linux.log", "./ti/", "./ti/netfp_proxy.log"}},
        {onShutdown, "netfp_logs_shutdown.tgz", {"./", "./linux.log", "./ti/", "./ti/netfp_proxy.log"}},
        {withoutTimestamp,
         "netfp_logs.tgz",
         {"./", "./linux.log", "./netfp_logs_post_mortem.tgz", "./ti/", "./ti/netfp_proxy.log"}},
        {forSupervisor,
         "netfp_logs_sup.tgz",
         {"./", "./linux.log", "./netfp_logs_post_mortem.tgz", "./ti/", "./ti/netfp_proxy.log"}},
    };
    for (const auto& [mask, package, expected] : cases) {
        EXPECT_EQ(build(mask), Printed{}) << package;
        EXPECT_EQ(members(package), expected) << package;
        EXPECT_EQ(contentOfFile("/tmp/korvel/linux.log"), "/tmp/korvel\n");
    }
    EXPECT_EQ(filesBelow(packageFolder),
              (std::vector<std::string>{"netfp_logs.tgz", "netfp_logs_post_mortem.tgz",
                                        "netfp_logs_shutdown.tgz", "netfp_logs_sup.tgz"}));
}

TEST_F(PackageBuilderTest, IncludesThePreviousPostMortemPackage) {
    ASSERT_EQ(build(postMortem), Printed{});
    const std::string previous = contentOfFile(postMortemPackage);

    EXPECT_EQ(build(withoutTimestamp), Printed{});

    EXPECT_EQ(members("netfp_logs.tgz"),
              (std::vector<std::string>{"./", "./linux.log", "./netfp_logs_post_mortem.tgz", "./ti/",
                                        "./ti/netfp_proxy.log"}));
    EXPECT_EQ(contentOfFile("/tmp/korvel/netfp_logs_post_mortem.tgz"), previous);
}

TEST_F(PackageBuilderTest, BuildsOnlyTheFirstKindOfSeveral) {
    const struct {
        unsigned mask;
        std::string package;
        std::string err;
    } cases[] = {
        {withoutTimestamp | postMortem, "netfp_logs.tgz", copyFailed},
        {forSupervisor | postMortem | onShutdown, "netfp_logs_sup.tgz", copyFailed},
        {onShutdown | postMortem, "netfp_logs_post_mortem.tgz", ""},
    };
    for (const auto& [mask, package, err] : cases) {
        SetUp();

        EXPECT_EQ(build(mask), Printed{.err = err});

        EXPECT_EQ(filesBelow(packageFolder), std::vector{package});
    }
}

TEST_F(PackageBuilderTest, ReplacesThePreviousPackageOfTheSameName) {
    writeFile(packageFolder + "/netfp_logs_shutdown.tgz", "earlier");

    EXPECT_EQ(build(onShutdown), Printed{});

    EXPECT_EQ(members("netfp_logs_shutdown.tgz"),
              (std::vector<std::string>{"./", "./linux.log", "./ti/", "./ti/netfp_proxy.log"}));
}

TEST_F(PackageBuilderTest, LeavesTheWorkDirectoryUnchanged) {
    build(plain);

    EXPECT_EQ(filesBelow("/tmp/korvel"), (std::vector<std::string>{"ti/netfp_proxy.log"}));
}

TEST_F(PackageBuilderTest, ShowsNameAndListingInVerboseMode) {
    fs::remove_all("/tmp/korvel/ti");
    Korvel::setVerboseMode(true);

    EXPECT_EQ(build(onShutdown), (Printed{.out = "Creating /ffs/run/logs/netfp_logs_shutdown.tgz package...\n"
                                                 "./\n"
                                                 "./linux.log\n"}));
}

TEST_F(PackageBuilderTest, ReportsAMissingPostMortemPackageAndContinues) {
    for (const auto& [mask, package] :
         {std::pair{withoutTimestamp, "netfp_logs.tgz"}, std::pair{forSupervisor, "netfp_logs_sup.tgz"}}) {
        EXPECT_EQ(build(mask), Printed{.err = copyFailed});
        EXPECT_EQ(members(package),
                  (std::vector<std::string>{"./", "./linux.log", "./ti/", "./ti/netfp_proxy.log"}));
    }
}

TEST_F(PackageBuilderTest, ReportsAFailedGatheringAndContinues) {
    writeScript("/tmp/commands/fp_linux_log_collect", "exit 3");

    EXPECT_EQ(build(postMortem), (Printed{.err = "Command: fp_linux_log_collect /tmp/korvel 2> /dev/null "
                                                 "exited with error, exit code: 3\n"}));

    EXPECT_EQ(members("netfp_logs_post_mortem.tgz"),
              (std::vector<std::string>{"./", "./ti/", "./ti/netfp_proxy.log"}));
}

TEST_F(PackageBuilderTest, ReportsAMissingGatheringCommand) {
    ::setenv("PATH", "/usr/bin:/bin", 1);  // until `gathering` puts the search path back

    EXPECT_EQ(build(onShutdown), (Printed{.err = "Command: fp_linux_log_collect /tmp/korvel 2> /dev/null "
                                                 "exited with error, exit code: 127\n"}));

    EXPECT_EQ(members("netfp_logs_shutdown.tgz"),
              (std::vector<std::string>{"./", "./ti/", "./ti/netfp_proxy.log"}));
}

TEST_F(PackageBuilderTest, ReportsAPackageDirectoryThatIsMissing) {
    fs::remove_all(packageFolder);

    EXPECT_EQ(
        build(onShutdown),
        (Printed{.err = "Command: /bin/tar -czf /ffs/run/logs/netfp_logs_shutdown.tgz -C /tmp/korvel/ ./ "
                        "2> /dev/null exited with error, exit code: 2\n"}));
}

TEST_F(PackageBuilderTest, ReportsAWorkDirectoryThatIsMissing) {
    fs::remove_all("/tmp/korvel");
    writeScript("/tmp/commands/fp_linux_log_collect", "");

    EXPECT_EQ(
        build(postMortem),
        (Printed{.err = "Command: /bin/tar -czf /ffs/run/logs/netfp_logs_post_mortem.tgz -C /tmp/korvel/ "
                        "./ 2> /dev/null exited with error, exit code: 2\n"}));
}
