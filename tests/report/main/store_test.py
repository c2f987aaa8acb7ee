"""korvel-report add: many packages in one SQLite file."""

import json
import os
import re
import resource
import signal
import sqlite3
import subprocess
import unittest
from collections import Counter
from pathlib import Path

from report_program import PROGRAM, Outcome, ReportTest

HINT = "Try 'korvel-report add --help'.\n"


class Add(ReportTest):
    def store(self, query: str) -> list[tuple[object, ...]]:
        connection = sqlite3.connect(self.folder / "site.db")
        self.addCleanup(connection.close)
        return connection.execute(query).fetchall()

    def packages(self, number: int) -> list[Path]:
        """Different packages: bytes behind the gzip trailer that are zeros are ignored."""
        whole = self.package("board.tgz").read_bytes()
        return [self.damaged(f"board-{index}.tgz", whole + bytes(index)) for index in range(number)]

    def contents(self) -> list[tuple[object, ...]]:
        return [row for table in ("package", "part", "series", "value", "finding")
                for row in self.store(f"SELECT * FROM {table} ORDER BY 1, 2")]

    def test_adds_each_package_once(self) -> None:
        self.package("lab-17.tgz")
        self.package("lab-18.tgz", "antenna-7.tgz")
        self.package("copy.tgz")
        self.assertEqual(self.run_report("add", "site.db", "lab-17.tgz", "lab-18.tgz"),
                         Outcome(0, "site.db: 2 packages added\n", ""))
        before = self.contents()
        self.assertEqual(self.run_report("add", "site.db", "lab-18.tgz", "copy.tgz"),
                         Outcome(0, "site.db: 0 packages added, 2 already there\n", ""))

        self.assertEqual(self.contents(), before)
        self.assertEqual(self.store("SELECT board, verdict, source FROM package"),
                         [("lab-17", "whole", "lab-17.tgz"), ("lab-18", "incomplete", "lab-18.tgz")])
        self.assertEqual(self.store("PRAGMA integrity_check"), [("ok",)])
        self.assertEqual(self.store("PRAGMA foreign_key_check"), [])

    def test_holds_what_json_prints(self) -> None:
        package = self.package("lab-17.tgz")
        self.sidecar(package, "korvel: a complaint\n")
        self.run_report("add", "site.db", "lab-17.tgz")
        told = json.loads(self.run_report("json", "lab-17.tgz").out)["packages"][0]

        self.assertEqual(self.store("SELECT sha256, board, kind, verdict, release FROM package"),
                         [(told["sha256"], "lab-17", told["kind"], told["verdict"], "1.0.0")])
        self.assertEqual(self.store("SELECT name, state FROM part ORDER BY number"),
                         [(part["name"], part["state"]) for part in told["parts"]])
        self.assertEqual(self.store("SELECT part, title, name, occurrence, value FROM value "
                                    "JOIN series ON series.id = series ORDER BY series.id"),
                         [(value["part"], value["title"] or "", value["name"], value["occurrence"], value["value"])
                          for value in told["values"]])
        self.assertEqual(self.store("SELECT rule, severity, count FROM finding ORDER BY number"),
                         [(finding["rule"], finding["severity"], finding["count"]) for finding in told["findings"]])

    def test_records_a_damaged_package_as_such(self) -> None:
        self.cut("cut.tgz")
        self.altered("altered.tgz")
        self.damaged("noise.tgz", b"no package")
        self.assertEqual(self.run_report("add", "site.db", "cut.tgz", "altered.tgz", "noise.tgz"),
                         Outcome(0, "site.db: 3 packages added (3 damaged)\n", ""))
        self.assertEqual(self.store("SELECT board, verdict FROM package"),
                         [("cut", "cut"), ("altered", "altered"), ("noise", "altered")])

    def test_replaces_a_package_that_a_limit_left_unread(self) -> None:
        self.package("lab-17.tgz")
        for _ in range(2):
            self.run_report("add", "site.db", "--max-members", "9", "lab-17.tgz")
            self.assertEqual(self.store("SELECT id, verdict FROM package"), [(1, "not fully read")])
        self.package("lab-18.tgz", "antenna-7.tgz")
        self.assertEqual(self.run_report("add", "site.db", "lab-18.tgz", "lab-17.tgz").out, "site.db: 2 packages added\n")
        self.assertEqual(self.run_report("add", "site.db", "--max-members", "9", "lab-17.tgz").out,
                         "site.db: 0 packages added, 1 already there\n")
        self.assertEqual(self.store("SELECT board, verdict FROM package ORDER BY board"),
                         [("lab-17", "whole"), ("lab-18", "incomplete")])
        self.assertEqual(self.store("PRAGMA foreign_key_check"), [])
        told = json.loads(self.run_report("json", "lab-17.tgz").out)["packages"][0]
        self.assertEqual(self.store("SELECT count(*) FROM part JOIN package ON id = package WHERE board = 'lab-17'"),
                         [(len(told["parts"]),)])

    def test_continues_after_a_package_that_cannot_be_read(self) -> None:
        self.package("lab-17.tgz")
        self.assertEqual(self.run_report("add", "site.db", "nowhere.tgz", ".", "lab-17.tgz"),
                         Outcome(3, "site.db: 1 package added\n",
                                 "korvel-report: nowhere.tgz: No such file or directory\n"
                                 "korvel-report: .: Is a directory\n"))

    def test_takes_no_sidecar_for_a_package(self) -> None:
        self.sidecar(self.package("lab-17.tgz"))
        self.assertEqual(self.run_report("add", "site.db", "lab-17.tgz", "lab-17.tgz.run"),
                         Outcome(3, "site.db: 1 package added\n",
                                 "korvel-report: lab-17.tgz.run: a sidecar, not a package\n"))

    def test_reads_a_package_from_a_pipe(self) -> None:
        package = self.package("lab-17.tgz").read_bytes()
        for message in ("1 package added", "0 packages added, 1 already there"):
            self.assertEqual(self.run_report("add", "site.db", "-", stdin=None, input=package).out,
                             f"site.db: {message}\n")
        self.assertEqual(self.store("SELECT board, source FROM package"), [(None, "-")])

    def test_adds_nothing_from_a_pipe_that_is_not_read_to_its_end(self) -> None:
        endless = subprocess.Popen("exec gzip -1 < /dev/zero", shell=True, stdout=subprocess.PIPE)
        outcome = self.run_report("add", "site.db", "--max-seconds", "0.05", "-", stdin=endless.stdout)
        endless.stdout.close()
        endless.wait()
        self.assertEqual(outcome, Outcome(3, "site.db: 0 packages added\n",
                                          "korvel-report: standard input: its checksum is not known, since it was "
                                          "not fully read\n"))
        self.assertEqual(self.store("SELECT count(*) FROM package"), [(0,)])

    def test_takes_what_is_known_of_a_package_from_the_command_line(self) -> None:
        self.package("x.tgz")
        self.run_report("add", "site.db", "--board", "lab-17", "--kind", "pkg-pm", "x.tgz")
        self.assertEqual(self.store("SELECT board, kind FROM package"), [("lab-17", "pkg-pm")])

    def test_refuses_wrong_usage(self) -> None:
        self.package("lab-17.tgz")
        self.damaged("notes.txt", b"no database, and longer than the header of one: a hundred bytes. " * 2)
        for words, message in (
                (["site.db"], f"add needs a store and a package: STORE PACKAGE...\n{HINT}"),
                (["-", "lab-17.tgz"], f"the store must be a file\n{HINT}"),
                (["", "lab-17.tgz"], f"the store must be a file\n{HINT}"),
                (["lab-17.tgz", "lab-17.tgz"], "lab-17.tgz: not a store of korvel-report\n"),
                (["--run", "x", "site.db", "lab-17.tgz", "lab-17.tgz"], f"--run needs a single package\n{HINT}"),
                (["notes.txt", "lab-17.tgz"], "notes.txt: not a store of korvel-report\n"),
                (["nowhere/site.db", "lab-17.tgz"], "nowhere/site.db: No such file or directory\n")):
            with self.subTest(words=words):
                self.assertEqual(self.run_report("add", *words), Outcome(3, "", f"korvel-report: {message}"))
        self.assertFalse((self.folder / "site.db").exists())

    def test_keeps_the_store_if_the_summary_cannot_be_written(self) -> None:
        self.package("lab-17.tgz")
        with open("/dev/full", "wb") as full:
            self.assertEqual(self.run_report("add", "site.db", "lab-17.tgz", capture_output=False, stdout=full,
                                             stderr=subprocess.PIPE).status, 3)
        self.assertEqual(self.store("SELECT count(*) FROM package"), [(1,)])

    def test_makes_a_file_whatever_the_name_is(self) -> None:
        self.package("lab-17.tgz")
        for name, shown in ((":memory:", ":memory:"), ("file:x?mode=memory", "file:x?mode=memory"),
                            ("a b\n.db", "a b\\x0a.db")):
            with self.subTest(name=name):
                self.assertEqual(self.run_report("add", name, "lab-17.tgz"),
                                 Outcome(0, f"{shown}: 1 package added\n", ""))
                self.assertGreater((self.folder / name).stat().st_size, 0)

    def test_reports_a_store_that_cannot_grow(self) -> None:
        packages = self.packages(50)
        outcome = self.run_report("add", "site.db", *packages, preexec_fn=lambda: limit_files(128 << 10))
        self.assertEqual(outcome.status, 3)
        self.assertIn("korvel-report: site.db: ", outcome.err)
        self.assertEqual(self.store("PRAGMA integrity_check"), [("ok",)])

    def test_is_completed_by_a_second_run_wherever_the_first_one_is_killed(self) -> None:
        packages = self.packages(2)
        self.run_report("add", "site.db", *packages)
        expected = self.contents()
        steps = [(call, count) for call, number in self.calls_that_write(packages).items()
                 for count in range(1, number + 1)]
        self.assertGreater(len(steps), 10)
        statuses: Counter[int] = Counter()
        for call, count in steps[::max(1, len(steps) // 40)]:
            with self.subTest(call=call, count=count):
                self.remove_store()
                status = self.strace("-o/dev/null", f"-einject={call}:signal=KILL:when={count}", *packages)
                # A slow run commits more often, so it makes calls that a fast one does not.
                self.assertIn(status, (-signal.SIGKILL, 0))
                statuses[status] += 1
                self.assertEqual(self.run_report("add", "site.db", *packages).status, 0)
                self.assertEqual(self.contents(), expected)
                self.assertEqual(self.store("PRAGMA integrity_check"), [("ok",)])
        self.assertGreater(statuses[-signal.SIGKILL], 10)

    def calls_that_write(self, packages: list[Path]) -> Counter[str]:
        """How often add calls what changes a file of the store."""
        self.remove_store()
        self.strace("-otrace", "-etrace=pwrite64,write,fdatasync,fsync,ftruncate,unlink,openat", *packages)
        calls = Counter(re.findall(r"^(\w+)\(", (self.folder / "trace").read_text(), re.M))
        self.assertIn("pwrite64", calls)
        return calls

    def strace(self, *words: str | Path) -> int:
        options = [word for word in words if str(word).startswith("-")]
        return subprocess.run(["strace", "-qq", *options, PROGRAM, "add", "site.db", *words[len(options):]],
                              cwd=self.folder, check=False, capture_output=True,
                              env=os.environ | {"ASAN_OPTIONS": "detect_leaks=0"}).returncode  # it cannot be traced, too

    def remove_store(self) -> None:
        for file in self.folder.glob("site.db*"):
            file.unlink()

    def test_lets_two_runs_add_at_once(self) -> None:
        packages = self.packages(60)
        runs = [subprocess.Popen([PROGRAM, "add", "site.db", *order], cwd=self.folder, stdout=subprocess.PIPE)
                for order in (packages, packages[::-1])]
        for process in runs:
            process.communicate(timeout=120)
        self.assertEqual([process.returncode for process in runs], [0, 0])
        self.assertEqual(self.store("SELECT count(*), count(DISTINCT sha256) FROM package"), [(60, 60)])
        self.assertEqual(self.store("PRAGMA integrity_check"), [("ok",)])


def limit_files(size: int) -> None:
    """A write beyond `size` fails, as on a full disk."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


if __name__ == "__main__":
    unittest.main(verbosity=2)
