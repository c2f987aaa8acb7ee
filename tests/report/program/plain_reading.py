"""Reads packages with Python's own library, to compare korvel-report with."""

import gzip
import io
import re
import tarfile
import time
from collections import Counter
from dataclasses import dataclass

VALUE = re.compile(r"[ \t]*(?P<name>.*?[^ \t])[ \t]*(?:[:=][ \t]*|[ \t]{2})[ \t]*(?P<number>[^ \t]+)[ \t\r]*")
NUMBER = re.compile(r"[+-]?(?:0[xX][0-9a-fA-F]+|[0-9]+(?:\.[0-9]+)?)")
DUMP_MARK = re.compile(r"</?\w+_dump>")
ENTRY = re.compile(r"([0-9-]{10}T[0-9:]{8}\.[0-9]{6}Z) ([0-3]) ([^:]+): (.*)")
ENDINGS = re.compile(r"(?:\.log|\.log\.gz|\.tgz)$")
LOGS = re.compile(r"fuse/HistoryLog\.log|ti/syslib_sm_log\.log|linux/system\.log|archive[.0-9]*/.*")
SYSTEM_ENTRY = re.compile(r"<[0-9]([0-9])>(\w{3} [ 0-9]\d [0-9:]{8}) ([^:]+): (.*)")
LEVELS = ("error", "warning", "information", "debug")
PRIORITIES = {"3": "error", "4": "warning", "6": "information", "7": "debug"}


@dataclass
class Member:
    name: str
    content: bytes
    seconds: int  # since 1970

    @property
    def path(self) -> str:
        return self.name.removeprefix("./")

    @property
    def part(self) -> str:
        return ENDINGS.sub("", self.path)

    @property
    def data(self) -> bytes:
        """The contents, inflated."""
        return gzip.decompress(self.content) if self.path.endswith(".log.gz") else self.content

    @property
    def lines(self) -> list[str]:
        lines = utf8(self.data).split("\n")
        return lines[:-1] if lines[-1] == "" else lines

    @property
    def is_log(self) -> bool:
        return LOGS.fullmatch(self.path) is not None

    @property
    def is_package(self) -> bool:
        return self.path.endswith(".tgz")

    @property
    def is_table(self) -> bool:
        return self.path.startswith(("fuse/", "mmi/", "ti/")) and not self.is_log


def invalid_bytes(data: bytes) -> int:
    return utf8(data).count("\ufffd") - data.count("\ufffd".encode())


def utf8(data: bytes) -> str:
    """The text, with a replacement character for each byte that is not UTF-8."""
    return re.sub("[\udc80-\udcff]", "\ufffd", data.decode(errors="surrogateescape"))


def members_of(package: bytes) -> list[Member]:
    """The files of a package, in the order of the archive."""
    with tarfile.open(fileobj=io.BytesIO(package)) as archive:
        return [Member(member.name, archive.extractfile(member).read(), int(member.mtime))
                for member in archive if member.isfile()]


def number_of(text: str) -> int | float | None:
    if "." in text:
        return float(text)
    number = int(text, 16) if "x" in text.lower() else int(text)
    return number if -2**63 <= number < 2**64 else None


def values_of(member: Member) -> list[tuple[str, str, str, int, int | float | None]]:
    """The part, title, name, occurrence and number of each value of a table."""
    title = ""
    values: list[tuple[str, str, int | float | None]] = []
    lines = [line.strip(" \t\r") for line in member.lines]
    if "_dump>" in member.content.decode(errors="replace") and not member.content.endswith(b"\n"):
        lines.pop()  # it is cut
    for line in filter(None, lines):
        match = VALUE.fullmatch(line)
        if match and NUMBER.fullmatch(match["number"]):
            values.append((title, match["name"], number_of(match["number"])))
        elif NUMBER.fullmatch(line) and len(member.lines) == 1:
            values.append(("", member.part.rpartition("/")[2], number_of(line)))
        else:
            title = "" if DUMP_MARK.fullmatch(line) else line
    seen: Counter[tuple[str, str]] = Counter()
    found = []
    for title, name, number in values:
        seen[title, name] += 1
        found.append((member.part, title, name, seen[title, name], number))
    return found


def entries_of(member: Member) -> list[tuple[str | None, str | None, str | None, str]]:
    """The time, level, writer and text of each entry of a log of the log library."""
    entries: list[tuple[str | None, str | None, str | None, str]] = []
    for line in member.lines:
        match = ENTRY.fullmatch(line)
        system = SYSTEM_ENTRY.fullmatch(line)
        if match:
            entries.append((match[1], LEVELS[int(match[2])], match[3], match[4]))
        elif system:
            year = time.gmtime(member.seconds).tm_year
            when = time.strptime(f"{year} {system[2]}", "%Y %b %d %H:%M:%S")
            text = time.strftime("%Y-%m-%dT%H:%M:%S.000000Z", when)
            entries.append((text, PRIORITIES[system[1]], system[3], system[4]))
        elif entries:
            entries[-1] = (*entries[-1][:3], entries[-1][3] + "\n" + line)
        else:
            entries.append((None, None, None, line))
    return entries
