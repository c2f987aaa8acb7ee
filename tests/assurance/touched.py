"""Which files korvel and its programs touched, from a trace of strace with the options below."""

import os
import re
from collections.abc import Iterator
from dataclasses import dataclass

CHANGING = """mkdir mkdirat unlink unlinkat rmdir rename renameat renameat2 link linkat symlink symlinkat truncate chmod
    fchmodat chown lchown fchownat utimensat mknod mknodat creat bind""".split()
OPENING = ("open", "openat", "openat2")
ADDRESSED = ("bind", "connect", "sendto")
LOOKS, READS, CHANGES = "looks", "reads", "changes"
FOLDERS = ("chdir", "fchdir")
OPTIONS = ["-f", "--seccomp-bpf", "-y", "-Y", "-s", "4096", "-e", "trace=" + ",".join(
    f"?{call}" for call in {*CHANGING, *OPENING, *ADDRESSED, *FOLDERS})]

LINE = re.compile(r"(\d+)<([^>]*)> (.*)")
RESUMED = re.compile(r"<\.\.\. \w+ resumed>(.*)")
CALL = re.compile(r"(\w+)\((.*)\) += (-?\d+)(?:<(/[^>]*)>)?")
UNFINISHED = " <unfinished ...>"
NAME = re.compile(r'(?:(AT_FDCWD|\d+)<([^>]*)>, )?"((?:[^"\\]|\\.)*)"')
ADDRESS = re.compile(r'sun_path="((?:[^"\\]|\\.)*)"')
WRITING = re.compile(r"O_WRONLY|O_RDWR|O_CREAT|O_TRUNC")


@dataclass(frozen=True)
class Touch:
    program: str
    path: str  # as named, but absolute
    real: str  # without links, if the trace shows it, or empty
    effect: str  # LOOKS, READS or CHANGES
    succeeded: bool


def whole_lines(trace: str) -> Iterator[tuple[str, str, str]]:
    """Process, program and call. Joins calls that others interrupted."""
    begun: dict[str, str] = {}
    for line in LINE.finditer(trace):
        process, program, text = line.groups()
        if text.endswith(UNFINISHED):
            begun[process] = text.removesuffix(UNFINISHED)
            continue
        resumed = RESUMED.match(text)
        yield process, program, begun.pop(process, "") + resumed[1] if resumed else text


def touches(trace: str, start: str) -> Iterator[Touch]:
    """`start` is the folder in which korvel starts. Children start there, too."""
    folders: dict[str, str] = {}
    for process, program, text in whole_lines(trace):
        call = CALL.match(text)
        if not call:
            continue
        name, arguments, result, opened = call.groups()
        paths = [*named_paths(name, arguments, folders.get(process, start))]
        if name in FOLDERS and result == "0" and paths:
            folders[process] = paths[0][0]
        for path, real in paths:
            yield Touch(program, path, opened or real, effect_of(name, arguments), not result.startswith("-"))


def effect_of(call: str, arguments: str) -> str:
    if call in OPENING:
        return LOOKS if "O_PATH" in arguments else CHANGES if WRITING.search(arguments) else READS
    return CHANGES if call in CHANGING else LOOKS


def named_paths(call: str, arguments: str, folder: str) -> Iterator[tuple[str, str]]:
    """Absolute paths, with the real one if the call names an entry of an open folder."""
    if call == "fchdir":
        yield from ((path, path) for path in re.findall(r"<(/[^>]*)>", arguments))
    elif call in ADDRESSED:
        yield from ((path, "") for path in ADDRESS.findall(arguments))
    else:
        for base, descriptor, name in NAME.findall(arguments):
            path = os.path.normpath(os.path.join(descriptor or folder, name))
            yield path, path if base.isdigit() and "/" not in name else ""
