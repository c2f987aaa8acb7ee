"""Whether the shipped rules find what a support engineer must see, and nothing else."""

import io
import itertools
import json
import os
import subprocess
import tarfile
import tempfile
import unittest
from collections import defaultdict
from collections.abc import Iterator
from pathlib import Path
from typing import NamedTuple

import cases

PROGRAM = Path(os.environ["KORVEL_BUILD"]) / "korvel-report"
TIME = 1795315599  # 2026-11-22T02:46:39Z
INFORMATION = 2  # level

LOGS = [  # parts and writers
    ("fuse/HistoryLog", "IwfDispatcher"),
    ("ti/syslib_sm_log", "netfp_server"),
    ("archive/dispatcher/runtime", "SfnDispatcher"),
    ("archive/syslib/runtime", "netfp_proxy"),
]

Finding = dict[str, str]


class Case(NamedTuple):
    label: str
    part: str
    lines: list[str]

    @property
    def expected(self) -> bool:
        return self.label.startswith("tell")

    @property
    def clear(self) -> bool:
        return not self.label.endswith("?")


class Limits(NamedTuple):
    precision: float  # of the found cases, the share that must be found
    recall: float  # of the cases that must be found, the share that is found


LIMITS = {
    "logs": Limits(0.97, 0.95),
    "system": Limits(0.97, 0.95),
    "kernel": Limits(0.97, 0.95),
    "values": Limits(0.97, 0.8),
    "later": Limits(0.97, 0.9),
    "zero": Limits(0.97, 0.95),
}


def entry(writer: str, text: str, level: int = INFORMATION) -> str:
    return f"2026-11-22T02:46:39.000001Z {level} {writer}: {text}"


def part_of_values(part: str, lines: list[str]) -> list[str]:
    """The lines in the form that this part has."""
    if part.startswith("linux/"):
        return lines
    if part.startswith("ti/"):
        name = part.removeprefix("ti/")
        return [f"<{name}_dump>", "proxy:", *(f"  {line}" for line in lines), f"</{name}_dump>"]
    return ["Statistics", *(f"  {line}" for line in lines)]


def log_cases(texts: list[tuple]) -> Iterator[Case]:
    """The cases take turns in the logs."""
    for (label, text, *level), (part, writer) in zip(texts, itertools.cycle(LOGS)):
        yield Case(label, part, [entry(writer, text, *level)])


GROUPS = {
    "logs": list(log_cases(cases.LOGS)),
    "system": [
        Case(label, "linux/system", [f"<14>Nov 22 02:46:39 {tag}: {text}"]) for label, tag, text in cases.SYSTEM
    ],
    "kernel": [Case(label, "linux/dmesg", [f"[  123.000001] {text}"]) for label, text in cases.KERNEL],
    "values": [Case(label, part, part_of_values(part, lines)) for label, part, lines in cases.VALUES],
    "later": list(log_cases(cases.LATER)),
    "zero": list(log_cases(cases.ZERO)),
}


def packages_of(corpus: list[Case]) -> list[dict[str, Case]]:
    """Cases by part. A package has at most one case of a part, so that each finding belongs to one case."""
    by_part = defaultdict(list)
    for case in corpus:
        by_part[case.part].append(case)
    return [{case.part: case for case in row if case} for row in itertools.zip_longest(*by_part.values())]


def write_package(path: Path, contents: dict[str, Case]) -> None:
    with tarfile.open(path, "w:gz", format=tarfile.GNU_FORMAT, compresslevel=1) as package:
        for part, case in contents.items():
            content = "".join(f"{line}\n" for line in case.lines).encode()
            member = tarfile.TarInfo(f"./{part}.log")
            member.size, member.mtime = len(content), TIME
            package.addfile(member, io.BytesIO(content))


def all_findings() -> dict[str, list[list[Finding]]]:
    """By group, the findings about the part of each case. One run of the program reads all packages."""
    packages = packages_of([case for corpus in GROUPS.values() for case in corpus])
    with tempfile.TemporaryDirectory(prefix="korvel-report-") as folder:
        paths = [Path(folder, f"{number}.tgz") for number in range(len(packages))]
        for path, contents in zip(paths, packages):
            write_package(path, contents)
        run = subprocess.run([PROGRAM, "json", "--no-run", *paths], capture_output=True, check=True)
    found = {}
    for contents, package in zip(packages, json.loads(run.stdout)["packages"]):
        for part, case in contents.items():
            found[id(case)] = [finding for finding in package["findings"] if finding["part"] == part]
    return {group: [found[id(case)] for case in corpus] for group, corpus in GROUPS.items()}


class Corpus(unittest.TestCase):
    """Notes do not count as found. Cases whose labels have a question mark are shown, but do not count."""

    @classmethod
    def setUpClass(cls) -> None:
        cls.findings = all_findings()

    def judge(self, group: str) -> None:
        counts = {(expected, found): 0 for expected in (True, False) for found in (True, False)}
        for case, about in zip(GROUPS[group], self.findings[group]):
            found = any(finding["severity"] != "note" for finding in about)
            counts[case.expected, found] += case.clear
            if found != case.expected:
                rules = ", ".join(f"{finding['rule']} ({finding['severity']})" for finding in about)
                fault = "false alarm" if found else "miss"
                print(f"{group}: {fault}{'' if case.clear else '?'}: {case.part}: {' | '.join(case.lines)}  {rules}")
        precision = counts[True, True] / (counts[True, True] + counts[False, True])
        recall = counts[True, True] / (counts[True, True] + counts[True, False])
        print(f"{group}: precision {precision:.3f}, recall {recall:.3f}")
        self.assertGreaterEqual(precision, LIMITS[group].precision)
        self.assertGreaterEqual(recall, LIMITS[group].recall)

    def test_lines_of_logs(self) -> None:
        self.judge("logs")

    def test_lines_of_the_system_log(self) -> None:
        self.judge("system")

    def test_lines_of_the_kernel(self) -> None:
        self.judge("kernel")

    def test_values_and_texts_of_parts(self) -> None:
        self.judge("values")

    def test_further_lines_of_logs(self) -> None:
        self.judge("later")

    def test_lines_in_which_a_zero_or_a_no_does_not_excuse_the_rest(self) -> None:
        self.judge("zero")


if __name__ == "__main__":
    unittest.main()
