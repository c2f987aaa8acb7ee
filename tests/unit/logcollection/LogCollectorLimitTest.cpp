// The common limit of all collectors.

#include <optional>

#include <gtest/gtest.h>

#include "LogCollector.hpp"
#include "Printed.hpp"

namespace {

/// Makes the gathering of collectors accessible.
class GatheringCollector : public Korvel::LogCollector {
public:
    GatheringCollector() : LogCollector("/tmp/gathering") {}
    bool collectLogs(bool /*printRequested*/) override { return true; }
    bool printOnConsole() override { return true; }
    bool dumpToFiles() override { return true; }
    using LogCollector::count;
    using LogCollector::cutToLimit;
    using LogCollector::room;
};

class LogCollectorLimitTest : public testing::Test {
protected:
    static constexpr std::size_t mebibyte = 1U << 20U;

    inline static const std::string full = "The collection holds 50331648 bytes, what follows is left out\n";

    static std::string textOf(std::size_t size) { return std::string().append(size, 't'); }

    /// Makes the collector gather texts of these sizes. It must report nothing.
    static void gather(GatheringCollector& collector, const std::vector<std::size_t>& sizes) {
        for (const std::size_t size : sizes) {
            EXPECT_EQ(
                printedBy([&] { EXPECT_EQ(collector.cutToLimit(textOf(size), "source").size(), size); }),
                Printed{});
        }
    }

    GatheringCollector collector;
};

TEST_F(LogCollectorLimitTest, GivesEachSourceSixteenMebibytes) {
    EXPECT_EQ(GatheringCollector::room(), 16 * mebibyte);

    gather(collector, {16 * mebibyte, 1});

    EXPECT_EQ(GatheringCollector::room(), 16 * mebibyte);
}

TEST_F(LogCollectorLimitTest, GivesAllCollectorsTogetherFortyEightMebibytes) {
    GatheringCollector another;
    gather(collector, {16 * mebibyte, 16 * mebibyte});
    gather(another, {10 * mebibyte});
    EXPECT_EQ(GatheringCollector::room(), 6 * mebibyte);

    EXPECT_EQ(printedBy([&] { another.count(textOf(6 * mebibyte)); }), Printed{.err = full});

    EXPECT_EQ(GatheringCollector::room(), 0U);
}

TEST_F(LogCollectorLimitTest, CutsATextAtTheLimitAndReportsIt) {
    gather(collector, {16 * mebibyte, 16 * mebibyte, 16 * mebibyte - 3});
    std::string text;

    EXPECT_EQ(printedBy([&] { text = collector.cutToLimit("12345", "some_log"); }),
              (Printed{.err = "some_log is larger than 3 bytes, cut\n" + full}));

    EXPECT_EQ(text, "123");
    EXPECT_EQ(GatheringCollector::room(), 0U);
}

TEST_F(LogCollectorLimitTest, ReturnsTheRoomWhenACollectorEnds) {
    std::optional<GatheringCollector> another;
    another.emplace();
    gather(*another, {16 * mebibyte, 16 * mebibyte, 15 * mebibyte});
    EXPECT_EQ(printedBy([&] { another->count(textOf(mebibyte)); }), Printed{.err = full});
    EXPECT_EQ(GatheringCollector::room(), 0U);

    another.reset();

    EXPECT_EQ(GatheringCollector::room(), 16 * mebibyte);
}

}  // namespace
