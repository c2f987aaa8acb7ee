#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectedFile.hpp"
#include "HandMadePackage.hpp"
#include "Renderers.hpp"

namespace Report {
namespace {

using Test::at;
using Test::expectedFile;
using Test::HandMadePackage;
using Lines = std::vector<std::string>;

constexpr std::size_t longestLine = 200;

std::string json(const std::vector<Package>& packages) {
    std::ostringstream out;
    renderJson(out, packages, longestLine);
    return out.str();
}

/// The document with another release of the tool than the one that is built.
std::string withRelease(const std::string& release, std::string document) {
    const std::string_view key = R"("version":")";
    const std::size_t start = document.find(key) + key.size();
    return document.replace(start, document.find('"', start) - start, release);
}

/// The lines of the document that begin with a text, without the commas between items.
Lines linesWith(const std::string& start, const Package& package) {
    std::istringstream lines(json({package}));
    Lines found;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(start)) {
            found.push_back(line.substr(0, line.find_last_not_of(',') + 1));
        }
    }
    return found;
}

/// Sets every fact of a package.
void addFacts(Package& package) {
    package.sha256 = std::string(64, 'a');
    package.size = 4711;
    package.board = "board-7";
    package.time = at(6, 3, 0, 1977);
    package.clockUnset = true;
    package.zone = "Europe/Helsinki";
    package.kind = Kind::postMortem;
    package.verdict = Verdict::notFullyRead;
    package.end = {.integrity = Integrity::notRead, .reason = "too many members", .limit = Limit::members};
    package.cause = "packing was interrupted";
    package.certainty = Certainty::likely;
    package.evidence = {{"linux/mounts", "/ffs"}};
    package.sidecarState = SidecarState::foreign;
    package.sidecarError = "no checksum";
    package.sidecar =
        Sidecar{.keys = {{"format", "1"}}, .probes = {{"sfn", "silent"}}, .standardError = "e\n"};
    package.oddities = {{"../x", "leaves the package"}};
    package.unread = {{"./ti/a.log", Limit::line}, {"", Limit::members}};
    package.findings = {
        {.rule = "heap-empty",
         .severity = Severity::error,
         .part = "mmi/iwf/HeapStats",
         .meaning = "allocations fail",
         .advice = "look at the blocks",
         .evidence = {{"mmi/iwf/HeapStats", "failed  3"}},
         .count = 2},
        {.rule = "clock", .part = {}, .meaning = "the clock was not set", .advice = {}, .evidence = {}}};
}

/// Adds a dump with every fact, a log, a missing part and a nested package.
void addParts(HandMadePackage& package) {
    Part& dump = package.addPart("ti/netfp_proxy", "<dump>\n\n  routes  5");
    dump.expected = true;
    dump.state = State::cut;
    dump.cause = "the process died";
    dump.certainty = Certainty::certain;
    dump.evidence = {{"linux/processes", "no netfp_proxy"}};
    dump.end = {.integrity = Integrity::cut, .reason = "ends early", .limit = Limit::bytes};
    dump.size = 12;
    dump.time = at(6, 3, 1);
    dump.piece = true;
    dump.invalidBytes = 3;
    dump.otherLines = 2;
    dump.moreValues = 1;
    package.addValue("<dump>", "routes", std::int64_t{5}, "5");
    Part& log = package.addLog("fuse/HistoryLog",
                               "2026-11-22T06:03:00.000001Z 3 iwf: started\n"
                               "2026-11-22T06:03:02.500000Z 0 sfn: broke\n"
                               "here\n");
    log.overlaps = {
        {.before = LogEntry{.time = at(6, 3, 1), .level = Level::warning, .tag = "iwf", .text = "x"},
         .after = std::nullopt}};
    package.addMissing("ti/resmgr_server");
    package.addPart("netfp_logs_post_mortem", "").package = true;
    package.nested = {HandMadePackage("./netfp_logs_post_mortem.tgz"), HandMadePackage("./other.tgz")};
    package.nested.front().nested = {HandMadePackage("./netfp_logs_post_mortem.tgz")};
}

TEST(JsonTest, HoldsEverythingThatIsKnownOfSeveralPackages) {
    HandMadePackage full("netfp_logs.tgz");
    addFacts(full);
    addParts(full);

    EXPECT_EQ(withRelease("1.2.3", json({full, HandMadePackage("-")})), expectedFile("packages.json"));
}

TEST(JsonTest, IsADocumentWithoutPackagesToo) {
    EXPECT_EQ(withRelease("1.2.3", json({})), expectedFile("no_packages.json"));
}

TEST(JsonTest, KeepsNumbersOf64BitsAndTheTextOfAllOthers) {
    HandMadePackage package("a");
    package.addPart("p", "");
    package.addValue("", "n", std::int64_t{-9223372036854775807 - 1}, "-9223372036854775808");
    package.addValue("", "n", std::uint64_t{18446744073709551615U}, "0xffffffffffffffff", 2);
    package.addValue("", "n", std::monostate(), "18446744073709551616", 3);
    package.addValue("", "n", 0.1, "+0.10", 4);

    EXPECT_EQ(
        linesWith(R"({"part":"p","title")", package),
        (Lines{
            R"({"part":"p","title":"","name":"n","occurrence":1,"value":-9223372036854775808,"text":"-9223372036854775808"})",
            R"({"part":"p","title":"","name":"n","occurrence":2,"value":18446744073709551615,"text":"0xffffffffffffffff"})",
            R"({"part":"p","title":"","name":"n","occurrence":3,"value":null,"text":"18446744073709551616"})",
            R"({"part":"p","title":"","name":"n","occurrence":4,"value":0.1,"text":"+0.10"})",
        }));
}

TEST(JsonTest, ReplacesEachInvalidByteAndEscapesAllButPrintableAscii) {
    HandMadePackage package("a");
    package.addPart("p", "\"\\ </script> \x1b[31m\x7f \xC3\xA4 \xE2\x82! \xC2\x9B \xE2\x80\xAE \xFF\n");

    EXPECT_EQ(linesWith(R"("\")", package).front(),
              R"("\"\\ </script> \u001b[31m\u007f \u00e4 \ufffd\ufffd! \u009b \u202e \ufffd")");
}

TEST(JsonTest, ReplacesInvalidBytesInNamesAndKeysToo) {
    HandMadePackage package("\xFF");
    package.sidecar =
        Sidecar{.keys = {{"\xFE", "\xFD"}}, .probes = {{"\xFC", "\xFB"}}, .standardError = "\xFA"};
    package.addLog("\xF9", "2026-11-22T06:03:00.000001Z 3 \xF8: \xF8\n");
    package.addValue("\xF8", "\xF8", std::monostate(), "\xF8");

    const std::string text = json({package});

    EXPECT_EQ(text.find_first_not_of('\n'), 0U);
    EXPECT_TRUE(
        std::ranges::all_of(text, [](char byte) { return byte == '\n' || (byte >= ' ' && byte <= '~'); }));
}

TEST(JsonTest, DoesNotKnowATimeThatHasNoYearOfFourDigits) {
    using namespace std::chrono;
    HandMadePackage package("a");
    const struct {
        Time time;
        std::string text;
    } cases[] = {
        {sys_days(year(0) / 1 / 1) - microseconds(1), "null"},
        {sys_days(year(0) / 1 / 1), "\"0000-01-01T00:00:00.000000Z\""},
        {sys_days(year(10000) / 1 / 1) - microseconds(1), "\"9999-12-31T23:59:59.999999Z\""},
        {sys_days(year(10000) / 1 / 1), "null"},
        {Time::max(), "null"},
    };
    for (const auto& [time, text] : cases) {
        package.time = time;
        EXPECT_NE(json({package}).find("\"time\":" + text + ","), std::string::npos) << text;
    }
}

TEST(JsonTest, CutsLinesToTheLimit) {
    HandMadePackage package("a");
    package.addPart("p", std::string(longestLine + 1, 'x') + "\ny");

    EXPECT_EQ(linesWith("\"x", package), Lines{'"' + std::string(longestLine, 'x') + '"'});
}

}  // namespace
}  // namespace Report
