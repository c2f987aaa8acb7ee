#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Difference.hpp"
#include "HandMadePackage.hpp"

namespace Report {
namespace {

using Test::at;
using Test::HandMadePackage;

constexpr std::size_t maxLine = 200;

using Lines = std::vector<std::string>;

std::string joined(std::string_view first, const Lines& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text.append(" ").append(first).append(line);
    }
    return text;
}

std::string described(const PartChange& change) {
    const std::string counts =
        " +" + std::to_string(change.text.added) + " -" + std::to_string(change.text.removed);
    const std::string what[] = {"came: ", "went: ", "state: ", "text" + counts + ": "};
    return what[static_cast<std::size_t>(change.what)] + change.name + joined("+", change.text.firstAdded) +
           joined("-", change.text.firstRemoved);
}

std::string described(const ValueChange& change) {
    const Value& value = change.either();
    std::ostringstream text;
    text << value.part << '|' << value.title << '|' << value.name << '|' << value.occurrence << ": "
         << (change.before != nullptr ? change.before->text : "none") << " -> "
         << (change.after != nullptr ? change.after->text : "none");
    if (!change.difference.empty()) {
        text << ", " << change.difference;
    }
    if (change.perSecond) {
        text << ", " << *change.perSecond << "/s";
    }
    if (change.fell) {
        text << ", fell";
    }
    return text.str();
}

/// All that differs, as lines.
Lines described(const Difference& difference) {
    Lines lines;
    for (const PartChange& change : difference.parts) {
        lines.push_back(described(change));
    }
    for (const ValueChange& change : difference.values) {
        lines.push_back(described(change));
    }
    for (const LogChange& change : difference.logs) {
        lines.push_back("log " + change.log + ": " + std::to_string(change.count) + " new, " +
                        std::to_string(change.gone) + " gone");
        for (const NewEntries& entries : change.parts) {
            forEachNewEntry(*difference.after, entries, maxLine, [&](const LogEntry& entry) {
                lines.push_back("  " + entries.part->name + ": " + entry.tag + ": " + entry.text);
                return true;
            });
        }
    }
    for (const std::string& name : difference.notCompared) {
        lines.push_back("not compared: " + name);
    }
    for (const Difference& nested : difference.nested) {
        lines.push_back("in " + nested.name);
        for (const std::string& line : described(nested)) {
            lines.push_back("  " + line);
        }
    }
    return lines;
}

class DifferenceTest : public testing::Test {
protected:
    Lines differences() { return described(compare(before, after, maxLine)); }
    int exitStatus() { return exitStatusOf(compare(before, after, maxLine)); }

    /// Adds a value, and a part for it, to both packages.
    void addValue(const Number& earlierNumber, const std::string& earlier, const Number& laterNumber,
                  const std::string& later) {
        before.addPart("mmi/iwf/HeapStats", "heap\n  in use  " + earlier + "\n");
        before.addValue("heap", "in use", earlierNumber, earlier);
        after.addPart("mmi/iwf/HeapStats", "heap\n  in use  " + later + "\n");
        after.addValue("heap", "in use", laterNumber, later);
    }

    HandMadePackage before{"before.tgz"};
    HandMadePackage after{"after.tgz"};
};

TEST_F(DifferenceTest, TwoPackagesWithEqualContentsAreTheSameWhateverTheirTimesAndOrderAre) {
    before.time = at(6, 0, 0);
    before.addPart("ti/netfp_proxy", "<dump>\n  routes  5\n</dump>\n").time = at(6, 0, 0);
    before.addValue("<dump>", "routes", std::int64_t{5}, "5");
    before.addLog("fuse/HistoryLog", "2026-11-22T06:00:00.000001Z 3 iwf: started\n");
    after.time = at(6, 0, 10);
    after.addLog("fuse/HistoryLog", "2026-11-22T06:00:00.000001Z 3 iwf: started\n");
    after.addPart("ti/netfp_proxy", "<dump>\n\n  routes: 5 \r\n</dump>\r\n").time = at(6, 0, 10);
    after.addValue("<dump>", "routes", std::int64_t{5}, "5");

    EXPECT_EQ(differences(), Lines{});
    EXPECT_EQ(exitStatus(), 0);
}

TEST_F(DifferenceTest, TellsHowMuchAndHowFastAValueChanged) {
    before.time = at(6, 0, 0);
    after.time = at(6, 0, 10);
    addValue(std::int64_t{1000}, "1000", std::int64_t{1015}, "1015");

    EXPECT_EQ(differences(), Lines{"mmi/iwf/HeapStats|heap|in use|1: 1000 -> 1015, +15, 1.5/s"});
    EXPECT_EQ(exitStatus(), 1);
}

TEST_F(DifferenceTest, TellsThatAValueFell) {
    before.time = at(6, 0, 0);
    after.time = at(6, 0, 4);
    addValue(0.5, "0.5", -1.5, "-1.5");

    EXPECT_EQ(differences(), Lines{"mmi/iwf/HeapStats|heap|in use|1: 0.5 -> -1.5, -2, -0.5/s, fell"});
}

TEST_F(DifferenceTest, TellsTheDifferenceOfNumbersThatADoubleCannotHold) {
    addValue(std::uint64_t{18446744073709551614U}, "18446744073709551614", {}, "99999999999999999999");

    EXPECT_EQ(differences(),
              Lines{"mmi/iwf/HeapStats|heap|in use|1: 18446744073709551614 -> 99999999999999999999, "
                    "+81553255926290448385"});
}

TEST_F(DifferenceTest, KnowsNoDifferenceOfHexadecimalNumbersBeyond64Bits) {
    addValue({}, "0x10000000000000000", {}, "0x10000000000000001");

    EXPECT_EQ(differences(),
              Lines{"mmi/iwf/HeapStats|heap|in use|1: 0x10000000000000000 -> 0x10000000000000001"});
}

TEST_F(DifferenceTest, EqualNumbersDoNotDifferHoweverTheyAreWritten) {
    addValue(std::int64_t{16}, "16", std::int64_t{16}, "0x10");

    EXPECT_EQ(differences(), Lines{});
}

TEST_F(DifferenceTest, KnowsNoRateWithoutTwoDifferentTimesOfSetClocks) {
    const struct {
        std::optional<Time> earlier;
        std::optional<Time> later;
        bool unset;
        std::optional<double> seconds;
    } cases[] = {
        {at(6, 0, 0), at(6, 0, 10), false, 10.0},         {at(6, 0, 10), at(6, 0, 0), false, -10.0},
        {at(6, 0, 0), at(6, 0, 0), false, std::nullopt},  {std::nullopt, at(6, 0, 0), false, std::nullopt},
        {at(6, 0, 0), std::nullopt, false, std::nullopt}, {at(6, 0, 0), at(6, 0, 10), true, std::nullopt},
    };
    for (const auto& [earlier, later, unset, seconds] : cases) {
        before.time = earlier;
        after.time = later;
        before.clockUnset = unset;
        EXPECT_EQ(compare(before, after, maxLine).seconds, seconds);
    }
}

TEST_F(DifferenceTest, FindsValuesThatCameAndWentByTitleNameAndOccurrence) {
    before.addPart("fuse/iwf/dmaStats", "queue 1\n  full  1\n  full  2\nqueue 2\n  full  3\n");
    before.addValue("queue 1", "full", std::int64_t{1}, "1", 1);
    before.addValue("queue 1", "full", std::int64_t{2}, "2", 2);
    before.addValue("queue 2", "full", std::int64_t{3}, "3", 1);
    after.addPart("fuse/iwf/dmaStats", "queue 1\n  full  1\nqueue 2\n  full  3\n  lost  4\n");
    after.addValue("queue 1", "full", std::int64_t{1}, "1", 1);
    after.addValue("queue 2", "full", std::int64_t{3}, "3", 1);
    after.addValue("queue 2", "lost", std::int64_t{4}, "4", 1);

    EXPECT_EQ(differences(), (Lines{"fuse/iwf/dmaStats|queue 2|lost|1: none -> 4",
                                    "fuse/iwf/dmaStats|queue 1|full|2: 2 -> none"}));
}

TEST_F(DifferenceTest, FindsPartsThatCameAndWentWithTheirContents) {
    before.addPart("ti/netfp_proxy", "routes  5\n");
    before.addValue("", "routes", std::int64_t{5}, "5");
    before.addMissing("ti/resmgr_server");
    after.addMissing("ti/netfp_proxy");
    after.addPart("ti/resmgr_server", "queues  7\n");
    after.addValue("", "queues", std::int64_t{7}, "7");
    after.addLog("ti/syslib_sm_log", "2026-11-22T06:00:00.000001Z 3 server: started\n");

    EXPECT_EQ(differences(),
              (Lines{"went: ti/netfp_proxy", "came: ti/resmgr_server", "came: ti/syslib_sm_log",
                     "ti/netfp_proxy||routes|1: 5 -> none", "ti/resmgr_server||queues|1: none -> 7",
                     "log ti/syslib_sm_log: 1 new, 0 gone", "  ti/syslib_sm_log: server: started"}));
}

TEST_F(DifferenceTest, APartThatIsMissingInBothIsNoDifference) {
    before.addMissing("ti/netfp_proxy");

    EXPECT_EQ(differences(), Lines{});
}

TEST_F(DifferenceTest, FindsAPartWhoseStateDiffers) {
    before.addPart("ti/netfp_proxy", "routes\n");
    after.addPart("ti/netfp_proxy", "routes\n").state = State::stale;

    const Difference difference = compare(before, after, maxLine);

    EXPECT_EQ(described(difference), Lines{"state: ti/netfp_proxy"});
    EXPECT_EQ(difference.parts.front().before->state, State::present);
    EXPECT_EQ(difference.parts.front().after->state, State::stale);
}

TEST_F(DifferenceTest, FindsOtherLinesThatDifferButNotTheirOrder) {
    before.addPart("linux/processes", "a\nb\nc\nc\nload  5\n");
    before.addValue("c", "load", std::int64_t{5}, "5");
    after.addPart("linux/processes", "c\nb\na\n1\n2\n3\n4\nload  5\n");
    after.addValue("4", "load", std::int64_t{5}, "5");
    after.values.front().title = "c";

    EXPECT_EQ(differences(), Lines{"text +4 -1: linux/processes +1 +2 +3 -c"});
}

TEST_F(DifferenceTest, ANumberOfAPartThatIsOneNumberIsNoOtherLine) {
    before.addPart("fuse/iwf/tracing_on", "0\n");
    before.addValue("", "tracing_on", std::int64_t{0}, "0");
    after.addPart("fuse/iwf/tracing_on", "1\n");
    after.addValue("", "tracing_on", std::int64_t{1}, "1");

    EXPECT_EQ(differences(), Lines{"fuse/iwf/tracing_on||tracing_on|1: 0 -> 1, +1"});
}

TEST_F(DifferenceTest, ComparesSeveralMembersOfOneNameInTheirOrder) {
    before.addPart("mmi/iwf/HeapStats", "a\n");
    after.addPart("mmi/iwf/HeapStats", "a\n");
    after.addPart("mmi/iwf/HeapStats", "b\n");

    EXPECT_EQ(differences(), (Lines{"came: mmi/iwf/HeapStats", "text +1 -0: mmi/iwf/HeapStats +b"}));
}

TEST_F(DifferenceTest, FindsNewEntriesAndCountsThoseThatWent) {
    before.addLog("fuse/HistoryLog",
                  "2026-11-22T06:00:00.000001Z 3 iwf: started\n"
                  "2026-11-22T06:00:01.000000Z 1 iwf: queue full\n");
    after.addLog("fuse/HistoryLog",
                 "2026-11-22T06:00:01.000000Z 1 iwf: queue full\n"
                 "2026-11-22T06:00:01.000000Z 1 iwf: queue full\n"
                 "2026-11-22T06:00:02.000000Z 1 iwf: queue full\n"
                 "with details\n");

    EXPECT_EQ(differences(),
              (Lines{"log fuse/HistoryLog: 2 new, 1 gone", "  fuse/HistoryLog: iwf: queue full",
                     "  fuse/HistoryLog: iwf: queue full\nwith details"}));
}

TEST_F(DifferenceTest, EntriesOfWhichTimeLevelWriterOrTextDifferAreNew) {
    before.addLog("fuse/HistoryLog", "2026-11-22T06:00:00.000001Z 3 iwf: started\n");
    const std::string others[] = {
        "2026-11-22T06:00:00.000002Z 3 iwf: started\n",
        "2026-11-22T06:00:00.000001Z 2 iwf: started\n",
        "2026-11-22T06:00:00.000001Z 3 sfn: started\n",
        "2026-11-22T06:00:00.000001Z 3 iwf: stopped\n",
    };
    for (const std::string& other : others) {
        HandMadePackage later("after.tgz");
        later.addLog("fuse/HistoryLog", other);
        const Difference difference = compare(before, later, maxLine);
        ASSERT_EQ(difference.logs.size(), 1U) << other;
        EXPECT_EQ(difference.logs.front().count, 1U) << other;
    }
}

TEST_F(DifferenceTest, ALogFromWhichEntriesOnlyWentIsTheSame) {
    before.addLog("fuse/HistoryLog",
                  "2026-11-22T06:00:00.000001Z 3 iwf: started\n"
                  "2026-11-22T06:00:01.000000Z 1 iwf: queue full\n");
    after.addLog("fuse/HistoryLog", "2026-11-22T06:00:01.000000Z 1 iwf: queue full\n");

    EXPECT_EQ(differences(), Lines{});
}

TEST_F(DifferenceTest, EntriesThatMovedBetweenThePiecesOfAnArchiveAreNotNew) {
    const std::string first = "2026-11-22T06:00:00.000001Z 3 iwf: started\n";
    const std::string second = "2026-11-22T06:00:01.000000Z 3 iwf: second\n";
    const std::string third = "2026-11-22T06:00:02.000000Z 3 iwf: third\n";
    before.addLog("archive/dispatcher/startup", first);
    before.addLog("archive/dispatcher/runtime", second);
    after.addLog("archive.1/dispatcher/startup", first);
    after.addLog("archive/dispatcher/middle", second);
    after.addLog("archive/dispatcher/runtime", second + third);
    after.addLog("archive/syslib/runtime", second);

    EXPECT_EQ(differences(),
              (Lines{"came: archive.1/dispatcher/startup", "came: archive/dispatcher/middle",
                     "went: archive/dispatcher/startup", "came: archive/syslib/runtime",
                     "log archive/dispatcher: 1 new, 0 gone", "  archive/dispatcher/runtime: iwf: third",
                     "log archive/syslib: 1 new, 0 gone", "  archive/syslib/runtime: iwf: second"}));
}

TEST_F(DifferenceTest, AnEntryInTwoPiecesOfAnArchiveCountsOnce) {
    const std::string entry = "2026-11-22T06:00:00.000001Z 3 iwf: started\n";
    before.addLog("archive/dispatcher/middle", entry);
    before.addLog("archive/dispatcher/runtime", entry);
    after.addLog("archive/dispatcher/middle", entry);
    after.addLog("archive/dispatcher/runtime", entry + entry);

    EXPECT_EQ(differences(),
              (Lines{"log archive/dispatcher: 1 new, 0 gone", "  archive/dispatcher/runtime: iwf: started"}));
}

TEST_F(DifferenceTest, ComparesNestedPackagesWithTheSameNameAtEveryDepth) {
    HandMadePackage earlier("./netfp_logs_post_mortem.tgz");
    earlier.addPart("ti/netfp_proxy", "routes  5\n");
    earlier.addValue("", "routes", std::int64_t{5}, "5");
    HandMadePackage later("./netfp_logs_post_mortem.tgz");
    later.addPart("ti/netfp_proxy", "routes  6\n");
    later.addValue("", "routes", std::int64_t{6}, "6");
    HandMadePackage between("./same.tgz");
    between.nested = {earlier};
    before.nested = {HandMadePackage("./other.tgz"), earlier, between};
    between.nested = {later};
    after.nested = {between, later};

    EXPECT_EQ(
        differences(),
        (Lines{"in ./netfp_logs_post_mortem.tgz", "  ti/netfp_proxy||routes|1: 5 -> 6, +1",
               "in ./same.tgz: ./netfp_logs_post_mortem.tgz", "  ti/netfp_proxy||routes|1: 5 -> 6, +1"}));
    EXPECT_EQ(exitStatus(), 1);
}

TEST_F(DifferenceTest, ComparesWhatACutPackageStillHasAndNamesTheOtherParts) {
    before.addPart("mmi/iwf/HeapStats", "in use  5\n");
    before.addValue("", "in use", std::int64_t{5}, "5");
    before.addPart("mmi/sfn/HeapStats", "in use  500\n");
    before.addValue("", "in use", std::int64_t{500}, "500");
    before.addPart("ti/netfp_proxy", "routes  5\n");
    before.addValue("", "routes", std::int64_t{5}, "5");
    after.verdict = Verdict::cut;
    after.addPart("mmi/iwf/HeapStats", "in use  6\n");
    after.addValue("", "in use", std::int64_t{6}, "6");
    after.addPart("mmi/sfn/HeapStats", "in use  50").end.integrity = Integrity::cut;
    after.addValue("", "in use", std::int64_t{50}, "50");

    EXPECT_EQ(differences(), (Lines{"mmi/iwf/HeapStats||in use|1: 5 -> 6, +1",
                                    "not compared: mmi/sfn/HeapStats", "not compared: ti/netfp_proxy"}));
    EXPECT_EQ(exitStatus(), 2);
}

TEST_F(DifferenceTest, HasTroubleWithAPackageThatWasNotReadToItsEnd) {
    const struct {
        Verdict verdict;
        int status;
    } cases[] = {
        {Verdict::whole, 0}, {Verdict::incomplete, 0}, {Verdict::notFullyRead, 2},
        {Verdict::cut, 2},   {Verdict::altered, 2},    {Verdict::unreadable, 2},
    };
    for (const auto& [verdict, status] : cases) {
        before.verdict = verdict;
        EXPECT_EQ(exitStatusOf(compare(before, after, maxLine)), status);
        EXPECT_EQ(exitStatusOf(compare(after, before, maxLine)), status);
    }
}

TEST_F(DifferenceTest, APieceThatIsCutInTheSameWayInBothIsTheSame) {
    const std::string entry = "2026-11-22T06:00:00.000001Z 3 iwf: started\n";
    before.addLog("archive/dispatcher/middle", entry).end.integrity = Integrity::cut;
    after.addLog("archive/dispatcher/middle", entry).end.integrity = Integrity::cut;

    EXPECT_EQ(differences(), Lines{});
    EXPECT_EQ(exitStatus(), 0);

    HandMadePackage longer("longer.tgz");
    longer.addLog("archive/dispatcher/middle", entry + entry);
    EXPECT_EQ(described(compare(before, longer, maxLine)), Lines{"not compared: archive/dispatcher/middle"});
    EXPECT_EQ(exitStatusOf(compare(before, longer, maxLine)), 2);
}

TEST_F(DifferenceTest, PartsThatWereNotComparedInANestedPackageAreTrouble) {
    HandMadePackage nested("./netfp_logs_post_mortem.tgz");
    nested.addPart("ti/netfp_proxy", "routes\n");
    before.nested = {nested};
    nested.parts.front().state = State::notRead;
    nested.parts.front().text = {};
    nested.parts.front().textSize = 0;
    after.nested = {nested};

    EXPECT_EQ(differences(), (Lines{"in ./netfp_logs_post_mortem.tgz", "  not compared: ti/netfp_proxy"}));
    EXPECT_TRUE(compare(before, after, maxLine).empty());
    EXPECT_EQ(exitStatus(), 2);
}

}  // namespace
}  // namespace Report
