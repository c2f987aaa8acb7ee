"""Runs korvel again and again on one simulated board, with faults, and prints what each run did. The board has no files of
the host, so python3 reads this program from standard input:

    python3 - JOB < on_board.py

JOB is JSON: {"words": [...], "seconds": N or null, "faults": [[...], ...], "companions": [[...], ...], "again": bool,
"disk": path, "rooms": [N, ...]}. `words` are korvel's arguments, and korvel gets TERM after `seconds`. Each fault is a list of
strace's options. Companions are shell commands that run at the same time; there is a list for each fault. With `again`, korvel
runs once more after each fault, undisturbed, on what the first run left. With `disk`, so many bytes are free on this
disk during each run. One line of JSON is printed for each run, see Run. Without faults and rooms, korvel runs undisturbed, and
a second line of JSON lists its system calls.
"""

import gzip
import hashlib
import io
import json
import os
import re
import signal
import subprocess
import sys
import tarfile
import time
from collections.abc import Callable, Iterator
from dataclasses import asdict, dataclass, field
from pathlib import Path
from typing import Any

LIMIT = 150  # seconds: korvel waits for nothing longer, except for the services of the board
CHANGING = [Path("/tmp"), Path("/ffs")]
UNTOUCHED = [Path("/tmp/fuse")]  # the state files of the dispatchers
SYSTEM_LOG = Path("/run/boardsim/system.log")
DISPATCHER_LOG = Path("/dev/shm/dispatcher_log_memory")
LOGGED_ERROR = re.compile(rb"(?:Archive|Supervision): [^\0\n]*(?:[Ee]rror|Heartbeat status)[^\0\n]*")
TRACE = "/run/trace"
OUTPUT = Path("/run/output")  # korvel's standard output
ALLOCATIONS = Path("/run/failing_memory")  # see FailingMemory.cpp
UNTRACED = ["-e", "trace=none"]
LOGS = re.compile(r"HistoryLog|SYSLIB|sm_log|startup|middle|runtime|/linux/")  # their contents depend on the time
STACK = re.compile(r"\(INJECTED\)\n((?:.*\n){,30})")  # strace knows no stack of clone3, but that of the next call
PROGRAM = re.compile(r"^\d+<([^>]*)> .*\(INJECTED\)", re.M)
INJECTED_SIGNAL = re.compile(r"^(?:\d+\S* +)?(?:--- SIG(?!CHLD)|\+\+\+ killed by)", re.M)
LOG_LINE = re.compile(rb"^\d{4}-\d\d-\d\dT.*\n?", re.M)
NUMBER = re.compile(rb"\b(?:0x)?[0-9a-fA-F]*\d[0-9a-fA-F]*\b|\d+|\b[a-fA-F]{8}\b")


@dataclass
class Run:
    """What one run of korvel did."""

    status: int = 0  # negative: the number of the signal that ended it
    stopped: bool = False  # it got TERM after its time
    hung: bool = False
    out: str = ""  # a digest
    err: str = ""
    log: str = ""  # what it wrote to the system log, and the errors that it wrote to the log of the dispatchers
    files: dict[str, str] = field(default_factory=dict)  # digests by path; numbers in paths are #
    damaged: list[str] = field(default_factory=list)  # packages, and compressed pieces of archives
    lost: list[str] = field(default_factory=list)  # compressed pieces that are cut, although their source is gone
    left: list[str] = field(default_factory=list)  # processes that it left behind
    injected: int = 0
    allocations: int = 0  # with the library failing_memory
    callers: list[str] = field(default_factory=list)  # of the first one that failed, as offsets in the program
    programs: list[str] = field(default_factory=list)  # whose calls failed, with strace's options -f and -Y
    stacks: str = ""  # of the calls that failed, with strace's option -k


def digest(contents: bytes) -> str:
    """Equal for contents that differ only in numbers and in entries of logs."""
    return hashlib.sha256(NUMBER.sub(b"#", LOG_LINE.sub(b"", contents))).hexdigest()[:12]


def digest_of_file(name: str, contents: bytes) -> str:
    if LOGS.search(name):
        return "log" if contents else "empty"
    return digest(contents)


def digests_of_package(contents: bytes) -> dict[str, str]:
    """Digests by name of member. Raises OSError, EOFError or tarfile.TarError if the package is damaged."""
    digests = {}
    with tarfile.open(fileobj=io.BytesIO(gzip.decompress(contents))) as archive:
        for member in archive:
            opened = archive.extractfile(member) if member.isreg() else None
            digests[member.name] = digest_of_file("/" + member.name, opened.read() if opened else b"")
    return digests


def changing_files() -> dict[Path, os.stat_result]:
    found = {}
    for top in CHANGING:
        for folder, folders, names in os.walk(top):
            folders[:] = [name for name in folders if Path(folder, name) not in UNTOUCHED]
            for name in names + folders:
                path = Path(folder, name)
                found[path] = path.lstat()
    return found


class Board:
    """The board as it was before the first run."""

    def __init__(self) -> None:
        self.files = set(changing_files())
        self.processes = processes()

    def restore(self) -> None:
        for path in sorted(set(changing_files()) - self.files, reverse=True):
            path.rmdir() if path.is_dir() and not path.is_symlink() else path.unlink()
        for process in set(processes()) - set(self.processes):
            os.kill(process, signal.SIGKILL)


def processes() -> dict[int, str]:
    found = {}
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit() and int(entry.name) != os.getpid():
            try:
                command = (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode(errors="replace").strip()
                if (entry / "stat").read_text().rpartition(")")[2].split()[0] not in "ZX":
                    found[int(entry.name)] = command
            except OSError:
                pass
    return found


def look_at_files(run: Run, board: Board) -> None:
    for path, status in changing_files().items():
        if path in board.files or not path.is_file() or path.is_symlink():
            continue
        contents = path.read_bytes()
        name = re.sub(r"\d+", "#", str(path))
        try:
            if path.name.endswith(".tgz"):
                for member, of_member in digests_of_package(contents).items():
                    run.files[f"{name}!{member}"] = of_member
                continue
            if path.name.endswith(".gz"):
                contents = gzip.decompress(contents)
        except (OSError, EOFError, tarfile.TarError) as error:
            run.damaged.append(f"{name}: {error}")
            if path.suffix == ".gz" and not path.with_suffix("").exists():
                run.lost.append(name)
        run.files[name] = digest_of_file(str(path), contents)


def logged_errors() -> list[str]:
    return [text.decode(errors="replace") for text in LOGGED_ERROR.findall(DISPATCHER_LOG.read_bytes())]


def start_companions(commands: list[str]) -> list[subprocess.Popen[bytes]]:
    nothing = subprocess.DEVNULL
    return [subprocess.Popen(["sh", "-c", command], stdin=nothing, stdout=nothing, stderr=nothing) for command in commands]


def await_companions(started: list[subprocess.Popen[bytes]], run: Run) -> None:
    for companion in started:
        try:
            companion.wait(LIMIT)
        except subprocess.TimeoutExpired:
            run.hung = True
            companion.kill()


def execute(command: list[str], seconds: float | None, run: Run) -> bytes:
    """Runs korvel below strace. Returns its standard output."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    try:
        if seconds:
            try:
                out, err = process.communicate(timeout=seconds)
            except subprocess.TimeoutExpired:
                run.stopped = True
                os.kill(tracee(process.pid), signal.SIGTERM)
                out, err = process.communicate(timeout=LIMIT)
        else:
            out, err = process.communicate(timeout=LIMIT)
    except subprocess.TimeoutExpired:
        run.hung = True
        process.kill()
        out, err = b"", b""
    run.status = process.returncode or 0
    run.err = err.decode(errors="replace")[:2000]
    return out


def run_korvel(words: list[str], seconds: float | None, fault: list[str], board: Board,
               at_end: Callable[[], None] = lambda: None, companions: tuple[str, ...] = ()) -> Run:
    run = Run()
    log_before = SYSTEM_LOG.stat().st_size if SYSTEM_LOG.exists() else 0
    errors_before = len(logged_errors())
    Path(TRACE).unlink(missing_ok=True)
    ALLOCATIONS.write_text("0 0")
    beside = start_companions(list(companions))
    out = execute(["strace", "-qq", "-o", TRACE, "-e", "signal=none", *fault, "korvel", *words], seconds, run)
    await_companions(beside, run)
    at_end()
    OUTPUT.write_bytes(out)
    run.out = digest(out)
    if SYSTEM_LOG.exists():
        with SYSTEM_LOG.open("rb") as log:
            log.seek(log_before)
            run.log = log.read().decode(errors="replace")[:2000]
    run.log += "\n".join(logged_errors()[errors_before:])
    trace = Path(TRACE).read_text(errors="replace")
    allocations, failed_allocations, *run.callers = ALLOCATIONS.read_text().split()
    run.allocations = int(allocations)
    run.injected = trace.count("(INJECTED)") + len(INJECTED_SIGNAL.findall(trace)) + int(failed_allocations) + len(companions)
    run.programs = sorted(set(PROGRAM.findall(trace)))
    run.stacks = "".join(STACK.findall(trace)) if "-k" in fault else ""
    run.left = left_processes(board)
    look_at_files(run, board)
    return run


def tracee(tracer: int) -> int:
    children = Path(f"/proc/{tracer}/task/{tracer}/children").read_text().split()
    return int(children[0]) if children else tracer


def left_processes(board: Board) -> list[str]:
    """Those that are still there after a second."""
    for _ in range(20):
        left = [command for process, command in processes().items() if process not in board.processes]
        if not left:
            break
        time.sleep(0.05)
    return left


class FullDisk:
    """A disk with little room. The disks of a board are in memory."""

    def __init__(self, path: str) -> None:
        self.filler = Path(path, "filler")
        self.filler.touch()

    def leave(self, room: int) -> None:
        self.empty()
        state = os.statvfs(self.filler)
        size = state.f_bavail * state.f_frsize - room
        with self.filler.open("wb") as file:
            os.posix_fallocate(file.fileno(), 0, size)

    def empty(self) -> None:
        self.filler.write_bytes(b"")


def runs(job: dict[str, Any], board: Board) -> Iterator[Run]:
    disk = FullDisk(job["disk"]) if "disk" in job else None
    if disk:
        board.files.add(disk.filler)
        for room in job["rooms"]:
            disk.leave(room)
            run = run_korvel(job["words"], job["seconds"], UNTRACED, board)
            disk.empty()
            yield run
            board.restore()
    faults = job.get("faults") or ([] if disk else [["-e", "trace=all"]])
    for fault, companions in zip(faults, job.get("companions") or [[]] * len(faults)):
        yield run_korvel(job["words"], job["seconds"], fault, board, companions=tuple(companions))
        if job.get("again"):
            yield run_korvel(job["words"], job["seconds"], UNTRACED, board)
        board.restore()


def main() -> None:
    job = json.loads(sys.argv[1])
    subprocess.run(["korvel", "-d", "all", "print"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)  # makes its folders
    board = Board()
    for run in runs(job, board):
        print(json.dumps(asdict(run)), flush=True)
    if not job.get("faults") and "disk" not in job:
        print(json.dumps(re.findall(r"^(\w+)\(", Path(TRACE).read_text(errors="replace"), re.M)))


if __name__ == "__main__":
    main()
