#include <algorithm>
#include <chrono>
#include <cstddef>
#include <sstream>
#include <string>

#include <gmock/gmock.h>

#include "Renderers.hpp"
#include "SamplePackage.hpp"

namespace {

using namespace Report;
using Report::Test::partOf;
using Report::Test::troubledPackage;
using Report::Test::wholePackage;

std::string check(const Package& package, const TextStyle& style = {}) {
    std::ostringstream out;
    renderCheck(out, package, style);
    return out.str();
}

/// The lines from a heading up to the next blank line.
std::string sectionOf(const std::string& text, const std::string& heading) {
    const std::size_t start = text.find("\n" + heading + "\n");
    if (start == std::string::npos) {
        return {};
    }
    return text.substr(start + 1, text.find("\n\n", start + 1) - start);
}

TEST(CheckText, OfAHealthyPackageFitsOnAScreen) {
    const std::string text = check(wholePackage());

    EXPECT_EQ(text, R"(netfp_logs_sup.tgz: whole
Every expected part is present.

Board    lab-17
Time     2026-11-22 02:46:41 UTC
Kind     pkg-sup
Size     12.3 KiB
SHA-256  3f786850e387550fdab836ed7e6dc881de23001b3f786850e387550fdab836ed
Zone     UTC
Run      korvel 1.0.0: korvel pkg-sup, exit status 0
Sidecar  korvel complained of nothing

Present
  fuse            HistoryLog
  fuse/{iwf,sfn}  dispatcherCpu dmaStats tracing_on
  linux           cmdline processes uptime
  mmi/{iwf,sfn}   HeapStats ReassemblyCounters SocketSvcCounters SocketSvcInfo
  ti              netfp_master netfp_proxy netfp_server resmgr_server
                  syslib_sm_log

Present, but not required
  archive/dispatcher  runtime
)");
    EXPECT_LE(std::ranges::count(text, '\n'), 24);
}

TEST(CheckText, NamesEachPartInTroubleWithCauseCertaintyAndEvidence) {
    const std::string text = check(troubledPackage());

    EXPECT_EQ(text.substr(0, text.find("\n\n")), R"(netfp_logs_sup.tgz: incomplete
6 of 23 expected parts are not as they should be. Parts that are present can be
used.)");
    EXPECT_EQ(sectionOf(text, "Not as it should be"), R"(Not as it should be
  empty       mmi/sfn/HeapStats, mmi/sfn/ReassemblyCounters,
              mmi/sfn/SocketSvcCounters, mmi/sfn/SocketSvcInfo
              Cause: dispatcher sfn did not answer, it was not running
              linux/processes: no line ends in sfn_dispatcher
              sidecar: MMI: no answer from 127.0.0.1:8777 within 500 ms
  missing     ti/resmgr_server
              Possible cause: the process was not running, or a print in the
              same run removed the dump
  cut         ti/netfp_proxy
              Likely cause: the process did not finish its dump within a second
)");
    EXPECT_EQ(sectionOf(text, "Present"), R"(Present
  fuse            HistoryLog
  fuse/{iwf,sfn}  dispatcherCpu dmaStats tracing_on
  linux           cmdline processes uptime
  mmi/iwf         HeapStats ReassemblyCounters SocketSvcCounters SocketSvcInfo
  ti              netfp_master netfp_server syslib_sm_log
)");
}

TEST(CheckText, KeepsTheNameInTheCauseOfASinglePart) {
    Package package = wholePackage();
    Part& part = partOf(package, "mmi/sfn/HeapStats");
    part.state = State::empty;
    part.cause = "dispatcher sfn did not answer HeapStats";
    part.certainty = Certainty::likely;

    EXPECT_EQ(sectionOf(check(package), "Not as it should be"), R"(Not as it should be
  empty       mmi/sfn/HeapStats
              Likely cause: dispatcher sfn did not answer HeapStats
)");
}

TEST(CheckText, ListsPresentPartsWithEvidenceThatTheyAreOldApart) {
    Package package = wholePackage();
    partOf(package, "ti/netfp_proxy").evidence = {{"ti/netfp_proxy", "written at noon"}};
    partOf(package, "archive/dispatcher/runtime").evidence = {{"ti/netfp_proxy", "written at noon"}};

    const std::string text = check(package);

    EXPECT_EQ(text.substr(text.find("Perhaps")), R"(Perhaps left over from an earlier run
  archive/dispatcher  runtime
  ti                  netfp_proxy

Present
  fuse            HistoryLog
  fuse/{iwf,sfn}  dispatcherCpu dmaStats tracing_on
  linux           cmdline processes uptime
  mmi/{iwf,sfn}   HeapStats ReassemblyCounters SocketSvcCounters SocketSvcInfo
  ti              netfp_master netfp_server resmgr_server syslib_sm_log
)");
}

TEST(CheckText, OfACutPackageGivesTheReasonAndTheLikelyCause) {
    Package package = wholePackage();
    package.verdict = Verdict::cut;
    package.end = {Integrity::cut, "the compressed data end early", {}};
    package.cause = "packing was interrupted, or there was no room below /ffs/run/logs";
    package.certainty = Certainty::likely;

    const std::string text = check(package);

    EXPECT_EQ(text.substr(0, text.find("\n\n")), R"(netfp_logs_sup.tgz: cut
The file is not complete: the compressed data end early. Parts that are present
can be used.
Likely cause: packing was interrupted, or there was no room below /ffs/run/logs)");
}

TEST(CheckText, SaysThatAFileIsEmpty) {
    Package package;
    package.source = "netfp_logs_sup.tgz";
    package.sha256 = "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
    package.verdict = Verdict::cut;
    package.end = {Integrity::cut, "the file is empty", {}};

    EXPECT_EQ(check(package).substr(0, check(package).find("\n\n")), R"(netfp_logs_sup.tgz: cut
The file is empty.)");
}

TEST(CheckText, TellsPartsInTroubleThatNobodyExpectsApart) {
    Package package = wholePackage();
    Part& other = partOf(package, "archive/dispatcher/runtime");
    other.state = State::cut;
    other.cause = "the log was full";
    other.evidence = {{"", "it ends early"}};

    const std::string text = check(package);

    EXPECT_EQ(text.substr(0, text.find("\n\n")), R"(netfp_logs_sup.tgz: whole
Every expected part is present. 1 other part is not as it should be.)");
    EXPECT_EQ(sectionOf(text, "Not as it should be"), "");
    EXPECT_EQ(sectionOf(text, "Not as it should be, but not expected"),
              R"(Not as it should be, but not expected
  cut         archive/dispatcher/runtime
              Possible cause: the log was full
              it ends early
)");
}

TEST(CheckText, NamesCollectorsWithoutParts) {
    Package package = wholePackage();
    std::erase_if(package.parts, [](const Part& part) { return part.name.starts_with("ti/"); });
    EXPECT_THAT(check(package),
                testing::HasSubstr("Every expected part is present. No part of ti was expected."));
    std::erase_if(package.parts, [](const Part& part) { return part.name.starts_with("mmi/"); });
    EXPECT_THAT(check(package), testing::HasSubstr(" No part of mmi or ti was expected."));
    package.parts.clear();
    EXPECT_THAT(check(package),
                testing::HasSubstr("No part was expected: the archive has none that korvel makes."));
}

TEST(CheckText, NamesAPartThatALimitCutOnlyOnce) {
    Package package = wholePackage();
    package.verdict = Verdict::notFullyRead;
    partOf(package, "linux/uptime").state = State::notRead;
    package.unread = {{"./linux/uptime.log", Limit::line}};

    const std::string text = check(package);

    EXPECT_EQ(text.substr(0, text.find("\n\n")), R"(netfp_logs_sup.tgz: not fully read
Because of a limit, 1 member was not read completely.)");
    EXPECT_EQ(sectionOf(text, "Not read, because of a limit"), R"(Not read, because of a limit
  linux/uptime: --max-line raises the limit
)");
    EXPECT_NE(text.find("  linux           cmdline processes\n"), std::string::npos);
}

TEST(CheckText, NamesWhatALimitLeftOutAndTheOptionThatRaisesIt) {
    Package package = wholePackage();
    package.verdict = Verdict::notFullyRead;
    partOf(package, "linux/uptime").state = State::notRead;
    package.unread = {{"./deep.gz", Limit::depth}, {"", Limit::bytes}};

    const std::string text = check(package);

    EXPECT_EQ(text.substr(0, text.find("\n\n")), R"(netfp_logs_sup.tgz: not fully read
A limit of the reading was reached. Nothing is known of the rest.)");
    EXPECT_EQ(sectionOf(text, "Not read, because of a limit"), R"(Not read, because of a limit
  deep.gz: --max-depth raises the limit
  the rest of the package: --max-bytes raises the limit
)");
    EXPECT_EQ(sectionOf(text, "Not as it should be"), "");
}

TEST(CheckText, SaysThatComplaintsAreUnknownWithoutASidecar) {
    Package package = wholePackage();
    package.sidecar.reset();
    package.zone.reset();
    const std::string head = R"(netfp_logs_sup.tgz: whole
Every expected part is present.

Board    lab-17
Time     2026-11-22 02:46:41 UTC
Kind     pkg-sup
Size     12.3 KiB
SHA-256  3f786850e387550fdab836ed7e6dc881de23001b3f786850e387550fdab836ed
Zone     unknown: local times are taken as UTC
)";

    package.sidecarState = SidecarState::absent;
    EXPECT_EQ(check(package).substr(0, check(package).find("\n\nPresent")),
              head + "Sidecar  none: what korvel complained of is unknown");

    package.sidecarState = SidecarState::foreign;
    package.sidecarError = "its checksum is of another package";
    EXPECT_EQ(check(package).substr(0, check(package).find("\n\nPresent")),
              head +
                  "Sidecar  not used (its checksum is of another package): what korvel complained\n"
                  "         of is unknown");
}

TEST(CheckText, ShowsTheFirstLinesOfWhatKorvelComplainedOf) {
    Package package = wholePackage();
    package.sidecar->standardError = "one\ntwo \x1b[31m\nthree\nfour\nfive\nsix\nseven\n";

    EXPECT_EQ(sectionOf(check(package), "What korvel complained of"), R"(What korvel complained of
  one
  two \x1b[31m
  three
  four
  five
  and 2 more
)");
}

TEST(CheckText, FlagsATimeOfAnUnsetClock) {
    Package package = wholePackage();
    package.time = std::chrono::sys_days{std::chrono::year{1970} / 1 / 1} + std::chrono::seconds(753);
    package.clockUnset = true;

    EXPECT_NE(check(package).find("\nTime     1970-01-01 00:12:33 UTC: the board's clock was not set\n"),
              std::string::npos);
}

TEST(CheckText, TellsTheVerdictOfEachPackageInside) {
    Package deepest = wholePackage();
    deepest.source = "./netfp_logs_post_mortem.tgz";
    deepest.verdict = Verdict::altered;
    deepest.end.reason = "its checksum differs";
    Package inner = troubledPackage();
    inner.source = "./netfp_logs_post_mortem.tgz";
    inner.nested.push_back(deepest);
    Package outer = wholePackage();
    outer.nested.push_back(inner);

    EXPECT_EQ(sectionOf(check(outer), "Packages inside"), R"(Packages inside
  netfp_logs_post_mortem.tgz: incomplete, 2026-11-22 02:46:41 UTC. 6 of 23
  expected parts are not as they should be. Parts that are present can be used.
    netfp_logs_post_mortem.tgz: altered, 2026-11-22 02:46:41 UTC. The file is
    not as it was made: its checksum differs. Do not rely on its contents.
)");
}

TEST(CheckText, SaysThatADamagedPackageInsideMakesThePackageIncomplete) {
    Package package = wholePackage();
    package.source = "./a folder/netfp_logs_sup.tgz";
    package.verdict = Verdict::incomplete;

    EXPECT_EQ(check(package).substr(0, check(package).find("\n\n")),
              R"(./a folder/netfp_logs_sup.tgz: incomplete
Every expected part is present, but a package inside is cut or altered.)");
}

TEST(CheckText, ListsStrangeMembersAndOverwrittenEntries) {
    Package package = wholePackage();
    package.oddities = {{"../../etc/passwd", "its name contains .."}, {"./link", "a symbolic link to /etc"}};
    LogEntry entry;
    entry.time = package.time;
    partOf(package, "archive/dispatcher/runtime").overlaps = {{entry, std::nullopt}};

    const std::string text = check(package);

    EXPECT_EQ(sectionOf(text, "Members that korvel does not make; they were not followed"),
              R"(Members that korvel does not make; they were not followed
  ../../etc/passwd: its name contains ..
  link: a symbolic link to /etc
)");
    EXPECT_EQ(sectionOf(text, "Entries that were overwritten before the archive read them"),
              R"(Entries that were overwritten before the archive read them
  archive/dispatcher/runtime: between 2026-11-22 02:46:41 UTC and an unknown
  time
)");
}

TEST(CheckText, StaysBoundedAndSafeForAHostilePackage) {
    Package package = wholePackage();
    for (std::size_t number = 0; number < 1000; ++number) {
        package.oddities.push_back({"\x1b]0;" + std::string(4096, 'x'), "a device"});
        Part part;
        part.name = "folder" + std::to_string(number) + "/\x1b[2J";
        part.state = State::cut;
        part.cause = "cause " + std::to_string(number);
        package.parts.push_back(part);
    }

    const std::string text = check(package);

    EXPECT_LE(std::ranges::count(text, '\n'), 100);
    EXPECT_EQ(text.find('\x1b'), std::string::npos);
    EXPECT_NE(text.find("and 990 more"), std::string::npos);
}

TEST(CheckText, HasColoursOnlyIfAsked) {
    EXPECT_EQ(check(wholePackage()).find('\x1b'), std::string::npos);

    const std::string text = check(wholePackage(), {.colour = true});

    EXPECT_EQ(text.substr(0, text.find('\n')), "\x1b[1mnetfp_logs_sup.tgz\x1b[0m: \x1b[1;32mwhole\x1b[0m");
}

}  // namespace
