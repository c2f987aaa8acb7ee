#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Timestamp.hpp"
#include "Zone.hpp"

namespace ReportTest {
namespace {

using Report::Time;
using Report::Zone;
using namespace std::chrono_literals;

constexpr Time noon = std::chrono::sys_days(std::chrono::year(2026) / 11 / 22) + 12h;

TEST(UtcTimeTest, IsTakenFromTheStartOfALine) {
    const struct {
        std::string_view line;
        Time time;
        std::string_view rest;
    } cases[] = {
        {"2026-11-22T12:00:00.995104Z 0 TAG: text", noon + 995104us, " 0 TAG: text"},
        {"2026-11-22T12:00:00Z", noon, ""},
        {"2026-11-22T12:00:00.5Z", noon + 500ms, ""},
        {"2026-11-22T12:00:00.123456789Z", noon + 123456us, ""},
        {"2026-11-22T12:00:60Z", noon + 60s, ""},
        {"2024-02-29T00:00:00Z", Time(std::chrono::sys_days(std::chrono::year(2024) / 2 / 29)), ""},
    };
    for (const auto& [line, time, rest] : cases) {
        SCOPED_TRACE(line);
        std::string_view text = line;
        EXPECT_EQ(Report::takeUtcTime(text), time);
        EXPECT_EQ(text, rest);
    }
}

TEST(UtcTimeTest, LeavesEverythingElseWhereItIs) {
    for (const std::string_view line :
         {"", "2026", "2026-11-22", "2026-11-22T12:00:00", "2026-11-22 12:00:00Z",
          "2026-11-22T12:00:00+02:00", "2026-13-22T12:00:00Z", "2026-02-29T12:00:00Z", "2026-11-00T12:00:00Z",
          "2026-11-22T24:00:00Z", "2026-11-22T12:60:00Z", "2026-11-22T12:00:61Z", "2026-11-22T12:00:00.Z",
          "2026-11-22T12:00:00,5Z", " 2026-11-22T12:00:00Z", "+026-11-22T12:00:00Z", "2026-1-22T12:00:00Z",
          "text"}) {
        SCOPED_TRACE(line);
        std::string_view text = line;
        EXPECT_EQ(Report::takeUtcTime(text), std::nullopt);
        EXPECT_EQ(text, line);
    }
}

TEST(SyslogTimeTest, IsTakenFromTheStartOfALine) {
    const struct {
        std::string_view line;
        std::chrono::month_day date;
        std::chrono::seconds time;
        std::string_view rest;
    } cases[] = {
        {"Nov 22 06:08:58 korvel: text", std::chrono::November / 22, 6h + 8min + 58s, " korvel: text"},
        {"Jan  2 00:00:00", std::chrono::January / 2, 0s, ""},
        {"Jan 2 00:00:00", std::chrono::January / 2, 0s, ""},
        {"Jan 02 00:00:00", std::chrono::January / 2, 0s, ""},
        {"Feb 29 23:59:59", std::chrono::February / 29, 24h - 1s, ""},
    };
    for (const auto& [line, date, time, rest] : cases) {
        SCOPED_TRACE(line);
        std::string_view text = line;
        const auto taken = Report::takeSyslogTime(text);
        ASSERT_TRUE(taken);
        EXPECT_EQ(taken->date, date);
        EXPECT_EQ(taken->time, time);
        EXPECT_EQ(text, rest);
    }
}

TEST(SyslogTimeTest, LeavesEverythingElseWhereItIs) {
    for (const std::string_view line :
         {"", "Nov", "Nov 22", "nov 22 06:08:58", "Nov 31 06:08:58", "Nov 0 06:08:58", "Nov 22 6:08:58",
          "Nov   2 06:08:58", "Nov 222 06:08:58", "Nov 22 24:00:00", "Nov  22 06:08:58"}) {
        SCOPED_TRACE(line);
        std::string_view text = line;
        EXPECT_FALSE(Report::takeSyslogTime(text));
        EXPECT_EQ(text, line);
    }
}

TEST(Rfc3339Test, ReadsEveryForm) {
    for (const std::string_view text :
         {"2026-11-22T12:00:00Z", "2026-11-22T12:00:00.000Z", "2026-11-22t12:00:00z", "2026-11-22 12:00:00Z",
          "2026-11-22T14:00:00+02:00", "2026-11-22T08:30:00-03:30", "2026-11-22T12:00:00-00:00"}) {
        EXPECT_EQ(Report::parseRfc3339(text), noon) << text;
    }
    for (const std::string_view text : {"", "2026-11-22", "2026-11-22T12:00:00", "2026-11-22T12:00:00Zulu",
                                        "2026-11-22T12:00:00+24:00", "yesterday"}) {
        EXPECT_EQ(Report::parseRfc3339(text), std::nullopt) << text;
    }
}

TEST(ZoneTest, ConvertsBetweenLocalTimeAndUtc) {
    const std::chrono::local_days winter = std::chrono::local_days(std::chrono::year(2026) / 11 / 22);
    const std::chrono::local_days summer = std::chrono::local_days(std::chrono::year(2026) / 6 / 22);
    const struct {
        std::string_view zone;
        std::chrono::minutes inWinter;
        std::chrono::minutes inSummer;
    } zones[] = {
        {"UTC", 0h, 0h},
        {"Z", 0h, 0h},
        {"+02:00", 2h, 2h},
        {"-0330", -(3h + 30min), -(3h + 30min)},
        {"+14", 14h, 14h},
        {"Europe/Helsinki", 2h, 3h},
        {":Europe/Helsinki", 2h, 3h},
        {"Asia/Kolkata", 5h + 30min, 5h + 30min},
        {"CET-1", 1h, 1h},
        {"CET-1CEST,M3.5.0,M10.5.0/3", 1h, 2h},
        {"CET-1CEST", 1h, 2h},
        {"<+0330>-3:30", 3h + 30min, 3h + 30min},
    };
    for (const auto& [name, inWinter, inSummer] : zones) {
        SCOPED_TRACE(name);
        const std::optional<Zone> zone = Zone::find(name);
        ASSERT_TRUE(zone);
        for (const auto& [day, offset] : {std::pair(winter, inWinter), std::pair(summer, inSummer)}) {
            const std::chrono::local_seconds local = day + 12h + 34s;
            const Time utc = Time(local.time_since_epoch() - offset);
            EXPECT_EQ(zone->toUtc(local), utc);
            EXPECT_EQ(zone->toLocal(utc), local);
        }
    }
}

TEST(ZoneTest, IsNotFoundForAnyOtherText) {
    for (const std::string_view name :
         {"", "Mars/Phobos", "EEST", "../../../etc/localtime", "/usr/share/zoneinfo/UTC", "Europe", "+2",
          "+24:00", "+02:60", "-", ":", "<+03", "ABC", "posix/../UTC", "CET-1;reboot", "tzdata.zi",
          "CET-99"}) {
        EXPECT_FALSE(Zone::find(name)) << name;
    }
    EXPECT_FALSE(Zone::find(std::string(1000, 'A') + "-1"));
}

TEST(ZoneTest, LeavesTheZoneOfTheProgramUnchanged) {
    ::setenv("TZ", "XYZ-5", 1);
    const std::optional<Zone> zone = Zone::find("CET-1");
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->toLocal(noon), std::chrono::local_seconds(noon.time_since_epoch() / 1s * 1s + 1h));
    EXPECT_STREQ(::getenv("TZ"), "XYZ-5");
    ::unsetenv("TZ");
    static_cast<void>(zone->toLocal(noon));
    EXPECT_EQ(::getenv("TZ"), nullptr);
}

TEST(ZoneTest, MovesATimeThatWasSkippedOverTheGap) {
    const std::optional<Zone> zone = Zone::find("CET-1CEST,M3.5.0,M10.5.0/3");
    ASSERT_TRUE(zone);
    const auto skipped = std::chrono::local_days(std::chrono::year(2026) / 3 / 29) + 2h + 30min;
    const Time utc = zone->toUtc(skipped);
    EXPECT_NE(zone->toLocal(utc), skipped);
    EXPECT_LE(std::chrono::abs(zone->toLocal(utc) - skipped), 1h);
}

}  // namespace
}  // namespace ReportTest
