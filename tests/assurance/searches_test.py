"""The searches for faults that nobody notices find what they are for. They take hours: scripts/prove.sh runs them."""

import unittest
from typing import Any

import allocations
import judgement
import kills
import search
import system_calls
from judgement import judge
from scenarios import Scenario

USUAL = {"status": 0, "stopped": False, "hung": False, "out": "digest", "err": "", "log": "", "files": {"/ffs/a.tgz!fuse": "digest"}, "damaged": [],
         "left": []}


def outcome(call: str = "read", **changes: Any) -> str:
    return judge(call, USUAL | changes, USUAL)


class Judgement(unittest.TestCase):
    def test_accepts_a_run_that_did_the_same(self) -> None:
        self.assertEqual(outcome(), judgement.SAME)

    def test_accepts_a_run_that_says_what_failed(self) -> None:
        for changes in {"err": "Error\n"}, {"status": 1}, {"log": "Archive: Error while opening x"}:
            self.assertEqual(outcome(out="other", **changes), judgement.REPORTED)

    def test_accepts_the_end_by_an_assertion_with_a_message(self) -> None:
        self.assertEqual(outcome(status=-6, err='ArchiveMgr: Assertion "a" failed.\n'), judgement.REPORTED)

    def test_names_a_file_that_differs_without_a_word(self) -> None:
        self.assertEqual(outcome(files={}), "SILENT: /ffs/a.tgz!fuse")

    def test_names_a_damaged_file(self) -> None:
        self.assertEqual(outcome(damaged=["/ffs/a.tgz: cut"]), "DAMAGED: /ffs/a.tgz: cut")
        self.assertEqual(outcome(damaged=["/ffs/a.tgz: cut"], err="Error\n"), "REPORTED, BUT DAMAGED")

    def test_names_a_crash_and_a_run_that_does_not_end(self) -> None:
        self.assertEqual(outcome(status=-11), "CRASHED: status -11")
        self.assertEqual(outcome(err="terminate called after throwing"), "CRASHED: status 0")
        self.assertEqual(outcome(hung=True), "HUNG")

    def test_takes_no_run_that_was_stopped_for_a_crash(self) -> None:
        self.assertEqual(outcome(status=-15, stopped=True, err="Error\n"), judgement.REPORTED)
        self.assertEqual(outcome(status=-15, stopped=True), "SILENT: it does not end")

    def test_names_a_process_that_stays(self) -> None:
        self.assertEqual(outcome(left=["korvel pkg"]), "LEFT PROCESSES: ['korvel pkg']")


class JudgementOfKills(unittest.TestCase):
    def outcome(self, killed: dict[str, Any], again: dict[str, Any], words: str = "archive") -> str:
        runs = [USUAL | {"lost": []} | killed, USUAL | {"lost": []} | again]
        return kills.judge(Scenario(words), kills.Kill("KILL", "read", 1), runs, USUAL)

    def test_accepts_a_run_after_a_killed_one_that_is_as_usual(self) -> None:
        self.assertEqual(self.outcome({"status": -9, "files": {}, "damaged": ["/ffs/a.tgz: cut"]}, {}), judgement.SAME)

    def test_names_what_the_next_run_does_otherwise(self) -> None:
        self.assertEqual(self.outcome({}, {"err": "Error"}), "THE NEXT RUN DIFFERS: Error")
        self.assertEqual(self.outcome({}, {"files": {}}), "THE NEXT RUN MISSES: /ffs/a.tgz!fuse")
        self.assertEqual(self.outcome({}, {"err": "Error"}, "portswap eth0 eth1"), judgement.SAME)

    def test_names_lost_pieces_and_processes_that_stay(self) -> None:
        self.assertEqual(self.outcome({"lost": ["/tmp/middle#.log.gz"]}, {}), "LOST: /tmp/middle#.log.gz")
        self.assertEqual(self.outcome({"left": ["tar"]}, {}), "LEFT PROCESSES: ['tar']")


class OnABoard(unittest.TestCase):
    scenario = Scenario("getport eth1")

    def test_a_call_fails_and_the_next_run_finds_the_board_as_it_was(self) -> None:
        usual, calls = search.on_board(self.scenario, [])
        fault = system_calls.FailingCall("sendto", 1, "EIO", lasting=False)
        self.assertIn(fault, list(system_calls.faults_of(self.scenario, calls)))
        failed, undisturbed = search.on_board(self.scenario, [fault.options(), []])
        self.assertEqual((judge("sendto", failed, usual), failed["injected"]), (judgement.REPORTED, 1))
        self.assertIn("Input/output error", failed["err"])
        self.assertEqual((judge("", undisturbed, usual), undisturbed["injected"]), (judgement.SAME, 0))

    def test_an_allocation_fails_and_korvel_says_so(self) -> None:
        usual, calls = search.on_board(self.scenario, [])
        fault = [fault for fault in allocations.faults_of(self.scenario, calls) if not fault.lasting][-1]
        [failed] = search.on_board(self.scenario, [fault.options()])
        self.assertEqual((allocations.judge(self.scenario, fault, [failed], usual), failed["injected"]), (judgement.REPORTED, 1))
        self.assertIn("Error: std::bad_alloc\n", failed["err"])


if __name__ == "__main__":
    unittest.main()
