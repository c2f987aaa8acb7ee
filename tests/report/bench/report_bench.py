#!/usr/bin/env python3
"""Measures korvel-report on a large package, against its limits and against gzip and tar in the same run.

usage: report_bench.py BUILD
BUILD is a folder with the programs. Prints a table. The exit status is 1 if a limit is exceeded.
"""

import base64
import subprocess
import sys
import tempfile
from collections.abc import Sequence
from pathlib import Path
from statistics import median

import large_package

sys.path.append(str(Path(__file__).parents[1] / "support"))
import measured  # noqa: E402

MIB = 1 << 20
ROUNDS = 5
PRINT_PACKAGE = "korvel pkg-trs 2> /dev/null; base64 -w 0 /ffs/run/logs/netfp_logs.tgz; echo"

Command = Sequence[str | Path]


def run(command: Command) -> measured.Usage:
    usage = measured.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    if usage.status not in (0, 1):
        sys.exit(f"{command[0]} failed with status {usage.status}")
    return usage


def medians(commands: Sequence[Command]) -> list[measured.Usage]:
    """Runs the commands in turn, so that noise of the machine meets all of them."""
    rounds = [[run(command) for command in commands] for _ in range(ROUNDS)]
    return [measured.Usage(max(one.status for one in runs), median(one.wall for one in runs),
                           median(one.processor for one in runs), max(one.memory for one in runs))
            for runs in zip(*rounds)]


class Table:
    """Prints one row for each figure, and remembers whether all limits hold."""

    def __init__(self) -> None:
        self.holds = True
        print(f"{'What':<44} {'Measured':>12} {'Limit':>12}")

    def row(self, what: str, figure: float, limit: float, unit: str) -> None:
        exceeded = figure > limit
        self.holds &= not exceeded
        print(f"{what:<44} {f'{figure:.2f} {unit}':>12} {f'{limit:g} {unit}':>12}{'  EXCEEDED' if exceeded else ''}")


def measure_large(table: Table, report: Path, folder: Path) -> None:
    package, page, clean = folder / "large.tgz", folder / "page.html", folder / "clean.tgz"
    large_package.write(package)
    unpacked = folder / "unpacked"
    unpacked.mkdir()
    check, gzip, tar = medians([[report, "check", package], ["gzip", "-t", package],
                                ["tar", "-xzf", package, "-C", unpacked]])
    table.row("check of 20 MiB", check.wall, 1.5, "s")
    table.row("check of 20 MiB, memory", check.memory, 24, "MiB")
    table.row("check, times gzip -t", check.wall / gzip.wall, 1.5, "")
    table.row("check, times tar -xzf", check.wall / tar.wall, 1.5, "")
    html = run([report, "html", package, "-o", page])
    table.row("html of 20 MiB", html.wall, 5, "s")
    table.row("html of 20 MiB, memory", html.memory, 64, "MiB")
    table.row("html of 20 MiB, size of the page", page.stat().st_size / MIB, 2, "MiB")
    cleaned = run([report, "clean", package, "-o", clean])
    table.row("clean of 20 MiB", cleaned.wall, 10, "s")
    table.row("clean of 20 MiB, memory", cleaned.memory, 64, "MiB")


def measure_diff(table: Table, report: Path, boardsim: Path, folder: Path) -> None:
    before, after = two_packages(boardsim, folder)
    diff, = medians([[report, "diff", before, after]])
    table.row("diff of two packages, 10 s apart", diff.wall, 0.5, "s")


def two_packages(boardsim: Path, folder: Path) -> tuple[Path, Path]:
    """Two packages that a busy board made ten seconds apart."""
    commands = f"{PRINT_PACKAGE}; sleep 10; {PRINT_PACKAGE}"
    output = subprocess.run([boardsim, "--traffic", "busy", "--", "sh", "-c", commands],
                            stdout=subprocess.PIPE, check=True).stdout
    before, after = folder / "before.tgz", folder / "after.tgz"
    for path, line in zip((before, after), output.splitlines(), strict=True):
        path.write_bytes(base64.b64decode(line))
    return before, after


def main() -> int:
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    build = Path(sys.argv[1]).resolve()
    table = Table()
    with tempfile.TemporaryDirectory() as name:
        measure_large(table, build / "korvel-report", Path(name))
        measure_diff(table, build / "korvel-report", build / "boardsim", Path(name))
    return 0 if table.holds else 1


if __name__ == "__main__":
    sys.exit(main())
