#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Density.hpp"
#include "EntrySelection.hpp"
#include "HandMadePackage.hpp"
#include "Pool.hpp"

namespace Report::Html {
namespace {

using namespace std::chrono_literals;
using Report::Test::at;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::size_t plenty = 1'000'000;  // bytes

LogEntry entry(const std::optional<Time>& time, Level level, std::string text) {
    return {time, level, "writer", std::move(text)};
}

void addLog(EntrySelection& selection, std::uint32_t number, const std::vector<LogEntry>& entries) {
    selection.beginLog(number);
    for (const LogEntry& added : entries) {
        selection.add(added);
    }
    selection.endLog();
}

/// The texts of the chosen entries, each with the numbers of its logs.
std::vector<std::string> chosenBy(EntrySelection& selection) {
    std::vector<std::string> texts;
    for (const KeptEntry& kept : selection.take()) {
        std::string text = kept.entry.text;
        for (const std::uint32_t log : kept.logs) {
            text += ' ' + std::to_string(log);
        }
        texts.push_back(text);
    }
    return texts;
}

TEST(EntrySelectionTest, MergesLogsByTimeWithEntriesWithoutATimeFirst) {
    EntrySelection selection(plenty, 2);
    addLog(selection, 0,
           {entry(at(1, 0, 0), Level::debug, "second"), entry(at(3, 0, 0), Level::debug, "fourth")});
    addLog(selection, 1,
           {entry(std::nullopt, Level::debug, "first"), entry(at(2, 0, 0), Level::debug, "third")});

    EXPECT_THAT(chosenBy(selection), ElementsAre("first 1", "second 0", "third 1", "fourth 0"));
}

TEST(EntrySelectionTest, KeepsTheOrderOfALogAtTheSameTime) {
    EntrySelection selection(plenty, 1);
    addLog(selection, 0,
           {entry(at(1, 0, 0), Level::debug, "zebra"), entry(at(1, 0, 0), Level::debug, "ant")});

    EXPECT_THAT(chosenBy(selection), ElementsAre("zebra 0", "ant 0"));
}

TEST(EntrySelectionTest, JoinsEntriesThatSeveralLogsContain) {
    EntrySelection selection(plenty, 2);
    const LogEntry same = entry(at(1, 0, 0), Level::debug, "same");
    addLog(selection, 0, {same, entry(at(1, 0, 0), Level::debug, "other")});
    addLog(selection, 1, {same});

    EXPECT_THAT(chosenBy(selection), ElementsAre("same 0 1", "other 0"));
}

TEST(EntrySelectionTest, LeavesAnEntryThatALogRepeatsTwice) {
    EntrySelection selection(plenty, 2);
    const LogEntry same = entry(at(1, 0, 0), Level::debug, "same");
    addLog(selection, 0, {same, same});
    addLog(selection, 1, {same, same, same});

    EXPECT_THAT(chosenBy(selection), ElementsAre("same 0 1", "same 0 1", "same 1"));
}

TEST(EntrySelectionTest, PrefersErrorsAndWarningsAndThenNewerEntries) {
    EntrySelection selection(600, 1);  // bytes: half of them for the last entries of the log
    std::vector<LogEntry> entries{entry(at(0, 0, 1), Level::error, std::string(50, 'e')),
                                  entry(at(0, 0, 2), Level::warning, std::string(50, 'w'))};
    for (int second = 3; second < 50; ++second) {
        entries.push_back(
            entry(at(0, 0, second), Level::information, std::string(45, 'i') + std::to_string(second)));
    }
    addLog(selection, 0, entries);

    std::vector<int> seconds;
    for (const KeptEntry& kept : selection.take()) {
        seconds.push_back(static_cast<int>(
            std::chrono::floor<std::chrono::seconds>(*kept.entry.time).time_since_epoch().count() % 60));
    }
    EXPECT_THAT(seconds, ElementsAre(1, 2, 45, 46, 47, 48, 49));
}

TEST(EntrySelectionTest, KeepsTheLastEntriesOfEachLogHoweverManyErrorsAnotherLogHas) {
    EntrySelection selection(4000, 2);
    std::vector<LogEntry> errors;
    for (int minute = 0; minute < 60; ++minute) {
        for (int second = 0; second < 60; ++second) {
            errors.push_back(entry(at(9, minute, second), Level::error, "failed"));
        }
    }
    addLog(selection, 0,
           {entry(at(1, 0, 0), Level::debug, "old"), entry(at(1, 0, 1), Level::debug, "quiet")});
    addLog(selection, 1, errors);

    const std::vector<KeptEntry> kept = selection.take();
    ASSERT_THAT(kept, SizeIs(testing::AllOf(testing::Gt(50), testing::Lt(150))));
    EXPECT_EQ(kept[0].entry.text, "old");
    EXPECT_EQ(kept[1].entry.text, "quiet");
}

TEST(EntrySelectionTest, CutsALongEntryAndCountsTheRest) {
    EntrySelection selection(plenty, 1);
    addLog(selection, 0, {entry(at(1, 0, 0), Level::debug, std::string(5000, 'x'))});

    const std::vector<KeptEntry> kept = selection.take();
    ASSERT_THAT(kept, SizeIs(1));
    EXPECT_EQ(kept[0].entry.text, std::string(2000, 'x') + "…");
    EXPECT_EQ(kept[0].leftOut, 3000U);
}

TEST(DensityTest, CountsEachEntryInItsColumnByLevel) {
    Density density;
    density.add(at(1, 0, 0), Level::error);
    density.add(at(1, 0, 0), std::nullopt);
    density.add(at(1, 0, 9), Level::debug);

    const std::vector<DensityColumn> columns = density.columns(10);
    ASSERT_THAT(columns, SizeIs(10));
    EXPECT_THAT(columns.front().counts, ElementsAre(1, 0, 0, 0, 1));
    EXPECT_THAT(columns[4].counts, ElementsAre(0, 0, 0, 0, 0));
    EXPECT_THAT(columns.back().counts, ElementsAre(0, 0, 0, 1, 0));
    EXPECT_LE(columns.front().begin, at(1, 0, 0));
    EXPECT_GT(columns.back().end, at(1, 0, 9));
}

TEST(DensityTest, LosesNoEntryWhenTheTimeGrows) {
    Density density;
    constexpr int entries = 200'000;
    for (int number = 0; number < entries; ++number) {
        density.add(at(0, 0, 0) + number * 7s, Level::information);
    }
    std::uint64_t sum = 0;
    const std::vector<DensityColumn> columns = density.columns(240);
    for (const DensityColumn& column : columns) {
        sum += column.counts[2];
        EXPECT_FALSE(column.afterGap);
    }
    EXPECT_EQ(sum, static_cast<std::uint64_t>(entries));
    EXPECT_THAT(columns, SizeIs(testing::AllOf(testing::Gt(100), testing::Le(240))));
}

TEST(DensityTest, LeavesOutATimeThatDwarfsTheRest) {
    Density density;
    const Time unset{};  // a clock that nobody set
    for (int second = 0; second < 20; ++second) {
        density.add(unset + second * 1s, Level::debug);
        density.add(at(6, 0, 0) + second * 1s, Level::debug);
    }
    const std::vector<DensityColumn> columns = density.columns(100);

    EXPECT_EQ(std::ranges::count_if(columns, &DensityColumn::afterGap), 1);
    const auto afterGap = std::ranges::find_if(columns, &DensityColumn::afterGap);
    EXPECT_LE(afterGap->begin, at(6, 0, 0));
    EXPECT_GT(afterGap->end, at(6, 0, 0));
    EXPECT_THAT(columns, SizeIs(testing::Gt(50)));
}

TEST(DensityTest, HasNoColumnsWithoutEntries) {
    EXPECT_THAT(Density().columns(100), IsEmpty());
}

std::vector<Value> valuesNamed(const std::vector<std::pair<std::string, std::int64_t>>& rows) {
    std::vector<Value> values;
    values.reserve(rows.size());
    for (const auto& [name, number] : rows) {
        values.push_back({.part = "mmi/sfn/HeapStats",
                          .title = "heap",
                          .name = name,
                          .number = number,
                          .text = std::to_string(number)});
    }
    return values;
}

std::string described(const Pool& pool) {
    const auto optional = [](const std::optional<std::uint64_t>& number) {
        return number ? std::to_string(*number) : "-";
    };
    return pool.name + ": " + std::to_string(pool.used) + " + " + std::to_string(pool.free) + " = " +
           std::to_string(pool.all) + (pool.addsUp ? "" : " wrong") + ", highest " + optional(pool.highest) +
           ", lowest " + optional(pool.lowest);
}

TEST(PoolTest, IsFoundByTheNamesOfItsValues) {
    const struct {
        std::vector<std::pair<std::string, std::int64_t>> values;
        std::string pool;
    } cases[] = {
        {{{"bytes in all", 10}, {"bytes in use", 4}, {"bytes in use, highest", 7}, {"bytes free", 6}},
         "bytes: 4 + 6 = 10, highest 7, lowest -"},
        {{{"descriptor pool free", 6}, {"descriptor pool in use", 4}, {"descriptor pool lowest", 1}},
         "descriptor pool: 4 + 6 = 10, highest -, lowest 1"},
        {{{"channels", 10}, {"channels in use", 4}}, "channels: 4 + 6 = 10, highest -, lowest -"},
        {{{"free_blocks", 6}, {"total_blocks", 10}}, "blocks: 4 + 6 = 10, highest -, lowest -"},
        {{{"Used", 4}, {"Available", 6}}, "mmi/sfn/HeapStats: 4 + 6 = 10, highest -, lowest -"},
        {{{"bytes in all", 9}, {"bytes in use", 4}, {"bytes free", 6}},
         "bytes: 4 + 6 = 9 wrong, highest -, lowest -"},
        {{{"channels", 1}, {"channels in use", 4}}, "channels: 4 + 0 = 1 wrong, highest -, lowest -"},
    };
    for (const auto& [values, pool] : cases) {
        SCOPED_TRACE(pool);
        const std::vector<Pool> pools = poolsOf(valuesNamed(values));
        ASSERT_THAT(pools, SizeIs(1));
        EXPECT_EQ(described(pools[0]), pool);
    }
}

TEST(PoolTest, NeedsTwoOfItsValuesFromOnePart) {
    EXPECT_THAT(poolsOf(valuesNamed({{"contexts in use", 4}, {"contexts in use, highest", 5}, {"loops", 3}})),
                IsEmpty());
    EXPECT_THAT(poolsOf(valuesNamed({{"bytes free", -1}, {"bytes in use", 4}})), IsEmpty());
    EXPECT_THAT(poolsOf(valuesNamed({{"blocks in use", 95}, {"blocks free", 5}})), IsEmpty());
    EXPECT_THAT(poolsOf(valuesNamed({{"blocks in use", 95}, {"blocks", 100}})), Not(IsEmpty()));
    std::vector<Value> ofTwoParts = valuesNamed({{"bytes free", 1}, {"bytes in use", 4}});
    ofTwoParts[1].part = "mmi/iwf/HeapStats";
    EXPECT_THAT(poolsOf(ofTwoParts), IsEmpty());
}

}  // namespace
}  // namespace Report::Html
