"""What can be wrong with a part of a package, and which answers of korvel-report about it are right."""

import re
from collections.abc import Callable, Iterable
from dataclasses import dataclass

from board_package import BoardPackage

COMMANDS = ("SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats")
STATE_FILES = ("tracing_on", "dispatcherCpu", "dmaStats")
PROCESSES = ("netfp_proxy", "netfp_server", "netfp_master", "resmgr_server")
DISPATCHERS = ("iwf", "sfn")
KERNEL_FILES = ("cmdline", "interfaces", "mounts", "processes", "uptime")

# The title of each proper reply, and the number of its values.
REPLIES = {
    "SocketSvcInfo": ("socket service", 14),
    "SocketSvcCounters": ("socket service counters", 16),
    "ReassemblyCounters": ("reassembly counters", 13),
    "HeapStats": ("heap statistics", 15),
}

# Patterns for the words of right causes.
SILENT = r"did not answer \w+(, or no room was left in /tmp)?$"
NO_ANSWER = r"did not answer"
NO_ROOM = r"no room was left in /tmp"
NO_SOURCE = r"state file was not there|state file of .* was empty|source was not there"
LEFT_OVER = r"left over from an earlier run"
NOT_RUNNING = r"was not running"
UNENDED = r"did not end|stopped in the middle"


@dataclass(frozen=True)
class Harm:
    """What is wrong with one part."""

    states: frozenset[str]  # the states that fit
    cause: str  # a pattern for the words of the right cause
    finding: str | None = None  # the rule whose finding names the part just as well
    needs_sidecar: bool = False  # nothing in the package itself shows it


Harms = dict[str, Harm]  # by the name of the part
Truth = Callable[[BoardPackage], Harms]  # what is wrong in a package


def harm(states: str, cause: str, finding: str | None = None) -> Harm:
    return Harm(frozenset(states.split()), cause, finding)


def all_of(names: Iterable[str], found: Harm) -> Harms:
    return {name: found for name in names}


def replies(*dispatchers: str) -> list[str]:
    return [f"mmi/{dispatcher}/{command}" for dispatcher in dispatchers for command in COMMANDS]


def state_files(*dispatchers: str) -> list[str]:
    return [f"fuse/{dispatcher}/{file}" for dispatcher in dispatchers for file in STATE_FILES]


def dumps(*processes: str) -> list[str]:
    return [f"ti/{process}" for process in processes]


def is_proper_dump(name: str, text: bytes) -> bool:
    return text.rstrip().endswith(f"</{name.removeprefix('ti/')}_dump>".encode())


def is_proper_reply(name: str, text: bytes) -> bool:
    _, dispatcher, command = name.split("/")
    title, count = REPLIES[command]
    lines = text.decode("latin-1").split("\n")
    values = [line for line in lines if re.fullmatch(r"  \S.*?\s+\d+", line)]
    return lines[0] == f"{dispatcher}: {title}" and len(values) == count and len(lines) == count + 2 and not lines[-1]


def was_disturbed(package: BoardPackage, harms: Harms) -> bool:
    """Whether a part suffered that should not: this machine was so busy that a peer of the board was too slow."""
    return any(name not in harms and not is_proper(name, package.members[name])
               for names, is_proper in ((replies(*DISPATCHERS), is_proper_reply), (dumps(*PROCESSES), is_proper_dump))
               for name in names if name in package.members)


def improper_replies(dispatcher: str, cause: str, states: str, needs_sidecar: bool = False) -> Truth:
    """Time decides which replies of a dispatcher suffer: those that are not as a healthy dispatcher sends them."""

    def find(package: BoardPackage) -> Harms:
        harms = {}
        for name in replies(dispatcher):
            text = package.members.get(name, b"")
            if not text:
                harms[name] = harm("empty", f"{cause}|{NO_ANSWER}")
            elif not is_proper_reply(name, text):
                harms[name] = Harm(frozenset(states.split()), cause, needs_sidecar=needs_sidecar)
        return harms

    return find


def beyond_the_limit(dispatcher: str) -> Truth:
    """An endless reply fills the collection, so that korvel leaves out what it takes after it."""

    def find(package: BoardPackage) -> Harms:
        harms = improper_replies(dispatcher, r"did not end|48 MiB", "cut")(package)
        left_out = harm("empty", r"48 MiB|did not end")
        return harms | {name: left_out for name, text in package.members.items()
                        if name.startswith(("ti/", "mmi/")) and not text}

    return find


def without_room(package: BoardPackage) -> Harms:
    """A full /tmp: what korvel, a process or the platform could not write.

    If only the last file of a package without Linux logs was emptied, it looks like a log without entries.
    """
    unwritten = re.findall(r"Error while writing /tmp/korvel/(\S+)\.log: No space left", package.errors)
    unfinished = [name for name in dumps(*PROCESSES)
                  if name in package.members and not is_proper_dump(name, package.members[name])]
    empty = [f"linux/{file}" for file in KERNEL_FILES if package.members.get(f"linux/{file}") == b""]
    if package.kind == "pkg" and unwritten == ["ti/syslib_sm_log"] and not package.members[unwritten[0]]:
        return {unwritten[0]: Harm(frozenset({"empty"}), NO_ROOM, needs_sidecar=True)}
    return (all_of(unfinished, harm("empty cut", rf"{NO_ROOM}|did not finish")) |
            all_of(unwritten, harm("empty cut", NO_ROOM)) | all_of(empty, harm("empty", NO_ROOM)))
