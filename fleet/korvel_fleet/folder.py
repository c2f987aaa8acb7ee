"""The folder that packages are collected into.

BOARD.tgz and BOARD.tgz.run are a whole package and its run file. A package that is not whole has another ending, also
behind its run file, and is never replaced. Renaming is the last step, so a kill leaves nothing torn under these names.
"""

import ctypes
import fcntl
import hashlib
import os
import re
from collections.abc import Iterator
from itertools import count
from pathlib import Path
from typing import BinaryIO

from korvel_fleet.errors import Trouble

LOCK = ".korvel-fleet.lock"
MAX_RUN_HEAD = 64 * 1024

_libc = ctypes.CDLL(None, use_errno=True)

_CHECKSUM = re.compile(rb"^sha256: ([0-9a-f]{64})\r?$", re.MULTILINE)


def run_file_of(package: Path) -> Path:
    return package.with_name(package.name + ".run")


def recorded_checksum(package: Path) -> str | None:
    """The checksum in the run file of a package."""
    try:
        with run_file_of(package).open("rb") as file:
            head = file.read(MAX_RUN_HEAD).partition(b"\n\n")[0]
    except OSError:
        return None
    match = _CHECKSUM.search(head)
    return match[1].decode() if match else None


def checksum_of(package: Path) -> str | None:
    try:
        with package.open("rb") as file:
            return hashlib.file_digest(file, "sha256").hexdigest()
    except OSError:
        return None


class Arrival:
    """The files of a package while it arrives: BOARD.tgz.part and its run file."""

    def __init__(self, package: Path) -> None:
        self.package = package
        self.run_file = run_file_of(package)
        self._files: dict[Path, BinaryIO] = {}

    def write_run(self, data: bytes) -> None:
        self._write(self.run_file, data)

    def write_package(self, data: bytes) -> None:
        self._write(self.package, data)

    def _write(self, path: Path, data: bytes) -> None:
        if path not in self._files:
            self._files[path] = path.open("wb", buffering=0)
        view = memoryview(data)
        while view:
            view = view[self._files[path].write(view):]

    def close(self) -> None:
        files, self._files = self._files, {}
        for file in files.values():
            file.close()


class Folder:
    """The directory and its names. Nobody else collects into it while this object exists."""

    def __init__(self, path: Path) -> None:
        self.path = path
        try:
            path.mkdir(parents=True, exist_ok=True)
            self._lock = (path / LOCK).open("wb")
            fcntl.flock(self._lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError as error:
            raise Trouble(f"another korvel-fleet collects into {path}") from error
        except FileExistsError as error:
            raise Trouble(f"cannot use {path}: not a directory") from error
        except OSError as error:
            raise Trouble(f"cannot use {path}: {error.strerror}") from error

    def sync(self) -> None:
        """Waits until all that arrived is on the disk: for many files, one call takes less time than one for each."""
        if _libc.syncfs(self._lock.fileno()) != 0:
            raise Trouble(f"cannot write to {self.path}: {os.strerror(ctypes.get_errno())}")

    def package(self, board: str) -> Path:
        return self.path / f"{board}.tgz"

    def part(self, board: str) -> Path:
        return self.path / f"{board}.tgz.part"

    def arrival(self, board: str) -> Arrival:
        """A place for a new package. Keeps what is in its way."""
        self.keep(board, "cut")
        self._set_unverified_aside(board)
        return Arrival(self.part(board))

    def has_whole(self, board: str) -> bool:
        """Whether the package is there and is the one that its run file describes. Finishes an interrupted publish()."""
        package, part = self.package(board), self.part(board)
        if not package.exists() and part.exists() and not run_file_of(part).exists() and self._describes(package, part):
            part.rename(package)
        return package.exists() and self._describes(package, package)

    @staticmethod
    def _describes(name: Path, content: Path) -> bool:
        checksum = recorded_checksum(name)
        return checksum is not None and checksum == checksum_of(content)

    def publish(self, board: str) -> Path:
        """Gives a whole package its name, after sync(). The run file comes first, so that a package never lacks it."""
        part, package = self.part(board), self.package(board)
        run_file_of(part).rename(run_file_of(package))
        part.rename(package)
        return package

    def keep(self, board: str, ending: str) -> Path | None:
        """Gives what arrived of a package a name that is not that of a whole one, and replaces nothing. Returns the
        name, or None if nothing arrived.
        """
        part = self.part(board)
        arrived = [path for path in (part, run_file_of(part)) if path.exists()]
        if not arrived:
            return None
        kept = next(name for name in self._endings(board, ending)
                    if not name.exists() and not run_file_of(name).exists())
        for path in arrived:
            path.rename(kept if path == part else run_file_of(kept))
        return kept

    def _set_unverified_aside(self, board: str) -> None:
        """Renames a package that is not the one of its run file: has_whole() has found no whole one."""
        package = self.package(board)
        if package.exists():
            package.rename(self.part(board))
            if run_file_of(package).exists():
                run_file_of(package).rename(run_file_of(self.part(board)))
            self.keep(board, "altered")

    def _endings(self, board: str, ending: str) -> Iterator[Path]:
        yield self.path / f"{board}.tgz.{ending}"
        for number in count(2):
            yield self.path / f"{board}.tgz.{ending}.{number}"

    def write(self, name: str, lines: Iterator[str]) -> None:
        """Replaces a file when all of it is written."""
        part = self.path / f".{name}.part"
        try:
            with part.open("w", encoding="utf-8") as file:
                for line in lines:
                    file.write(line)
                file.flush()
                os.fsync(file.fileno())
            part.rename(self.path / name)
            self.sync()
        except OSError as error:
            part.unlink(missing_ok=True)
            raise Trouble(f"cannot write {self.path / name}: {error.strerror}") from error
