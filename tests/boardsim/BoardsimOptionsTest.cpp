#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "Boardsim.hpp"
#include "TestFiles.hpp"

namespace {

/// A temporary file of the host with the given content.
class HostFile {
public:
    HostFile(const std::string& name, const std::string& content)
        : path(testing::TempDir() + name + "." + std::to_string(::getpid())) {
        writeFile(path, content);
    }
    HostFile(const HostFile&) = delete;
    HostFile& operator=(const HostFile&) = delete;
    HostFile(HostFile&&) = delete;
    HostFile& operator=(HostFile&&) = delete;
    ~HostFile() { ::unlink(path.c_str()); }

    const std::string path;
};

constexpr const char* peerNames = "ps -e -o args= | grep -E '^(system_log|[a-z]+_[a-z]+)$'";

}  // namespace

TEST(BoardsimOptionsTest, StartsThePeersOfTheDeployment) {
    const struct {
        std::string deployment;
        std::string dispatchers;
    } cases[] = {
        {"iwf", "iwf_dispatcher\n"},
        {"sfn-master", "iwf_dispatcher\nsfn_dispatcher\n"},
        {"sfn-antenna", "sfn_dispatcher\n"},
    };
    for (const auto& [deployment, dispatchers] : cases) {
        SCOPED_TRACE(deployment);
        EXPECT_EQ(onBoard({"--deployment", deployment}, peerNames).out,
                  "system_log\nnetfp_master\nnetfp_proxy\nnetfp_server\nresmgr_server\n" + dispatchers);
    }
}

TEST(BoardsimOptionsTest, LeavesPeersOutAndGivesOthersFaults) {
    const Outcome outcome =
        onBoard({"--without", "netfp_proxy", "--without=system_log", "--fault", "netfp_master=error:-9",
                 "--deployment", "iwf"},
                std::string(peerNames) + "; grep -E 'fault|without' /run/boardsim/scenario.toml");

    EXPECT_EQ(outcome.out,
              "netfp_master\nnetfp_server\nresmgr_server\niwf_dispatcher\n"
              "fault = [ \"netfp_master=error:-9\" ]\nwithout = [ \"netfp_proxy\", \"system_log\" ]\n");
}

TEST(BoardsimOptionsTest, ShowsTheKernelCommandLine) {
    EXPECT_EQ(onBoard({"--bare", "--cmdline", "isolcpus=1,2 'quoted'"}, "cat /proc/cmdline").out,
              "isolcpus=1,2 'quoted'\n");
    EXPECT_EQ(onBoard({"--bare"}, "cat /proc/cmdline").out,
              "console=ttyS0,115200n8 root=/dev/ram0 rw mem=2G isolcpus=1,2,3\n");
}

TEST(BoardsimOptionsTest, HasDisksOfTheSizesAskedFor) {
    EXPECT_EQ(onBoard({"--bare", "--tmp-size", "3M", "--ffs-size", "512K"}, "df --output=size /tmp /ffs").out,
              "1K-blocks\n     3072\n      512\n");
}

TEST(BoardsimOptionsTest, InstallsFilesOfTheHost) {
    const HostFile config("my.conf", "key=value\n");

    EXPECT_EQ(onBoard({"--config", config.path}, "cat /rom/private/fpdispatcher.conf").out, "key=value\n");
}

TEST(BoardsimOptionsTest, WritesTheSettingsOfTheLibraries) {
    EXPECT_EQ(onBoard({"--secured", "--secure-error", "5", "--cma-error", "-6"},
                      "cd /run/boardsim && cat secure secure_error cma_error")
                  .out,
              "1\n5\n-6\n");
    EXPECT_EQ(onBoard({}, "ls /run/boardsim").out,
              "heartbeat\ninit\nlog\npeers\nreceived\nscenario.toml\nsystem.log\n");
}

TEST(BoardsimOptionsTest, HasNoPeersAndNoPrivateFilesWhenBare) {
    EXPECT_EQ(onBoard({"--bare"}, std::string(peerNames) + "; find /rom /ffs /tmp /dev/shm | sort").out,
              "/dev/shm\n/ffs\n/ffs/run\n/ffs/run/logs\n/rom\n/rom/config\n/rom/private\n/tmp\n");
}

TEST(BoardsimOptionsTest, HaveAnExampleScenarioThatSetsThemAll) {
    const Outcome outcome = onBoard({"--scenario", EXAMPLES "/flaky.toml"},
                                    "cat /rom/private/fpdispatcher.conf /run/boardsim/scenario.toml");

    EXPECT_EQ(outcome,
              (Outcome{.status = 0,
                       .out = "doNotCollectLogOnExit=1\n"
                              "cmdline = \"console=ttyS0,115200n8 root=/dev/ram0 rw mem=1G isolcpus=2,3\"\n"
                              "config = \"/run/boardsim/fpdispatcher.conf\"\n"
                              "deployment = \"sfn-master\"\n"
                              "fault = [\n"
                              "    \"netfp_master=slow:300\",\n"
                              "    \"netfp_proxy=netlink-error:3\",\n"
                              "    \"netfp_server=unended\",\n"
                              "    \"iwf_dispatcher=binary\",\n"
                              "    \"sfn_dispatcher=netlink-silent\"\n"
                              "]\n"
                              "ffs-size = \"8M\"\n"
                              "tmp-size = \"16M\"\n"
                              "without = [ \"resmgr_server\" ]\n",
                       .err = ""}));
    for (const char* key : {"\nsecured =", "\nsecure-error =", "\ncma-error =", "\nfull-logs =",
                            "\ntraffic =", "\nseed =", "\nbare ="}) {
        EXPECT_THAT(contentOfFile(EXAMPLES "/flaky.toml"), testing::HasSubstr(key));
    }
}

TEST(BoardsimOptionsTest, AcceptsFilesThatDescriptorsName) {
    const Outcome outcome = run({"bash", "-c",
                                 "$0 --scenario <(echo 'deployment = \"iwf\"') --config <(echo key=value) -- "
                                 "sh -c 'ls /rom/config; cat /rom/private/fpdispatcher.conf'",
                                 BOARDSIM_PROGRAM});

    EXPECT_EQ(outcome, (Outcome{.status = 0, .out = "deployment_type\nkey=value\n", .err = ""}));
}

TEST(BoardsimOptionsTest, LetsOptionsOverrideAScenarioFile) {
    const HostFile scenario("scenario.toml", "deployment = 'iwf'\ncma-error = 4\nsecured = true\n");

    EXPECT_EQ(onBoard({"--cma-error", "5", "--scenario", scenario.path},
                      "ls /rom/config; cat /run/boardsim/cma_error /run/boardsim/secure")
                  .out,
              "deployment_type\n5\n1\n");
}
