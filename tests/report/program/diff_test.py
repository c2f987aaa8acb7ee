"""korvel-report diff, on two packages of a board with traffic, made ten seconds apart."""

import re
import tempfile
import unittest
from collections import Counter
from pathlib import Path

from board_packages import Board, run
from plain_reading import Member, entries_of, members_of, values_of
from program import report, write

BUSY = Board("busy", ("--traffic", "busy:20", "--seed", "7"),
             "korvel pkg-sup; keep before; sleep 10; korvel pkg-sup; keep after")
ROW = re.compile(r"    (?P<name>.+?) {2,}(?P<before>\S+) {2,}(?P<after>\S+) {2,}(?P<difference>\S+) {2,}(?P<rate>\S+)"
                 r"(?P<fell>  fell)?")
LOG = re.compile(r"(?P<log>\S+): (?P<new>[0-9,]+) new entr(?:y|ies).*")
ENTRY = re.compile(r"  (?P<time>[0-9-]{10} [0-9:.]{15}) (?P<level>\w+) +(?P<text>.*)")

Key = tuple[str, str]
Numbers = tuple[float, float, float, bool]


def diff(before: Path, after: Path) -> tuple[int, list[str]]:
    outcome = report("diff", before, after)
    return outcome.status, outcome.out.decode().splitlines()


def section(lines: list[str], heading: str) -> list[str]:
    """The lines of a section, up to the next blank line."""
    start = lines.index(heading) + 1
    return lines[start:lines.index("", start) if "" in lines[start:] else None]


def rows(lines: list[str]) -> dict[Key, re.Match[str]]:
    found: dict[Key, re.Match[str]] = {}
    title = ""
    for line in section(lines, "Values")[1:]:
        if match := ROW.fullmatch(line):
            found[title, match["name"]] = match
        else:
            title = line.strip()
    return found


def printed_values(lines: list[str]) -> dict[Key, Numbers]:
    return {key: (float(row["before"]), float(row["after"]), float(row["difference"]), row["fell"] is not None)
            for key, row in rows(lines).items()}


def expected_values(before: list[Member], after: list[Member]) -> dict[Key, Numbers]:
    def read(members: list[Member]) -> dict[Key, float]:
        return {(f"{part}: {title}" if title else part, name if occurrence == 1 else f"{name} ({occurrence})"): number
                for member in members if member.is_table for part, title, name, occurrence, number in values_of(member)}
    earlier = read(before)
    later = read(after)
    assert earlier.keys() == later.keys()
    return {key: (earlier[key], number, number - earlier[key], number < earlier[key])
            for key, number in later.items() if number != earlier[key]}


def printed_entries(lines: list[str]) -> dict[str, Counter[tuple[str, str, str]]]:
    found: dict[str, Counter[tuple[str, str, str]]] = {}
    log = ""
    for line in lines:
        if match := LOG.fullmatch(line):
            log = match["log"]
            found[log] = Counter()
        elif match := ENTRY.fullmatch(line):
            found[log][match["time"], match["level"], match["text"]] += 1
    return found


def expected_entries(before: list[Member], after: list[Member]) -> dict[str, Counter[tuple[str, str, str]]]:
    def read(members: list[Member]) -> dict[str, Counter[tuple[str, str, str]]]:
        return {member.part: Counter((time.replace("T", " ").rstrip("Z"), level, f"{tag}: {text}")
                                     for time, level, tag, text in entries_of(member))
                for member in members if member.is_log}
    earlier = read(before)
    new = {log: entries - earlier[log] for log, entries in read(after).items()}
    return {log: entries for log, entries in new.items() if entries}


class DiffTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        packages = {package.name.split("/")[1]: package.content for package in run(BUSY)}
        cls.before, cls.after = (write(folder / f"{name}.tgz", packages[name]) for name in ("before", "after"))
        cls.status, cls.lines = diff(cls.before, cls.after)
        cls.members = members_of(packages["before"]), members_of(packages["after"])

    def test_two_packages_differ_and_each_is_the_same_as_itself(self) -> None:
        self.assertEqual(self.status, 1)
        status, lines = diff(self.before, self.before)
        self.assertEqual((status, lines[-1]), (0, "They do not differ."))

    def test_prints_every_value_that_changed_and_no_other(self) -> None:
        expected = expected_values(*self.members)
        self.assertGreater(len(expected), 40)
        self.assertEqual(printed_values(self.lines), expected)

    def test_prints_how_much_a_value_changed_in_a_second(self) -> None:
        before, after = (max(member.seconds for member in members) for members in self.members)
        self.assertGreaterEqual(after - before, 10)
        for key, row in rows(self.lines).items():
            rate = float(row["difference"]) / (after - before)
            with self.subTest(key=key, rate=rate):
                self.assertLess(abs(float(row["rate"]) - rate), max(0.051, 0.006 * abs(rate)))

    def test_prints_every_text_that_changed_and_no_other(self) -> None:
        earlier, later = ({member.part: member.data for member in members if not member.is_table and not member.is_log}
                          for members in self.members)
        self.assertEqual(earlier.keys(), later.keys())
        changed = {part for part, text in later.items() if text != earlier[part]}
        self.assertIn("linux/uptime", changed)
        self.assertEqual({line.split()[1] for line in section(self.lines, "Parts") if line.startswith("  text ")},
                         changed)

    def test_prints_every_entry_that_is_new_and_no_other(self) -> None:
        expected = expected_entries(*self.members)
        self.assertIn("fuse/HistoryLog", expected)
        self.assertEqual(printed_entries(self.lines), expected)

    def test_a_cut_package_is_compared_as_far_as_it_goes(self) -> None:
        content = self.after.read_bytes()
        cut = write(self.after.with_name("cut.tgz"), content[:len(content) // 2])
        status, lines = diff(self.before, cut)
        self.assertEqual(status, 2)
        self.assertLess(set(printed_values(lines).items()), set(printed_values(self.lines).items()))
        self.assertIn("Not compared", lines)
        self.assertFalse([line for line in lines if line.startswith("  went")])


if __name__ == "__main__":
    unittest.main()
