"""Runs korvel again and again on one simulated board, while another user attacks it in /tmp, and prints what each run did.
attacks.py sends this program to the board, with the modules that it imports:

    python3 - JOB

JOB is JSON: {"words": [...], "seconds": N or null, "faults": [[PATH, KIND, OTHER KIND or ""], ...]}. With an other kind,
both are exchanged at PATH while korvel runs. One line of JSON is printed for each attack, see AttackedRun. Without attacks,
korvel runs undisturbed, and a second line lists the paths in /tmp that korvel and its programs touched.
"""

import gzip
import json
import os
import select
import shutil
import signal
import socket
import subprocess
import sys
import time
from collections.abc import Iterator
from dataclasses import asdict, dataclass, field
from pathlib import Path
from typing import Any

import on_board
import plants
import touched
import vault
from touched import Touch

TMP = Path("/tmp")
PACKAGES = Path("/ffs/run/logs")
ASIDE = Path("/tmp/aside")  # what the board has at the attacked path
ATTIC = Path("/tmp/attic")  # the other user's own folder
OWN = (vault.VAULT, ASIDE, ATTIC)
# /tmp is sticky, and the other user may write to it as a member of its group. The kernel's protection against links concerns
# only folders to which everyone may write. So there is none, whatever fs.protected_symlinks is.
UNPROTECTED = 0o1775
LIMIT = 90  # seconds; the longest wait of korvel is a minute
TIME_FOR_A_DUMP = 0.05


@dataclass
class Harm:
    what: str
    path: str
    by: list[str]  # programs


@dataclass
class AttackedRun(on_board.Run):
    read: list[str] = field(default_factory=list)  # secret files
    harms: list[Harm] = field(default_factory=list)


@dataclass
class Attack:
    path: Path
    kind: str
    other: str  # or empty

    def top(self) -> Path:
        return TMP / self.path.relative_to(TMP).parts[0]

    def start(self) -> int | None:
        """Returns the id of a process that attacks while korvel runs."""
        if self.kind == plants.IMPOSTOR:
            return plants.impostor(self.path)
        plants.plant(self.kind, self.path)
        if not self.other:
            return None
        other = ATTIC / "other"
        plants.plant(self.other, other)
        return plants.swapper(self.path, other, (self.kind, self.other))

    def planted_file(self) -> int | None:
        return os.open(self.path, os.O_RDONLY) if self.kind == "file" and not self.other else None

    def led_to(self, touch: Touch, harmed: Path) -> bool:
        """Whether the call concerns this file, or an entry of this folder."""
        if touch.real:  # that of a hard link is the path itself, that of an exchanged file may be elsewhere
            return harmed in (Path(touch.real), Path(touch.real).parent) or str(self.path) in (touch.real, touch.path)
        names = {harmed, self.path} | {self.path / harmed.relative_to(folder) for folder in vault.FOLDERS
                                       if harmed.is_relative_to(folder)}
        return bool(names & {Path(touch.path), Path(touch.path).parent})


class AttackedBoard(on_board.Board):
    def __init__(self) -> None:
        os.chown(TMP, 0, plants.ATTACKER)
        TMP.chmod(UNPROTECTED)
        ASIDE.mkdir(0o700)
        self.processes = on_board.processes()
        self.files: set[Path] = set()  # a run is judged by all others
        self.usual = {*TMP.iterdir()}
        self.tree: dict[str, bool] = {}  # what korvel touches in /tmp; true for folders

    def prepare(self, attack: Attack | None) -> None:
        for folder in vault.VAULT, ATTIC:
            if folder.exists():
                plants.remove(folder)
        ATTIC.mkdir()
        os.chown(ATTIC, plants.ATTACKER, plants.ATTACKER)
        prefix = f"{attack.path}/" if attack else "/nothing/"
        vault.build({path.removeprefix(prefix): folder for path, folder in self.tree.items() if path.startswith(prefix)})
        if attack:
            self.give_away(attack)

    def leave_out_files_of_attack(self) -> None:
        self.files = {path for path, status in on_board.changing_files().items()
                      if any(path.is_relative_to(own) for own in OWN) or status.st_uid == plants.ATTACKER}

    def give_away(self, attack: Attack) -> None:
        """The other user was first: all folders from /tmp down to the path are theirs."""
        top = attack.top()
        if os.path.lexists(top):
            top.rename(ASIDE / top.name)
        if attack.path == top:
            return
        if (ASIDE / top.name).is_dir():
            plants.copy_for_attacker(ASIDE / top.name, top)
        for folder in reversed(attack.path.parents):
            if folder.is_relative_to(top) and not folder.exists():
                folder.mkdir()
                os.chown(folder, plants.ATTACKER, plants.ATTACKER)
        if os.path.lexists(attack.path):
            plants.remove(attack.path)

    def restore(self) -> None:
        for process in set(on_board.processes()) - set(self.processes):
            os.kill(process, signal.SIGKILL)
        for path in [*TMP.iterdir(), *PACKAGES.iterdir()]:
            if path not in OWN and path not in self.usual:
                plants.remove(path)
        for path in ASIDE.iterdir():
            if os.path.lexists(TMP / path.name):
                plants.remove(TMP / path.name)
            path.rename(TMP / path.name)


def programs(trace: list[Touch], attack: Attack, harmed: str, effect: str) -> list[str]:
    """Those that could do it."""
    return sorted({touch.program for touch in trace
                   if touch.succeeded and touch.effect == effect and attack.led_to(touch, Path(harmed))})


def texts_of_run(run: on_board.Run) -> Iterator[tuple[str, bytes, int]]:
    """What a run printed and wrote, by name, with the number of the file or 0. Contents of packages are unpacked."""
    yield "standard output", on_board.OUTPUT.read_bytes(), 0
    yield "standard error", run.err.encode(), 0
    yield "the log", run.log.encode(), 0
    for path, status in on_board.changing_files().items():
        if not any(path.is_relative_to(own) for own in OWN) and path.is_file() and not path.is_symlink():
            contents = path.read_bytes()
            if path.suffix in (".gz", ".tgz"):
                try:
                    contents = gzip.decompress(contents)
                except (OSError, EOFError):
                    pass  # the judgement of damaged files tells
            yield str(path), contents, status.st_ino


def harms(run: AttackedRun, attack: Attack, before: dict[str, vault.State], planted: int | None) -> Iterator[Harm]:
    trace = list(touched.touches(Path(on_board.TRACE).read_text(errors="replace"), os.getcwd()))
    for path in before.keys() & run.read:
        yield Harm("read", path, programs(trace, attack, path, touched.READS))
    after = vault.state()
    for path in sorted(before.keys() | after.keys()):
        if before.get(path) != after.get(path):
            what = "created" if path not in before else "removed" if path not in after else "changed"
            yield Harm(what, path, programs(trace, attack, path, touched.CHANGES))
    secret = vault.inodes()
    foreign = {path.lstat().st_ino for path in TMP.rglob("*") if path.lstat().st_uid == plants.ATTACKER}
    sources = [*run.read, str(attack.path)]
    readers = sorted({program for source in sources for program in programs(trace, attack, source, touched.READS)})
    for name, contents, inode in texts_of_run(run):
        if vault.MARK in contents and inode not in secret:
            yield Harm("shown", name, readers)
        if plants.MARK in contents and inode not in foreign:
            yield Harm("taken", name, readers)
    if planted is not None and plants.MARK not in os.pread(planted, 4096, 0):
        yield Harm("overwritten", str(attack.path), programs(trace, attack, str(attack.path), touched.CHANGES))


def peer_that_dumps(path: Path) -> int | None:
    """A peer would write to what the other user planted. Whether it may is not for korvel to say."""
    return next((process for process, command in on_board.processes().items() if Path(f"/tmp/{command}.log") == path), None)


def run_korvel(job: dict[str, Any], board: AttackedBoard, attacker: int | None) -> AttackedRun:
    read: list[str] = []

    def at_end() -> None:
        if attacker:
            plants.end(attacker)
        read.extend(vault.files_read())
        board.leave_out_files_of_attack()
    run = on_board.run_korvel(job["words"], job["seconds"], touched.OPTIONS, board, at_end)
    return AttackedRun(**vars(run) | {"injected": 1, "read": read})


def socket_of_root() -> socket.socket:
    bound = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    bound.bind(str(vault.SOCKET))
    vault.SOCKET.chmod(0o600)
    return bound


def run_attacked(job: dict[str, Any], attack: Attack, board: AttackedBoard) -> AttackedRun:
    peer = peer_that_dumps(attack.path)
    if peer:
        os.kill(peer, signal.SIGSTOP)
    board.prepare(attack)
    victim = subprocess.Popen(["sleep", "1000"])
    plants.victim = victim.pid
    attacker = attack.start()
    planted = attack.planted_file()
    board.processes = on_board.processes()
    with socket_of_root() as bound:
        before = vault.state()
        vault.forget_reads()
        run = run_korvel(job, board, attacker)
        received = select.select([bound], [], [], 0)[0]
    run.harms = [*harms(run, attack, before, planted)]
    if received:
        run.harms.append(Harm("received", str(vault.SOCKET), ["korvel"]))
    if victim.poll() is not None:
        run.harms.append(Harm("signalled", "a process that only the planted list names", ["korvel"]))
    victim.kill()
    victim.wait()
    if planted is not None:
        os.close(planted)
    if peer:
        board.restore()
        os.kill(peer, signal.SIGCONT)
        time.sleep(TIME_FOR_A_DUMP)
    board.restore()
    return run


def run_undisturbed(job: dict[str, Any], board: AttackedBoard) -> AttackedRun:
    """Notes what korvel touches in /tmp."""
    board.prepare(None)
    run = run_korvel(job, board, None)
    for touch in touched.touches(Path(on_board.TRACE).read_text(errors="replace"), os.getcwd()):
        path = Path(touch.path)
        for place in path, *path.parents:
            if place != TMP and place.is_relative_to(TMP):
                board.tree[str(place)] = board.tree.get(str(place), False) or place != path or place.is_dir()
    board.restore()
    return run


def main() -> None:
    if not Path("/run/boardsim/init").exists():
        sys.exit("This program changes /tmp, so it runs only on a simulated board.")
    job = json.loads(sys.argv[1])
    on_board.LIMIT = LIMIT
    board = AttackedBoard()
    usual = run_undisturbed(job, board)
    if not job["faults"]:
        print(json.dumps(asdict(usual)))
        print(json.dumps(sorted(board.tree)))
    for path, kind, other in job["faults"]:
        print(json.dumps(asdict(run_attacked(job, Attack(Path(path), kind, other), board))), flush=True)


if __name__ == "__main__":
    main()
