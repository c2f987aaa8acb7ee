"""Runs the built korvel-report."""

import os
import subprocess
from pathlib import Path
from typing import NamedTuple

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])
PROGRAM = BUILD / "korvel-report"


class Outcome(NamedTuple):
    status: int
    out: bytes
    err: bytes


def report(*words: str | Path, cwd: Path | None = None) -> Outcome:
    ended = subprocess.run([PROGRAM, *words], cwd=cwd, stdin=subprocess.DEVNULL, capture_output=True, check=False)
    return Outcome(ended.returncode, ended.stdout, ended.stderr)


def write(path: Path, content: bytes) -> Path:
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)
    return path
