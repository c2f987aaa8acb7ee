"""korvel-report trend: values over time, and which boards stand out."""

import gzip
import hashlib
import html
import io
import json
import re
import sqlite3
import tarfile
import unittest
from pathlib import Path

from report_program import Outcome, ReportTest

HINT = "Try 'korvel-report trend --help'.\n"
ROUTES = "routes learnt"
DROPS = "packets dropped"


TIMES = [1_794_960_000 + hour * 3600 for hour in range(4)]  # 2026-11-18


def plots_of(page: str) -> list[dict[str, object]]:
    return json.loads(re.search(r'id="trend-data">(.*?)</script>', page, re.S)[1])


class Trend(ReportTest):
    def setUp(self) -> None:
        super().setUp()
        self.packages: list[str] = []

    def package_of(self, board: str, hour: int, values: dict[str, object], date: str = "2026-11-18") -> None:
        """A package that a board made at an hour, with values in one part."""
        text = "".join(f"{name}  {value}\n" for name, value in values.items()).encode()
        packed = io.BytesIO()
        with tarfile.open(fileobj=packed, mode="w") as archive:
            member = tarfile.TarInfo("ti/netfp_proxy.log")
            member.size = len(text)
            member.uid = len(self.packages)  # no two packages are equal
            archive.addfile(member, io.BytesIO(text))
        name = f"{len(self.packages)}.tgz"
        package = self.damaged(name, gzip.compress(packed.getvalue()))
        lines = ["format: 1", f"board: {board}", f"ended: {date}T{hour:02}:00:00Z",
                 f"sha256: {hashlib.sha256(package.read_bytes()).hexdigest()}"]
        Path(f"{package}.run").write_text("\n".join(lines) + "\n\n")
        self.packages.append(name)

    def packages_of_six_boards(self) -> None:
        """Four hours: lab-3 learns routes faster, lab-5 drops packets."""
        for board in range(1, 7):
            for hour in range(4):
                faster = 7 if board == 3 else 1
                self.package_of(f"lab-{board}", hour, {ROUTES: 100 + board + hour * (10 + board % 2) * faster,
                                                       DROPS: 40 * hour if board == 5 else 0, "blocks": 8})

    def trend(self, *words: str) -> Outcome:
        if not (self.folder / "site.db").exists():
            self.assertEqual(self.run_report("add", "site.db", *self.packages).status, 0)
        return self.run_report("trend", "site.db", *words)

    def test_names_the_boards_that_stand_out(self) -> None:
        self.packages_of_six_boards()
        self.assertEqual(self.trend(), Outcome(0, (
            "site.db: 24 packages of 6 boards\n"
            "  Time      2026-11-18 00:00:00 UTC to 2026-11-18 03:00:00 UTC\n"
            "  Verdicts  24 incomplete\n"
            "\n"
            "2 values stand out, on 2 boards.\n"
            "\n"
            "    board  score  now  usual  per hour  usual  course\n"
            "  ti/netfp_proxy: routes learnt\n"
            "    lab-3   89.7  334    135       +77  +10.5    ▁▃▆█\n"
            "  ti/netfp_proxy: packets dropped\n"
            "    lab-5    9.6  120      0       +40     +0    ▁▃▆█\n"), ""))

    def test_shows_the_values_of_one_board_that_changed(self) -> None:
        self.packages_of_six_boards()
        self.assertEqual(self.trend("--board", "lab-5"), Outcome(0, (
            "site.db: 4 packages of lab-5\n"
            "  Time      2026-11-18 00:00:00 UTC to 2026-11-18 03:00:00 UTC\n"
            "  Verdicts  4 incomplete\n"
            "\n"
            "2 values changed, 1 did not.\n"
            "\n"
            "    value            first  now  per hour  course\n"
            "  ti/netfp_proxy\n"
            "    packets dropped      0  120       +40    ▁▃▆█\n"
            "    routes learnt      105  138       +11    ▁▃▆█\n"), ""))

    def test_a_restart_is_no_growth(self) -> None:
        for hour, number in enumerate((100, 200, 300, 5, 105)):
            self.package_of("lab-1", hour, {ROUTES: number})
        self.assertIn("  +100  ", self.trend("--board", "lab-1").out)

    def test_a_value_that_one_board_alone_has_does_not_stand_out(self) -> None:
        self.packages_of_six_boards()
        self.package_of("lab-1", 5, {"its own": 1_000_000})
        self.assertNotIn("its own", self.trend().out)

    def test_a_few_boards_do_not_tell_what_is_usual(self) -> None:
        self.package_of("lab-1", 0, {ROUTES: 1})
        self.package_of("lab-2", 0, {ROUTES: 1_000_000})
        self.assertTrue(self.trend().out.endswith(
            "What is usual is not known: a comparison needs 5 boards. See each board with\n--board.\n"))

    def test_leaves_packages_without_a_place_in_time_out(self) -> None:
        self.package_of("lab-1", 0, {ROUTES: 1})
        self.package_of("lab-1", 1, {ROUTES: 2})
        self.package_of("lab-1", 2, {ROUTES: 3_000_000}, date="1970-01-01")
        out = self.trend("--board", "lab-1").out
        self.assertIn("2 packages of lab-1", out)
        self.assertIn("1 further package has no place in time: its board or time is not known, or the\nclock was not set.\n", out)
        self.assertNotIn("3000000", out)

    def test_considers_the_packages_of_a_time(self) -> None:
        self.packages_of_six_boards()
        heads = {
            ("--since", "2026-11-18 01:00"): "18 packages of 6 boards",
            ("--until", "2026-11-18 01:00"): "12 packages of 6 boards",
            ("--since", "-1h"): "12 packages of 6 boards",
            ("--since", "2026-11-19"): "0 packages of 0 boards",
        }
        for words, head in heads.items():
            with self.subTest(words=words):
                self.assertTrue(self.trend(*words).out.startswith(f"site.db: {head}\n"))

    def test_prints_as_many_values_as_wanted(self) -> None:
        self.packages_of_six_boards()
        self.assertIn("  and 1 more; --limit 0 prints all\n", self.trend("--limit", "1").out)
        self.assertNotIn("more", self.trend("--limit", "0").out)

    def test_makes_a_page_with_a_plot_for_each_value(self) -> None:
        self.packages_of_six_boards()
        self.assertEqual(self.trend("--html", "-o", "site.html"), Outcome(0, "", ""))
        page = (self.folder / "site.html").read_text()
        self.assertEqual(plots_of(page), [
            {"id": "board-1", "times": TIMES, "plots": [{"part": "ti/netfp_proxy", "name": ROUTES, "lines": [
                {"label": "lab-3", "numbers": [103, 180, 257, 334]},
                {"label": "usual now", "numbers": [135, 135, 135, 135]}]}]},
            {"id": "board-2", "times": TIMES, "plots": [{"part": "ti/netfp_proxy", "name": DROPS, "lines": [
                {"label": "lab-5", "numbers": [0, 40, 80, 120]},
                {"label": "usual now", "numbers": [0, 0, 0, 0]}]}]}])
        for identifier in ("outliers", "board-1", "board-2"):
            self.assertIn(f'<section id="{identifier}"', page)

    def test_makes_a_page_of_one_board(self) -> None:
        self.packages_of_six_boards()
        page = self.trend("--html", "--board", "lab-5").out
        self.assertEqual(plots_of(page), [{"id": "board-1", "times": TIMES, "plots": [
            {"part": "ti/netfp_proxy", "name": DROPS, "lines": [{"label": "", "numbers": [0, 40, 80, 120]}]},
            {"part": "ti/netfp_proxy", "name": ROUTES, "lines": [{"label": "", "numbers": [105, 116, 127, 138]}]}]}])

    def test_makes_texts_of_a_package_safe(self) -> None:
        hostile = "<script>alert(1)</script> \x1b[31m"
        for board in range(6):
            for hour in range(2):
                self.package_of(f"<b>{board}", hour, {hostile: 10 ** 6 if board == 0 else 1})
        self.assertNotIn("\x1b", self.trend().out)
        self.assertIn("\\x1b[31m", self.trend().out)
        page = self.trend("--html").out
        self.assertEqual([text for text in ("<script>alert", "<b>") if text in page], [])
        self.assertTrue(html.escape("<b>0") in page)

    def test_reads_large_hexadecimal_numbers(self) -> None:
        for hour, number in enumerate(("0x8000000000000000", "0xFFFFFFFFFFFFFFFF")):
            self.package_of("lab-1", hour, {"mask": number})
        self.assertIn("9.22337e+18", self.trend("--board", "lab-1").out)

    def test_a_number_beyond_all_bounds_does_no_harm(self) -> None:
        for board in range(6):
            for hour in range(3):
                self.package_of(f"lab-{board}", hour, {ROUTES: "9" * 400 if board == 0 and hour == 2 else hour})
        for words in ((), ("--html",), ("--board", "lab-0")):
            outcome = self.trend(*words)
            self.assertEqual((outcome.status, outcome.err), (0, ""))
            self.assertNotRegex(re.sub("(?s)<style>.*</style>|<script>.*</script>", "", outcome.out), r"\b(nan|inf)\b")

    def test_refuses_what_it_cannot_read(self) -> None:
        self.package_of("lab-1", 0, {ROUTES: 1})
        self.package_of("lab-3", 0, {ROUTES: 1}, date="1970-01-01")
        self.trend()
        self.damaged("notes.txt", b"This is a text, and longer than the header of a database, which is 100 bytes. " * 2)
        sqlite3.connect(self.folder / "other.db").execute("CREATE TABLE notes (text)").connection.close()
        refusals = {
            ("nowhere.db",): "nowhere.db: No such file or directory",
            ("other.db",): "other.db: not a store of korvel-report",
            ("notes.txt",): "notes.txt: not a store of korvel-report",
            ("site.db", "--board", "lab-2"): "site.db: no package of board lab-2",
            ("site.db", "--board", "lab-1", "--since", "2026-11-20"): "site.db: no package of board lab-1 in this time",
            ("site.db", "--board", "lab-3"): "site.db: no package of board lab-3 has a place in time",
            ("site.db", "-o", "site.db"): "site.db: --output names a file that is read",
        }
        for words, message in refusals.items():
            with self.subTest(words=words):
                self.assertEqual(self.run_report("trend", *words), Outcome(3, "", f"korvel-report: {message}\n"))
        self.assertFalse((self.folder / "nowhere.db").exists())

    def test_refuses_wrong_usage(self) -> None:
        refusals = {
            (): "trend needs a store",
            ("-",): "the store must be a file",
            ("site.db", "lab-1.tgz"): "unexpected argument: lab-1.tgz",
            ("site.db", "--limit", "-1"): "--limit '-1': not a number, or 0 for all",
            ("site.db", "--since", "noon"):
                "--since 'noon': not a time: write '2026-11-22 02:46' (UTC), '2026-11-22T02:46:40Z' or -10m (s, m, h, d)",
        }
        for words, message in refusals.items():
            with self.subTest(words=words):
                self.assertEqual(self.run_report("trend", *words),
                                 Outcome(3, "", f"korvel-report: {message}\n{HINT}"))


if __name__ == "__main__":
    unittest.main()
