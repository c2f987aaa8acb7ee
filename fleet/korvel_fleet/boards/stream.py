"""The stream that the job on a board writes, see job.sh. The board is not trusted: every length has a limit."""

import hashlib
import re
from dataclasses import dataclass
from typing import Protocol

VERSION = "korvel-fleet/1"
MAX_JUNK = 64 * 1024  # what shell startup files may print before the first line
MAX_LINE = 256
MAX_RUN_FILE = 1024 * 1024

NOT_THE_JOB = "the board sent something else than the job's answer"

_ANNOUNCEMENT = re.compile(rb"(run) (\d{1,12})|(package) (\d{1,12}) ([0-9a-f]{64})|(failed) ([a-z-]{1,40})|(end)")


_NAMES = {"run": "a run file", "package": "a package"}


class Refused(Exception):
    """The stream is none of a job, or goes beyond a limit. The text says why."""


class Sink(Protocol):
    """Where the announced bytes go."""

    def write_run(self, data: bytes) -> None: ...

    def write_package(self, data: bytes) -> None: ...


class FirstLine:
    """Skips what shell startup files print before the job's first line. The token in it is new in each run, so nothing
    else can be that line.
    """

    def __init__(self, token: str) -> None:
        self._line = f"{VERSION} {token}\n".encode()
        self._junk = b""
        self.found = False

    def skip(self, data: bytes) -> bytes:
        """Returns what follows the line."""
        if self.found:
            return data
        junk, line, rest = (self._junk + data).partition(self._line)
        self.found = bool(line)
        if not self.found and len(junk) > MAX_JUNK:
            raise Refused(f"too much output: more than {MAX_JUNK // 1024} KiB before the job's first line")
        self._junk = b"" if self.found else junk
        return rest


@dataclass
class _Announced:
    kind: str
    left: int


class JobStream:
    """Takes the stream in pieces of any size."""

    def __init__(self, token: str, max_bytes: int, sink: Sink) -> None:
        self._first_line = FirstLine(token)
        self._max_bytes = max_bytes
        self._sink = sink
        self._line = b""  # the beginning of a line
        self._announced: _Announced | None = None
        self._checksum = hashlib.sha256()
        self._expected_checksum = ""
        self._has_run_file = False
        self.complete = False  # the last line was read
        self.failure: str | None = None  # the cause in the last line
        self.package_bytes = 0
        self.announced_bytes: int | None = None  # of the package

    @property
    def began(self) -> bool:
        """Whether the job runs."""
        return self._first_line.found

    @property
    def sha256(self) -> str | None:
        """That of the package, once all of it was read."""
        return self._checksum.hexdigest() if self.package_bytes == self.announced_bytes else None

    def feed(self, data: bytes) -> None:
        """Takes the next bytes. Raises Refused, and OSError from the sink."""
        data = self._first_line.skip(data)
        while data:
            if self.complete:
                raise Refused("the board sent more after the end of the job's answer")
            if self._announced:
                data = self._take_bytes(data)
            else:
                data = self._take_line(data)

    def _take_line(self, data: bytes) -> bytes:
        line, found, rest = (self._line + data).partition(b"\n")
        if len(line) > MAX_LINE:
            raise Refused(NOT_THE_JOB)
        self._line = b"" if found else line
        if found:
            self._obey(line)
        return rest

    def _obey(self, line: bytes) -> None:
        match = _ANNOUNCEMENT.fullmatch(line)
        kind = next(filter(None, match.group(1, 3, 6, 8))) if match else b""
        if kind == b"run" and not self._has_run_file:
            self._has_run_file = True
            self._announce("run", int(match[2]), MAX_RUN_FILE)
        elif kind == b"package" and self.announced_bytes is None:
            self._expected_checksum = match[5].decode()
            self.announced_bytes = int(match[4])
            self._announce("package", self.announced_bytes, self._max_bytes)
        elif kind == b"failed":
            self.failure = match[7].decode()
            self.complete = True
        elif kind == b"end":
            self.complete = True
        else:
            raise Refused(NOT_THE_JOB)

    def _announce(self, kind: str, length: int, limit: int) -> None:
        if length > limit:
            raise Refused(f"too much output: {_NAMES[kind]} of {length} bytes, more than the limit of {limit} bytes")
        self._announced = _Announced(kind, length)
        self._take_bytes(b"")  # there may be none

    def _take_bytes(self, data: bytes) -> bytes:
        piece, rest = data[:self._announced.left], data[self._announced.left:]
        if self._announced.kind == "run":
            self._sink.write_run(piece)
        else:
            self._sink.write_package(piece)
            self._checksum.update(piece)
            self.package_bytes += len(piece)
        self._announced.left -= len(piece)
        if self._announced.left == 0:
            is_package = self._announced.kind == "package"
            self._announced = None
            if is_package and self.sha256 != self._expected_checksum:
                raise Refused("the package changed on its way: its checksum differs")
        return rest
