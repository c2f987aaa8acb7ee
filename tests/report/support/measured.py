"""Runs a command and measures it."""

import os
import subprocess
import sys
import tempfile
from collections.abc import Sequence
from typing import Any, NamedTuple

# The memory of a new process starts with that of its parent, so a small process starts the command.
STARTER = """
import os, sys, time
start = time.monotonic()
child = os.posix_spawnp(sys.argv[2], sys.argv[2:], os.environ)
_, state, usage = os.wait4(child, 0)
wall = time.monotonic() - start
with open(sys.argv[1], "w") as figures:
    print(os.waitstatus_to_exitcode(state), wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss, file=figures)
"""


class Usage(NamedTuple):
    status: int  # the exit status; negative for a signal
    wall: float  # seconds
    processor: float  # seconds
    memory: float  # the highest, in MiB; at least the 9 MiB of the process that starts the command


def run(command: Sequence[str | os.PathLike[str]], **settings: Any) -> Usage:
    """Runs a command, with settings of subprocess.run()."""
    with tempfile.NamedTemporaryFile(prefix="korvel-measured-") as figures:
        subprocess.run([sys.executable, "-I", "-S", "-c", STARTER, figures.name, *command], check=True, **settings)
        status, wall, processor, memory = figures.read().split()
    return Usage(int(status), float(wall), float(processor), int(memory) / 1024)
