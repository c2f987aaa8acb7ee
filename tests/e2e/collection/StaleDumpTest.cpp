#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "PackageFixture.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// Dumps that existed before their process received the signal.
class StaleDumpTest : public PackageFixture {
protected:
    static constexpr const char* source = "/tmp/netfp_proxy.log";
    static constexpr const char* member = "./ti/netfp_proxy.log";

    StaleDumpTest() {
        startBoard();
        writeFile(source, stale);
        EXPECT_EQ(run({"touch", "-d", "2001-02-03 04:05:06", source}), success());
    }

    void stop(const std::string& process) const { ::kill(board().pid(process), SIGSTOP); }

    /// The time that tar shows for the proxy's dump in a package.
    static std::string timeIn(const std::string& path) {
        const std::string line = run({"tar", "--full-time", "-tvzf", path, member}).out;
        const std::size_t time = line.find("20");
        return line.substr(time, line.find(" ./") - time);
    }

    const std::string stale = std::string(80, 'o') + "</netfp_proxy_dump>\n";
    const std::string time = "2001-02-03 04:05:06";
    const Surroundings nothingElse = withCommand("fp_linux_log_collect", "");
};

TEST_F(StaleDumpTest, TheDumpOfAStoppedProcessIsCollectedWithItsOldTimes) {
    stop("netfp_proxy");

    const Outcome outcome = collect({"pkg-pm", "proxy", "server"}, nothingElse);

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(filesIn(package("_post_mortem.tgz")),
              together({{{"ti/netfp_proxy.log", stale}}, dumpFiles({"netfp_server"})}));
    EXPECT_EQ(timeIn(package("_post_mortem.tgz")), time);
    EXPECT_FALSE(fs::exists(source));
}

TEST_F(StaleDumpTest, AStaleDumpIsPrintedUnchanged) {
    stop("netfp_proxy");

    EXPECT_EQ(collect({"print", "proxy"}), success(section("netfp_proxy", stale)));
}

TEST_F(StaleDumpTest, TheDumpOfARunningProcessReplacesAStaleOneAndHasItsOwnTime) {
    const Outcome outcome = collect({"pkg-pm", "proxy"}, nothingElse);

    EXPECT_EQ(outcome, success());
    EXPECT_EQ(filesIn(package("_post_mortem.tgz")), dumpFiles({"netfp_proxy"}));
    EXPECT_GT(timeIn(package("_post_mortem.tgz")), time);
}

TEST_F(StaleDumpTest, ADumpThatAContinuedProcessWritesIsNotReadAsTheNextOne) {
    fs::remove(source);
    stop("netfp_proxy");
    EXPECT_EQ(collect({"dump", "proxy"}), success());
    ::kill(board().pid("netfp_proxy"), SIGCONT);
    while (!fs::exists(source) || contentOfFile(source) != dumpText("netfp_proxy")) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_EQ(run({"korvel", "add_interface", "eth7"}).status, 0);

    const Outcome outcome = collect({"print", "proxy"});

    EXPECT_EQ(outcome.err, "");
    EXPECT_THAT(outcome.out, testing::HasSubstr("managed interfaces:\n  eth7\n"));
}

}  // namespace
