"""Packages that try to harm their reader. They are small on disk, however much is in them."""

import functools
import random
import struct
import zlib
from collections.abc import Callable, Iterable, Iterator

BLOCK = 512
END = bytes(2 * BLOCK)
MIB = 1 << 20
TIME = 1795336233  # 2026-11-22 08:30:33 UTC

# What a terminal, a browser or a spreadsheet would act on.
ESCAPES = b"\x1b]0;title\x07\x1b[2J\x1b[31m\x9b5n\x07\x08\r\x00\xff\xe2\x80\xae\xe2\x80\x8b"
SCRIPT = b"</script><script>alert(1)</script><img src=x onerror=alert(1)>&quot;'\"`${1}{{x}}{{{x}}}<!--]]>"


def header(name: bytes, kind: bytes = b"0", size: int = 0, target: bytes = b"", owner: bytes = b"root") -> bytes:
    block = bytearray(BLOCK)
    block[0:100] = name[:100].ljust(100, b"\0")
    block[100:124] = b"0000644\0" b"0000000\0" b"0000000\0"
    block[124:148] = b"%011o\0%011o\0" % (size, TIME)
    block[148:157] = b" " * 8 + kind
    block[157:257] = target[:100].ljust(100, b"\0")
    block[257:265] = b"ustar  \0"
    block[265:329] = owner[:31].ljust(32, b"\0") * 2
    block[148:156] = b"%06o\0 " % sum(block)
    return bytes(block)


def padded(content: bytes) -> bytes:
    return content + bytes(-len(content) % BLOCK)


def member(name: bytes, content: bytes = b"", owner: bytes = b"root") -> bytes:
    long_name = header(b"././@LongLink", b"L", len(name) + 1) + padded(name + b"\0") if len(name) > 100 else b""
    return long_name + header(name, b"0", len(content), owner=owner) + padded(content)


def pax(**fields: bytes) -> bytes:
    """An extended header for the next member; `__` in a name stands for a dot."""
    records = b""
    for key, value in fields.items():
        text = b" " + key.replace("__", ".").encode() + b"=" + value + b"\n"
        size = len(text) + 1
        while size != len(text) + len(str(size)):
            size += 1
        records += str(size).encode() + text
    return header(b"pax", b"x", len(records)) + padded(records)


def repeated_gzip(pieces: Iterable[tuple[bytes, int]]) -> Iterator[bytes]:
    """A gzip stream of pieces that occur many times, without the work of compressing each occurrence."""
    yield b"\x1f\x8b\x08\0\0\0\0\0\0\3"
    checksum = size = 0
    for content, times in pieces:
        deflate = zlib.compressobj(6, zlib.DEFLATED, -15)
        block = deflate.compress(content) + deflate.flush(zlib.Z_FULL_FLUSH)
        for _ in range(times):
            yield block
        size += len(content) * times
        # The checksum of many gibibytes takes too long; their reader stops before it.
        if size <= 256 * MIB:
            for _ in range(times):
                checksum = zlib.crc32(content, checksum)
    yield b"\x03\x00" + struct.pack("<II", checksum, size & 0xFFFFFFFF)


def package(*pieces: bytes | tuple[bytes, int]) -> bytes:
    """A package of pieces of a tar archive; a piece can be given with the number of times that it occurs."""
    counted = [piece if isinstance(piece, tuple) else (piece, 1) for piece in pieces]
    return b"".join(repeated_gzip([*counted, (END, 1)]))


def gzip_of(content: bytes) -> bytes:
    return b"".join(repeated_gzip([(content, 1)]))


def nested(levels: int, innermost: bytes, name: bytes = b"./netfp_logs_post_mortem.tgz") -> bytes:
    for _ in range(levels):
        innermost = package(member(name, innermost))
    return innermost


def zeros(size: int) -> bytes:
    """A gzip stream of zeros."""
    return b"".join(repeated_gzip([(bytes(MIB), size // MIB)]))


def huge_member(name: bytes, content: bytes, times: int) -> tuple[bytes | tuple[bytes, int], ...]:
    """A member with the content many times; its size must be whole blocks."""
    assert len(content) % BLOCK == 0
    return header(name, b"0", len(content) * times), (content, times)


def ordinary(*more: bytes | tuple[bytes, int]) -> bytes:
    """An ordinary small package with more pieces."""
    table = b"sfn: heap statistics\n" + b"".join(b"  %-40s %7d\n" % (b"value %d" % n, n) for n in range(5))
    log = b"2026-11-22T08:30:32.000001Z 3 sfn_dispatcher: started\n"
    return package(
        member(b"./mmi/sfn/HeapStats.log", table), member(b"./fuse/HistoryLog.log", log),
        member(b"./ti/netfp_proxy.log", b"<netfp_proxy_dump>\nproxy:\n  routes  1\n</netfp_proxy_dump>\n"), *more,
    )


def with_hostile_texts(text: bytes) -> bytes:
    """The text wherever a package can hold one."""
    line = text.replace(b"\n", b"").replace(b"\0", b"")
    log = b"2026-11-22T08:30:32.000001Z 0 %s: %s\n%s\n" % (line, line, line)
    table = b"%s\n  %s  17\n  %s = 18\nname  0x%s\n" % (line, line, line, line)
    return ordinary(
        member(b"./mmi/iwf/HeapStats.log", table, owner=line), member(b"./archive/syslib/runtime.log", log * 3),
        member(b"./linux/system.log", b"Nov 22 08:30:33 %s %s: %s\n" % (line, line, line)),
        member(b"./linux/processes.log", b"USER PID COMMAND\n%s 1 %s\n" % (line, line)),
        member(b"./ti/%s.log" % line, log), member(line, text), member(b"./mmi/%s/x.log" % line, table),
        header(b"./" + line[:90], b"2", 0, line), member(b"./" + line + b".tgz", package(member(line, text))),
        member(b"./" + line + b".gz", gzip_of(text)),
    )


def headers(count: int, name: str = "./many/{}.log", kind: bytes = b"0") -> bytes:
    return b"".join(header(name.format(number).encode(), kind) for number in range(count))


def sparse_header() -> bytes:
    """A header of a file with holes, whose list of holes goes on in the next block."""
    block = bytearray(header(b"sparse", b"S"))
    block[386:410] = b"00000000001\0" * 2
    block[482] = 1
    block[148:156] = b" " * 8
    block[148:156] = b"%06o\0 " % sum(block)
    return bytes(block)


SPARSE_MAP_BLOCK = b"00000000001\0" * 42 + b"\1" + bytes(7)

LINE = b"2026-11-22T08:30:32.%06dZ %d netfp_server: session %08x ended after %d ms\n"


def whole_blocks(text: bytes) -> bytes:
    return text[:len(text) // BLOCK * BLOCK]


LINES = whole_blocks(b"".join(LINE % (n, n % 4, n * 2654435761 % (1 << 32), n % 1000) for n in range(8192)))
SHORT_ENTRIES = b"2026-11-22T08:30:32.000001Z 3 a: b\n" * 2048
SHORT_VALUES = b"  a  1\n" * 8192
VALUES = whole_blocks(b"".join(b"  value %07d   %20d\n" % (n, n) for n in range(16384)))


# Small, and quickly read.
SMALL: dict[str, Callable[[], bytes]] = {
    "links": lambda: ordinary(
        header(b"./link", b"2", 0, b"/etc/passwd"), header(b"./mmi/sfn/HeapStats.log", b"2", 0, b"../../../etc/shadow"),
        header(b"./hard", b"1", 0, b"/etc/hostname"), header(b"./device", b"3"), header(b"./block", b"4"),
        header(b"./fifo", b"6"), header(b"./unknown", b"Z"),
    ),
    "names": lambda: ordinary(
        member(b"/tmp/korvel-hostile", b"x"), member(b"../../tmp/korvel-hostile", b"x"), member(b"./a/../../b", b"x"),
        member(b"./mmi/sfn/HeapStats.log", b"twice\n  a   1\n"), member(b"mmi/sfn/HeapStats.log", b"3\n  a   1\n"),
        member(b"", b"x"), member(b".", b"x"), member(b"//"), member(b"./" + b"d/" * 1000 + b"x", b"x"),
        member(b"x" * 5000, b"x"), member(b"-rf", b"x"), member(b"./new\nline.log", b"x"),
    ),
    "escapes": lambda: with_hostile_texts(ESCAPES),
    "script": lambda: with_hostile_texts(SCRIPT),
    "not-a-package": lambda: ESCAPES + SCRIPT,
    "empty": lambda: b"",
    "gzip-of-gzip": lambda: gzip_of(ordinary()),
    "many-gzips": lambda: ordinary(member(b"./x", gzip_of(gzip_of(gzip_of(gzip_of(b"x")))))),
    "nesting-of-50": lambda: nested(50, ordinary()),
    "gzip-of-50": lambda: ordinary(member(
        b"./x.gz", functools.reduce(lambda inner, _: gzip_of(inner), range(50), b"x"))),
    "huge-pax-header": lambda: ordinary(header(b"pax", b"x", 1 << 30), (b"9" * MIB, 20)),
    "large-pax-header": lambda: ordinary(pax(comment=b"x" * 900_000), member(b"./x", b"x")),
    "endless-sparse-map": lambda: ordinary(sparse_header(), (SPARSE_MAP_BLOCK * 1000, 20)),
    "damaged": lambda: gzip_of(b"./x" + bytes(509) + END),
}

# Only limits end the reading of these: of bytes, members, processor time or memory.
LARGE: dict[str, Callable[[], bytes]] = {
    "huge-hole": lambda: ordinary(
        pax(GNU__sparse__size=b"9000000000000000000", GNU__sparse__map=b"0,1"), member(b"./x", b"x")),
    "zeros": lambda: ordinary(*huge_member(b"./mmi/sfn/ReassemblyCounters.log", bytes(MIB), 10240)),
    "nested-zeros": lambda: nested(3, ordinary(member(b"./x.gz", zeros(10 << 30)))),
    "zeros-behind-the-end": lambda: package(END, (bytes(MIB), 10240)),
    "million-members": lambda: ordinary((headers(100_000), 10)),
    "million-links": lambda: ordinary((headers(100_000, kind=b"2"), 10)),
    "million-folders": lambda: ordinary((headers(100_000, "./mmi/{}/", b"5"), 10)),
    "long-names": lambda: ordinary(*(
        (b"".join(member(b"./%0*d/%d" % (4000, n, m)) for m in range(100)), 20) for n in range(50))),
    "slow-names": lambda: ordinary((pax(path=b"\xc3\xa9" * 7000) + header(b"x"), 3000)),
    "many-short-entries": lambda: ordinary(*huge_member(b"./ti/syslib_sm_log.log", SHORT_ENTRIES, 20000)),
    "many-short-lines": lambda: ordinary(*huge_member(b"./linux/messages.log", b"x\n" * (MIB // 2), 1900)),
    "many-short-values": lambda: ordinary(*huge_member(b"./ti/netfp_proxy.log", SHORT_VALUES, 20000)),
    "many-lines-of-escapes": lambda: ordinary(*huge_member(
        b"./linux/messages.log", (b"\x1b" * 1023 + b"\n") * 512, 200)),
    "many-nested": lambda: ordinary((b"".join(
        member(b"./n%d.tgz" % n, package(member(b"./mmi/sfn/HeapStats.log", b"heap\n  a   1\n"))) for n in range(2000)
    ), 20)),
    "many-pieces": lambda: ordinary((b"".join(
        member(b"./archive/x/%d.log.gz" % n, gzip_of(LINES[:4096])) for n in range(2000)), 20)),
    "million-lines": lambda: ordinary(*huge_member(b"./archive/syslib/runtime.log", LINES, 130)),
    "million-values": lambda: ordinary(*huge_member(b"./mmi/iwf/HeapStats.log", VALUES, 70)),
    "long-line": lambda: ordinary(*huge_member(b"./archive/syslib/runtime.log", b"x" * MIB, 200)),
    "escapes-only": lambda: ordinary(*huge_member(b"./archive/syslib/runtime.log", b"\x1b" * MIB, 100)),
    "random": lambda: ordinary(*huge_member(b"./linux/core", random.Random(1).randbytes(MIB), 60)),
}
