"""Packages that korvel makes on the simulated board: each coverage keyword and kind of package, some faults."""

import io
import subprocess
import tarfile
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass

from program import BUILD

COVERAGE = ("all", "netfp", "proxy", "server", "master", "resmgr", "slog", "dall", "dinf", "dstat", "dlog")
FAULTS = (
    *(f"netfp_server={fault}" for fault in ("silent", "slow:400", "dying", "unended", "short")),
    *(f"sfn_dispatcher={fault}" for fault in ("silent", "dying", "unended", "binary", "joined", "empty", "stale")),
    "netfp_master=dump-short",
)

# `keep NAME` keeps the new packages in a folder, and empties the work directory.
SHELL = """
exec 2> /dev/null
kept=$(mktemp -d -p /run)
keep() {
    mkdir "$kept/$1" && mv /ffs/run/logs/*.tgz "$kept/$1"
    rm -rf /tmp/korvel
}
%s
cd "$kept" && tar -cf /dev/stdout -- *
"""
EACH_COVERAGE = "\n".join(f"korvel pkg {keyword}; keep {keyword}" for keyword in COVERAGE)
EACH_KIND = "korvel pkg-sdown; keep sdown; korvel pkg-pm; korvel pkg-trs; korvel pkg-sup; keep nested"
ARCHIVE = "korvel archive & sleep 1; kill $!; wait; korvel pkg dlog; keep archive"


@dataclass(frozen=True)
class Board:
    """A simulated board, and what it does."""

    name: str
    options: tuple[str, ...] = ()
    commands: str = "korvel pkg-sup; keep sup"


@dataclass(frozen=True)
class MadePackage:
    name: str  # the board, the word of `keep`, and the name of the file
    content: bytes


BOARDS = (
    Board("both", commands="korvel pkg-sup; keep sup\n" + EACH_COVERAGE),
    Board("both_kinds", commands=EACH_KIND),
    Board("both_archive", commands=ARCHIVE),
    *(Board(fault, ("--fault", fault)) for fault in FAULTS),
    *(Board(f"without {peer}", ("--without", peer)) for peer in ("netfp_proxy", "sfn_dispatcher")),
    Board("iwf", ("--deployment", "iwf")),
    Board("antenna", ("--deployment", "sfn-antenna")),
    Board("full_logs", ("--full-logs",), "korvel pkg dlog slog; keep logs"),
    Board("full_ffs", ("--full-logs", "--ffs-size", "32K")),
    Board("full_tmp", ("--full-logs", "--tmp-size", "64K")),
)


def run(board: Board) -> list[MadePackage]:
    """The packages that a board made."""
    command = [BUILD / "boardsim", *board.options, "--", "sh", "-c", SHELL % board.commands]
    output = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=True).stdout
    with tarfile.open(fileobj=io.BytesIO(output)) as kept:
        return [MadePackage(f"{board.name}/{member.name}", kept.extractfile(member).read())
                for member in kept if member.isfile()]


def run_all(boards: tuple[Board, ...]) -> list[MadePackage]:
    """The packages of all boards. Boards mostly wait, so several run at once."""
    with ThreadPoolExecutor(4) as pool:
        return [package for made in pool.map(run, boards) for package in made]
