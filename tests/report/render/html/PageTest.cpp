#include <algorithm>
#include <cstddef>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Assets.hpp"
#include "DifferentPair.hpp"
#include "ExpectedFile.hpp"
#include "HandMadePackage.hpp"
#include "Renderers.hpp"

namespace Report {
namespace {

using namespace std::chrono_literals;
using Report::Test::at;
using Report::Test::DifferentPair;
using Report::Test::expectedFile;
using Report::Test::HandMadePackage;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr std::size_t lineLimit = std::size_t{1} << 20;

std::string page(const std::vector<Package>& packages) {
    std::ostringstream out;
    renderHtml(out, packages, RuleSet(), lineLimit);
    return out.str();
}

/// What a browser shows: the page without its style, its script and the script's data.
std::string shownPart(const std::string& page) {
    const std::size_t begin = page.find("<body>");
    return page.substr(begin, page.find("<script", begin) - begin);
}

std::size_t countOf(std::string_view word, std::string_view text) {
    std::size_t count = 0;
    for (std::size_t place = text.find(word); place != std::string_view::npos;
         place = text.find(word, place + 1)) {
        ++count;
    }
    return count;
}

constexpr std::string_view historyLog =
    "2026-11-22T02:46:40.000001Z 2 Supervision: Starting supervision\n"
    "2026-11-22T02:46:41.000000Z 0 Supervision: Heartbeat status: NetfpProxy: ERROR\n";

/// Everything that a page can show of one package, once.
HandMadePackage samplePackage() {
    HandMadePackage package("netfp_logs_sup.tgz");
    package.sha256 = std::string(64, 'a');
    package.size = 12'641;
    package.board = "lab-17";
    package.time = at(2, 46, 42);
    package.kind = Kind::sup;
    package.verdict = Verdict::incomplete;
    Part& history = package.addLog("fuse/HistoryLog", historyLog);
    history.expected = true;
    history.time = at(2, 46, 42);
    Part& heap = package.addPart("mmi/iwf/HeapStats", "iwf: heap statistics\n  bytes in use  10\n");
    heap.expected = true;
    heap.time = at(2, 40, 0);
    package.addValue("iwf: heap statistics", "bytes in use", std::int64_t{95}, "95");
    package.addValue("iwf: heap statistics", "bytes free", std::int64_t{5}, "5");
    package.addValue("iwf: heap statistics", "failed allocations", std::int64_t{0}, "0x0");
    Part& proxy = package.addMissing("ti/netfp_proxy");
    proxy.cause = "the process was not running";
    proxy.certainty = Certainty::likely;
    proxy.evidence = {{"linux/processes", "no line ends in netfp_proxy"}};
    package.findings = {{"heartbeat",
                         Severity::error,
                         "fuse/HistoryLog",
                         "A process is not healthy.",
                         "Look for its last entries.",
                         {{"fuse/HistoryLog", "NetfpProxy: ERROR"}},
                         3}};
    package.oddities = {{"../passwd", "the name has \"..\""}};
    package.unread = {{"./big.log", Limit::bytes}};
    package.sidecarState = SidecarState::used;
    package.sidecar.emplace();
    package.sidecar->keys = {{"command", "korvel pkg-sup"}, {"status", "0"}};
    package.sidecar->probes = {{"df", "/ffs 12%"}};
    package.sidecar->standardError = "MMI: no answer\n";
    HandMadePackage inside("./netfp_logs_post_mortem.tgz");
    inside.addLog("fuse/HistoryLog", historyLog);
    package.nested.push_back(inside);
    return package;
}

/// Two packages of a board, ten seconds apart.
std::vector<Package> neighbours() {
    HandMadePackage later = samplePackage();
    later.time = *later.time + 10s;
    later.values[0].number = std::int64_t{97};
    later.values[0].text = "97";
    return {samplePackage(), later};
}

TEST(PageTest, ShowsAPackageInTablesThatNeedNoScript) {
    EXPECT_EQ(shownPart(page({samplePackage()})), expectedFile("package.html"));
}

TEST(PageTest, ShowsSeveralPackagesWithTheirDifferences) {
    const std::string shown = shownPart(page(neighbours()));
    EXPECT_EQ(shown.substr(0, shown.find("<section id=\"timeline\"")), expectedFile("neighbours.html"));
}

TEST(PageTest, ShowsEachKindOfDifference) {
    const DifferentPair pair;
    const std::string shown = shownPart(page({pair.before, pair.after}));

    for (const char* const text :
         {"missing", "came", "present before, stale after", "new", "gone", "fell", "1 new entry"}) {
        EXPECT_NE(shown.find(text), std::string::npos) << text;
    }
}

TEST(PageTest, ListsMembersThatAreMuchOlderThanTheOthersOfTheirCollector) {
    HandMadePackage package = samplePackage();
    package.addPart("mmi/sfn/HeapStats", "old\n").time = at(0, 0, 0);

    EXPECT_THAT(shownPart(page({package})),
                HasSubstr("older than the newest of their collector <span class=\"count\">1</span>"));
}

TEST(PageTest, SaysWhyTheRecordOfTheRunWasNotUsed) {
    HandMadePackage package = samplePackage();
    package.sidecarState = Report::SidecarState::foreign;
    package.sidecarError = "it belongs to another package";

    EXPECT_THAT(shownPart(page({package})),
                HasSubstr("The record of the run was not used: it belongs to another package."));
}

TEST(PageTest, ShowsWhatIsBetweenBackquotesAsCode) {
    const struct {
        std::string advice;
        std::string shown;
    } cases[] = {
        {"Ask for `df /ffs`, or `<b>`.", "Ask for <code>df /ffs</code>, or <code>&lt;b&gt;</code>."},
        {"`df`", "<code>df</code>"},
        {"One ` alone", "One ` alone"},
    };
    for (const auto& [advice, shown] : cases) {
        HandMadePackage package("netfp_logs.tgz");
        package.findings = {{"rule", Severity::note, "", "Meaning.", advice, {}, 1}};
        EXPECT_THAT(page({package}), HasSubstr("<span>What to do:</span> " + shown + "</p>"));
    }
}

TEST(PageTest, NamesAPackageByItsFileWithoutTheFolder) {
    HandMadePackage package("/home/me/../netfp_logs.tgz");
    package.sha256 = std::string(64, 'a');
    EXPECT_THAT(page({package}), AllOf(HasSubstr("<h1>Package netfp_logs.tgz</h1>"),
                                       HasSubstr("<dt>Path</dt><dd>/home/me/../netfp_logs.tgz</dd>")));
    EXPECT_THAT(page({package, package}), Not(HasSubstr(">2: /home")));
}

TEST(PageTest, AllowsOnlyItsOwnStyleAndItsOwnScript) {
    for (const bool several : {false, true}) {
        const std::string made = page(several ? neighbours() : std::vector<Package>{samplePackage()});
        const std::string script = several ? "page-with-plots.js" : "page.js";
        EXPECT_THAT(
            made,
            HasSubstr("<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; "
                      "script-src '" +
                      std::string(webAssetHash(script)) + "'; style-src '" +
                      std::string(webAssetHash("page.css")) + "'; base-uri 'none'; form-action 'none'\">"));
        EXPECT_THAT(made, HasSubstr("<style>" + webAsset("page.css") + "</style>"));
        EXPECT_THAT(made, EndsWith("<script>" + webAsset(script) + "</script>\n</body>\n</html>\n"));
        EXPECT_FALSE(std::regex_search(shownPart(made), std::regex(R"(<[^>]* (style|on\w+)=)")));
    }
}

/// A text in which everything would be markup or code.
const std::string hostile =
    "</script></pre></title><script>window.hit=1</script><!--<img src=x onerror=\"hit=1\" "
    "'>\xE2\x80\xA8\x1b[2J\xff";

HandMadePackage hostilePackage() {
    HandMadePackage package(hostile);
    package.board = hostile;
    package.time = at(2, 46, 42);
    package.cause = package.end.reason = hostile;
    package.verdict = Verdict::cut;
    package.zone = hostile;
    package.evidence = {{hostile, hostile}};
    Part& log = package.addLog(hostile, "2026-11-22T02:46:41.000000Z 0 " + hostile + ": " + hostile + "\n");
    log.cause = hostile;
    log.time = at(2, 0, 0);
    log.evidence = {{hostile, hostile}};
    package.addPart("mmi/iwf/" + hostile, hostile).time = at(1, 0, 0);
    package.addValue(hostile, hostile + " in use", std::int64_t{1}, hostile);
    package.addValue(hostile, hostile + " free", std::int64_t{1}, hostile);
    package.findings = {{hostile, Severity::error, hostile, hostile, hostile, {{hostile, hostile}}, 2}};
    package.oddities = {{hostile, hostile}};
    package.unread = {{hostile, Limit::line}};
    package.sidecarState = SidecarState::used;
    package.sidecar.emplace();
    package.sidecar->keys = {{hostile, hostile}};
    package.sidecar->probes = {{hostile, hostile}};
    package.sidecar->standardError = hostile;
    return package;
}

TEST(PageTest, ShowsHostileTextsAsText) {
    HandMadePackage outer = hostilePackage();
    outer.nested.push_back(hostilePackage());
    HandMadePackage later = hostilePackage();
    later.time = *later.time + 1s;
    later.values[0].text += "2";
    for (const std::vector<Package>& packages :
         {std::vector<Package>{outer}, std::vector<Package>{outer, later}}) {
        const std::string made = page(packages);
        EXPECT_EQ(countOf("<script", made), packages.size() == 1 ? 2U : 3U);
        EXPECT_EQ(countOf("</script", made), countOf("<script", made));
        EXPECT_EQ(countOf("</title", made), 1U);
        EXPECT_THAT(made,
                    AllOf(Not(HasSubstr("<!--")), Not(HasSubstr("<img")), Not(HasSubstr("\xE2\x80\xA8")),
                          Not(HasSubstr("\x1b")), Not(HasSubstr("\xff"))));
        EXPECT_THAT(made,
                    HasSubstr("&lt;img src=x onerror=&quot;hit=1&quot; &apos;&gt;\\u2028\\x1b[2J\\xff"));
        EXPECT_THAT(made, HasSubstr("\\u003cimg src=x onerror=\\\"hit=1\\\" '>\\\\u2028\\\\x1b[2J\\\\xff"));
    }
}

TEST(PageTest, StaysSmallAndCountsTheEntriesThatItLeavesOut) {
    HandMadePackage package("netfp_logs.tgz");
    std::string text;
    for (int number = 0; number < 20'000; ++number) {
        const std::string digits = std::to_string(1'000'000 + number);
        text += "2026-11-22T02:46:41." + digits.substr(1) + "Z " + (number == 5 ? "1" : "3") +
                " writer: " + std::string(40, 'x') + " entry " + digits + "\n";
    }
    package.addLog("archive/dispatcher/runtime", text);

    const std::string made = page({package});
    EXPECT_LT(made.size(), std::size_t{2} << 20);
    EXPECT_THAT(made, HasSubstr("20,000 entries in 1 log"));
    std::smatch numbers;
    ASSERT_TRUE(std::regex_search(made, numbers,
                                  std::regex("This page leaves out ([0-9,]+) entries and holds ([0-9,]+):")));
    const auto number = [](std::string digits) {
        std::erase(digits, ',');
        return std::stoi(digits);
    };
    EXPECT_EQ(number(numbers[1]) + number(numbers[2]), 20'000);
    const std::size_t data = made.find("id=\"timeline-data\"");
    EXPECT_EQ(countOf(" entry 1", made.substr(data)), static_cast<std::size_t>(number(numbers[2])));
    EXPECT_THAT(made.substr(data), AllOf(HasSubstr("entry 1000005"), Not(HasSubstr("entry 1000006")),
                                         HasSubstr("entry 1019999")));
}

TEST(PageTest, ShowsTheBeginningAndTheEndOfALongText) {
    HandMadePackage package("netfp_logs.tgz");
    package.addPart("linux/small", "all of a small text\n");
    package.addPart("linux/mounts", "first line\n" + std::string(1'000'000, 'x') + "\nmiddle line\n" +
                                        std::string(1'000'000, 'x') + "\nlast line\n");
    const std::string made = page({package});
    EXPECT_THAT(made, AllOf(HasSubstr("<pre>\nall of a small text\n</pre>"),
                            HasSubstr("<pre>\nfirst line</pre>"), HasSubstr("1.9 MiB are left out here."),
                            HasSubstr("<pre>\nlast line\n</pre>"), Not(HasSubstr("middle line"))));
}

}  // namespace
}  // namespace Report
