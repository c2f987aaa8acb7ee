#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <sstream>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Timestamp.hpp"

using testing::Contains;

namespace {

/// A board in a time zone of its own.
class Timestamp : public testing::Test {
protected:
    Timestamp() { ::setenv("TZ", "BRD-05:45", 1); }

    /// The texts of all seconds since the start of the test, in the board's time zone.
    std::vector<std::string> momentsAs(const char* format) const {
        constexpr std::time_t eastOfGreenwich = 5 * 3600 + 45 * 60;
        std::vector<std::string> texts;
        const std::time_t end = std::time(nullptr);
        for (std::time_t moment = begin; moment <= end; ++moment) {
            const std::time_t shifted = moment + eastOfGreenwich;
            std::tm calendar{};
            ::gmtime_r(&shifted, &calendar);
            std::ostringstream text;
            text << std::put_time(&calendar, format);
            texts.push_back(text.str());
        }
        return texts;
    }

private:
    const std::time_t begin = std::time(nullptr);
};

TEST_F(Timestamp, IsLocalTimeWithoutSeparatorsForNames) {
    const std::string stamp = Korvel::getTimestamp();

    EXPECT_THAT(momentsAs("%y%m%d_%H%M%S"), Contains(stamp));
}

TEST_F(Timestamp, IsLocalTimeWithSeparatorsForPeople) {
    const std::string stamp = Korvel::getCurrentDateTime();

    EXPECT_THAT(momentsAs("%y-%m-%d %H:%M:%S"), Contains(stamp));
}

}  // namespace
