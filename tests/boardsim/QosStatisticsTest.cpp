#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "QosStatistics.hpp"
#include "TestFiles.hpp"
#include "Traffics.hpp"

using Boardsim::QosStatistics;

namespace {

using Texts = std::vector<std::string>;

const std::string counted =
    "sfn: QoS\n"
    "  class 0, frames                              0\n"
    "  class 0, dropped                          1009\n"
    "  class 1, frames                           2018\n"
    "  class 1, dropped                          3027\n"
    "  class 2, frames                           4036\n"
    "  class 2, dropped                          5045\n";

const std::string cleared =
    "sfn: QoS\n"
    "  class 0, frames                              0\n"
    "  class 0, dropped                             0\n"
    "  class 1, frames                              0\n"
    "  class 1, dropped                             0\n"
    "  class 2, frames                              0\n"
    "  class 2, dropped                             0\n";

}  // namespace

TEST(QosStatisticsTest, AreInAFileOfTheInstance) {
    const QosStatistics statistics("sfn", noTraffic());

    EXPECT_EQ(contentOfFile("/tmp/fuse/sfn/qosStats"), counted);
    EXPECT_EQ(filesBelow("/tmp/fuse"), Texts{"sfn/qosStats"});
}

TEST(QosStatisticsTest, AreZeroAfterAReset) {
    QosStatistics statistics("sfn", noTraffic(), "/tmp/elsewhere");

    EXPECT_EQ(statistics.reset(), Texts{"sfn: QoS statistics cleared"});
    EXPECT_EQ(contentOfFile("/tmp/elsewhere/sfn/qosStats"), cleared);

    EXPECT_EQ(statistics.reset(), Texts{"sfn: QoS statistics cleared"});
    EXPECT_EQ(contentOfFile("/tmp/elsewhere/sfn/qosStats"), cleared);
}

TEST(QosStatisticsTest, AreSeparateForEachInstance) {
    QosStatistics iwf("iwf", noTraffic());
    const QosStatistics sfn("sfn", noTraffic());

    EXPECT_EQ(iwf.reset(), Texts{"iwf: QoS statistics cleared"});

    EXPECT_EQ(contentOfFile("/tmp/fuse/sfn/qosStats"), counted);
}

TEST(QosStatisticsTest, FailWithoutTheirFolder) {
    writeFile("/tmp/file", "");

    EXPECT_THROW(QosStatistics("iwf", noTraffic(), "/tmp/file"), std::system_error);
}
