"""What the tests of korvel-fleet share: the program, packages, and stand-ins for ssh."""

import hashlib
import os
import subprocess
import threading
from pathlib import Path

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
