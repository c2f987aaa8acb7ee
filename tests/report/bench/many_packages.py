"""Makes packages of many boards over many hours from one package of a simulated board."""

import gzip
import io
import random
import re
import tarfile
from collections.abc import Iterator, Sequence
from dataclasses import dataclass
from pathlib import Path

BEGIN = 1_795_000_000  # 2026-11-18
NUMBER = re.compile(rb"^([ \t]*(\S(?:[^\n]*?\S)?)[ \t]{2,}[:=]?[ \t]*)(\d+)([ \t]*)$", re.M)


@dataclass(frozen=True)
class Outlier:
    """A value that grows faster on one board than on the others."""

    board: str
    part: str
    name: str
    extra: int  # an hour


def members_of(package: Path) -> list[tuple[tarfile.TarInfo, bytes]]:
    with tarfile.open(package) as archive:
        return [(member, archive.extractfile(member).read() if member.isfile() else b"")
                for member in archive.getmembers()]


def board_name(number: int) -> str:
    return f"board-{number:04}"


def varied(text: bytes, rng: random.Random, hour: int, extras: dict[bytes, int]) -> bytes:
    """The numbers of a text, a little different on each board, and larger with each hour."""

    def other(match: re.Match[bytes]) -> bytes:
        beginning, name, number, end = match[1], match[2], int(match[3]), match[4]
        if number >= 10:
            number = int(number * rng.uniform(0.9, 1.1)) * (hour + 10) // 10
        return beginning + str(number + extras.get(name, 0) * (hour + 1)).encode() + end

    return NUMBER.sub(other, text)


def package_of(members: Sequence[tuple[tarfile.TarInfo, bytes]], board: int, hour: int,
               outliers: Sequence[Outlier]) -> bytes:
    rng = random.Random(f"{board}/{hour}")
    time = BEGIN + hour * 3600 + board % 60
    packed = io.BytesIO()
    with gzip.GzipFile(fileobj=packed, mode="wb", compresslevel=1, mtime=0) as stream, \
            tarfile.open(fileobj=stream, mode="w", format=tarfile.USTAR_FORMAT) as archive:
        for member, contents in members:
            extras = {outlier.name.encode(): outlier.extra for outlier in outliers
                      if outlier.board == board_name(board) and outlier.part in member.name}
            contents = varied(contents, rng, hour, extras)
            copy = tarfile.TarInfo(member.name)
            copy.type, copy.mode, copy.mtime, copy.size = member.type, member.mode, time, len(contents)
            archive.addfile(copy, io.BytesIO(contents))
    return packed.getvalue()


def write(package: Path, folder: Path, boards: int, hours: int, outliers: Sequence[Outlier]) -> Iterator[Path]:
    """Writes FOLDER/HOUR/BOARD.tgz for each board and hour. Yields the paths, hour by hour."""
    members = members_of(package)
    for hour in range(hours):
        (folder / str(hour)).mkdir(parents=True)
        for board in range(boards):
            path = folder / str(hour) / f"{board_name(board)}.tgz"
            path.write_bytes(package_of(members, board, hour, outliers))
            yield path
