#include <chrono>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Renderers.hpp"
#include "SamplePackage.hpp"

namespace {

using namespace Report;
using Report::Test::addValue;
using Report::Test::partOf;
using Report::Test::setLog;
using Report::Test::troubledPackage;
using Report::Test::wholePackage;

constexpr const char* historyLog =
    "2026-11-22T02:36:40.000001Z 2 Supervision: Starting supervision\n"
    "2026-11-22T02:46:40.995104Z 0 Supervision: Heartbeat status: NetfpProxy: ERROR\n"
    "  the next line belongs to it\n"
    "2026-11-22T02:46:41.000000Z 3 iwf_dispatcher: \x1b[31mred\n";

/// A package with values, texts, a log and a finding.
Package richPackage() {
    Package package = troubledPackage();
    for (const std::string dispatcher : {"iwf", "sfn"}) {
        const std::string part = "mmi/" + dispatcher + "/HeapStats";
        addValue(package, part, dispatcher + ": heap statistics", "bytes in all", 0);
        addValue(package, part, dispatcher + ": heap statistics", "bytes in use",
                 dispatcher == "iwf" ? 1009 : 2018);
    }
    addValue(package, "ti/netfp_proxy", "proxy:", "routes learnt", 7);
    partOf(package, "ti/netfp_proxy")
        .text.append("<netfp_proxy_dump>\nproxy:\n  routes learnt  7\n  neigh\x1b");
    partOf(package, "ti/netfp_proxy").otherLines = 1;
    partOf(package, "linux/uptime").text.append("26203.40 12245.38\r\n");
    setLog(package, "fuse/HistoryLog", historyLog);
    package.findings = {{"heartbeat-error",
                         Severity::error,
                         "fuse/HistoryLog",
                         "A process answered that it is not healthy.",
                         "Read the last lines of its log.",
                         {{"fuse/HistoryLog", "NetfpProxy: ERROR"}},
                         12}};
    for (const std::string part : {"mmi/iwf/HeapStats", "mmi/sfn/HeapStats"}) {
        package.findings.push_back({"not-collected",
                                    Severity::note,
                                    part,
                                    "The run did not collect this part.",
                                    "Ask for another package.",
                                    {{part, "missing"}}});
    }
    return package;
}

std::string show(const Package& package, const ShowChoice& choice = {}) {
    static const RuleSet rules;
    std::ostringstream out;
    renderShow(out, package, rules, choice, {});
    return out.str();
}

TEST(ShowText, BeginsWithTheTextOfCheck) {
    std::ostringstream check;
    renderCheck(check, richPackage(), {});

    EXPECT_TRUE(show(richPackage()).starts_with(check.str()));
}

TEST(ShowText, PrintsFindingsThenValuesThenTextsThenLogs) {
    const std::string text = show(richPackage());

    EXPECT_EQ(text.substr(text.find("\nFindings")), R"(
Findings
  error    heartbeat-error
           A process answered that it is not healthy.
           To do: Read the last lines of its log.
           fuse/HistoryLog: 12 times, 1 shown
           fuse/HistoryLog: NetfpProxy: ERROR
  note     not-collected
           The run did not collect this part.
           To do: Ask for another package.
           mmi/iwf/HeapStats: missing
           mmi/sfn/HeapStats: missing

Values
  * marks values that a rule names: they come first. Other zeros come last.

mmi/HeapStats: heap statistics           iwf           sfn
* bytes in use                          1009          2018
  bytes in all                             0             0

ti/netfp_proxy: proxy                  value
  routes learnt                            7

ti/netfp_proxy: lines without a value
    neigh\x1b

linux/uptime
  26203.40 12245.38

fuse/HistoryLog: log, in UTC
2026-11-22 02:36:40.000001 information Supervision: Starting supervision
2026-11-22 02:46:40.995104 error       Supervision: Heartbeat status: NetfpProxy: ERROR
                                         the next line belongs to it
2026-11-22 02:46:41.000000 debug       iwf_dispatcher: \x1b[31mred
)");
}

TEST(ShowText, OfAPartIsItsStateFindingsValuesAndWholeText) {
    EXPECT_EQ(show(richPackage(), {.part = "./ti/netfp_proxy.log"}), R"(netfp_logs_sup.tgz: incomplete
ti/netfp_proxy: cut, 0 bytes
  Likely cause: the process did not finish its dump within a second

Values
  * marks values that a rule names: they come first. Other zeros come last.

ti/netfp_proxy: proxy         value
  routes learnt                   7

ti/netfp_proxy
  <netfp_proxy_dump>
  proxy:
    routes learnt  7
    neigh\x1b
)");
}

TEST(ShowText, OfAFolderIsAllItsParts) {
    const std::string text = show(richPackage(), {.part = "mmi/sfn/"});

    EXPECT_EQ(text.substr(0, text.find("  Cause")), R"(netfp_logs_sup.tgz: incomplete
mmi/sfn/HeapStats: empty, 0 bytes
)");
    EXPECT_EQ(text.substr(text.find("\nmmi/HeapStats")), R"(
mmi/HeapStats: heap statistics           sfn
* bytes in use                          2018
  bytes in all                             0
)");
}

TEST(ShowText, OfAMissingPartIsItsCause) {
    EXPECT_TRUE(hasChosenPart(richPackage(), "ti/resmgr_server"));
    EXPECT_EQ(show(richPackage(), {.part = "ti/resmgr_server"}), R"(netfp_logs_sup.tgz: incomplete
ti/resmgr_server: missing
  Possible cause: the process was not running, or a print in the same run
  removed the dump
)");
}

TEST(ShowText, LimitsEntriesToATime) {
    using namespace std::chrono_literals;
    const Time last = *richPackage().time;

    EXPECT_EQ(show(richPackage(), {.since = last - 1min, .until = last - 1ms}),
              R"(netfp_logs_sup.tgz: incomplete

fuse/HistoryLog: log, in UTC
2026-11-22 02:46:40.995104 error       Supervision: Heartbeat status: NetfpProxy: ERROR
                                         the next line belongs to it
)");
}

TEST(ShowText, LimitsEntriesAndLinesToAPattern) {
    EXPECT_EQ(show(richPackage(), {.grep = TextPattern("26203|ERROR|routes +7|learnt")}),
              R"(netfp_logs_sup.tgz: incomplete

ti/netfp_proxy
    routes learnt  7

linux/uptime
  26203.40 12245.38

fuse/HistoryLog: log, in UTC
2026-11-22 02:46:40.995104 error       Supervision: Heartbeat status: NetfpProxy: ERROR
                                         the next line belongs to it
)");
}

TEST(ShowText, OfLogsOnlyLeavesOutEverythingElse) {
    const std::string text = show(richPackage(), {.logsOnly = true});

    EXPECT_TRUE(
        text.starts_with("netfp_logs_sup.tgz: incomplete\n\nfuse/HistoryLog: log, in UTC\n2026-11-22 02:36"));
    EXPECT_EQ(text.find("Values"), std::string::npos);
    EXPECT_EQ(text.find("linux/uptime"), std::string::npos);
}

TEST(ShowText, PrintsPackagesInsideLastAndNamesTheirPartsByTheirPath) {
    Package outer = wholePackage();
    Package inner = richPackage();
    inner.source = "./netfp_logs_post_mortem.tgz";
    outer.nested.push_back(inner);

    EXPECT_NE(show(outer).find("\n\nnetfp_logs_sup.tgz > netfp_logs_post_mortem.tgz: incomplete\n6 of 23"),
              std::string::npos);
    const std::string part = "netfp_logs_post_mortem/linux/uptime";
    EXPECT_TRUE(hasChosenPart(outer, part));
    EXPECT_EQ(show(outer, {.part = part}), R"(netfp_logs_sup.tgz: whole
netfp_logs_post_mortem/linux/uptime: present, 0 bytes

netfp_logs_post_mortem/linux/uptime
  26203.40 12245.38
)");
}

TEST(ShowText, HasNothingForAPartThatDoesNotExist) {
    for (const char* const name :
         {"mmi/sfn/Heap", "mmi/sfn/HeapStats/x", "netfp_logs_post_mortem/linux/uptime", "x"}) {
        EXPECT_FALSE(hasChosenPart(richPackage(), name)) << name;
    }
}

}  // namespace
