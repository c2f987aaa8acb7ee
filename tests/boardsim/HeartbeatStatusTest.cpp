#include <filesystem>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "HeartbeatStatus.hpp"
#include "TextFile.hpp"
#include "Traffics.hpp"

using Boardsim::HeartbeatStatus;
using Boardsim::readTextFile;
using Boardsim::writeTextFile;

namespace {

constexpr const char* statusFile = "/run/boardsim/heartbeat/netfp_proxy";

}  // namespace

TEST(HeartbeatStatusTest, IsHealthyAtFirst) {
    const HeartbeatStatus status("netfp_proxy", noTraffic());

    EXPECT_EQ(status.value(), 0);
    EXPECT_EQ(readTextFile(statusFile), "0\n");
}

TEST(HeartbeatStatusTest, IsHealthyAgainAfterARestart) {
    writeTextFile(statusFile, "5\n");

    const HeartbeatStatus status("netfp_proxy", noTraffic());

    EXPECT_EQ(status.value(), 0);
}

TEST(HeartbeatStatusTest, IsTheNumberThatIsInItsFile) {
    const HeartbeatStatus status("netfp_proxy", noTraffic());
    const struct {
        const char* text;
        std::uint32_t value;
    } cases[] = {{"1\n", 1}, {"7", 7}, {"4294967295\n", 4294967295}, {"0\n", 0}};

    for (const auto& [text, value] : cases) {
        writeTextFile(statusFile, text);
        EXPECT_EQ(status.value(), value) << text;
    }
}

TEST(HeartbeatStatusTest, IsHealthyIfItsFileHasNoNumber) {
    const HeartbeatStatus status("netfp_proxy", noTraffic());

    for (const char* text : {"", "\n", "ill\n", "-1\n", "4294967296\n"}) {
        writeTextFile(statusFile, text);
        EXPECT_EQ(status.value(), 0) << text;
    }
}

TEST(HeartbeatStatusTest, IsHealthyIfItsFileIsMissing) {
    const HeartbeatStatus status("netfp_proxy", noTraffic());
    writeTextFile(statusFile, "5\n");
    ASSERT_EQ(status.value(), 5);

    std::filesystem::remove(statusFile);
    EXPECT_EQ(status.value(), 0);

    std::filesystem::create_directory(statusFile);
    EXPECT_EQ(status.value(), 0);
}

TEST(HeartbeatStatusTest, IsSeparateForEachPeer) {
    const HeartbeatStatus iwf("iwf_dispatcher", noTraffic());
    const HeartbeatStatus sfn("sfn_dispatcher", noTraffic());

    writeTextFile("/run/boardsim/heartbeat/sfn_dispatcher", "3\n");

    EXPECT_EQ(iwf.value(), 0);
    EXPECT_EQ(sfn.value(), 3);
}

TEST(HeartbeatStatusTest, ThrowsIfItsFileCannotBeWritten) {
    std::filesystem::create_directory(statusFile);

    EXPECT_THROW(HeartbeatStatus("netfp_proxy", noTraffic()), std::system_error);
}
