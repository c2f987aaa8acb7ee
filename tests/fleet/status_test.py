"""korvel-fleet status: what a folder holds, as a table and as metrics."""

import json
import os
import re
import subprocess
import unittest
from datetime import datetime, timedelta, timezone
from pathlib import Path

import fleet


class Status(fleet.FolderCase):
    def setUp(self) -> None:
        super().setUp()
        ssh = fleet.write_stand_in(self.folder / "ssh", {
            "board[23]": "echo 'root@board: Permission denied (publickey).' >&2; exit 255",
            "board4": "on_board --fault sfn_dispatcher=silent"})
        fleet.run("collect", "-w", "board[1-4]", "-o", self.packages, "--ssh", ssh)

    def make_older(self, **age: float) -> None:
        path = self.packages / "summary.json"
        document = json.loads(path.read_text(encoding="utf-8"))
        for board in document["boards"]:
            board["ended"] = (datetime.now(timezone.utc) - timedelta(**age)).isoformat()
        path.write_text(json.dumps(document), encoding="utf-8")

    def test_shows_boards_with_their_findings_and_causes(self) -> None:
        self.make_older(hours=3)
        outcome = fleet.run("status", self.packages)
        out = re.sub(r" +\d+ +\d+ +\d+  board", " N N N  board", outcome.out)
        self.assertEqual((outcome.status, out, outcome.err), (1, f"""\
Board   State       Age  Errors  Warnings  Notes  Package
board1  whole       3 h N N N  board1.tgz
board2  failed      3 h       -         -      -  -
board3  failed      3 h       -         -      -  -
board4  incomplete  3 h N N N  board4.tgz.incomplete

board[2-3]: permission denied
board4: package incomplete: mmi/sfn/HeapStats empty: dispatcher sfn did not answer HeapStats
1 of 4 boards have a whole package in {self.packages}
""", ""))

    def test_names_packages_that_disappeared(self) -> None:
        (self.packages / "board1.tgz").unlink()
        self.assertIn("\nboard1: the package is no longer there\n", fleet.run("status", self.packages).out)

    def test_does_not_wait_for_a_pipe_in_the_place_of_a_package(self) -> None:
        (self.packages / "board1.tgz").unlink()
        os.mkfifo(self.packages / "board1.tgz")
        self.assertEqual(fleet.run("status", self.packages).status, 1)

    def test_names_packages_that_were_changed(self) -> None:
        with (self.packages / "board1.tgz").open("ab") as package:
            package.write(b"more")
        outcome = fleet.run("status", self.packages)
        self.assertEqual(outcome.status, 1)
        self.assertIn("\nboard1: the package was changed after it was collected\n", outcome.out)
        metrics = self.folder / "fleet.prom"
        fleet.run("status", "--metrics", metrics, self.packages)
        self.assertIn('korvel_fleet_collected{board="board1"} 0\n', metrics.read_text(encoding="utf-8"))

    def test_reports_output_that_cannot_be_written(self) -> None:
        with open("/dev/full", "wb") as full:
            outcome = subprocess.run([fleet.PROGRAM, "status", self.packages], stdout=full, stderr=subprocess.PIPE, text=True)
        self.assertEqual((outcome.returncode, outcome.stderr),
                         (3, "korvel-fleet: cannot write the result: No space left on device\n"))

    def test_writes_metrics_that_prometheus_accepts(self) -> None:
        metrics = self.folder / "fleet.prom"
        self.assertEqual(fleet.run("status", "--metrics", metrics, self.packages), (0, "", ""))
        text = metrics.read_text(encoding="utf-8")
        checked = subprocess.run(["promtool", "check", "metrics"], input=text, capture_output=True, text=True)
        self.assertEqual((checked.returncode, checked.stdout, checked.stderr), (0, "", ""))
        for line in ('korvel_fleet_collected{board="board1"} 1', 'korvel_fleet_collected{board="board2"} 0',
                     'korvel_fleet_findings_error{board="board1"} 0',
                     'korvel_package_verdict{board="board1",verdict="whole"} 1'):
            self.assertIn(f"\n{line}\n", text)
        self.assertNotIn('korvel_fleet_findings_error{board="board2"}', text)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["fleet.prom", "packages", "ssh"])

    def test_keeps_the_old_metrics_if_it_cannot_write_new_ones(self) -> None:
        metrics = self.folder / "missing/fleet.prom"
        self.assertEqual(fleet.run("status", "--metrics", metrics, self.packages),
                         (3, "", f"korvel-fleet: cannot write {metrics}: No such file or directory\n"))

    def test_leaves_no_half_of_the_metrics_without_korvel_report(self) -> None:
        program = self.program_with("")
        (self.folder / "bin/korvel-report").unlink()
        done = subprocess.run([program, "status", "--metrics", self.folder / "fleet.prom", self.packages],
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, env={"PATH": "/nowhere"})
        self.assertEqual((done.returncode, done.stdout), (3, ""))
        self.assertIn("korvel-report is not installed", done.stderr)
        self.assertEqual(list(self.folder.glob("*fleet.prom*")) + list(self.folder.glob(".*")), [])

    def test_writes_metrics_of_more_packages_than_a_command_line_can_name(self) -> None:
        boards = self.multiply(1500)
        metrics = self.folder / "fleet.prom"
        done = subprocess.run(["sh", "-c", 'ulimit -s 512; exec "$@"', "-", fleet.PROGRAM, "status", "--metrics", metrics,
                               self.packages], stdin=subprocess.DEVNULL, capture_output=True, text=True)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
        text = metrics.read_text(encoding="utf-8")
        checked = subprocess.run(["promtool", "check", "metrics"], input=text, capture_output=True, text=True)
        self.assertEqual((checked.returncode, checked.stdout, checked.stderr), (0, "", ""))
        self.assertEqual(text.count("# HELP korvel_package_verdict "), 1)
        for board in boards:
            self.assertIn(f'\nkorvel_package_verdict{{board="{board}",verdict="whole"}} 1\n', text)

    def multiply(self, number: int) -> list[str]:
        """Makes many boards of the first one."""
        path = self.packages / "summary.json"
        document = json.loads(path.read_text(encoding="utf-8"))
        first = document["boards"][0]
        run_file = (self.packages / "board1.tgz.run").read_text(encoding="utf-8")
        (self.packages / "board1.tgz.run").unlink()
        self.original = (self.packages / "board1.tgz").rename(self.folder / "original.tgz")
        boards = [f"{'long' * 20}-{index}" for index in range(number)]
        for board in boards:
            (self.packages / f"{board}.tgz").hardlink_to(self.original)
            (self.packages / f"{board}.tgz.run").write_text(run_file.replace("board: board1\n", f"board: {board}\n"),
                                                            encoding="utf-8")
        document["boards"] = [{**first, "board": board, "file": f"{board}.tgz"} for board in boards]
        path.write_text(json.dumps(document), encoding="utf-8")
        return boards

    def test_names_a_package_that_korvel_report_cannot_read_and_keeps_the_metrics_of_the_others(self) -> None:
        boards = self.multiply(3)
        bad = self.packages / f"{boards[1]}.tgz"
        metrics = self.folder / "fleet.prom"
        for failure, message in (("rm -f $bad", "No such file or directory"),
                                 ("case \"$*\" in *$bad*) kill -SEGV $$ ;; esac", "ended with status -11")):
            with self.subTest(failure):
                program = self.program_with(f"bad={bad}; {failure}")
                done = subprocess.run([program, "status", "--metrics", metrics, self.packages], stdin=subprocess.DEVNULL,
                                      capture_output=True, text=True)
                self.assertEqual((done.returncode, done.stdout, done.stderr),
                                 (1, "", f"korvel-report: {bad}: {message}\n"))
                text = metrics.read_text(encoding="utf-8")
                self.assertEqual([f'korvel_package_age_seconds{{board="{board}"}}' in text for board in boards],
                                 [True, False, True])
                if not bad.exists():
                    bad.hardlink_to(self.original)

    def program_with(self, commands: str) -> Path:
        """korvel-fleet beside a korvel-report that does something first."""
        for name in ("bin", "share"):
            (self.folder / name).mkdir(exist_ok=True)
        (self.folder / "share/korvel-fleet").unlink(missing_ok=True)
        (self.folder / "share/korvel-fleet").symlink_to(fleet.BUILD / "share/korvel-fleet")
        fleet.write_program(self.folder / "bin/korvel-report",
                            f"#!/bin/sh\n{commands}\nexec {fleet.BUILD}/korvel-report \"$@\"\n")
        return fleet.write_program(self.folder / "bin/korvel-fleet", fleet.PROGRAM.read_text(encoding="utf-8"))

    def test_goes_on_with_korvel_report(self) -> None:
        store = self.folder / "store"
        done = subprocess.run([fleet.BUILD / "korvel-report", "add", store, self.packages / "board1.tgz"])
        self.assertEqual(done.returncode, 0)


if __name__ == "__main__":
    unittest.main()
