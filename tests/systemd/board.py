"""Runs shell scripts, each on a simulated board of its own."""

import os
import subprocess
from pathlib import Path
from typing import NamedTuple

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])
# The build tree's path on the board, and the folder of its helper scripts.
PREFIX = "/opt/korvel"
HELPERS = f"{PREFIX}/libexec/korvel"


class Outcome(NamedTuple):
    status: int
    out: str
    err: str = ""


def run(script: str, *options: str) -> Outcome:
    """Runs shell commands on a board with these options of boardsim. The board ends with the commands."""
    command = [BUILD / "boardsim", *options, "--", "sh", "-c", script]
    done = subprocess.run(command, stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="surrogateescape",
                          timeout=60)
    return Outcome(done.returncode, done.stdout, done.stderr)
