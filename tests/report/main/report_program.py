"""Runs korvel-report on packages that korvel made on the simulated board."""

import hashlib
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path
from typing import NamedTuple

SOURCE = Path(os.environ["KORVEL_SOURCE"])
PROGRAM = Path(os.environ["KORVEL_BUILD"]) / "korvel-report"
PACKAGES = SOURCE / "tests/report/data"


class Outcome(NamedTuple):
    status: int
    out: str
    err: str


def run(*words: str | Path, cwd: Path, **settings: object) -> Outcome:
    """Runs the program. A negative status is the signal that ended it."""
    settings = {"stdin": subprocess.DEVNULL, "capture_output": True} | settings
    ended = subprocess.run([PROGRAM, *words], cwd=cwd, check=False, **settings)
    return Outcome(ended.returncode, *((text or b"").decode() for text in (ended.stdout, ended.stderr)))


class ReportTest(unittest.TestCase):
    """Each test has an empty folder, which the program runs in."""

    maxDiff = None

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory(prefix="korvel-report-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def run_report(self, *words: str | Path, **settings: object) -> Outcome:
        return run(*words, cwd=self.folder, **settings)

    def package(self, name: str, copy_of: str = "netfp_logs_sup.tgz") -> Path:
        return Path(shutil.copy(PACKAGES / copy_of, self.folder / name))

    def damaged(self, name: str, content: bytes) -> Path:
        path = self.folder / name
        path.write_bytes(content)
        return path

    def cut(self, name: str) -> Path:
        whole = self.package(name).read_bytes()
        return self.damaged(name, whole[:len(whole) // 2])

    def altered(self, name: str) -> Path:
        whole = bytearray(self.package(name).read_bytes())
        whole[-5] ^= 1  # in the length
        return self.damaged(name, bytes(whole))

    def sidecar(self, package: Path, complaints: str = "") -> Path:
        """The sidecar of a package, in a file beside it."""
        checksum = hashlib.sha256(package.read_bytes()).hexdigest()
        lines = ["format: 1", "board: lab-17", "korvel: 1.0.0", "command: korvel pkg-sup", "status: 0",
                 "zone: Europe/Helsinki", f"sha256: {checksum}"]
        path = Path(f"{package}.run")
        path.write_text("\n".join(lines) + "\n\n" + complaints)
        return path
