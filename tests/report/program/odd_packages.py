"""Packages that korvel never makes: damaged ones, odd numbers, and texts that act on a terminal or a page."""

import gzip
import io
import tarfile
from collections.abc import Iterator

ENTRY = b"2026-11-22T02:46:40.995104Z 0 iwf: "
EVIL = b"\x1b[31m\x1b]0;title\x07 \xff\xfe\xc3 \xe2\x80\xae \xc2\x9b2J </script><b>\"'&\\ \x00\x7f \xed\xa0\x80"


def member(name: str, kind: bytes = tarfile.REGTYPE, size: int = 0) -> tarfile.TarInfo:
    info = tarfile.TarInfo(name)
    info.type = kind
    info.size = size
    info.mtime = 1795315600
    return info


def package(files: dict[str, bytes], others: tuple[tarfile.TarInfo, ...] = ()) -> bytes:
    """A package with files, and with members that have no contents."""
    stream = io.BytesIO()
    with tarfile.open(fileobj=stream, mode="w:gz", encoding="utf-8", errors="surrogateescape") as archive:
        for name, content in files.items():
            archive.addfile(member(name, size=len(content)), io.BytesIO(content))
        for info in others:
            archive.addfile(info)
    return stream.getvalue()


def linked(name: str, kind: bytes, target: str) -> tarfile.TarInfo:
    info = member(name, kind)
    info.linkname = target
    return info


def nested(depth: int) -> bytes:
    content = package({"./ti/netfp_proxy.log": b"routes  5\n"})
    for _ in range(depth):
        content = package({"./netfp_logs_post_mortem.tgz": content})
    return content


def evil_texts() -> bytes:
    name = EVIL.replace(b"\x00", b"").replace(b"/", b"").decode(errors="surrogateescape")
    return package({
        "./fuse/HistoryLog.log": EVIL + b"\n" + ENTRY + EVIL + b"\n" + EVIL + b"\nNov 22 02:46:40 " + EVIL + b": x\n",
        "./mmi/iwf/HeapStats.log": EVIL + b"\n" + EVIL + b"  5\n" + EVIL + b": 6\n" + b"\xff  7\n\\xff  8\n",
        "./linux/processes.log": EVIL * 10,
        f"./ti/{name}.log": b"routes  5\n",
        f"./{name}/{name}": b"routes  5\n",
    })


def odd_numbers() -> bytes:
    numbers = ("0", "-0", "+1", "007", "0x1F", "0XffffFFFFffffFFFF", "0x10000000000000000", "9223372036854775807",
               "-9223372036854775808", "-9223372036854775809", "18446744073709551615", "18446744073709551616",
               "9" * 400, "-" + "9" * 400, "0.1", "-0.0", "9" * 400 + ".5", "0." + "0" * 400 + "1", "1e5", "nan")
    return package({"./mmi/iwf/HeapStats.log": "".join(f"n  {number}\n" for number in numbers).encode()})


def odd_members() -> bytes:
    return package(
        {"/etc/passwd": b"a\n", "../../etc/shadow": b"b\n", "./a/../b.log": b"c\n", "./long/" + "x" * 5000: b"d\n"},
        (member("./ti", tarfile.DIRTYPE), member("./null", tarfile.CHRTYPE), member("./fifo", tarfile.FIFOTYPE),
         linked("./link", tarfile.SYMTYPE, "/etc/passwd"), linked("./hard", tarfile.LNKTYPE, "./a"),
         member("./ti/twice.log"), member("./ti/twice.log")))


def odd_packages() -> Iterator[tuple[str, bytes]]:
    whole = evil_texts()
    yield "nothing", b""
    yield "no gzip", b"hello"
    yield "no tar", gzip.compress(b"hello")
    yield "gzip of gzip", gzip.compress(gzip.compress(b"hello"))
    yield "empty tar", package({})
    yield "cut", whole[:len(whole) // 2]
    yield "cut in its trailer", whole[:-3]
    yield "altered", whole[:-8] + bytes([whole[-8] ^ 1]) + whole[-7:]
    yield "more behind it", whole + b"more"
    yield "evil texts", whole
    yield "odd numbers", odd_numbers()
    yield "odd members", odd_members()
    yield "deep", nested(12)
    yield "long line", package({"./linux/one.log": b"x" * (3 << 20)})
    yield "years", package({"./ti/syslib_sm_log.log": b"9999-12-31T23:59:59.999999Z 0 a: b\n"
                                                      b"0000-01-01T00:00:00.000000Z 0 a: b\n"})
