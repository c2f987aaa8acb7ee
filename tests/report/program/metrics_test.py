"""korvel-report metrics, on packages that korvel makes and on odd ones."""

import hashlib
import re
import subprocess
import tempfile
import time
import unittest
from collections import Counter
from pathlib import Path

from board_packages import Board, run
from odd_packages import odd_packages
from plain_reading import members_of, values_of
from program import SOURCE, report, write

BOARD = Board("busy", ("--traffic", "busy:20"), "korvel pkg-trs; keep older; sleep 1.1; korvel pkg-trs; keep newer")

SAMPLE = re.compile(r"(?P<metric>\w+)\{(?P<labels>.*)\} (?P<number>\S+)")
LABEL = re.compile(r'(\w+)="((?:[^"\\]|\\["\\])*)"(?:,|$)')
VERDICTS = {"whole", "incomplete", "not fully read", "cut", "altered", "unreadable"}

Labels = tuple[str, ...]
Samples = list[tuple[str, Labels, str]]  # metric, values of its labels, number


def metrics(*words: str | Path) -> str:
    outcome = report("metrics", *words)
    assert outcome.err == b"", outcome.err
    return outcome.out.decode()


def samples_of(text: str) -> Samples:
    found = []
    for line in text.splitlines():
        if not line.startswith("#"):
            sample = SAMPLE.fullmatch(line)
            labels = LABEL.findall(sample["labels"])
            assert ",".join(f'{name}="{value}"' for name, value in labels) == sample["labels"], line
            found.append((sample["metric"], tuple(re.sub(r"\\(.)", r"\1", value) for _, value in labels),
                          sample["number"]))
    return found


def numbers_of(samples: Samples, metric: str, board: str) -> list[tuple[Labels, float]]:
    """The other labels and the numbers of a metric of a board."""
    return [(labels[1:], float(number)) for name, labels, number in samples if (name, labels[0]) == (metric, board)]


def expected_values(package: bytes) -> Counter[tuple[Labels, float]]:
    """The labels and numbers of all values of a package."""
    return Counter(((part, title, name, str(occurrence)), float(number))
                   for member in members_of(package) if member.is_table
                   for part, title, name, occurrence, number in values_of(member))


class MetricsTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        packages = {package.name.split("/")[1]: package.content for package in run(BOARD)}
        cls.older, cls.newer = packages["older"], packages["newer"]
        cls.paths = [cls.package("east-3", "older", cls.older), cls.package("east-3", "newer", cls.newer),
                     cls.package("west-1", "other", cls.older)]
        cls.others = [*(write(cls.folder / "odd" / f"{name}.tgz", content) for name, content in odd_packages()),
                      *sorted((SOURCE / "tests/report/data").glob("*.tgz"))]

    @classmethod
    def package(cls, board: str, name: str, content: bytes) -> Path:
        """A file with the package of a board, and its sidecar."""
        checksum = hashlib.sha256(content).hexdigest()
        write(cls.folder / f"{name}.tgz.run", f"format: 1\nboard: {board}\nsha256: {checksum}\n\n".encode())
        return write(cls.folder / f"{name}.tgz", content)

    def test_promtool_finds_no_fault(self) -> None:
        for paths in (self.paths, self.others, [*self.paths, *self.others]):
            outcome = subprocess.run(["promtool", "check", "metrics"], input=metrics(*paths), text=True,
                                     stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
            self.assertEqual((outcome.stdout, outcome.returncode), ("", 0))

    def test_each_value_of_a_package_is_there_once(self) -> None:
        samples = samples_of(metrics(self.paths[2]))
        expected = expected_values(self.older)
        self.assertGreater(len(expected), 150)
        self.assertEqual(Counter(numbers_of(samples, "korvel_value", "west-1")), expected)

    def test_no_two_samples_have_the_same_labels(self) -> None:
        samples = samples_of(metrics(*self.paths, *self.others))
        self.assertEqual([item for item, count in Counter(sample[:2] for sample in samples).items() if count > 1], [])

    def test_several_packages_of_a_board_are_the_newest_one(self) -> None:
        for paths in (self.paths, self.paths[::-1]):
            samples = samples_of(metrics(*paths))
            self.assertEqual(Counter(numbers_of(samples, "korvel_value", "east-3")), expected_values(self.newer))
            self.assertEqual(Counter(numbers_of(samples, "korvel_value", "west-1")), expected_values(self.older))
            newest = max(member.seconds for member in members_of(self.newer))
            self.assertEqual(numbers_of(samples, "korvel_package_time_seconds", "east-3"), [((), newest)])

    def test_the_age_is_the_time_since_then(self) -> None:
        before = time.time()
        samples = samples_of(metrics(*self.paths))
        after = time.time()
        ((_, age),) = numbers_of(samples, "korvel_package_age_seconds", "east-3")
        ((_, made),) = numbers_of(samples, "korvel_package_time_seconds", "east-3")
        self.assertTrue(before - 0.001 <= made + age <= after + 0.001, (before, made, age, after))

    def test_a_verdict_is_one_and_the_others_are_zero(self) -> None:
        cut = self.package("cut", "cut", self.older[:len(self.older) // 2])
        samples = samples_of(metrics(*self.paths, cut))
        for board, verdict in (("east-3", "whole"), ("west-1", "whole"), ("cut", "cut")):
            self.assertEqual(dict(numbers_of(samples, "korvel_package_verdict", board)),
                             {(name,): float(name == verdict) for name in VERDICTS})

    def test_packages_of_unknown_boards_have_their_checksums_and_are_never_joined(self) -> None:
        packages = [self.older, self.newer]
        paths = [write(self.folder / folder / "netfp_logs.tgz", package) for folder, package in zip("ab", packages)]
        samples = samples_of(metrics(*paths))
        self.assertEqual({labels[0] for _, labels, _ in samples},
                         {f"sha256:{hashlib.sha256(package).hexdigest()}" for package in packages})


if __name__ == "__main__":
    unittest.main()
