#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "Description.hpp"
#include "EventRecorder.hpp"
#include "LoadedPackage.hpp"
#include "Names.hpp"
#include "PackageBuilder.hpp"
#include "PackageLoader.hpp"

namespace ReportTest {
namespace {

using Report::LoadOptions;
using Report::Package;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The entries of all logs, also of nested packages.
std::string logsOf(const Package& package) {
    std::string text;
    for (const Report::Part& part : package.parts) {
        text += part.log ? "log " + part.name + '\n' + entriesOf(package, part.name) : "";
    }
    for (const Package& nested : package.nested) {
        text += "nested " + nested.source + '\n' + logsOf(nested);
    }
    return text;
}

// The expected texts are beside the packages. With UPDATE_PACKAGES in the environment, they are written
// again.
TEST(PackageLoaderTest, ReadsEverythingThatKorvelPacked) {
    for (const char* const name :
         {"netfp_logs_sup", "netfp_logs_261122_083033", "netfp_logs", "antenna-7", "archive"}) {
        const std::string file = std::string(KORVEL_REPORT_DATA) + '/' + name;
        Package package = loadFile(file + ".tgz");
        package.source = name;
        const std::string text = describe(package) + logsOf(package);
        if (std::getenv("UPDATE_PACKAGES") != nullptr) {
            std::ofstream(file + ".txt") << text;
        }
        EXPECT_EQ(text, contentOf(file + ".txt"));
    }
}

TEST(PackageLoaderTest, NamesPartsByTheirMembers) {
    const struct {
        std::string member;
        std::string part;
    } cases[] = {
        {"./mmi/sfn/HeapStats.log", "mmi/sfn/HeapStats"},
        {"mmi/sfn/HeapStats.log", "mmi/sfn/HeapStats"},
        {".//mmi/./sfn//HeapStats.log", "mmi/sfn/HeapStats"},
        {"./archive/dispatcher/startup.log.gz", "archive/dispatcher/startup"},
        {"./netfp_logs_post_mortem.tgz", "netfp_logs_post_mortem"},
        {"./linux/processes.log", "linux/processes"},
        {"./notes.txt", "notes.txt"},
        {"./core", "core"},
        {"./a.gz", "a.gz"},
        {"./a.log.log", "a.log"},
        {"./.log", ".log"},
        {"./x/.log", "x/.log"},
        {"./\x1b[2J\n.log", "\x1b[2J\n"},
    };
    for (const auto& [member, part] : cases) {
        const Package package = load(PackageBuilder().file(member, "").tgz());
        ASSERT_EQ(package.parts.size(), 1U) << member;
        EXPECT_EQ(package.parts.front().name, part);
        EXPECT_EQ(package.parts.front().member, member);
    }
}

TEST(PackageLoaderTest, GivesEachPartANameOfItsOwn) {
    const Package package = load(PackageBuilder()
                                     .file("./archive/syslib/startup.log.gz", gzip("a"))
                                     .file("./archive/syslib/startup.log", "b")
                                     .file("./x.log", "")
                                     .file("./x", "")
                                     .file("./x.tgz", "")
                                     .tgz());
    EXPECT_EQ(describe(package),
              "package board-7.tgz, board board-7, 2026-11-22 08:30:33, kind , zone -, sidecar absent\n"
              "folders archive archive/syslib\n"
              "part archive/syslib/startup (./archive/syslib/startup.log.gz) 21 bytes, present, 2026-11-22 "
              "08:30:33, "
              "piece, log, 1 of text, 1 other lines\n"
              "part archive/syslib/startup.log (./archive/syslib/startup.log) 1 bytes, present, 2026-11-22 "
              "08:30:33, "
              "log, 1 other lines\n"
              "part x (./x.log) 0 bytes, present, 2026-11-22 08:30:33\n"
              "part x.tgz (./x.tgz) 0 bytes, present, 2026-11-22 08:30:33\n"
              "odd ./x: name of another part\n");
}

TEST(PackageLoaderTest, FindsFoldersByThemselvesAndByTheirFiles) {
    const Package package = load(PackageBuilder()
                                     .directory("./")
                                     .directory("./mmi/")
                                     .directory("./fuse/iwf")
                                     .file("./archive/dispatcher/deep/below/x", "")
                                     .file("./top", "")
                                     .tgz());
    EXPECT_EQ(package.folders, (std::set<std::string, std::less<>>{"mmi", "fuse", "fuse/iwf", "archive",
                                                                   "archive/dispatcher"}));
}

TEST(PackageLoaderTest, FollowsNothingThatIsOdd) {
    const std::string nested = PackageBuilder().file("./a", "a: 1\n").tgz();
    const Package package = load(PackageBuilder()
                                     .file("./a", "a: 1\n")
                                     .symbolicLink("./link", "/etc/passwd")
                                     .hardLink("./hard", "./a")
                                     .special("./character", '3')
                                     .special("./block", '4')
                                     .special("./fifo", '6')
                                     .file("/etc/absolute", "b: 1\n")
                                     .file("./x/../../up", "b: 1\n")
                                     .directory("..")
                                     .directory("/")
                                     .file("./..", nested)
                                     .file(".", "b: 1\n")
                                     .file("a", "b: 1\n")
                                     .file(".//a", nested)
                                     .file("./..a", "c: 1\n")
                                     .tgz());
    EXPECT_EQ(describe(package),
              "package board-7.tgz, board board-7, 2026-11-22 08:30:33, kind , zone -, sidecar absent\n"
              "folders\n"
              "part a (./a) 5 bytes, present, 2026-11-22 08:30:33\n"
              "part ..a (./..a) 5 bytes, present, 2026-11-22 08:30:33\n"
              "values of a, -: a = 1\n"
              "values of ..a, -: c = 1\n"
              "odd ./link: symbolic link to /etc/passwd\n"
              "odd ./hard: hard link to ./a\n"
              "odd ./character: device\n"
              "odd ./block: device\n"
              "odd ./fifo: FIFO\n"
              "odd /etc/absolute: absolute name\n"
              "odd ./x/../../up: name with ..\n"
              "odd ..: name with ..\n"
              "odd /: absolute name\n"
              "odd ./..: name with ..\n"
              "odd .: empty name\n"
              "odd a: duplicate name\n"
              "odd .//a: duplicate name\n");
}

TEST(PackageLoaderTest, ReadsPiecesAndNestedPackagesByTheirContents) {
    const std::string inner = PackageBuilder().file("./mmi/iwf/X.log", "a: 2\n").tgz();
    const Package package =
        load(PackageBuilder()
                 .file("./archive/syslib/middle.log.gz", gzip("2026-11-22T00:00:00Z 0 a: b\n"))
                 .file("./mmi/iwf/X.log", gzip("a: 1\n"))
                 .file("./fuse/HistoryLog.log", inner)
                 .file("./not.tgz", "text\n")
                 .tgz());
    EXPECT_EQ(
        describe(package),
        "package board-7.tgz, board board-7, 2026-11-22 08:30:33, kind , zone -, sidecar absent\n"
        "folders archive archive/syslib fuse mmi mmi/iwf\n"
        "part archive/syslib/middle (./archive/syslib/middle.log.gz) 44 bytes, present, 2026-11-22 08:30:33, "
        "piece, log, 28 of text\n"
        "part mmi/iwf/X (./mmi/iwf/X.log) 25 bytes, present, 2026-11-22 08:30:33, piece, 5 of text\n"
        "part fuse/HistoryLog (./fuse/HistoryLog.log) " +
            std::to_string(inner.size()) +
            " bytes, present, 2026-11-22 08:30:33, package\n"
            "part not (./not.tgz) 5 bytes, present, 2026-11-22 08:30:33, 1 other lines\n"
            "values of mmi/iwf/X, -: a = 1\n"
            "nested package ./fuse/HistoryLog.log, board board-7, 2026-11-22 08:30:33, kind , zone -, "
            "sidecar "
            "absent\n"
            "folders mmi mmi/iwf\n"
            "part mmi/iwf/X (./mmi/iwf/X.log) 5 bytes, present, 2026-11-22 08:30:33\n"
            "values of mmi/iwf/X, -: a = 2\n");
}

/// Parts with their states, nested packages with their ends, and what was not read.
std::string statesOf(const Package& package) {
    std::string text;
    for (const Report::Part& part : package.parts) {
        text += part.name + ": " + std::string(Report::nameOf(part.state)) + '\n';
    }
    text += "end: " + describe(package.end) + '\n';
    for (const auto& [member, limit] : package.unread) {
        text += "unread " + member + ": " + std::string(Report::optionOf(limit)) + '\n';
    }
    for (const Package& nested : package.nested) {
        text += "nested:\n" + statesOf(nested);
    }
    return text;
}

TEST(PackageLoaderTest, GivesDamagedPartsTheirStates) {
    const std::string piece = gzip(std::string(1000, 'x'));
    std::string altered = piece;
    altered[altered.size() - 6] ^= 1;  // of the checksum
    const std::string nested = PackageBuilder().file("./fuse/a.log", "a: 1\n").tgz();
    const Package package = load(PackageBuilder()
                                     .file("./archive/syslib/startup.log.gz", piece.substr(0, 20))
                                     .file("./archive/syslib/middle.log.gz", altered)
                                     .file("./whole.tgz", nested)
                                     .file("./cut.tgz", nested.substr(0, nested.size() - 20))
                                     .tgz());
    EXPECT_EQ(statesOf(package),
              "archive/syslib/startup: cut\n"
              "archive/syslib/middle: unreadable\n"
              "whole: present\n"
              "cut: cut\n"
              "end: \n"
              "nested:\n"
              "fuse/a: present\n"
              "end: \n"
              "nested:\n"
              "fuse/a: cut\n"
              "end: " +
                  describe(partOf(package, "cut").end) + "\n");
    EXPECT_EQ(partOf(package, "cut").end.integrity, Report::Integrity::cut);
}

TEST(PackageLoaderTest, KeepsWhatComesBeforeTheEndOfACutPackage) {
    const std::string tar =
        PackageBuilder().file("./a.log", "a: 1\n").file("./b.log", std::string(2000, 'b')).tar();
    const Package package = load(gzip(tar.substr(0, 2048)));
    EXPECT_EQ(package.end.integrity, Report::Integrity::cut);
    EXPECT_EQ(partOf(package, "a").state, Report::State::present);
    EXPECT_EQ(partOf(package, "b").state, Report::State::cut);
    EXPECT_EQ(package.values.size(), 1U);
}

TEST(PackageLoaderTest, LoadsAnyFile) {
    for (const std::string& bytes : {std::string(), std::string("no package"), gzip("no tar\n"), gzip("")}) {
        const Package package = load(bytes);
        EXPECT_NE(package.end.integrity, Report::Integrity::whole);
        EXPECT_EQ(package.size, bytes.size());
        EXPECT_TRUE(package.parts.empty());
    }
    EXPECT_THROW(loadFile("/nonexistent"), std::system_error);
}

TEST(PackageLoaderTest, KnowsTimesOfMembersInTheYears1To9999) {
    const struct {
        const char* seconds;
        bool known;
    } cases[] = {{"-62135596800", true},  {"-62135596801", false},        {"253402300799.9", true},
                 {"253402300800", false}, {"4611686018427387904", false}, {"-4611686018427387904", false}};
    for (const auto& [seconds, known] : cases) {
        const std::string record = paxRecord("mtime", seconds);
        const Package package = load(PackageBuilder().pax(record).file("./ti/netfp_proxy.log", "").tgz());
        EXPECT_EQ(partOf(package, "ti/netfp_proxy").time.has_value(), known) << seconds;
    }
}

TEST(PackageLoaderTest, HasTheChecksumOfTheFile) {
    EXPECT_EQ(load("").sha256, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(PackageLoaderTest, NamesWhatALimitLeftOut) {
    const std::string inner = PackageBuilder().file("./x.log", "").file("./y.log", "").tgz();
    const auto states = [&](const PackageBuilder& builder, void (*set)(Report::Limits&)) {
        LoadOptions options;
        set(options.limits);
        return statesOf(load(builder.tgz(), options));
    };
    PackageBuilder two;
    two.file("./a.log", "a: 1\n").file("./b.log", "b: 1\n");
    PackageBuilder nested;
    nested.file("./in.tgz", inner).file("./a.log", "");

    EXPECT_EQ(states(two, [](Report::Limits& limits) { limits.maxMembers = 1; }),
              "a: present\n"
              "end: not read: the limit --max-members was reached\n"
              "unread : --max-members\n");
    EXPECT_EQ(states(nested, [](Report::Limits& limits) { limits.maxMembers = 2; }),
              "in: not read\n"
              "end: not read: the limit --max-members was reached\n"
              "unread ./in.tgz: --max-members\n"
              "unread : --max-members\n"
              "nested:\n"
              "x: present\n"
              "end: not read: the limit --max-members was reached\n"
              "unread : --max-members\n");
    EXPECT_EQ(states(nested, [](Report::Limits& limits) { limits.maxDepth = 1; }),
              "in: not read\n"
              "a: present\n"
              "end: \n"
              "unread ./in.tgz: --max-depth\n");
}

TEST(PackageLoaderTest, NamesANestedPackageThatWasNotReadCompletely) {
    LoadOptions options;
    options.limits.maxLine = 10;
    const std::string inner = PackageBuilder().file("./x.log", "12345678901").tgz();
    EXPECT_EQ(statesOf(load(PackageBuilder().file("./in.tgz", inner).tgz(), options)),
              "in: present\n"
              "end: \n"
              "unread ./in.tgz: --max-line\n"
              "nested:\n"
              "x: present\n"
              "end: \n"
              "unread ./x.log: --max-line\n");
}

TEST(PackageLoaderTest, NamesMembersWithNamesThatAreTooLong) {
    LoadOptions options;
    options.limits.maxName = 10;
    EXPECT_EQ(
        statesOf(load(PackageBuilder().file("./1234567890", "a: 1\n").file("./12345678", "a: 1\n").tgz(),
                      options)),
        "12345678: not read\n"
        "end: \n"
        "unread ./12345678: --max-name\n");
}

std::string manyLines(const std::string& line, int count) {
    std::string lines;
    for (int index = 0; index < count; ++index) {
        lines += line;
    }
    return lines;
}

TEST(PackageLoaderTest, LeavesOutATextForWhichThereIsNoMemory) {
    LoadOptions options;
    options.limits.maxMemory = 94'000;
    const std::string values = manyLines("a: 1\n", 1000);
    const std::string overlaps = manyLines(
        "2026-11-22T00:00:00Z 0 a: b\nWARNING: Shared memory overlap. Log is missing entries\n", 1000);
    std::string noise;  // which cannot be compressed
    for (unsigned state = 1; noise.size() < 200'000;) {
        state = state * 1664525 + 1013904223;
        noise += static_cast<char>(' ' + state / (1U << 26U));
    }
    const Package package = load(PackageBuilder()
                                     .file("./fuse/iwf/many.log", "neither\nnor\n" + values)
                                     .file("./linux/noise.log", noise + "\nt\na: 1\n")
                                     .file("./noise", noise + "\nt\na: 1\n")
                                     .file("./archive/syslib/runtime.log", overlaps)
                                     .file("./fuse/iwf/few.log", manyLines("a: 1\n", 130))
                                     .tgz(),
                                 options);
    EXPECT_EQ(statesOf(package),
              "fuse/iwf/many: not read\n"
              "linux/noise: not read\n"
              "noise: not read\n"
              "archive/syslib/runtime: not read\n"
              "fuse/iwf/few: present\n"
              "end: \n"
              "unread ./fuse/iwf/many.log: --max-memory\n"
              "unread ./linux/noise.log: --max-memory\n"
              "unread ./noise: --max-memory\n"
              "unread ./archive/syslib/runtime.log: --max-memory\n");
    EXPECT_EQ(package.values.size(), 130U);
    EXPECT_EQ(package.values.front().part, "fuse/iwf/few");
    EXPECT_EQ(partOf(package, "fuse/iwf/many").otherLines, 0U);
    EXPECT_EQ(partOf(package, "archive/syslib/runtime").overlaps.size(), 0U);
    EXPECT_EQ(partOf(package, "noise").text.size(), 0U);
    EXPECT_EQ(partOf(package, "noise").textSize, 200'008U);
}

TEST(PackageLoaderTest, LeavesOutATextThatWouldTakeTooLongToPrint) {
    LoadOptions options;
    options.limits.maxTime = std::chrono::seconds(1);
    const std::string package = PackageBuilder()
                                    .file("./ti/syslib_sm_log.log", manyLines("\n", 350'000))
                                    .file("./ti/netfp_proxy.log", "a: 1\n")
                                    .tgz();
    EXPECT_EQ(statesOf(load(package, options)),
              "ti/syslib_sm_log: not read\n"
              "ti/netfp_proxy: present\n"
              "end: \n"
              "unread ./ti/syslib_sm_log.log: --max-seconds\n");

    options.keep = Report::Keep::evidence;  // which is not printed
    EXPECT_TRUE(load(package, options).unread.empty());
}

TEST(PackageLoaderTest, ReservesMemoryForNames) {
    LoadOptions options;
    options.limits.maxMemory = 80'000;
    const auto valuesOf = [&](int count) {
        return load(PackageBuilder().file("./a.log", manyLines("a: 1\n", count)).tgz(), options)
            .values.size();
    };
    EXPECT_EQ(valuesOf(120), 120U);
    EXPECT_EQ(valuesOf(170), 0U);
    options.limits.maxMemory = 107'000;
    EXPECT_EQ(valuesOf(170), 170U);
}

TEST(PackageLoaderTest, EndsTheReadingIfThereIsNoMemoryForNames) {
    LoadOptions options;
    options.limits.maxMemory = 100'000;
    PackageBuilder builder;
    for (int index = 0; index < 1000; ++index) {
        builder.file("./" + std::to_string(index), "");
    }
    const Package package = load(builder.tgz(), options);
    EXPECT_EQ(package.end.limit, Report::Limit::memory);
    EXPECT_GT(package.parts.size(), 10U);
    EXPECT_LT(package.parts.size(), 200U);
}

}  // namespace
}  // namespace ReportTest
