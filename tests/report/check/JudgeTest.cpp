#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Judge.hpp"
#include "PackageFixture.hpp"
#include "PartTable.hpp"

namespace Report::Testing {
namespace {

/// What is changed in a package on which nothing is wrong, and what the judge then finds.
struct Case {
    const char* sentence;
    std::function<void(PackageFixture&)> change;
    std::string finds;
};

void judgeAll(const std::vector<Case>& cases) {
    for (const Case& row : cases) {
        SCOPED_TRACE(row.sentence);
        PackageFixture fixture;
        row.change(fixture);
        EXPECT_EQ(fixture.judged(), row.finds);
    }
}

void silence(PackageFixture& fixture, const std::string& dispatcher) {
    for (const char* const command :
         {"SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"}) {
        fixture.write("mmi/" + dispatcher + "/" + command, "");
    }
}

std::string forEachCommand(const std::string& dispatcher, const std::string& before,
                           const std::string& after) {
    std::string text;
    for (const std::string command :
         {"SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"}) {
        text.append("mmi/").append(dispatcher).append("/").append(command);
        text.append(before).append(command).append(after).append("\n");
    }
    return text;
}

TEST(Judge, CallsAPackageWithAllPartsWhole) {
    EXPECT_EQ(PackageFixture().judged(), "whole\n");
}

TEST(Judge, ExplainsRepliesOfDispatchers) {
    judgeAll({
        {"one reply is empty, and the listing has the dispatcher",
         [](PackageFixture& fixture) { fixture.write("mmi/sfn/HeapStats", ""); },
         "mmi/sfn/HeapStats: empty, likely: dispatcher sfn did not answer HeapStats\nincomplete\n"},
        {"the listing of the same run lacks the dispatcher",
         [](PackageFixture& fixture) {
             silence(fixture, "sfn");
             fixture.kill("sfn_dispatcher");
         },
         forEachCommand("sfn", ": empty, certain: dispatcher sfn did not answer ", ": it was not running") +
             "incomplete\n"},
        {"the listing names no dispatcher: they may have other names on this board",
         [](PackageFixture& fixture) {
             silence(fixture, "sfn");
             fixture.kill("sfn_dispatcher");
             fixture.kill("iwf_dispatcher");
         },
         forEachCommand("sfn", ": empty, likely: dispatcher sfn did not answer ", ": it was not running") +
             "incomplete\n"},
        {"the listing lacks the dispatcher, but it answered a later command",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/SocketSvcInfo", "");
             fixture.kill("sfn_dispatcher");
         },
         "mmi/sfn/SocketSvcInfo: empty, likely: dispatcher sfn did not answer SocketSvcInfo\nincomplete\n"},
        {"the listing is of an earlier run",
         [](PackageFixture& fixture) {
             silence(fixture, "sfn");
             fixture.kill("sfn_dispatcher");
             fixture.age("linux/processes", 10);
         },
         forEachCommand("sfn", ": empty, likely: dispatcher sfn did not answer ", "") + "incomplete\n"},
        {"the listing is cut",
         [](PackageFixture& fixture) {
             silence(fixture, "sfn");
             fixture.write("linux/processes", "  PID COMMAND\n  301 netfp_proxy\n  306 iwf_disp");
         },
         forEachCommand("sfn", ": empty, likely: dispatcher sfn did not answer ", "") + "incomplete\n"},
        {"the dispatcher is a zombie",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/HeapStats", "");
             fixture.write("linux/processes",
                           "  PID STAT COMMAND\n  306 S iwf_dispatcher\n  307 Z [sfn_dispatcher]\n");
         },
         "mmi/sfn/HeapStats: empty, certain: dispatcher sfn did not answer HeapStats: it was not running\n"
         "incomplete\n"},
        {"a reply has exactly the size that korvel takes",
         [](PackageFixture& fixture) { fixture.writeLarge("mmi/iwf/HeapStats", 16U << 20U); },
         "mmi/iwf/HeapStats: cut, likely: the reply of dispatcher iwf did not end\nincomplete\n"},
        {"a reply lacks lines that the other dispatcher's has",
         [](PackageFixture& fixture) {
             const std::string whole = counters("sfn", "HeapStats");
             fixture.write("mmi/sfn/HeapStats", whole.substr(0, whole.find("  HeapStats failed") + 3));
         },
         "mmi/sfn/HeapStats: cut, likely: dispatcher sfn stopped in the middle of its reply\nincomplete\n"},
        {"a reply goes on after its last line",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/HeapStats", counters("sfn", "HeapStats") + "....");
         },
         "mmi/sfn/HeapStats: cut, likely: the reply of dispatcher sfn did not end\nincomplete\n"},
        {"a reply starts with a line of an earlier one",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/HeapStats", "left over\n" + counters("sfn", "HeapStats"));
         },
         "mmi/sfn/HeapStats: stale, likely: it holds the late reply to an earlier command: dispatcher sfn "
         "answers "
         "too slowly\nincomplete\n"},
        {"replies came one command too late",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/SocketSvcInfo", "");
             fixture.write("mmi/sfn/SocketSvcCounters", counters("sfn", "SocketSvcInfo"));
         },
         "mmi/sfn/SocketSvcInfo: empty, likely: dispatcher sfn did not answer SocketSvcInfo\n"
         "mmi/sfn/SocketSvcCounters: stale, likely: it holds the late reply to an earlier command: "
         "dispatcher sfn "
         "answers too slowly\nincomplete\n"},
        {"replies of the only dispatcher follow a missing one",
         [](PackageFixture& fixture) {
             fixture.removeFolder("mmi/iwf");
             fixture.removeFolder("fuse/iwf");
             fixture.write("mmi/sfn/ReassemblyCounters", "");
         },
         "mmi/sfn/ReassemblyCounters: empty, likely: dispatcher sfn did not answer ReassemblyCounters\n"
         "mmi/sfn/HeapStats: stale, likely: it holds the late reply to an earlier command: dispatcher sfn "
         "answers "
         "too slowly\nincomplete\n"},
        {"a reply is not text",
         [](PackageFixture& fixture) {
             fixture.write("mmi/iwf/HeapStats", "\xff\xfe\xfd\n");
             fixture.part("mmi/iwf/HeapStats").invalidBytes = 3;
         },
         "mmi/iwf/HeapStats: unreadable, likely: the content is not text\nincomplete\n"},
        {"a dispatcher's file is missing",
         [](PackageFixture& fixture) { fixture.remove("mmi/iwf/HeapStats"); },
         "mmi/iwf/HeapStats: missing, likely: the run did not ask for this part\nincomplete\n"},
    });
}

TEST(Judge, ExplainsStateFilesOfDispatchers) {
    judgeAll({
        {"a state file is missing", [](PackageFixture& fixture) { fixture.remove("fuse/sfn/dmaStats"); },
         "fuse/sfn/dmaStats: missing, likely: the state file was not there or empty, or dispatcher sfn did "
         "not serve "
         "it\nincomplete\n"},
        {"an empty one is like a missing one",
         [](PackageFixture& fixture) { fixture.write("fuse/sfn/dmaStats", ""); },
         "fuse/sfn/dmaStats: empty, likely: the state file was not there or empty, or dispatcher sfn did not "
         "serve "
         "it\nincomplete\n"},
        {"the listing lacks the dispatcher, and the run asked for the keyword",
         [](PackageFixture& fixture) {
             fixture.remove("fuse/sfn/dmaStats");
             fixture.kill("sfn_dispatcher");
         },
         "fuse/sfn/dmaStats: missing, certain: dispatcher sfn was not running\nincomplete\n"},
        {"the run may not have asked for the keyword",
         [](PackageFixture& fixture) {
             fixture.removeFolder("mmi");
             fixture.remove("fuse/sfn/dmaStats");
             fixture.kill("sfn_dispatcher");
         },
         "fuse/sfn/dmaStats: missing, likely: dispatcher sfn was not running\nincomplete\n"},
        {"the bridge belongs to a board with only IWF",
         [](PackageFixture& fixture) {
             fixture.removeFolder("fuse/sfn");
             fixture.removeFolder("mmi/sfn");
         },
         "fuse/iwf/fpBridgeStats: missing, likely: the state file was not there or empty, or the board has "
         "an SFN "
         "dispatcher after all\nincomplete\n"},
        {"one folder of a dispatcher counts for both collectors",
         [](PackageFixture& fixture) { fixture.removeFolder("fuse/sfn"); },
         "fuse/sfn/tracing_on: missing, likely: the state file was not there or empty, or dispatcher sfn did "
         "not serve "
         "it\n"
         "fuse/sfn/dispatcherCpu: missing, likely: the state file was not there or empty, or dispatcher sfn "
         "did not "
         "serve it\n"
         "fuse/sfn/dmaStats: missing, likely: the state file was not there or empty, or dispatcher sfn did "
         "not serve "
         "it\nincomplete\n"},
        {"a collector whose folder is missing did not run",
         [](PackageFixture& fixture) { fixture.removeFolder("mmi"); }, "whole\n"},
        {"an empty folder shows that its collector ran",
         [](PackageFixture& fixture) {
             fixture.removeFolder("fuse");
             fixture.removeFolder("mmi");
             fixture.package.folders.insert("fuse");
         },
         "fuse/HistoryLog: missing, likely: the log was empty, its shared memory could not be read, or the "
         "run did not "
         "ask for it\nincomplete\n"},
    });
}

TEST(Judge, ExplainsDumpsAndLogsOfTheNetfpProcesses) {
    judgeAll({
        {"a dump is missing, and the listing lacks the process",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.kill("netfp_proxy");
         },
         "ti/netfp_proxy: missing, likely: netfp_proxy was not running\nincomplete\n"},
        {"the listing has the process", [](PackageFixture& fixture) { fixture.remove("ti/netfp_proxy"); },
         "ti/netfp_proxy: missing, likely: netfp_proxy wrote no dump within a second: it is stopped or "
         "hangs\nincomplete\n"},
        {"there is no listing",
         [](PackageFixture& fixture) {
             fixture.removeFolder("linux");
             fixture.package.kind = Kind::plain;
             fixture.remove("ti/netfp_proxy");
         },
         "ti/netfp_proxy: missing, likely: netfp_proxy was not running or wrote no dump, or a `print` in the "
         "same run "
         "removed the dump\nincomplete\n"},
        {"a shell mentions the process, but it is not in the listing",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.write("linux/processes",
                           "  PID COMMAND\n  1 init sh -c kill $(pidof netfp_proxy)\n  300 sh -c kill "
                           "$(pidof netfp_proxy)\n"
                           "  302 netfp_proxy_helper\n");
         },
         "ti/netfp_proxy: missing, likely: netfp_proxy was not running\nincomplete\n"},
        {"a program with the process in its command line may run it",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.write("linux/processes", "  PID COMMAND\n  300 watchdog --run netfp_proxy\n");
         },
         "ti/netfp_proxy: missing, likely: netfp_proxy was not running or wrote no dump, or a `print` in the "
         "same run "
         "removed the dump\nincomplete\n"},
        {"a dump lacks its closing line",
         [](PackageFixture& fixture) {
             fixture.write("ti/netfp_master", "<netfp_master_dump>\nmaster:\n  a");
         },
         "ti/netfp_master: cut, likely: netfp_master did not finish its dump within a second\nincomplete\n"},
        {"and the process is gone",
         [](PackageFixture& fixture) {
             fixture.write("ti/netfp_master", "<netfp_master_dump>\nmaster:\n  a");
             fixture.kill("netfp_master");
         },
         "ti/netfp_master: cut, likely: netfp_master died while it wrote its dump\nincomplete\n"},
        {"a line of a dump only mentions the closing line",
         [](PackageFixture& fixture) {
             fixture.write("ti/netfp_master", "<netfp_master_dump>\nx </netfp_master_dump> y\nmaster:\n");
         },
         "ti/netfp_master: cut, likely: netfp_master did not finish its dump within a second\nincomplete\n"},
        {"a dump begins with its closing line",
         [](PackageFixture& fixture) { fixture.write("ti/netfp_master", "</netfp_master_dump>\nend\n"); },
         "whole\n"},
        {"blanks are around the closing line, and lines behind it",
         [](PackageFixture& fixture) {
             fixture.write("ti/netfp_master",
                           "<netfp_master_dump>\na: 1\n </netfp_master_dump>\t\r\n\nend\n");
         },
         "whole\n"},
        {"a large dump has its closing line",
         [](PackageFixture& fixture) {
             fixture.writeLarge("ti/netfp_master", 1U << 20U);
             fixture.part("ti/netfp_master").tail = "end\n</netfp_master_dump>\n";
         },
         "whole\n"},
        {"a dump holds nothing",
         [](PackageFixture& fixture) {
             fixture.write("ti/resmgr_server", "<resmgr_server_dump>\n</resmgr_server_dump>\n");
         },
         "ti/resmgr_server: empty, certain: resmgr_server wrote a dump without content\nincomplete\n"},
        {"a dump is empty, and the process runs",
         [](PackageFixture& fixture) { fixture.write("ti/resmgr_server", ""); },
         "ti/resmgr_server: empty, likely: resmgr_server did not finish its dump within a "
         "second\nincomplete\n"},
        {"a dump has exactly the size that korvel takes",
         [](PackageFixture& fixture) { fixture.writeLarge("ti/resmgr_server", 16U << 20U, 'x'); },
         "ti/resmgr_server: cut, likely: the source was larger than the 16 MiB that korvel takes of one "
         "source\nincomplete\n"},
        {"empty logs: nothing was logged",
         [](PackageFixture& fixture) {
             fixture.write("ti/syslib_sm_log", "");
             fixture.write("fuse/HistoryLog", "");
         },
         "whole\n"},
        {"the log of SYSLIB is missing", [](PackageFixture& fixture) { fixture.remove("ti/syslib_sm_log"); },
         "ti/syslib_sm_log: missing, likely: a `print` in the same run removed this file, or the run did not "
         "ask for "
         "it\nincomplete\n"},
    });
}

TEST(Judge, FindsStaleParts) {
    judgeAll({
        {"two minutes are not stale", [](PackageFixture& fixture) { fixture.age("ti/netfp_proxy", 120); },
         "whole\n"},
        {"a second more is, and the process runs",
         [](PackageFixture& fixture) { fixture.age("ti/netfp_proxy", 121); },
         "ti/netfp_proxy: stale, likely: left over from an earlier run: netfp_proxy wrote no new "
         "dump\nincomplete\n"},
        {"the process is gone",
         [](PackageFixture& fixture) {
             fixture.age("ti/netfp_proxy", 121);
             fixture.kill("netfp_proxy");
         },
         "ti/netfp_proxy: stale, likely: left over from an earlier run: netfp_proxy was not "
         "running\nincomplete\n"},
        {"a stale part is not compared with others",
         [](PackageFixture& fixture) {
             fixture.age("mmi/sfn/HeapStats", 3600);
             fixture.write("mmi/sfn/HeapStats", "left over\n");
         },
         "mmi/sfn/HeapStats: stale, likely: left over from an earlier run: the work directory is never "
         "emptied\nincomplete\n"},
        {"a state file, and the dispatcher is gone",
         [](PackageFixture& fixture) {
             fixture.age("fuse/sfn/dmaStats", 3600);
             fixture.kill("sfn_dispatcher");
         },
         "fuse/sfn/dmaStats: stale, likely: left over from an earlier run: dispatcher sfn was not "
         "running\nincomplete\n"},
        {"the archive and nested packages have no age",
         [](PackageFixture& fixture) {
             fixture.write("archive/dispatcher/runtime", "x\n");
             fixture.write("archive/dispatcher/startup", "x\n");
             fixture.write("netfp_logs_post_mortem", "x");
             fixture.age("archive/dispatcher/startup", 100000);
             fixture.age("netfp_logs_post_mortem", 100000);
         },
         "whole\n"},
        {"a collector that did not run again is old as a whole",
         [](PackageFixture& fixture) {
             for (Part& part : fixture.package.parts) {
                 if (part.name.starts_with("ti/")) {
                     fixture.age(part.name, 3600);
                 }
             }
         },
         "whole\n"},
    });
}

/// Adds a sidecar with these times. The parts of the fixture are of 14:13:20.
void ranFrom(PackageFixture& fixture, const std::string& began, const std::string& ended) {
    fixture.ran("korvel pkg-sup", "");
    fixture.package.sidecar->keys.insert(
        {{"began", "2026-09-21T" + began + "Z"}, {"ended", "2026-09-21T" + ended + "Z"}});
}

TEST(Judge, CallsPartsFromBeforeTheBeginOfTheRunStale) {
    judgeAll({
        {"all parts are of the second in which the run began",
         [](PackageFixture& fixture) { ranFrom(fixture, "14:13:20", "14:13:25"); }, "whole\n"},
        {"a part is a second older",
         [](PackageFixture& fixture) {
             ranFrom(fixture, "14:13:20", "14:13:25");
             fixture.age("ti/netfp_proxy", 1);
             fixture.age("fuse/iwf/dmaStats", 1);
         },
         "fuse/iwf/dmaStats: stale, likely: left over from an earlier run: the work directory is never "
         "emptied\n"
         "ti/netfp_proxy: stale, likely: left over from an earlier run: netfp_proxy wrote no new "
         "dump\nincomplete\n"},
        {"the clock was set back during the run",
         [](PackageFixture& fixture) { ranFrom(fixture, "14:13:30", "14:13:25"); }, "whole\n"},
        {"a Linux log has the time of its source",
         [](PackageFixture& fixture) {
             ranFrom(fixture, "14:13:20", "14:13:25");
             fixture.age("linux/mounts", 100);
         },
         "whole\n"},
        {"all Linux logs are older",
         [](PackageFixture& fixture) {
             ranFrom(fixture, "14:13:20", "14:13:25");
             for (const char* const name : {"linux/mounts", "linux/processes", "linux/system"}) {
                 fixture.age(name, 1);
             }
         },
         "linux/processes: stale, likely: left over from an earlier run: the work directory is never "
         "emptied\n"
         "linux/mounts: stale, likely: left over from an earlier run: the work directory is never emptied\n"
         "linux/system: stale, likely: left over from an earlier run: the work directory is never "
         "emptied\nincomplete\n"},
        {"the archive and nested packages have no age",
         [](PackageFixture& fixture) {
             ranFrom(fixture, "14:13:20", "14:13:25");
             fixture.write("archive/dispatcher/startup", "x\n");
             fixture.write("netfp_logs_post_mortem", "x");
             fixture.age("archive/dispatcher/startup", 10);
             fixture.age("netfp_logs_post_mortem", 10);
         },
         "whole\n"},
    });
}

TEST(Judge, CallsAnOlderDumpOfAnEndedProcessStale) {
    const std::string stale =
        "ti/netfp_proxy: stale, likely: left over from an earlier run: netfp_proxy was not running\n"
        "incomplete\n";
    judgeAll({
        {"the next dump came later than it should",
         [](PackageFixture& fixture) {
             fixture.kill("netfp_proxy");
             fixture.age("ti/netfp_proxy", 2);
         },
         stale},
        {"the next dump came a second later: the process may have ended after its dump",
         [](PackageFixture& fixture) {
             fixture.kill("netfp_proxy");
             fixture.age("ti/netfp_proxy", 1);
         },
         "whole\n"},
        {"the process runs", [](PackageFixture& fixture) { fixture.age("ti/netfp_proxy", 2); }, "whole\n"},
        {"a dump that this run wrote before it is newer",
         [](PackageFixture& fixture) {
             fixture.kill("resmgr_server");
             fixture.age("ti/resmgr_server", 1);
         },
         "ti/resmgr_server: stale, likely: left over from an earlier run: resmgr_server was not running\n"
         "incomplete\n"},
        {"no known process is in the listing: this board has other names",
         [](PackageFixture& fixture) {
             fixture.write("linux/processes", "  PID COMMAND\n  301 proxyd\n");
             fixture.age("ti/netfp_proxy", 2);
         },
         "whole\n"},
        {"the sidecar shows that the run wrote the dump",
         [](PackageFixture& fixture) {
             fixture.kill("netfp_proxy");
             fixture.age("ti/netfp_proxy", 2);
             ranFrom(fixture, "14:13:17", "14:13:25");
         },
         "whole\n"},
    });
}

/// The evidence of a part after judging, a line for each.
std::string evidenceOf(const PackageFixture& fixture, const std::string& name) {
    PackageFixture judged = fixture;
    judge(judged.package, {});
    std::string lines;
    for (const Evidence& evidence : judged.part(name).evidence) {
        lines += evidence.source + ": " + evidence.text + "\n";
    }
    return lines;
}

TEST(Judge, HasEvidenceAboutPresentPartsThatPerhapsAreOld) {
    const struct {
        const char* sentence;
        const char* part;
        std::function<void(PackageFixture&)> change;
        std::string evidence;
    } cases[] = {
        {"the next dump came soon enough for a busy board", "ti/netfp_proxy",
         [](PackageFixture& fixture) { fixture.age("ti/netfp_proxy", 4); }, ""},
        {"the next dump came much later", "ti/netfp_proxy",
         [](PackageFixture& fixture) { fixture.age("ti/netfp_proxy", 5); },
         "ti/netfp_proxy: written at 2026-09-21 14:13:15 UTC, but ti/netfp_server at 2026-09-21 14:13:20 "
         "UTC\n"},
        {"korvel may have waited for the missing dumps", "ti/netfp_proxy",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_server");
             fixture.remove("ti/netfp_master");
             fixture.age("ti/netfp_proxy", 6);
         },
         ""},
        {"a file that the run writes before it is newer", "fuse/sfn/dmaStats",
         [](PackageFixture& fixture) { fixture.age("fuse/sfn/dmaStats", 1); },
         "fuse/sfn/dmaStats: written at 2026-09-21 14:13:19 UTC, but fuse/sfn/dispatcherCpu at 2026-09-21 "
         "14:13:20 "
         "UTC\n"},
        {"the sidecar shows that this run wrote it", "ti/netfp_proxy",
         [](PackageFixture& fixture) {
             fixture.age("ti/netfp_proxy", 9);
             ranFrom(fixture, "14:13:10", "14:13:25");
         },
         ""},
        {"the process had ended", "ti/netfp_proxy",
         [](PackageFixture& fixture) { fixture.kill("netfp_proxy"); },
         "linux/processes: no process netfp_proxy among 7\n"},
        {"a part from before the run is stale", "ti/netfp_proxy",
         [](PackageFixture& fixture) {
             fixture.age("ti/netfp_proxy", 1);
             fixture.kill("netfp_proxy");
             ranFrom(fixture, "14:13:20", "14:13:25");
         },
         "linux/processes: no process netfp_proxy among 7\nsidecar: began: 2026-09-21T14:13:20Z\n"},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.sentence);
        PackageFixture fixture;
        row.change(fixture);
        EXPECT_EQ(evidenceOf(fixture, row.part), row.evidence);
    }
}

/// Empties the parts that korvel writes after /tmp is full, from the replies of `dispatcher` on.
void fillDisk(PackageFixture& fixture, const std::string& dispatcher) {
    silence(fixture, dispatcher);
    if (dispatcher == "iwf") {
        silence(fixture, "sfn");
    }
    for (const char* const name : {"ti/syslib_sm_log", "linux/processes", "linux/mounts", "linux/system"}) {
        fixture.write(name, "");
    }
}

const std::string noRoomLater =
    "ti/syslib_sm_log: empty, likely: no room was left in /tmp\n"
    "linux/processes: empty, likely: no room was left in /tmp\n"
    "linux/mounts: empty, likely: no room was left in /tmp\nincomplete\n";

std::string noRoomFor(const std::string& dispatcher) {
    std::string text;
    for (const char* const command :
         {"SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"}) {
        text += "mmi/" + dispatcher + "/" + command + ": empty, likely: no room was left in /tmp\n";
    }
    return text;
}

TEST(Judge, BlamesAFullDiskAndNotTheDispatchers) {
    judgeAll({
        {"no more room from the first reply on", [](PackageFixture& fixture) { fillDisk(fixture, "iwf"); },
         noRoomFor("iwf") + noRoomFor("sfn") + noRoomLater},
        {"the log of the dispatchers ends at a page inside a line",
         [](PackageFixture& fixture) {
             fillDisk(fixture, "iwf");
             fixture.writeLarge("fuse/HistoryLog", 20480, 'x');
         },
         noRoomFor("iwf") + noRoomFor("sfn") + "fuse/HistoryLog: cut, likely: no room was left in /tmp\n" +
             noRoomLater},
        {"the room was enough until the Linux logs, so a dispatcher was silent",
         [](PackageFixture& fixture) {
             silence(fixture, "sfn");
             fixture.write("linux/processes", "");
         },
         forEachCommand("sfn", ": empty, likely: dispatcher sfn did not answer ", "") +
             "linux/processes: empty, likely: no room was left in /tmp\nincomplete\n"},
        {"without Linux logs, nobody can tell",
         [](PackageFixture& fixture) {
             fixture.removeFolder("linux");
             fixture.package.kind = Kind::plain;
             silence(fixture, "sfn");
             fixture.write("ti/syslib_sm_log", "");
         },
         forEachCommand("sfn", ": empty, likely: dispatcher sfn did not answer ",
                        ", or no room was left in /tmp") +
             "ti/syslib_sm_log: empty, likely: nothing was logged, or no room was left in "
             "/tmp\nincomplete\n"},
    });
}

TEST(Judge, ExplainsWhatTheLimitsOfACollectionCut) {
    PackageFixture fixture;
    std::uint64_t others = 0;
    for (const Part& part : fixture.package.parts) {
        const bool later = part.name.starts_with("ti/") || part.name.starts_with("linux/") ||
                           part.name == "mmi/sfn/HeapStats";
        others += later || part.name == "mmi/sfn/ReassemblyCounters" ? 0 : part.size;
    }
    fixture.writeLarge("mmi/sfn/ReassemblyCounters", (48U << 20U) - others);
    for (const char* const name : {"mmi/sfn/HeapStats", "ti/syslib_sm_log", "ti/netfp_proxy",
                                   "ti/netfp_server", "ti/netfp_master", "ti/resmgr_server"}) {
        fixture.write(name, "");
    }

    EXPECT_EQ(fixture.judged(),
              "mmi/sfn/ReassemblyCounters: cut, likely: the reply of dispatcher sfn did not end\n"
              "mmi/sfn/HeapStats: empty, likely: the collection had reached its limit of 48 MiB\n"
              "ti/netfp_proxy: empty, likely: the collection had reached its limit of 48 MiB\n"
              "ti/netfp_server: empty, likely: the collection had reached its limit of 48 MiB\n"
              "ti/netfp_master: empty, likely: the collection had reached its limit of 48 MiB\n"
              "ti/resmgr_server: empty, likely: the collection had reached its limit of 48 MiB\n"
              "ti/syslib_sm_log: empty, likely: the collection had reached its limit of 48 MiB\n"
              "incomplete\n");
}

TEST(Judge, TakesTheMessagesOfTheRunAsFacts) {
    judgeAll({
        {"a dispatcher did not answer",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/HeapStats", "");
             fixture.ran("korvel pkg-sup", "poll(): Timed out while waiting for response\n");
         },
         "mmi/sfn/HeapStats: empty, certain: dispatcher sfn did not answer HeapStats\nincomplete\n"},
        {"more time-outs than empty replies: another reply has no end either",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/HeapStats", "");
             fixture.ran("korvel pkg-sup",
                         "poll(): Timed out while waiting for response\n"
                         "poll(): Timed out while waiting for response\n");
         },
         "mmi/sfn/HeapStats: empty, likely: dispatcher sfn did not answer HeapStats\nincomplete\n"},
        {"no room",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/HeapStats", "");
             fixture.ran("korvel pkg-sup",
                         "Error while writing /tmp/korvel/mmi/sfn/HeapStats.log: No space left on device\n");
         },
         "mmi/sfn/HeapStats: empty, certain: no room was left in /tmp\nincomplete\n"},
        {"as many complaints as replies: none of them ended",
         [](PackageFixture& fixture) {
             fixture.removeFolder("mmi/sfn");
             fixture.removeFolder("fuse/sfn");
             fixture.write("fuse/iwf/fpBridgeStats", "frames passed        1\n");
             fixture.write("mmi/iwf/HeapStats", "");
             fixture.ran("korvel pkg-sup",
                         "poll(): Timed out while waiting for response\n"
                         "poll(): Timed out while waiting for response\n"
                         "recv(): Peer has performed an orderly shutdown\n"
                         "Reply to SocketSvcInfo does not end, cut\n");
         },
         "mmi/iwf/SocketSvcInfo: cut, certain: the reply of dispatcher iwf did not end\n"
         "mmi/iwf/SocketSvcCounters: cut, certain: the reply of dispatcher iwf did not end\n"
         "mmi/iwf/ReassemblyCounters: cut, certain: the reply of dispatcher iwf did not end\n"
         "mmi/iwf/HeapStats: empty, likely: dispatcher iwf did not answer HeapStats\nincomplete\n"},
        {"fewer complaints than replies: nobody knows which of them ended",
         [](PackageFixture& fixture) {
             fixture.ran("korvel pkg-sup", "poll(): Timed out while waiting for response\n");
         },
         "whole\n"},
        {"no room for a dump, as for other files",
         [](PackageFixture& fixture) {
             fixture.write("ti/resmgr_server", "");
             fixture.write("mmi/sfn/HeapStats", "");
             fixture.ran("korvel pkg-sup",
                         "Error while writing /tmp/korvel/mmi/sfn/HeapStats.log: No space left on device\n");
         },
         "mmi/sfn/HeapStats: empty, certain: no room was left in /tmp\n"
         "ti/resmgr_server: empty, likely: no room was left in /tmp\nincomplete\n"},
        {"a file that was written in part looks present without the message",
         [](PackageFixture& fixture) {
             fixture.ran("korvel pkg-sup",
                         "Error while writing /tmp/korvel/fuse/HistoryLog.log: No space left on device\n");
         },
         "fuse/HistoryLog: cut, certain: no room was left in /tmp\nincomplete\n"},
        {"a state file that was not there",
         [](PackageFixture& fixture) {
             fixture.remove("fuse/sfn/dmaStats");
             fixture.ran("korvel pkg-sup",
                         "Error while opening /tmp/fuse/sfn/dmaStats\n"
                         "Output of /tmp/korvel/fuse/sfn/dmaStats.log is empty\n");
         },
         "fuse/sfn/dmaStats: missing, certain: the state file was not there or empty, or dispatcher sfn did "
         "not serve "
         "it\nincomplete\n"},
        {"a fresh file that this run did not write",
         [](PackageFixture& fixture) {
             fixture.ran("korvel pkg-sup",
                         "Error while opening /tmp/fuse/sfn/dmaStats\n"
                         "Output of /tmp/korvel/fuse/sfn/dmaStats.log is empty\n");
         },
         "fuse/sfn/dmaStats: stale, certain: left over from an earlier run: this time, the source was not "
         "there or "
         "empty\nincomplete\n"},
        {"a dispatcher whose state file hangs",
         [](PackageFixture& fixture) {
             fixture.remove("fuse/sfn/dmaStats");
             fixture.ran("korvel pkg-sup",
                         "Error while reading /tmp/fuse/sfn/dmaStats: Connection timed out\n");
         },
         "fuse/sfn/dmaStats: missing, certain: dispatcher sfn hangs: its state file did not answer within "
         "five "
         "seconds\nincomplete\n"},
        {"a dump of the wrong owner",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.ran("korvel pkg-sup", "Error while reading /tmp/netfp_proxy.log: Permission denied\n");
         },
         "ti/netfp_proxy: missing, certain: korvel could not read the source of this file: Permission "
         "denied\nincomplete\n"},
        {"a process that could not be signalled",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.ran("korvel pkg-sup",
                         "Error while sending 'kill -10' signal to netfp_proxy [pid:303], errno: "
                         "Operation not permitted\n");
         },
         "ti/netfp_proxy: missing, certain: korvel could not ask netfp_proxy for a dump: Operation not "
         "permitted\nincomplete\n"},
        {"no NetFP process runs",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.ran("korvel pkg-sup",
                         "Command: ps aux | grep -v -E \"grep|korvel\" exited with error, exit code: 1\n");
         },
         "ti/netfp_proxy: missing, certain: netfp_proxy was not running\nincomplete\n"},
        {"the run asked for this dump, and the listing lacks the process",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.kill("netfp_proxy");
             fixture.ran("korvel pkg-sup", "");
         },
         "ti/netfp_proxy: missing, certain: netfp_proxy was not running\nincomplete\n"},
        {"the run did not ask for the dump",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.ran("korvel pkg-sup dall server master resmgr slog", "");
         },
         "ti/netfp_proxy: missing, certain: the run did not ask for this part\nincomplete\n"},
        {"the run did not ask for a part that is there",
         [](PackageFixture& fixture) { fixture.ran("korvel -d iwf pkg-sup", ""); },
         "fuse/sfn/tracing_on: stale, certain: left over from an earlier run: this run did not ask for "
         "it\n"
         "fuse/sfn/dispatcherCpu: stale, certain: left over from an earlier run: this run did not ask "
         "for it\n"
         "fuse/sfn/dmaStats: stale, certain: left over from an earlier run: this run did not ask for it\n"
         "mmi/sfn/SocketSvcInfo: stale, certain: left over from an earlier run: this run did not ask for "
         "it\n"
         "mmi/sfn/SocketSvcCounters: stale, certain: left over from an earlier run: this run did not ask "
         "for it\n"
         "mmi/sfn/ReassemblyCounters: stale, certain: left over from an earlier run: this run did not "
         "ask for it\n"
         "mmi/sfn/HeapStats: stale, certain: left over from an earlier run: this run did not ask for it\n"
         "incomplete\n"},
        {"print removed the dumps",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.ran("korvel print pkg-sup", "");
         },
         "ti/netfp_proxy: missing, likely: a `print` in the same run removed this file\nincomplete\n"},
        {"the Linux logs failed",
         [](PackageFixture& fixture) {
             fixture.removeFolder("linux");
             fixture.ran("korvel pkg-sup",
                         "Command: fp_linux_log_collect /tmp/korvel 2> /dev/null exited with error, "
                         "exit code: 127\n");
         },
         "linux: missing, certain: fp_linux_log_collect failed: exit code 127\nincomplete\n"},
        {"a source beyond the limit",
         [](PackageFixture& fixture) {
             fixture.ran("korvel pkg-sup", "/tmp/fuse/iwf/dmaStats is larger than 16777216 bytes, cut\n");
             fixture.writeLarge("fuse/iwf/dmaStats", 16U << 20U);
         },
         "fuse/iwf/dmaStats: cut, certain: the source was larger than the 16 MiB that korvel takes of one "
         "source\nincomplete\n"},
        {"a sidecar that is not the package's tells nothing",
         [](PackageFixture& fixture) {
             fixture.write("mmi/sfn/HeapStats", "");
             fixture.ran("korvel pkg-sup",
                         "Error while writing /tmp/korvel/mmi/sfn/HeapStats.log: No space left on device\n");
             fixture.package.sidecarState = SidecarState::foreign;
         },
         "mmi/sfn/HeapStats: empty, likely: dispatcher sfn did not answer HeapStats\nincomplete\n"},
    });
}

TEST(Judge, WantsLinuxLogsByTheKindOfThePackage) {
    const struct {
        Kind kind;
        bool wanted;
    } cases[] = {{Kind::unknown, false}, {Kind::plain, false},     {Kind::trs, true},
                 {Kind::sup, true},      {Kind::postMortem, true}, {Kind::shutdown, true}};
    for (const auto& [kind, wanted] : cases) {
        PackageFixture fixture;
        fixture.removeFolder("linux");
        fixture.package.kind = kind;
        EXPECT_EQ(fixture.judged(),
                  wanted ? "linux: missing, likely: fp_linux_log_collect failed, or the board does not "
                           "have this command\nincomplete\n"
                         : "whole\n");
    }
}

TEST(Judge, CountsTheLinuxLogsThatAreThere) {
    judgeAll({
        {"a log of any name is cut at a page",
         [](PackageFixture& fixture) { fixture.writeLarge("linux/messages", 4096, 'x'); },
         "linux/messages: cut, likely: no room was left in /tmp\nincomplete\n"},
        {"it is no text, so its end shows nothing",
         [](PackageFixture& fixture) {
             fixture.writeLarge("linux/memory", 4096, 'x');
             fixture.part("linux/memory").invalidBytes = 2000;
         },
         "whole\n"},
    });
}

TEST(Judge, ExpectsWhatTheCoverageKeywordsNameInstead) {
    const struct {
        const char* keywords;
        std::string finds;
    } cases[] = {
        {"dinf", "whole\n"},
        {"dinf server",
         "ti/netfp_server: missing, likely: a `print` in the same run removed this file, or the run did "
         "not ask for it\nincomplete\n"},
        {"proxy master resmgr slog",
         "ti/netfp_proxy: missing, likely: a `print` in the same run removed this file, or the run did not "
         "ask for it\n"
         "ti/netfp_master: missing, likely: a `print` in the same run removed this file, or the run did not "
         "ask for it\n"
         "ti/resmgr_server: missing, likely: a `print` in the same run removed this file, or the run did not "
         "ask for "
         "it\n"
         "ti/syslib_sm_log: missing, likely: a `print` in the same run removed this file, or the run did not "
         "ask for "
         "it\nincomplete\n"},
    };
    for (const auto& [keywords, finds] : cases) {
        PackageFixture fixture;
        fixture.removeFolder("ti");
        fixture.remove("mmi/sfn/HeapStats");
        EXPECT_EQ(fixture.judged(keywords), finds) << keywords;
    }
}

TEST(Judge, TakesTheDispatchersOfAMissingCollectorFromTheOtherOrTheDeployment) {
    const auto missing = [](const std::string& dispatcher, const std::string& certainty) {
        return "mmi/" + dispatcher + "/SocketSvcInfo: missing, " + certainty +
               ": the run did not ask for this part\n";
    };
    PackageFixture fixture;
    fixture.removeFolder("mmi");
    fixture.removeFolder("fuse/iwf");
    EXPECT_EQ(fixture.judged("dinf"), missing("sfn", "likely") + "incomplete\n") << "of fuse";

    fixture.removeFolder("fuse");
    fixture.package.folders.insert("ti");
    const std::string stateFiles =
        "fuse/iwf/tracing_on: missing, unknown: the state file was not there or empty, or dispatcher iwf did "
        "not serve "
        "it\n"
        "fuse/sfn/tracing_on: missing, unknown: the state file was not there or empty, or dispatcher sfn did "
        "not serve "
        "it\n";
    EXPECT_EQ(fixture.judged("dinf"),
              stateFiles + missing("iwf", "unknown") + missing("sfn", "unknown") + "incomplete\n")
        << "unknown";
}

TEST(Judge, ExplainsACutArchive) {
    judgeAll({
        {"the archive ends between two members",
         [](PackageFixture& fixture) {
             fixture.removeFolder("ti");
             fixture.package.folders.insert("ti");
             fixture.write("ti/syslib_sm_log", "x\n");
             fixture.package.end = {Integrity::cut, "the gzip stream ends early", {}};
         },
         "ti/netfp_proxy: missing, likely: the package ends before this part\n"
         "ti/netfp_server: missing, likely: the package ends before this part\n"
         "ti/netfp_master: missing, likely: the package ends before this part\n"
         "ti/resmgr_server: missing, likely: the package ends before this part\ncut\n"},
        {"the archive ends inside its last member",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.write("ti/netfp_proxy", "<netfp_proxy_dump>\n");
             fixture.part("ti/netfp_proxy").state = State::cut;
             fixture.package.end = {Integrity::cut, "the gzip stream ends early", {}};
         },
         "ti/netfp_proxy: cut, certain: the package ends inside this part\ncut\n"},
        {"the checksum differs",
         [](PackageFixture& fixture) {
             fixture.package.end = {Integrity::altered, "the checksum differs", {}};
         },
         "altered\n"},
    });
}

TEST(Judge, NeverCallsUnreadPartsMissing) {
    judgeAll({
        {"a limit ended the reading",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.package.end = {Integrity::notRead, "limit", Limit::bytes};
             fixture.package.unread.push_back({"", Limit::bytes});
         },
         "ti/netfp_proxy: not read, certain: not read, because of the limit --max-bytes\nnot fully read\n"},
        {"one member was not read",
         [](PackageFixture& fixture) {
             fixture.part("ti/netfp_proxy").state = State::notRead;
             fixture.part("ti/netfp_proxy").end = {Integrity::notRead, "limit", Limit::name};
             fixture.age("ti/netfp_proxy", 1000);
             fixture.package.unread.push_back({"./ti/netfp_proxy.log", Limit::name});
         },
         "ti/netfp_proxy: not read, certain: not read, because of the limit --max-name\nnot fully read\n"},
        {"the name of one member was not read to its end",
         [](PackageFixture& fixture) {
             fixture.remove("ti/netfp_proxy");
             fixture.remove("ti/netfp_server");
             fixture.package.unread.push_back({"./ti/netfp_p", Limit::name});
         },
         "ti/netfp_proxy: not read, certain: not read, because of the limit --max-name\n"
         "ti/netfp_server: missing, likely: netfp_server wrote no dump within a second: it is stopped or "
         "hangs\n"
         "not fully read\n"},
        {"a line of one member was not read to its end",
         [](PackageFixture& fixture) {
             fixture.package.unread.push_back({"./ti/netfp_proxy.log", Limit::line});
         },
         "ti/netfp_proxy: not read, certain: not read, because of the limit --max-line\nnot fully read\n"},
        {"something in a nested package was not read",
         [](PackageFixture& fixture) {
             fixture.package.nested.emplace_back().unread.push_back({"./a", Limit::depth});
         },
         "not fully read\n"},
    });
}

TEST(Judge, ToldANestedPackageIsDamagedCallsTheOuterOneIncomplete) {
    PackageFixture fixture;
    fixture.write("netfp_logs_post_mortem", "x");
    Package& nested = fixture.package.nested.emplace_back();
    nested.parts.emplace_back().name = "ti/netfp_proxy";
    nested.parts.back().member = "./ti/netfp_proxy.log";
    EXPECT_EQ(fixture.judged(), "whole\n") << "its own parts do not count";

    fixture.package.nested.front().end = {Integrity::cut, "the gzip stream ends early", {}};
    fixture.part("netfp_logs_post_mortem").state = State::cut;
    EXPECT_EQ(fixture.judged(),
              "netfp_logs_post_mortem: cut, likely: the copy of the post-mortem package is incomplete: no "
              "room was left "
              "in /tmp, or the original was incomplete\nincomplete\n");
}

TEST(Judge, CallsAPackageIncompleteWithADamagedOneAtAnyDepthInside) {
    PackageFixture fixture;
    fixture.write("netfp_logs_post_mortem", "x");
    Package& inner = fixture.package.nested.emplace_back().nested.emplace_back();
    EXPECT_EQ(fixture.judged(), "whole\n");
    inner.end = {Integrity::altered, "the checksum differs", {}};
    EXPECT_EQ(fixture.judged(), "incomplete\n");
}

TEST(Judge, NamesTheEvidenceOfTheListingTheLogsAndTheRun) {
    PackageFixture fixture;
    fixture.remove("ti/netfp_proxy");
    fixture.kill("netfp_proxy");
    fixture.write(
        "fuse/HistoryLog",
        "2026-09-21T14:13:18.000000Z 0 Supervision: Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK "
        "NetfpProxy: NOT_RECEIVED\n2026-09-21T14:13:19.000000Z 3 iwf_dispatcher: busy\n");
    fixture.write("linux/system", "<11>kernel: netfp_proxy[303]: segfault at 0\n");

    EXPECT_EQ(
        evidenceOf(fixture, "ti/netfp_proxy"),
        "linux/processes: no process netfp_proxy among 7\n"
        "fuse/HistoryLog: 2026-09-21T14:13:18.000000Z 0 Supervision: Heartbeat status: IWF Dispatcher:OK SFN "
        "Dispatcher:OK NetfpProxy: NOT_RECEIVED\n"
        "linux/system: <11>kernel: netfp_proxy[303]: segfault at 0\n");
}

TEST(Judge, HasAnExitStatusForEachVerdict) {
    const struct {
        Verdict verdict;
        int status;
    } cases[] = {{Verdict::whole, 0}, {Verdict::incomplete, 1}, {Verdict::notFullyRead, 1},
                 {Verdict::cut, 2},   {Verdict::altered, 2},    {Verdict::unreadable, 3}};
    for (const auto& [verdict, status] : cases) {
        EXPECT_EQ(exitStatusOf(verdict), status);
    }
}

TEST(Expectation, OfAFolderThatIsNotThereDoesNotBlameTheProcesses) {
    PackageFixture fixture;
    fixture.removeFolder("ti");
    judge(fixture.package, parseExpectation("proxy"));
    const auto dump = std::ranges::find(fixture.package.parts, "ti/netfp_proxy", &Part::name);
    ASSERT_NE(dump, fixture.package.parts.end());
    EXPECT_EQ(dump->cause, "a `print` in the same run removed this file, or the run did not ask for it");
}

TEST(Judge, TakesAnEmptyHistoryLogForALogWithoutEntries) {
    PackageFixture fixture;
    for (const char* folder : {"mmi", "ti", "linux", "fuse/iwf", "fuse/sfn"}) {
        fixture.removeFolder(folder);
    }
    fixture.package.kind = Kind::unknown;
    fixture.write("fuse/HistoryLog", "");
    judge(fixture.package, parseExpectation("dlog"));
    EXPECT_EQ(fixture.part("fuse/HistoryLog").state, State::present);
}

TEST(Expectation, RefusesWordsThatAreNoCoverageKeywords) {
    const struct {
        const char* text;
        const char* message;
    } cases[] = {
        {"dinf pkg",
         "unknown coverage keyword 'pkg'; the keywords are dlog dinf dstat proxy server master resmgr slog "
         "dall netfp all"},
        {" ",
         "a coverage keyword is missing; the keywords are dlog dinf dstat proxy server master resmgr slog "
         "dall netfp "
         "all"},
    };
    for (const auto& [text, message] : cases) {
        try {
            parseExpectation(text);
            ADD_FAILURE() << "accepted: " << text;
        } catch (const ExpectationError& error) {
            EXPECT_STREQ(error.what(), message);
        }
    }
}

TEST(Expectation, KnowsEveryKeywordOfTheManualPage) {
    const struct {
        const char* keyword;
        std::size_t parts;  // of a package of both dispatchers
    } cases[] = {{"dlog", 1},   {"dinf", 4},   {"dstat", 10}, {"dall", 15}, {"proxy", 1}, {"server", 1},
                 {"master", 1}, {"resmgr", 1}, {"slog", 1},   {"netfp", 5}, {"all", 20}};
    for (const auto& [keyword, parts] : cases) {
        Package package;
        package.folders = {"fuse", "fuse/iwf", "fuse/sfn"};
        judge(package, parseExpectation(keyword));
        EXPECT_EQ(package.parts.size(), parts) << keyword;
    }
}

}  // namespace
}  // namespace Report::Testing
