"""korvel-fleet status: what a folder holds, as a table and as metrics."""

import json
import re
import subprocess
import unittest
from datetime import datetime, timedelta, timezone

import fleet


class Status(fleet.FolderCase):
    def setUp(self) -> None:
        super().setUp()
        ssh = fleet.write_stand_in(self.folder / "ssh", {
            "board[23]": "echo 'root@board: Permission denied (publickey).' >&2; exit 255", "board4": "on_board --fault sfn_dispatcher=silent"})
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

    def test_goes_on_with_korvel_report(self) -> None:
        store = self.folder / "store"
        done = subprocess.run([fleet.BUILD / "korvel-report", "add", store, self.packages / "board1.tgz"])
        self.assertEqual(done.returncode, 0)


if __name__ == "__main__":
    unittest.main()
