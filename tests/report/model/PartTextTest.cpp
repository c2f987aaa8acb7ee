#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "Description.hpp"
#include "LoadedPackage.hpp"
#include "PackageBuilder.hpp"
#include "PackageLoader.hpp"

namespace ReportTest {
namespace {

using Report::Keep;
using Report::LoadOptions;
using Report::Package;
using Report::Part;

/// A package with one member.
Package loadMember(const std::string& member, std::string_view text, const LoadOptions& options = {}) {
    return load(PackageBuilder().file(member, text).tgz(), options);
}

/// What a description says about values, limits and parts other than names, sizes and times.
std::string readingOf(const Package& package) {
    std::string text = describe(package);
    text.erase(0, text.find("\npart ") + 1);
    text.erase(0, text.find(", present") == std::string::npos ? 0 : text.find(", present") + 2);
    const std::string time = ", 2026-11-22 08:30:33";
    text.erase(text.find(time), time.size());
    return text;
}

TEST(ValuesTest, AreLinesThatEndInANumberUnderTheLastOtherLine) {
    const struct {
        std::string_view text;
        std::string reading;
    } cases[] = {
        {"iwf: CPU\n  loops      0\n  busy, per mille      12\n",
         "present\nvalues of mmi/iwf/X, iwf: CPU: loops = 0; busy, per mille = 12\n"},
        {"a: 1\n", "present\nvalues of mmi/iwf/X, -: a = 1\n"},
        {"a: 1", "present\nvalues of mmi/iwf/X, -: a = 1\n"},
        {"one\na: 1\n\n \t\r\nb: 2\ntwo\r\nb: 3\r\n",
         "present\nvalues of mmi/iwf/X, one: a = 1; b = 2\nvalues of mmi/iwf/X, two: b = 3\n"},
        {"t\na: 1\na: 2\nb: 3\nt\na: 4\n",
         "present\nvalues of mmi/iwf/X, t: a = 1; a (2) = 2; b = 3; a (3) = 4\n"},
        {"other\n  title \na: 1\nother\n", "present, 2 other lines\nvalues of mmi/iwf/X, title: a = 1\n"},
        {"a: 18446744073709551615\nb: 18446744073709551616\nc: 1.50\n",
         "present\nvalues of mmi/iwf/X, -: a = unsigned 18446744073709551615; b = text 18446744073709551616; "
         "c = decimal 1.50\n"},
        {"", "present\n"},
        {"\n\n", "present\n"},
        {"neither\nnor\n", "present, 2 other lines\n"},
        {"\xff\xfe  5\n", "present, 2 invalid\nvalues of mmi/iwf/X, -: \xff\xfe = 5\n"},
    };
    for (const auto& [text, reading] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readingOf(loadMember("./mmi/iwf/X.log", text)), reading);
    }
}

TEST(ValuesTest, HaveTheNameOfAPartThatIsOneNumber) {
    const struct {
        std::string_view text;
        std::string reading;
    } cases[] = {
        {"0\n", "present\nvalues of fuse/iwf/tracing_on, -: tracing_on = 0\n"},
        {"\n 0x1F \r\n\n", "present\nvalues of fuse/iwf/tracing_on, -: tracing_on = 0x1F\n"},
        {"7", "present\nvalues of fuse/iwf/tracing_on, -: tracing_on = 7\n"},
        {"1\n2\n", "present, 2 other lines\n"},
        {"on\n", "present, 1 other lines\n"},
        {"1\na: 2\n", "present\nvalues of fuse/iwf/tracing_on, 1: a = 2\n"},
    };
    for (const auto& [text, reading] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readingOf(loadMember("./fuse/iwf/tracing_on.log", text)), reading);
    }
}

TEST(ValuesTest, StandBetweenTheFirstAndTheLastLineOfADump) {
    const struct {
        std::string_view text;
        std::string reading;
    } cases[] = {
        {"<x_dump>\nproxy:\n  a   1\n</x_dump>\n", "present\nvalues of ti/x, proxy:: a = 1\n"},
        {"<x_dump>\na: 1\n</x_dump>\nb: 2", "present\nvalues of ti/x, -: a = 1; b = 2\n"},
        {"<x_dump>\nmirroring:\n</x_dump>\n", "present, 1 other lines\n"},
        // A process died in the middle of a number.
        {"<x_dump>\nproxy:\n  a   1\n  b   20", "present, 1 other lines\nvalues of ti/x, proxy:: a = 1\n"},
        {"<x dump>\n<_dump\n", "present, 2 other lines\n"},
    };
    for (const auto& [text, reading] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(readingOf(loadMember("./ti/x.log", text)), reading);
    }
}

TEST(ValuesTest, DoNotIncludeALastLineThatWasCut) {
    const std::string tar = PackageBuilder().file("./mmi/iwf/X.log", "a: 1\nb: 23").tar();
    const Package package = load(gzip(tar.substr(0, 512 + 9)));
    EXPECT_EQ(package.values.size(), 1U);
    EXPECT_EQ(partOf(package, "mmi/iwf/X").state, Report::State::cut);
    EXPECT_EQ(partOf(package, "mmi/iwf/X").otherLines, 1U);
    EXPECT_EQ(load(gzip(tar.substr(0, 512 + 8))).values.size(), 1U);  // nothing shows that "2" is complete
}

TEST(ValuesTest, OfAReplyThatDoesNotEndAreKeptUpToANumber) {
    std::string text;
    for (int table = 0; table < 6000; ++table) {
        text += "sfn: CPU\n  a   0\n  b   1\n";
    }
    const Package package = loadMember("./mmi/sfn/X.log", text);
    EXPECT_EQ(package.values.size(), 10'000U);
    EXPECT_EQ(package.values.back().occurrence, 5000U);
    EXPECT_EQ(partOf(package, "mmi/sfn/X").moreValues, 2000U);
    EXPECT_TRUE(package.unread.empty());
}

// korvel cuts a source after 16 MiB, perhaps in the middle of a number.
TEST(ValuesTest, DoNotIncludeALastLineThatKorvelCut) {
    const std::string lastLine = "\na: 1";
    std::string text((std::size_t{16} << 20) - lastLine.size(), 'x');
    for (std::size_t end = 1000; end < text.size(); end += 1000) {
        text[end] = '\n';
    }
    EXPECT_EQ(loadMember("./mmi/sfn/X.log", text + lastLine).values.size(), 0U);
    EXPECT_EQ(loadMember("./mmi/sfn/X.log", text.substr(1) + lastLine).values.size(), 1U);
}

TEST(ValuesTest, AreNotTakenFromTextsOfLinux) {
    for (const char* const member :
         {"./linux/processes.log", "./linux/mounts.log", "./linux/uptime.log", "./linux/other.log"}) {
        EXPECT_EQ(readingOf(loadMember(member, "title\na: 1\n")), "present\n") << member;
    }
}

TEST(FormTest, OfATextFollowsFromItsNameOrItsFirstLines) {
    const std::string entries = "2026-11-22T00:00:00Z 0 a: b\nmore\n";
    const std::string mixed = "2026-11-22T00:00:00Z 0 a: b\na: 1\n\n";
    const std::string table = "t\na: 1\nb: 2\n2026-11-22T00:00:00Z 0 a: b\n";
    const struct {
        std::string member;
        std::string text;
        bool log;
        std::size_t values;
    } cases[] = {
        {"./fuse/HistoryLog.log", table, true, 0},
        {"./fuse/HistoryLog.log", "", true, 0},
        {"./ti/syslib_sm_log.log", table, true, 0},
        {"./linux/system.log", table, true, 0},
        {"./archive/dispatcher/runtime.log", table, true, 0},
        {"./archive/syslib/startup.log.gz", table, true, 0},
        {"./archive.3/syslib/any.log", table, true, 0},
        {"./archive.x/syslib/any.log", table, false, 2},
        {"./archive./syslib/any.log", table, false, 2},
        {"./archive/other/any.log", table, false, 2},
        {"./archive/syslib/deep/any.log", table, false, 2},
        {"./archive/syslib/any.txt", table, false, 2},
        {"./mmi/iwf/HeapStats.log", entries, false, 0},
        {"./fuse/iwf/new.log", mixed, false, 1},
        {"./linux/messages.log", entries, true, 0},
        {"./linux/messages.log", table, false, 0},
        {"./linux/processes.log", entries, false, 0},
        {"./messages", "Nov 22 06:08:58 a: b\n", true, 0},
        {"./messages", "Nov 22 06:08:58 a: b", true, 0},
        {"./messages", mixed, true, 0},
        {"./messages", table, false, 2},
        {"./messages", "", false, 0},
        {"./binary", std::string("a: 1\n\0", 6), false, 0},
    };
    for (const auto& [member, text, log, values] : cases) {
        SCOPED_TRACE(testing::Message() << member << ": " << text);
        const Package package = loadMember(member, text);
        EXPECT_EQ(package.parts.front().log, log);
        EXPECT_EQ(package.values.size(), values);
    }
}

TEST(FormTest, IsDecidedByTheBeginningOfALongText) {
    std::string text;
    for (int line = 0; text.size() < 70'000; ++line) {
        text += "2026-11-22T00:00:00Z 0 a: " + std::to_string(line) + '\n';
    }
    const Package package = loadMember("./messages", text + std::string(20'000, '\n') + "x: 1\n");
    EXPECT_TRUE(package.parts.front().log);
    EXPECT_EQ(package.parts.front().textSize, text.size() + 20'005);
    EXPECT_EQ(package.values.size(), 0U);
}

TEST(LogTest, HasEntriesWithTheLinesThatBelongToThem) {
    const Package package = loadMember("./fuse/HistoryLog.log",
                                       "lost\n"
                                       "\n"
                                       "also lost\n"
                                       "2026-11-22T02:46:40.5Z 0 a: one\r\n"
                                       "  more\r\n"
                                       "\n"
                                       "2026-11-22T02:46:41Z 1 b: two\n"
                                       "2026-11-22T02:46:39Z 2 c: an earlier one");
    EXPECT_EQ(entriesOf(package, "fuse/HistoryLog"),
              "lost\n"
              "also lost\n"
              "2026-11-22 02:46:40.5 error a: one|  more|\n"
              "2026-11-22 02:46:41 warning b: two\n"
              "2026-11-22 02:46:39 information c: an earlier one\n");
    EXPECT_EQ(readingOf(package), "present, log, 2 other lines\n");
}

TEST(LogTest, EndsWhereTheCallerHasEnough) {
    const Package package =
        loadMember("./fuse/HistoryLog.log", "2026-11-22T02:46:40Z 0 a: 1\n2026-11-22T02:46:40Z 0 a: 2\n");
    EXPECT_EQ(entriesOf(loadMember("./mmi/iwf/X.log", "2026-11-22T02:46:40Z 0 a: 1\n"), "mmi/iwf/X"), "");
    int entries = 0;
    Report::forEachEntry(package, package.parts.front(), 1000, [&](const Report::LogEntry&) {
        ++entries;
        return false;
    });
    EXPECT_EQ(entries, 1);
}

TEST(LogTest, IsReadUpToALimitOfEachEntry) {
    LoadOptions options;
    options.limits.maxLine = 40;
    const std::string longLine = "2026-11-22T00:00:00Z 0 a: 12345678901234567890\n";
    const std::string longEntry = "2026-11-22T00:00:00Z 0 a: b\n1234567890\n1234567890\n1234567890\nend\n";
    const std::string fitting = "2026-11-22T00:00:00Z 0 a: b\n1234567890\n";
    const Package lines = loadMember("./fuse/HistoryLog.log", longLine, options);
    EXPECT_EQ(readingOf(lines), "present, log\nunread ./fuse/HistoryLog.log: --max-line\n");
    EXPECT_EQ(entriesOf(lines, "fuse/HistoryLog", 40), "2026-11-22 00:00:00 error a: 12345678901234\n");
    const Package entries = loadMember("./fuse/HistoryLog.log", longEntry, options);
    EXPECT_EQ(readingOf(entries), "present, log\nunread ./fuse/HistoryLog.log: --max-line\n");
    EXPECT_EQ(entriesOf(entries, "fuse/HistoryLog", 30),
              "2026-11-22 00:00:00 error a: b|1234567890|1234567890|123456\n");
    EXPECT_EQ(readingOf(loadMember("./fuse/HistoryLog.log", fitting + fitting, options)), "present, log\n");
    for (const char* const member : {"./mmi/iwf/X.log", "./linux/processes.log", "./messages"}) {
        EXPECT_EQ(loadMember(member, std::string(41, 'x'), options).unread.size(), 1U) << member;
        EXPECT_EQ(loadMember(member, std::string(40, 'x'), options).unread.size(), 0U) << member;
    }
}

constexpr std::string_view warning = "WARNING: Shared memory overlap. Log is missing entries\n";

TEST(OverlapTest, StandsBetweenTwoEntries) {
    const std::string one = "2026-11-22T00:00:01Z 0 a: one\n";
    const std::string two = "2026-11-22T00:00:02Z 0 a: two\nmore\n";
    const std::string three = "2026-11-22T00:00:03Z 0 a: three\n";
    const std::string lap(warning);
    const std::string first = "2026-11-22 00:00:01 error a: one";
    const std::string second = "2026-11-22 00:00:02 error a: two\nmore";
    const std::string third = "2026-11-22 00:00:03 error a: three";
    const struct {
        std::string text;
        std::string overlaps;
    } cases[] = {
        {one + two + three, ""},
        {one + lap + two + three, "  overlap between " + first + " and " + second + "\n"},
        {one + two + lap + three, "  overlap between " + second + " and " + third + "\n"},
        {one + lap + two + lap + three, "  overlap between " + first + " and " + second +
                                            "\n  overlap between " + second + " and " + third + "\n"},
        {one + lap + lap + three, "  overlap between " + first + " and " + third + "\n"},
        {lap + one, "  overlap between - and " + first + "\n"},
        {one + lap, "  overlap between " + first + " and -\n"},
        {one + lap.substr(0, lap.size() - 1), "  overlap between " + first + " and -\n"},
        {lap, "  overlap between - and -\n"},
        {"x\n" + lap + "y\n" + lap + "z", "  overlap between x and y\n  overlap between y and z\n"},
    };
    for (const auto& [text, overlaps] : cases) {
        SCOPED_TRACE(text);
        for (const Keep keep : {Keep::all, Keep::evidence}) {
            LoadOptions options;
            options.keep = keep;
            const std::string reading = readingOf(loadMember("./archive/syslib/runtime.log", text, options));
            EXPECT_EQ(reading.substr(reading.find('\n') + 1), overlaps);
        }
    }
    EXPECT_EQ(loadMember("./fuse/HistoryLog.log", one + lap + two).parts.front().overlaps.size(), 0U);
}

TEST(OverlapTest, HasTheBeginningOfALongEntry) {
    const std::string entry = "2026-11-22T00:00:01Z 0 a: ";
    const std::string tooLong(5000, 'x');
    const Package package =
        loadMember("./archive/syslib/runtime.log",
                   entry + tooLong + '\n' + std::string(warning) + entry + "short\n" + tooLong);
    const Report::Overlap& overlap = package.parts.front().overlaps.at(0);
    const std::size_t most = 4096 - entry.size();
    EXPECT_EQ(overlap.before->text, std::string(most, 'x'));
    EXPECT_EQ(overlap.after->text, "short\n" + std::string(most - 6, 'x'));
}

TEST(OverlapTest, AtTheBeginningOfANewFileFollowsTheEarlierPiece) {
    const std::string runtime = std::string(warning) + "2026-11-22T00:00:09Z 0 a: after\n";
    const std::string filler(300, 'x');
    const auto overlapAfter = [&](const std::string& startup, const std::string& middle) {
        PackageBuilder builder;
        builder.file("./archive/syslib/runtime.log", runtime);
        builder.file("./archive/dispatcher/startup.log.gz",
                     gzip("2026-11-22T00:00:01Z 0 a: of another log\n"));
        if (!startup.empty()) {
            builder.file("./archive/syslib/startup.log.gz", gzip(startup));
        }
        if (!middle.empty()) {
            builder.file("./archive/syslib/middle.log.gz", gzip(middle));
        }
        const Package package = load(builder.tgz());
        const auto& before = partOf(package, "archive/syslib/runtime").overlaps.at(0).before;
        return before ? describe(*before) : "-";
    };
    const std::string start = "2026-11-22T00:00:01Z 0 a: start\n";
    const std::string middle = "2026-11-22T00:00:02Z 0 a: middle\n";
    EXPECT_EQ(overlapAfter("", ""), "-");
    EXPECT_EQ(overlapAfter(start, ""), "2026-11-22 00:00:01 error a: start");
    EXPECT_EQ(overlapAfter(start, middle), "2026-11-22 00:00:02 error a: middle");
    EXPECT_EQ(overlapAfter(filler + '\n' + start + "more\n", ""), "2026-11-22 00:00:01 error a: start\nmore");
    EXPECT_EQ(overlapAfter(middle + filler, ""), "-");  // the entry is longer than the tail
    EXPECT_EQ(overlapAfter(start + 'y' + start.substr(0, start.size() - 1) +
                               std::string(256 - start.size(), 'x') + '\n',
                           ""),
              "-");  // the tail begins in the middle of a line that has a time there
    EXPECT_EQ(overlapAfter("no entry\n", ""), "-");
    EXPECT_EQ(overlapAfter("\n", ""), "-");
}

TEST(OverlapTest, AtTheBeginningOfAPieceHasNoEntryBefore) {
    const Package package =
        load(PackageBuilder()
                 .file("./archive/syslib/middle.log.gz", gzip("2026-11-22T00:00:01Z 0 a: b\n"))
                 .file("./archive/syslib/startup.log.gz", gzip(warning))
                 .tgz());
    EXPECT_FALSE(partOf(package, "archive/syslib/startup").overlaps.at(0).before);
}

TEST(KeepTest, OfEvidenceHoldsSmallTextsOnly) {
    const std::string large(70'000, 'x');
    const std::string package = PackageBuilder()
                                    .file("./linux/processes.log", "USER PID\n")
                                    .file("./ti/netfp_proxy.log", "<netfp_proxy_dump>\n")
                                    .file("./linux/system.log", "Nov 22 06:08:58 a: b\n")
                                    .file("./fuse/HistoryLog.log", "2026-11-22T00:00:00Z 0 a: b\n")
                                    .file("./mmi/iwf/X.log", large + "\na: 1\n")
                                    .file("./messages", "Nov 22 06:08:58 a: b\n")
                                    .tgz();
    LoadOptions options;
    options.keep = Keep::evidence;
    const Package evidence = load(package, options);
    const Package all = load(package);
    EXPECT_EQ(describe(evidence), describe(all));
    std::string kept;
    for (const Part& part : evidence.parts) {
        kept += part.name + ' ' + std::to_string(part.text.size()) + '\n';
        EXPECT_EQ(part.tail, partOf(all, part.name).tail);
        EXPECT_EQ(part.textSize, partOf(all, part.name).text.size());
    }
    EXPECT_EQ(kept,
              "linux/processes 9\nti/netfp_proxy 19\nlinux/system 21\nfuse/HistoryLog 28\nmmi/iwf/X "
              "0\nmessages 21\n");
}

TEST(TailTest, IsTheLastBytesOfTheText) {
    const std::string text = std::string(200'000, 'x') + std::string(256, 'y');
    EXPECT_EQ(loadMember("./messages", text).parts.front().tail, std::string(256, 'y'));
    EXPECT_EQ(loadMember("./messages", "short").parts.front().tail, "short");
    EXPECT_EQ(loadMember("./messages", "").parts.front().tail, "");
}

}  // namespace
}  // namespace ReportTest
