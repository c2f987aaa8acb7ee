"""What the tests of korvel-fleet share: the program, packages, and stand-ins for ssh."""

import hashlib
import json
import os
import subprocess
import tempfile
import threading
import unittest
from pathlib import Path
from typing import Any, NamedTuple

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])
PROGRAM = BUILD / "korvel-fleet"


def checksum(path: Path) -> str:
    return hashlib.sha256(path.read_bytes()).hexdigest()


def write_program(path: Path, content: str) -> Path:
    path.write_text(content, encoding="utf-8")
    path.chmod(0o755)
    return path


def package(path: Path) -> Path:
    """Writes a package that korvel made on a simulated board."""
    made = subprocess.run([BUILD / "boardsim", "--", "sh", "-c", "korvel pkg-pm; cat /ffs/run/logs/*.tgz"],
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
    path.write_bytes(made.stdout)
    return path


class PeakMemory:
    """The highest resident memory of a process, read until the process ends."""

    def __init__(self, pid: int) -> None:
        self._status = Path(f"/proc/{pid}/status")
        self._kibibytes = 0
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def _watch(self) -> None:
        while not self._ended.wait(0.2):
            self._read()

    def _read(self) -> None:
        try:
            for line in self._status.read_text(encoding="ascii").splitlines():
                if line.startswith("VmHWM:"):
                    self._kibibytes = int(line.split()[1])
        except (FileNotFoundError, ProcessLookupError):
            pass

    def mebibytes(self) -> float:
        self._ended.set()
        self._thread.join()
        return self._kibibytes / 1024


class Outcome(NamedTuple):
    status: int
    out: str
    err: str


def run(*arguments: str | Path, timeout: float = 100, **environment: str) -> Outcome:
    """Runs korvel-fleet."""
    done = subprocess.run([PROGRAM, *arguments], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                          errors="surrogateescape", timeout=timeout, env=os.environ | environment)
    return Outcome(done.returncode, done.stdout, done.stderr)


def write_stand_in(path: Path, boards: dict[str, str]) -> Path:
    """Writes a stand-in for ssh. `boards` are patterns of names and shell commands. They find the board's name in $board
    and the remote command in $command, and can use on_board, which runs it on a simulated board.
    """
    cases = "\n".join(f"{pattern})\n{commands}\n;;" for pattern, commands in boards.items())
    return write_program(path, f"""#!/bin/sh
while [ "$1" != -- ]; do shift; done
board=$2
command=$3
on_board() {{ '{BUILD}/boardsim' "$@" -- sh -c "$command"; }}
case $board in
{cases}
*) on_board ;;
esac
""")


def summary_of(folder: Path) -> dict[str, dict[str, Any]]:
    """The results in a folder, by board."""
    document = json.loads((folder / "summary.json").read_text(encoding="utf-8"))
    return {board["board"]: board for board in document["boards"]}


def files_in(folder: Path) -> list[str]:
    """The names in a folder, without hidden ones."""
    return sorted(path.name for path in folder.iterdir() if not path.name.startswith("."))


def verdict(package: Path) -> int:
    """The exit status of korvel-report check."""
    return subprocess.run([BUILD / "korvel-report", "check", package], stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL).returncode


class FolderCase(unittest.TestCase):
    """A test with an empty folder."""

    maxDiff = None

    def setUp(self) -> None:
        holder = tempfile.TemporaryDirectory(prefix="korvel-fleet-")
        self.addCleanup(holder.cleanup)
        self.folder = Path(holder.name)
        self.packages = self.folder / "packages"
