"""The queries of docs/packages-at-scale.md: what they find, and that DuckDB gives the same answers as SQLite.

    queries_test.py [--large]

--large: 10,000 packages instead of 200. Without DuckDB, the tests that compare are skipped; see duckdb_program.py.
"""

import contextlib
import hashlib
import io
import math
import sqlite3
import subprocess
import sys
import tarfile
import tempfile
import unittest
from collections.abc import Iterator
from itertools import chain
from pathlib import Path

from report_program import PACKAGES, PROGRAM, SOURCE

for folder in ("bench", "program", "support"):
    sys.path.append(str(SOURCE / "tests/report" / folder))
import duckdb_program  # noqa: E402
import many_packages  # noqa: E402
import odd_packages  # noqa: E402
from many_packages import BEGIN, Outlier  # noqa: E402
from scale_page import LOAD_CSV, QUERIES, READ_PARQUET, WRITE_PARQUET, WRITE_VALUES  # noqa: E402

Row = tuple[object, ...]

LARGE = "--large" in sys.argv
BOARDS = 2000 if LARGE else 40
DAY = 86_400
TABLES = ("package", "part", "series", "value", "finding")
CUT = "packing was interrupted, no room was left below /ffs/run/logs, or the transfer ended early"
ALTERED = "changed or mixed up after it was made"
OUTLIERS = (Outlier("board-0007", "fuse/sfn/dmaStats", "transfers failed", 400),
            Outlier("board-0012", "mmi/iwf/HeapStats", "bytes in use", 30_000_000),
            Outlier("board-0003", "mmi/iwf/HeapStats", "bytes free", -3_000_000))


def dated(package: bytes, time: int) -> bytes:
    """A package whose members all have the same time."""
    packed = io.BytesIO()
    with tarfile.open(fileobj=io.BytesIO(package)) as old, tarfile.open(fileobj=packed, mode="w:gz") as new:
        for member in old.getmembers():
            member.mtime = time
            new.addfile(member, old.extractfile(member) if member.isfile() else None)
    return packed.getvalue()


def troubled_packages() -> dict[str, bytes]:
    whole = (PACKAGES / "netfp_logs_sup.tgz").read_bytes()
    incomplete = (PACKAGES / "antenna-7.tgz").read_bytes()
    return {"antenna-7": dated(incomplete, BEGIN), "evil\n\",": dated(odd_packages.evil_texts(), BEGIN),
            "numbers": dated(odd_packages.odd_numbers(), BEGIN), "silent": dated(whole, BEGIN - 2 * DAY),
            "clockless": dated(whole, 1000), "cut": dated(whole, BEGIN)[:len(whole) // 2], "noise": b"no package"}


def packages_of(folder: Path) -> Iterator[Path]:
    """Many boards, and some with a trouble each."""
    for path in many_packages.write(PACKAGES / "netfp_logs_sup.tgz", folder / "many", BOARDS, 5, OUTLIERS):
        release = "1.1.0" if path.stem < "board-0010" else "1.0.0"
        checksum = hashlib.sha256(path.read_bytes()).hexdigest()
        Path(f"{path}.run").write_text(f"format: 1\nkorvel: {release}\nsha256: {checksum}\n\n")
        yield path
    for name, contents in troubled_packages().items():
        path = folder / f"{name}.tgz"
        path.write_bytes(contents)
        yield path


def close(one: object, other: object) -> bool:
    """Whether two values are equal. Sums of decimal numbers depend a little on their order."""
    if isinstance(one, float) and isinstance(other, (int, float)):
        return math.isclose(one, other, rel_tol=1e-9)
    return one == other


def same_field(stored: object, told: object) -> bool:
    """Whether a field of DuckDB is that of the store. Values are texts there."""
    if isinstance(stored, float):
        return float(told) == stored
    return told == (str(stored) if isinstance(told, str) else stored)


class Queries(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        folder = tempfile.TemporaryDirectory(prefix="korvel-queries-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        packages = [path.relative_to(cls.folder) for path in packages_of(cls.folder)]
        for words in (["add", "site.db", *packages], ["export", "site.db", "csv"]):
            subprocess.run([PROGRAM, *words], cwd=cls.folder, check=True, stdout=subprocess.DEVNULL)
        with contextlib.closing(sqlite3.connect(cls.folder / "site.db")) as store:
            cls.answers = {title: store.execute(query).fetchall() for title, query in QUERIES.items()}

    def answer(self, beginning: str) -> list[Row]:
        found = [rows for title, rows in self.answers.items() if title.startswith(beginning)]
        self.assertEqual(len(found), 1, beginning)
        return found[0]

    def test_find_each_board_in_trouble(self) -> None:
        self.assertEqual(self.answer("Which boards are not whole"), 
                         [("antenna-7", BEGIN, "incomplete", None), ("cut", BEGIN, "cut", CUT),
                          ("evil\n\",", BEGIN, "incomplete", None), ("noise", None, "altered", ALTERED),
                          ("numbers", BEGIN, "incomplete", None)])
        self.assertEqual(self.answer("Which packages were damaged"),
                         [("cut", "cut.tgz", "cut", CUT), ("noise", "noise.tgz", "altered", ALTERED)])
        self.assertEqual(self.answer("Which boards have no clock"), [("clockless", 1)])

        self.assertEqual(self.answer("Which boards sent nothing for a day"), [("silent", BEGIN - 2 * DAY, 1)])

    def test_tell_apart_what_is_known_of_boards(self) -> None:
        self.assertEqual(self.answer("Which releases are in the field"),
                         [("1.0.0", BOARDS - 10), ("1.1.0", 10), (None, 6)])

    def test_find_the_boards_whose_values_stand_out(self) -> None:
        for beginning, board in (("How did a value grow per hour", "board-0007"),
                                 ("On which boards does a value", "board-0012"),
                                 ("What will be used up first", "board-0003")):
            with self.subTest(beginning=beginning):
                self.assertEqual(self.answer(beginning)[0][0], board)

    def test_have_answers(self) -> None:
        for title, rows in self.answers.items():
            with self.subTest(title=title):
                self.assertNotEqual(rows, [])

    def assert_the_same_answers(self, load: list[str]) -> None:
        told = duckdb_program.run([*load, *QUERIES.values()], self.folder)[len(load):]
        for (title, rows), answer in zip(self.answers.items(), told, strict=True):
            with self.subTest(title=title):
                same = len(rows) == len(answer.rows) and all(map(close, chain(*rows), chain(*answer.rows)))
                self.assertTrue(same, f"SQLite: {rows[:20]}\nDuckDB: {answer.rows[:20]}")

    @unittest.skipIf(LARGE, "the rows are too many to compare one by one")
    @unittest.skipUnless(duckdb_program.INSTALLED, duckdb_program.WHY_NOT)
    def test_have_the_same_rows_in_duckdb(self) -> None:
        queries = [f"SELECT * FROM {table} ORDER BY 1, 2" for table in TABLES]
        told = duckdb_program.run([*LOAD_CSV, *queries], self.folder)[-len(queries):]
        with contextlib.closing(sqlite3.connect(self.folder / "site.db")) as store:
            for query, answer in zip(queries, told, strict=True):
                with self.subTest(query=query):
                    rows = store.execute(query).fetchall()
                    self.assertEqual(len(answer.rows), len(rows))
                    self.assertTrue(all(map(same_field, chain(*rows), chain(*answer.rows))))

    @unittest.skipUnless(duckdb_program.INSTALLED, duckdb_program.WHY_NOT)
    def test_have_the_same_answers_in_duckdb(self) -> None:
        self.assert_the_same_answers(LOAD_CSV)

    @unittest.skipUnless(duckdb_program.INSTALLED, duckdb_program.WHY_NOT)
    def test_have_the_same_answers_from_parquet_files(self) -> None:
        duckdb_program.run([*LOAD_CSV, *WRITE_PARQUET], self.folder)
        self.assert_the_same_answers(READ_PARQUET)

    @unittest.skipUnless(duckdb_program.INSTALLED, duckdb_program.WHY_NOT)
    def test_find_all_values_in_one_parquet_file(self) -> None:
        question = """SELECT board, part, title, name, occurrence, count(*), min(time), max(time), count(DISTINCT value)
                      FROM {0} GROUP BY 1, 2, 3, 4, 5 ORDER BY 1, 2, 3, 4, 5"""
        joined = """(SELECT series.board, package.time, part, title, name, occurrence, value FROM value
                     JOIN series ON series.id = value.series JOIN package ON package.id = value.package) AS joined"""
        *_, told = duckdb_program.run([*LOAD_CSV, *WRITE_VALUES, question.format("'values-*.parquet'")], self.folder)
        with contextlib.closing(sqlite3.connect(self.folder / "site.db")) as store:
            self.assertTrue(told.rows == store.execute(question.format(joined)).fetchall())


if __name__ == "__main__":
    unittest.main(argv=[word for word in sys.argv if word != "--large"], verbosity=2)
