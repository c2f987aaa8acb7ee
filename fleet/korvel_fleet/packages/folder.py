"""The folder that packages are collected into.

BOARD.tgz and BOARD.tgz.run are a whole package and its run file. A package that is not whole has another ending, also
behind its run file, and is never replaced. Renaming is the last step, so a kill leaves nothing torn under these names.
"""

import ctypes
import errno
import fcntl
import hashlib
import os
import re
import stat
from collections.abc import Iterator
from itertools import count
from pathlib import Path
from typing import BinaryIO

from korvel_fleet.boards.names import is_name
from korvel_fleet.boards.stream import MAX_RUN_FILE
from korvel_fleet.common.errors import Trouble

LOCK = ".korvel-fleet.lock"

_libc = ctypes.CDLL(None, use_errno=True)

_KEY = re.compile(r"^(command|sha256): (.*?)\r?$", re.MULTILINE)


def run_file_of(package: Path) -> Path:
    return package.with_name(package.name + ".run")


def _open_regular(path: Path) -> BinaryIO:
    """Opens a file to read. Fails for a pipe, which could keep the program waiting for ever."""
    file = open(os.open(path, os.O_RDONLY | os.O_CLOEXEC | os.O_NONBLOCK), "rb")
    if not stat.S_ISREG(os.fstat(file.fileno()).st_mode):
        file.close()
        raise OSError(errno.EINVAL, "not a regular file")
    return file


def recorded(package: Path) -> dict[str, str]:
    """What the run file of a package says: the command, and the checksum of the package."""
    try:
        with _open_regular(run_file_of(package)) as file:
            head = file.read(MAX_RUN_FILE).partition(b"\n\n")[0]
    except OSError:
        return {}
    return dict(reversed(_KEY.findall(head.decode("utf-8", "replace"))))  # the first line of a key counts


def described_checksum(package: Path) -> str | None:
    """The checksum of a package that is the one of its run file."""
    checksum = recorded(package).get("sha256")
    return checksum if checksum is not None and checksum == checksum_of(package) else None


def checksum_of(package: Path) -> str | None:
    try:
        with _open_regular(package) as file:
            return hashlib.file_digest(file, "sha256").hexdigest()
    except OSError:
        return None


def boards_with_packages(folder: Path) -> list[str]:
    names = (path.name.removesuffix(".tgz") for path in folder.glob("*.tgz"))
    return [name for name in names if is_name(name)]


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
        """Waits until all that arrived is on the disk: for many files, one call takes less time than one for each. Raises
        OSError if the disk failed.
        """
        if _libc.syncfs(self._lock.fileno()) != 0:
            number = ctypes.get_errno()
            raise OSError(number, os.strerror(number))

    def trouble(self, error: OSError) -> str:
        """What went wrong in the directory, as a cause."""
        return f"cannot write to {self.path}: {error.strerror}"

    def package(self, board: str) -> Path:
        return self.path / f"{board}.tgz"

    def part(self, board: str) -> Path:
        return self.path / f"{board}.tgz.part"

    def keep_damaged(self, name: str) -> None:
        """Makes room for a new file in the place of a damaged one."""
        (self.path / name).rename(self.path / f"{name}.damaged")

    def arrival(self, board: str) -> Arrival:
        """A place for a new package, after make_room()."""
        return Arrival(self.part(board))

    def free_name(self, board: str) -> None:
        """Takes the name of a whole package away from what is none, such as half of a publish()."""
        self._undo_publish(board)
        self.set_aside(board)

    def make_room(self, board: str) -> None:
        """Renames what is in the way of a new package. Raises OSError."""
        self.free_name(board)
        self.keep(board, "cut")

    def _undo_publish(self, board: str) -> None:
        """Takes back the first rename of a publish() that was interrupted before the second."""
        package, part = self.package(board), self.part(board)
        if part.exists() and not package.exists() and run_file_of(package).exists() and not run_file_of(part).exists():
            run_file_of(package).rename(run_file_of(part))

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
        return self._rename_to_free(self.part(board), board, ending)

    def set_aside(self, board: str) -> Path | None:
        """Takes the name of a whole package away from one that is none. Returns the new name."""
        return self._rename_to_free(self.package(board), board, "altered")

    def _rename_to_free(self, old: Path, board: str, ending: str) -> Path | None:
        """Renames a package and its run file. The package comes first, so that none stands without its run file under
        the name of a whole one.
        """
        there = [path for path in (old, run_file_of(old)) if path.exists()]
        if not there:
            return None
        new = next(name for name in self._endings(board, ending) if not name.exists() and not run_file_of(name).exists())
        for path in there:
            path.rename(new if path == old else run_file_of(new))
        return new

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
