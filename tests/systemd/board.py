"""A simulated board for each script: what it printed, and how it ended."""

import os
import subprocess
from pathlib import Path
from typing import NamedTuple

BUILD = Path(os.environ["KORVEL_BUILD"])
# Where the build tree is on the board, and the scripts in it.
PREFIX = "/opt/korvel"
HELPERS = f"{PREFIX}/libexec/korvel"


class Outcome(NamedTuple):
    status: int
    out: str
    err: str = ""


def run(script: str, *options: str) -> Outcome:
    """Runs shell commands on a board that boardsim's options describe. The board is gone afterwards."""
    command = [BUILD / "boardsim", *options, "--", "sh", "-c", script]
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60)
    return Outcome(done.returncode, done.stdout, done.stderr)
