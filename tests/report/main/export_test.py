"""korvel-report export: the tables of a store as CSV files."""

import contextlib
import csv
import os
import resource
import shutil
import signal
import sqlite3
import subprocess
import sys
import time
import unittest
from pathlib import Path

from report_program import PROGRAM, SOURCE, Outcome, ReportTest

sys.path.append(str(SOURCE / "tests/report/program"))
import odd_packages  # noqa: E402

HINT = "Try 'korvel-report export --help'.\n"
TABLES = ("package", "part", "series", "value", "finding")
FILES = sorted(f"{table}.csv" for table in TABLES)

Row = list[object]


def text_of(value: object) -> str:
    """As Python reads it from CSV: without types, and NULL as an empty text."""
    return "" if value is None else str(value)


class Export(ReportTest):
    def setUp(self) -> None:
        super().setUp()
        self.package("lab-17.tgz")
        self.add("lab-17.tgz")

    def add(self, *packages: str) -> None:
        self.assertEqual(self.run_report("add", "site.db", *packages).status, 0)

    def export(self, directory: str = "csv", store: str = "site.db", **settings: object) -> Outcome:
        return self.run_report("export", store, directory, **settings)

    def database(self, name: str = "site.db") -> sqlite3.Connection:
        connection = sqlite3.connect(self.folder / name, isolation_level=None)
        self.addCleanup(connection.close)
        return connection

    def tables(self) -> dict[str, list[Row]]:
        database = self.database()
        return {table: [list(row) for row in database.execute(f"SELECT * FROM {table} ORDER BY 1, 2")]
                for table in TABLES}

    def read(self, table: str, directory: str = "csv") -> list[Row]:
        """The rows of a file, without the names of columns."""
        with open(self.folder / directory / f"{table}.csv", newline="", encoding="utf-8") as file:
            return list(csv.reader(file, strict=True))[1:]

    def files(self, directory: str = "csv") -> list[str]:
        return sorted(path.name for path in (self.folder / directory).iterdir())

    def assert_holds_the_store(self, directory: str = "csv") -> None:
        for table, rows in self.tables().items():
            with self.subTest(table=table):
                self.assertEqual(self.read(table, directory), [[text_of(value) for value in row] for row in rows])

    def assert_exports_nothing(self, message: str, directory: str = "csv", store: str = "site.db") -> None:
        before = sorted(self.folder.rglob("*"))
        self.assertEqual(self.export(directory, store), Outcome(3, "", f"korvel-report: {message}\n"))
        self.assertEqual(sorted(self.folder.rglob("*")), before)

    def test_writes_each_table_of_the_store(self) -> None:
        self.package("lab-18.tgz", "antenna-7.tgz")
        self.cut("cut.tgz")
        self.add("lab-18.tgz", "cut.tgz")
        rows = sum(len(rows) for rows in self.tables().values())
        before = (self.folder / "site.db").read_bytes()

        self.assertEqual(self.export(), Outcome(0, f"csv: 5 tables, {rows:,} rows\n", ""))
        self.assertEqual(self.files(), FILES)
        self.assert_holds_the_store()
        self.assertEqual((self.folder / "site.db").read_bytes(), before)

    def test_writes_hostile_texts_and_numbers_as_they_are_in_the_store(self) -> None:
        self.damaged("evil\n\",.tgz", odd_packages.evil_texts())
        self.damaged("numbers.tgz", odd_packages.odd_numbers())
        self.add("evil\n\",.tgz", "numbers.tgz")
        database = self.database()
        for number, text in enumerate(("", "\r\n", "\"\"", ",", "NULL", "\0a\0", "'; --", "=1+1", "\ufeffx", "\u2028")):
            database.execute("INSERT INTO finding VALUES (1, ?, ?, 'note', NULL, ?, ?)",
                             (1000 + number, text, text, (1 << 63) - 1))
        self.assertEqual(self.export().status, 0)
        self.assert_holds_the_store()

    def test_tells_an_empty_text_from_an_unknown_value(self) -> None:
        database = self.database()
        database.execute("DELETE FROM finding")
        database.execute("INSERT INTO finding VALUES (1, 1, 'x', 'note', NULL, '', 0)")
        self.export()
        self.assertEqual((self.folder / "csv/finding.csv").read_bytes(),
                         b"package,number,rule,severity,part,meaning,count\r\n1,1,x,note,,\"\",0\r\n")

    def test_replaces_an_earlier_export_and_leaves_other_files_alone(self) -> None:
        self.export()
        self.damaged("csv/notes.txt", b"mine")
        self.package("lab-18.tgz", "antenna-7.tgz")
        self.add("lab-18.tgz")
        self.assertEqual(self.export().status, 0)
        self.assertEqual(self.files(), sorted([*FILES, "notes.txt"]))
        self.assert_holds_the_store()

    def test_writes_through_a_link_to_a_directory(self) -> None:
        (self.folder / "there").mkdir()
        (self.folder / "csv").symlink_to("there")
        self.assertEqual(self.export().status, 0)
        self.assert_holds_the_store("there")

    def test_shows_one_moment_while_another_process_adds(self) -> None:
        self.damaged("lab-18.tgz", odd_packages.odd_numbers())
        before = self.tables()
        (self.folder / "csv").mkdir()
        os.mkfifo(self.folder / "csv/series.csv")  # a run waits here for its reader
        with subprocess.Popen([PROGRAM, "export", "site.db", "csv"], cwd=self.folder, stdout=subprocess.DEVNULL) as run:
            while not list(self.folder.glob("csv/part.csv.*")):
                time.sleep(0.01)
            with subprocess.Popen([PROGRAM, "add", "site.db", "lab-18.tgz"], cwd=self.folder,
                                  stdout=subprocess.DEVNULL) as adding:
                with contextlib.suppress(subprocess.TimeoutExpired):
                    adding.wait(timeout=1)  # without a common moment, this is enough to add
                written = {"series": self.read("series")}
                self.assertEqual((run.wait(), adding.wait()), (0, 0))
        written |= {table: self.read(table) for table in TABLES if table != "series"}
        self.assertEqual(written, {table: [[text_of(value) for value in row] for row in rows]
                                   for table, rows in before.items()})
        self.assertEqual(self.database().execute("SELECT count(*) FROM package").fetchall(), [(2,)])

    def test_undoes_what_a_killed_run_left_unfinished(self) -> None:
        database = self.database()
        database.execute("PRAGMA cache_size = 1")
        database.execute("PRAGMA cache_spill = 1")
        database.execute("BEGIN IMMEDIATE")
        database.execute("UPDATE series SET name = 'unfinished'")
        for name in ("site.db", "site.db-journal"):
            shutil.copy(self.folder / name, self.folder / name.replace("site", "killed"))
        database.execute("ROLLBACK")
        self.assertTrue(b"unfinished" in (self.folder / "killed.db").read_bytes())
        self.assertEqual(self.export(store="killed.db").status, 0)
        self.assert_holds_the_store()

    def test_keeps_earlier_files_if_the_disk_is_full(self) -> None:
        self.damaged("larger.tgz", odd_packages.package(
            {"./mmi/iwf/HeapStats.log": "".join(f"value {number}  {number}\n" for number in range(5000)).encode()}))
        self.export()
        before = {name: (self.folder / "csv" / name).read_bytes() for name in FILES}
        self.add("larger.tgz")
        for directory in ("csv", "new"):
            with self.subTest(directory=directory):
                self.assertEqual(self.export(directory, preexec_fn=lambda: limit_files(64 << 10)),
                                 Outcome(3, "", f"korvel-report: {directory}/series.csv: File too large\n"))
        self.assertEqual({name: (self.folder / "csv" / name).read_bytes() for name in self.files()}, before)
        self.assertFalse((self.folder / "new").exists())

    def test_reports_a_device_that_is_full(self) -> None:
        (self.folder / "csv").mkdir()
        (self.folder / "csv/value.csv").symlink_to("/dev/full")
        self.assert_exports_nothing("csv/value.csv: No space left on device")

    def test_refuses_a_directory_that_it_cannot_use(self) -> None:
        self.damaged("file", b"")
        (self.folder / "loose").symlink_to("nowhere")
        (self.folder / "taken/part.csv").mkdir(parents=True)
        shutil.copy(self.folder / "site.db", self.folder / "taken/value.csv")
        for directory, message in (
                ("file", "file: Not a directory"),
                ("file/csv", "file/csv: Not a directory"),
                ("loose", "loose: No such file or directory"),
                ("nowhere/csv", "nowhere/csv: No such file or directory"),
                ("", "'': No such file or directory"),
                ("taken", "taken/part.csv: Is a directory"),
                ("/proc", "/proc/package.csv: No such file or directory"),
                ("/proc/new", "/proc/new: No such file or directory")):
            with self.subTest(directory=directory):
                self.assert_exports_nothing(message, directory)

    @unittest.skipIf(os.geteuid() == 0, "root may write everywhere")
    def test_refuses_a_directory_without_permission(self) -> None:
        (self.folder / "csv").mkdir(mode=0o555)
        self.assert_exports_nothing("csv/package.csv: Permission denied")

    def test_never_replaces_the_store(self) -> None:
        (self.folder / "csv").mkdir()
        store = Path(shutil.copy(self.folder / "site.db", self.folder / "csv/value.csv"))
        before = store.read_bytes()
        self.assert_exports_nothing("csv/value.csv: this file is the store", store="csv/value.csv")
        (self.folder / "link.db").symlink_to(store)
        self.assert_exports_nothing("csv/value.csv: this file is the store", store="link.db")
        self.assertEqual(store.read_bytes(), before)

    def test_refuses_what_is_no_store(self) -> None:
        self.damaged("notes.txt", b"no database, and longer than the header of one: a hundred bytes. " * 2)
        self.damaged("empty.db", b"")
        whole = (self.folder / "site.db").read_bytes()
        self.damaged("cut.db", whole[:len(whole) // 2])
        self.damaged("newer.db", whole)
        self.database("newer.db").execute("PRAGMA user_version = 1000")
        for store, message in (
                ("nowhere.db", "nowhere.db: No such file or directory"),
                (".", ".: Is a directory"),
                ("notes.txt", "notes.txt: not a store of korvel-report"),
                ("lab-17.tgz", "lab-17.tgz: not a store of korvel-report"),
                ("empty.db", "empty.db: not a store of korvel-report"),
                ("cut.db", "cut.db: database disk image is malformed"),
                ("newer.db", "newer.db: version 1000 of the store is not known here; a newer korvel-report made it")):
            with self.subTest(store=store):
                self.assert_exports_nothing(message, store=store)

    def test_refuses_wrong_usage(self) -> None:
        for words, message in (
                ([], "export needs a store and a directory: STORE DIR"),
                (["site.db"], "export needs a store and a directory: STORE DIR"),
                (["-", "csv"], "the store must be a file"),
                (["", "csv"], "the store must be a file"),
                (["site.db", "-"], "the tables are several files, which need a directory"),
                (["site.db", "csv", "more"], "unexpected argument: more"),
                (["site.db", "csv", "-o", "x"], "export has no option -o"),
                (["site.db", "csv", "--max-bytes", "1M"], "export has no option --max-bytes")):
            with self.subTest(words=words):
                self.assertEqual(self.run_report("export", *words), Outcome(3, "", f"korvel-report: {message}\n{HINT}"))
        self.assertFalse((self.folder / "csv").exists())

    def test_keeps_the_files_if_the_summary_cannot_be_written(self) -> None:
        with open("/dev/full", "wb") as full:
            self.assertEqual(self.export(capture_output=False, stdout=full, stderr=subprocess.PIPE),
                             Outcome(3, "", "korvel-report: standard output: No space left on device\n"))
        self.assert_holds_the_store()


def limit_files(size: int) -> None:
    """A write beyond `size` fails, as on a full disk."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


if __name__ == "__main__":
    unittest.main(verbosity=2)
