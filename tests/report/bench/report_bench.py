#!/usr/bin/env python3
"""Measures korvel-report on a large package, against its limits and against gzip and tar in the same run.

usage: report_bench.py KORVEL_REPORT BOARDSIM
Prints a table. The exit status is 1 if a limit is exceeded.
"""

import base64
import os
import subprocess
import sys
import tempfile
import time
from collections.abc import Sequence
from dataclasses import dataclass
from pathlib import Path
from statistics import median

import large_package

MIB = 1 << 20
ROUNDS = 5
PRINT_PACKAGE = "korvel pkg-trs 2> /dev/null; base64 -w 0 /ffs/run/logs/netfp_logs.tgz; echo"


@dataclass
class Run:
    """One run of a command: wall clock in seconds, highest memory in MiB."""

    seconds: float
    memory: float


def run(command: Sequence[str]) -> Run:
    start = time.monotonic()
    with open(os.devnull, "wb") as null:
        process = subprocess.Popen(command, stdout=null, stderr=null)
        _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0
    return Run(time.monotonic() - start, usage.ru_maxrss / 1024)


def medians(commands: Sequence[Sequence[str]]) -> list[Run]:
    """Runs the commands in turn, so that noise of the machine meets all of them."""
    rounds = [[run(command) for command in commands] for _ in range(ROUNDS)]
    return [Run(median(one.seconds for one in runs), max(one.memory for one in runs)) for runs in zip(*rounds)]


class Table:
    """Prints one row for each figure, and remembers whether all limits hold."""

    def __init__(self) -> None:
        self.holds = True
        print(f"{'What':<44} {'Measured':>12} {'Limit':>12}")

    def row(self, what: str, measured: float, limit: float, unit: str) -> None:
        exceeded = measured > limit
        self.holds &= not exceeded
        print(f"{what:<44} {f'{measured:.2f} {unit}':>12} {f'{limit:g} {unit}':>12}{'  EXCEEDED' if exceeded else ''}")


def measure_large(table: Table, report: str, folder: Path) -> None:
    package, page, clean = folder / "large.tgz", folder / "page.html", folder / "clean.tgz"
    large_package.write(str(package))
    check, gzip, tar = medians([[report, "check", str(package)], ["gzip", "-t", str(package)],
                                ["tar", "-xzf", str(package), "-C", str(folder)]])
    table.row("check of 20 MiB", check.seconds, 1.5, "s")
    table.row("check of 20 MiB, memory", check.memory, 24, "MiB")
    table.row("check, times gzip -t", check.seconds / gzip.seconds, 1.5, "")
    table.row("check, times tar -xzf", check.seconds / tar.seconds, 1.5, "")
    html = run([report, "html", str(package), "-o", str(page)])
    table.row("html of 20 MiB", html.seconds, 5, "s")
    table.row("html of 20 MiB, memory", html.memory, 64, "MiB")
    table.row("html of 20 MiB, size of the page", page.stat().st_size / MIB, 2, "MiB")
    cleaned = run([report, "clean", str(package), "-o", str(clean)])
    table.row("clean of 20 MiB", cleaned.seconds, 10, "s")
    table.row("clean of 20 MiB, memory", cleaned.memory, 64, "MiB")


def measure_diff(table: Table, report: str, boardsim: str, folder: Path) -> None:
    before, after = two_packages(boardsim, folder)
    diff, = medians([[report, "diff", before, after]])
    table.row("diff of two packages, 10 s apart", diff.seconds, 0.5, "s")


def two_packages(boardsim: str, folder: Path) -> tuple[str, str]:
    """Two packages that a busy board made ten seconds apart."""
    commands = f"{PRINT_PACKAGE}; sleep 10; {PRINT_PACKAGE}"
    output = subprocess.run([boardsim, "--traffic", "busy", "--", "sh", "-c", commands],
                            stdout=subprocess.PIPE, check=True).stdout
    before, after = folder / "before.tgz", folder / "after.tgz"
    for path, line in zip((before, after), output.splitlines(), strict=True):
        path.write_bytes(base64.b64decode(line))
    return str(before), str(after)


def main() -> int:
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    table = Table()
    with tempfile.TemporaryDirectory() as name:
        measure_large(table, sys.argv[1], Path(name))
        measure_diff(table, sys.argv[1], sys.argv[2], Path(name))
    return 0 if table.holds else 1


if __name__ == "__main__":
    sys.exit(main())
