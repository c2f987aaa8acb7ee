#pragma once

#include <cstdint>

#include "HandMadePackage.hpp"

namespace Report::Test {

/// Two packages with every kind of difference.
struct DifferentPair {
    HandMadePackage before{"netfp_logs_sup.tgz.previous"};
    HandMadePackage after{"netfp_logs_sup.tgz"};

    DifferentPair() {
        before.board = after.board = "board-7";
        before.time = at(6, 3, 0);
        after.time = at(6, 3, 10);
        after.verdict = Verdict::incomplete;
        addParts();
        addLogs();
    }

    void addParts() {
        before.addPart("mmi/iwf/HeapStats",
                       "iwf: heap\nin use  1009\nfree  18446744073709551615\nold: 0.25\n");
        before.addValue("iwf: heap", "in use", std::int64_t{1009}, "1009");
        before.addValue("iwf: heap", "free", std::uint64_t{18446744073709551615U}, "18446744073709551615");
        before.addValue("iwf: heap", "old", 0.25, "0.25");
        after.addPart("mmi/iwf/HeapStats", "iwf: heap\nin use  1024\nfree  5\nnew: 1\n");
        after.addValue("iwf: heap", "in use", std::int64_t{1024}, "1024");
        after.addValue("iwf: heap", "free", std::int64_t{5}, "5");
        after.addValue("iwf: heap", "new", std::int64_t{1}, "1", 2);
        before.addPart("ti/netfp_proxy", "a\n");
        after.addMissing("ti/netfp_proxy").cause = "the process was not running";
        after.addPart("ti/resmgr_server", "b\n");
        before.addPart("linux/processes", "sh\nps\nls\nls -l\nls -a\n");
        Part& processes = after.addPart("linux/processes", "sh\n\x1b[31mevil\n");
        processes.state = State::stale;
        processes.cause = "left over from an earlier run";
    }

    void addLogs() {
        before.addLog("fuse/HistoryLog",
                      "2026-11-22T06:02:00.000001Z 3 iwf: started\n"
                      "2026-11-22T06:02:01.000000Z 3 iwf: runs\n");
        after.addLog("fuse/HistoryLog",
                     "2026-11-22T06:02:01.000000Z 3 iwf: runs\n"
                     "2026-11-22T06:03:01.000000Z 0 iwf: broke\nhere\n");
        before.addLog("archive/dispatcher/runtime", "2026-11-22T06:02:01.000000Z 3 iwf: runs\n");
        after.addLog("archive/dispatcher/runtime", "2026-11-22T06:03:01.000000Z 1 iwf: limps\n");
    }
};

}  // namespace Report::Test
