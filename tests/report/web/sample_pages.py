"""Pages for the tests in a browser."""

import hashlib
from collections.abc import Iterable
from pathlib import Path

from browser import MADE, PACKAGES, make_page, members_of, run_program, write_package

# In each of these, a page that trusts a text would run it, follow it, fill it in, or lose the rest of the page.
HOSTILE = (
    "<script>window.hit=1</script>",
    "</script><script>alert(2)</script>",
    "</title></style></pre></textarea><script>window.hit=3</script>",
    "<img src=x onerror=window.hit=4>",
    "\"'><svg onload=window.hit=5>",
    "<!--<script>window.hit=6;/*-->",
    "javascript:window.hit=7;",
    "<a href='javascript:window.hit=8'>look</a>",
    "{{mustache}}{{{hit}}}{{#facts}}{{>partial-facts}}",
    "]]><iframe srcdoc='<script>parent.hit=10</script>'>",
    "&lt;b&gt; &amp;",
)
ESCAPES = "\x1b[31mred\x1b[0m \x1b]0;title\x07 \u2028\u202e\x00"
VISIBLE_ESCAPES = r"\x1b[31mred\x1b[0m \x1b]0;title\x07 \u2028\u202e\x00"
LONG_NAME = "linux/" + "long_name_without_a_gap_" * 10


def ordinary_page(folder: Path) -> Path:
    return make_page(folder / "ordinary.html", PACKAGES / "netfp_logs_sup.tgz")


def small_members(used: int) -> dict[str, bytes]:
    """A log with an entry of each level, and a heap of 1000 bytes."""
    levels = ("out of memory", "heap 95 % in use", "started", "1 datagram in")
    log = "".join(f"2026-11-22T02:46:4{level}.000000Z {level} iwf_dispatcher: {text}\n" for level, text in enumerate(levels))
    heap = f"iwf: heap statistics\n  bytes in use  {used}\n  bytes free  {1000 - used}\n  failed allocations  0\n"
    return {"./fuse/HistoryLog.log": log.encode(), "./mmi/iwf/HeapStats.log": heap.encode()}


def page_of_a_long_log(folder: Path) -> Path:
    log = "".join(f"2026-11-22T02:46:40.{number:06}Z 3 iwf_dispatcher: entry {number}\n" for number in range(1000))
    return make_page(folder / "long.html", write_package(folder / "long.tgz", {"./fuse/HistoryLog.log": log.encode()}))


def page_of_neighbours(folder: Path) -> Path:
    """The page of two packages of a board, ten seconds apart, between which more of a heap came into use."""
    packages = [write_package(folder / f"neighbour-{used}.tgz", small_members(used), MADE + used / 5) for used in (900, 950)]
    return make_page(folder / "neighbours.html", "--board", "lab-17", "--expect", "dlog", *packages)


def troubled_page(folder: Path) -> Path:
    """The page of a package with missing and cut parts, a member that is not followed, a package inside, and a record of
    the run."""
    inside = write_package(folder / "inside.tgz", small_members(500)).read_bytes()
    members = small_members(1000) | {"./ti/netfp_proxy.log": b"proxy\n", "../passwd": b"x", "./netfp_logs_post_mortem.tgz": inside}
    package = write_package(folder / "troubled.tgz", members)
    write_run(package, "0", ("MMI: no answer",))
    return make_page(folder / "troubled.html", "--expect", "dlog proxy server", package)


def write_run(package: Path, text: str, complaints: Iterable[str]) -> None:
    """Writes the record of the run, beside the package, with `text` in each field."""
    keys = "".join(f"{key}: {text}\n" for key in ("board", "korvel", "command", "status", "zone", "deployment", "kernel"))
    probes = "".join(f"probe: {line}: {line}\n" for line in complaints)
    checksum = hashlib.sha256(package.read_bytes()).hexdigest()
    package.with_name(package.name + ".run").write_text(
        f"format: 1\n{keys}sha256: {checksum}\n{probes}\n" + "\n".join(complaints), encoding="utf-8")


def hostile_members(number: int) -> dict[str, bytes]:
    """Hostile texts as names of members, texts, titles, names, values and log entries."""
    members = members_of(PACKAGES / "netfp_logs_sup.tgz")
    log, values = "", ""
    for place, text in enumerate(HOSTILE):
        log += f"2026-11-22T02:46:{place + 10}.000000Z {place % 4} {text}: {text}\n"
        values += f"{text}\n  {text} in use   {place + number}\n  {text} free   7\n"
        members[f"./linux/{text}.log"] = text.encode()
        members[f"../{text}"] = b"x"
    members[f"./{LONG_NAME}.log"] = b"x\n"
    members["./fuse/HistoryLog.log"] = log.encode() + f"2026-11-22T02:46:59.000000Z 0 {ESCAPES}: {ESCAPES}\n".encode() + b"\xff"
    members["./mmi/iwf/HeapStats.log"] = values.encode()
    members["./ti/netfp_proxy.log"] = HOSTILE[1].encode()
    return members


def trend_page(folder: Path) -> Path:
    """The page of a store of six boards over two times, with a hostile text in the name of a value that stands out."""
    packages = []
    for board in range(6):
        for hour in range(2):
            text = f"  {HOSTILE[1]}  {9000 * hour if board == 0 else 7}\n  bytes in use  {board + hour}\n"
            packages.append(write_package(folder / f"board-{board}-{hour}.tgz", {"./mmi/iwf/HeapStats.log": text.encode()},
                                          MADE - 3600 * hour))
            write_run(packages[-1], f"board-{board}", ())
    store, page = folder / "trend.db", folder / "trend.html"
    run_program("add", store, *packages)
    run_program("trend", store, "--html", "-o", page)
    return page


def hostile_page(folder: Path) -> Path:
    """The page of two hostile packages, each with a hostile package inside."""
    packages = []
    for number in range(2):
        members = hostile_members(number)
        inside = write_package(folder / "inside.tgz", members, owner=HOSTILE[0]).read_bytes()
        package = write_package(folder / f"{number}<img src=x onerror=window.hit=20>.tgz",
                                members | {f"./{HOSTILE[3]}.tgz": inside}, MADE + 10 * number, owner=HOSTILE[0])
        write_run(package, HOSTILE[1], (*HOSTILE, ESCAPES))
        packages.append(package)
    return make_page(folder / "hostile.html", *packages)
