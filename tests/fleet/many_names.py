"""Collects from many names through a stand-in for ssh, which answers at once. Every hundredth name fails, with one of
four causes. Prints the time, and the memory of korvel-fleet itself.
"""

import json
import subprocess
import sys
import tempfile
import time
from pathlib import Path
from typing import NamedTuple

import fleet

# What a failing name prints, and its exit status.
CAUSES = (
    ("ssh: connect to host {} port 22: Connection timed out", 255),
    ("{}: Permission denied (publickey).", 255),
    ("Host key verification failed.", 255),
    ("sh: korvel: out of order", 3),
)

STAND_IN = """#!/bin/sh
# Takes the last two words of ssh's command line: the board, and sh -s -- collect TOKEN BOARD ...
while [ "$1" != -- ]; do shift; done
board=$2
set -- $3
case $board in
%(failing)s
esac
run="format: 1
board: $board
sha256: %(checksum)s

"
echo "korvel-fleet/1 $5"
echo "run ${#run}"
printf %%s "$run"
echo "package %(size)s %(checksum)s"
cat '%(package)s'
echo end
"""


class Outcome(NamedTuple):
    status: int
    out: str
    err: str
    summary: dict
    seconds: float
    mebibytes: float


def stand_in(folder: Path, package: Path) -> Path:
    """Writes the stand-in. Names that end in 00 fail."""
    digits = ("01", "23", "45", "6789")
    failing = "\n".join(f"*[{of}]00) echo \"{text.format('$board')}\" >&2; exit {status} ;;"
                        for of, (text, status) in zip(digits, CAUSES))
    content = STAND_IN % {"failing": failing, "package": package, "size": package.stat().st_size,
                          "checksum": fleet.checksum(package)}
    return fleet.write_program(folder / "ssh", content)


def collect(folder: Path, number: int) -> Outcome:
    """Collects from `number` names into folder/packages."""
    ssh = stand_in(folder, fleet.package(folder / "package.tgz"))
    began = time.monotonic()
    process = subprocess.Popen(
        [fleet.PROGRAM, "collect", "-w", f"board[1-{number}]", "-o", folder / "packages", "--ssh", ssh],
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    peak = fleet.PeakMemory(process.pid)
    out, err = process.communicate()
    seconds = time.monotonic() - began
    summary = json.loads((folder / "packages/summary.json").read_text(encoding="utf-8"))
    return Outcome(process.returncode, out, err, summary, seconds, peak.mebibytes())


def main() -> None:
    number = int(sys.argv[1]) if len(sys.argv) > 1 else 10000
    with tempfile.TemporaryDirectory(prefix="korvel-fleet-") as folder:
        outcome = collect(Path(folder), number)
    print(outcome.out, outcome.err, sep="", end="")
    print(f"{number} names: {outcome.seconds:.1f} s, {outcome.mebibytes:.1f} MiB")


if __name__ == "__main__":
    main()
