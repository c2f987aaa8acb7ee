#include <chrono>
#include <optional>
#include <string_view>

#include <gtest/gtest.h>

#include "EntryParser.hpp"

namespace ReportTest {
namespace {

using Report::EntryParser;
using Report::Level;
using Report::LogEntry;
using Report::Time;
using Report::Zone;
using namespace std::chrono_literals;

constexpr Time packageTime = std::chrono::sys_days(std::chrono::year(2026) / 11 / 22) + 8h;
constexpr Time day = std::chrono::sys_days(std::chrono::year(2026) / 11 / 22);

TEST(EntryParserTest, ReadsTheFormsOfTheLogLibraryAndOfSyslog) {
    const struct {
        std::string_view line;
        LogEntry entry;
    } cases[] = {
        {"2026-11-22T02:46:40.995104Z 0 Supervision: Heartbeat status: ERROR",
         {day + 2h + 46min + 40s + 995104us, Level::error, "Supervision", "Heartbeat status: ERROR"}},
        {"2026-11-22T00:00:00Z 3 : no tag", {day, Level::debug, "", "no tag"}},
        {"2026-11-22T00:00:00Z 2 tag:", {day, Level::information, "tag", ""}},
        {"2026-11-22T00:00:00Z 1 two words: text", {day, Level::warning, "two words", "text"}},
        {"2026-11-22T00:00:00Z 1 tag: text\r", {day, Level::warning, "tag", "text"}},
        {"2026-11-22T00:00:00Z 1 only text", {day, Level::warning, "", "only text"}},
        {"2026-11-22T00:00:00Z 4 tag: text", {day, std::nullopt, "", "4 tag: text"}},
        {"2026-11-22T00:00:00Z", {day, std::nullopt, "", ""}},
        {"Nov 22 06:08:58 korvel: text: more", {day + 6h + 8min + 58s, std::nullopt, "korvel", "text: more"}},
        {"Nov 22 06:08:58 host korvel[17]: text",
         {day + 6h + 8min + 58s, std::nullopt, "korvel[17]", "text"}},
        {"Nov 22 06:08:58 last message repeated: 3",
         {day + 6h + 8min + 58s, std::nullopt, "", "last message repeated: 3"}},
        {"<8>Nov 22 00:00:00 a: b", {day, Level::error, "a", "b"}},
        {"<11>Nov 22 00:00:00 a: b", {day, Level::error, "a", "b"}},
        {"<12>Nov 22 00:00:00 a: b", {day, Level::warning, "a", "b"}},
        {"<13>Nov 22 00:00:00 a: b", {day, Level::information, "a", "b"}},
        {"<14>Nov 22 00:00:00 a: b", {day, Level::information, "a", "b"}},
        {"<191>Nov 22 00:00:00 a: b", {day, Level::debug, "a", "b"}},
    };
    const EntryParser parser(Zone(), packageTime);
    for (const auto& [line, entry] : cases) {
        SCOPED_TRACE(line);
        LogEntry parsed{day, Level::debug, "of another", "line"};
        EXPECT_TRUE(Report::startsEntry(line));
        EXPECT_TRUE(parser.parse(line, parsed));
        EXPECT_EQ(parsed, entry);
    }
}

TEST(EntryParserTest, TakesALineWithoutATimeAsText) {
    const EntryParser parser(Zone(), packageTime);
    for (const std::string_view line : {"", "text", " 2026-11-22T02:46:40Z 0 a: b",
                                        "<192>Nov 22 06:08:58 a: b", "<11> text", "<", "<11", "<-1>Nov"}) {
        SCOPED_TRACE(line);
        LogEntry parsed{day, Level::debug, "of another", "line"};
        EXPECT_FALSE(Report::startsEntry(line));
        EXPECT_FALSE(parser.parse(line, parsed));
        EXPECT_EQ(parsed, (LogEntry{std::nullopt, std::nullopt, "", std::string(line)}));
    }
}

TEST(EntryParserTest, JoinsTheLinesOfAnEntry) {
    EXPECT_EQ(EntryParser(Zone(), packageTime).parseLines("2026-11-22T00:00:00Z 0 a: b\nc\n  d"),
              (LogEntry{day, Level::error, "a", "b\nc\n  d"}));
}

TEST(EntryParserTest, GivesSyslogTheYearAndZoneOfThePackage) {
    using std::chrono::sys_days;
    using std::chrono::year;
    const Time newYear = sys_days(year(2027) / 1 / 1);
    const struct {
        std::string_view line;
        std::string_view zone;
        Time package;
        Time expected;
    } cases[] = {
        {"Nov 22 06:00:00 a: b", "UTC", packageTime, day + 6h},
        {"Nov 22 06:00:00 a: b", "+02:00", packageTime, day + 4h},
        {"Nov 22 06:00:00 a: b", "Europe/Helsinki", packageTime, day + 4h},
        {"Jun 22 06:00:00 a: b", "Europe/Helsinki", packageTime, sys_days(year(2026) / 6 / 22) + 3h},
        // A clock that was set back left an entry of the future.
        {"Nov 30 06:00:00 a: b", "UTC", packageTime, sys_days(year(2026) / 11 / 30) + 6h},
        // The turn of the year.
        {"Dec 31 23:59:59 a: b", "UTC", newYear + 5s, newYear - 1s},
        {"Dec 31 23:59:59 a: b", "UTC", packageTime, sys_days(year(2025) / 12 / 31) + 24h - 1s},
        // It is 2027 in Helsinki, but still 2026 in UTC.
        {"Jan  1 01:00:00 a: b", "Europe/Helsinki", newYear - 30min, newYear - 1h},
        {"Feb 29 00:00:00 a: b", "UTC", packageTime, Time(sys_days(year(2024) / 2 / 29))},
        {"Feb 29 00:00:00 a: b", "UTC", Time(sys_days(year(2103) / 3 / 1)),
         Time(sys_days(year(2096) / 2 / 29))},
    };
    for (const auto& [line, zone, package, expected] : cases) {
        SCOPED_TRACE(line);
        LogEntry entry;
        ASSERT_TRUE(EntryParser(Zone::find(zone).value(), package).parse(line, entry));
        EXPECT_EQ(entry.time, expected);
    }
}

}  // namespace
}  // namespace ReportTest
