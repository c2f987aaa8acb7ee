#!/usr/bin/env python3
"""Writes a large package, always with the same bytes: 88 MiB of texts in a package of about 20 MiB.

usage: large_package.py FILE
"""

import gzip
import io
import random
import sys
import tarfile
from collections.abc import Iterator
from datetime import datetime, timedelta, timezone
from pathlib import Path

MIB = 1 << 20
MADE = datetime(2026, 11, 22, 2, 46, 40, tzinfo=timezone.utc)
TAGS = ("iwf_dispatcher", "sfn_dispatcher", "netfp_proxy", "netfp_server", "resmgr_server", "Supervision", "Archive")
TEXTS = (
    "in service for {} s",
    "neighbour 10.{}.0.17 resolved in {} us",
    "flow {:08x} moved to queue {}",
    "session {:08x} ended after {} ms",
    "session {:08x} began on worker {}",
    "{} descriptors free, {} in use",
    "route to 10.{}.{}.0/24 learnt",
    "reassembly of {} fragments took {} us",
)
LEVELS = (3, 3, 3, 3, 3, 3, 2, 2, 2, 1)
COUNTERS = ("datagrams received", "datagrams sent", "receive errors", "no buffer, dropped", "bytes in use", "bytes free")


def log_lines(rng: random.Random, size: int) -> Iterator[str]:
    """Lines of a log with about this number of bytes, oldest first. They end when the package is made."""
    time = MADE - timedelta(milliseconds=size // 5)
    while size > 0:
        time += timedelta(microseconds=rng.randrange(1, 800_000))
        text = rng.choice(TEXTS)
        numbers = [rng.randrange(1 << 31) if "{:08x}" in text else rng.randrange(250) for _ in range(2)]
        line = f"{time:%Y-%m-%dT%H:%M:%S.%fZ} {rng.choice(LEVELS)} {rng.choice(TAGS)}: {text.format(*numbers)}\n"
        size -= len(line)
        yield line


def log(rng: random.Random, size: int) -> bytes:
    return "".join(log_lines(rng, size)).encode()


def counters(rng: random.Random, title: str) -> bytes:
    lines = [f"{title}:", *(f"  {name:<40} {rng.randrange(1 << 40):>12}" for name in COUNTERS)]
    return ("\n".join(lines) + "\n").encode()


def dump(name: str, body: bytes) -> bytes:
    return f"<{name}_dump>\n".encode() + body + f"</{name}_dump>\n".encode()


def members(rng: random.Random) -> Iterator[tuple[str, bytes]]:
    yield "fuse/HistoryLog.log", log(rng, 2 * MIB - 4096)
    for dispatcher in ("iwf", "sfn"):
        yield f"fuse/{dispatcher}/tracing_on.log", b"0\n"
        for name in ("dispatcherCpu", "dmaStats"):
            yield f"fuse/{dispatcher}/{name}.log", counters(rng, f"{dispatcher}: {name}")
        for name in ("SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"):
            yield f"mmi/{dispatcher}/{name}.log", counters(rng, f"{dispatcher}: {name}")
    for process in ("netfp_proxy", "netfp_server", "netfp_master", "resmgr_server"):
        yield f"ti/{process}.log", dump(process, counters(rng, process))
    yield "ti/syslib_sm_log.log", log(rng, 2 * MIB - 4096)
    for run in ("archive", "archive.1", "archive.2", "archive.3"):
        for kind in ("dispatcher", "syslib"):
            yield f"{run}/{kind}/runtime.log", log(rng, 2 * MIB)
    for piece in ("startup", "middle"):
        yield f"archive/dispatcher/{piece}.log.gz", gzip.compress(log(rng, 2 * MIB), mtime=0)
    yield "linux/processes.log", b"USER PID COMMAND\nroot 1 init\n"
    for number in range(5):
        yield f"linux/messages.{number}.log", log(rng, 12 * MIB)


def write(path: str | Path) -> None:
    with gzip.GzipFile(path, "wb", compresslevel=6, mtime=0) as packed, \
            tarfile.open(fileobj=packed, mode="w", format=tarfile.GNU_FORMAT) as package:
        for name, content in members(random.Random(1)):
            header = tarfile.TarInfo("./" + name)
            header.size = len(content)
            header.mtime = int(MADE.timestamp())
            header.uname = header.gname = "root"
            package.addfile(header, io.BytesIO(content))


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    write(sys.argv[1])
