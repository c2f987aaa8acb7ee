"""What another user plants at a path, before korvel runs and while it runs."""

import ctypes
import itertools
import os
import shutil
import signal
import socket
import time
from collections.abc import Callable
from pathlib import Path

import vault

ATTACKER = 1000  # user and group
MARK = b"planted by another user"
AT_FDCWD = -100
RENAME_EXCHANGE = 2
REMOVING = 5  # every fifth time
LIBC = ctypes.CDLL(None, use_errno=True)
victim = 0  # the process id that a planted process list names


def file(path: Path) -> None:
    names = ("netfp_proxy", "netfp_server", "netfp_master", "resmgr_server")
    path.write_bytes(b"".join(b"root %d %s %s\n" % (victim, name.encode(), MARK) for name in names))
    path.chmod(0o666)


def fifo(path: Path) -> None:
    os.mkfifo(path, 0o666)
    path.chmod(0o666)


def bound_socket(path: Path) -> None:
    with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as created:
        created.bind(str(path))
    path.chmod(0o777)


def link_to(target: Path) -> Callable[[Path], None]:
    return lambda path: path.symlink_to(target)


def hard_link_to(target: Path) -> Callable[[Path], None]:
    return lambda path: os.link(target, path, follow_symlinks=False)


BY_USER: dict[str, Callable[[Path], None]] = {
    "file": file,
    "FIFO": fifo,
    "socket": bound_socket,
    "folder": lambda path: path.mkdir(0o777),
    "link to a secret": link_to(vault.SECRET),
    "link to a protected file": link_to(vault.PROTECTED),
    "link to nothing": link_to(vault.ABSENT),
    "link to a socket of root": link_to(vault.SOCKET),
    "link to an empty folder": link_to(vault.EMPTY_FOLDER),
    "link to a full folder": link_to(vault.FULL_FOLDER),
}
# Without fs.protected_hardlinks, any user can make these. The kernel of the tests may have it, so root makes them.
BY_ROOT: dict[str, Callable[[Path], None]] = {
    "hard link to a secret": hard_link_to(vault.SECRET),
    "hard link to a protected file": hard_link_to(vault.PROTECTED),
    "hard link to a link of root": hard_link_to(vault.LINK_OF_ROOT),
}
IMPOSTOR = "impostor"  # a socket that answers
ALL = BY_USER | BY_ROOT
KINDS = (*ALL, IMPOSTOR)
SWAPS = tuple((harmless, kind) for harmless in ("file", "folder") for kind in (*BY_USER, *BY_ROOT) if "link" in kind)


def start(work: Callable[[], None], user: int = ATTACKER) -> int:
    """Starts a process of this user. Returns its id."""
    process = os.fork()
    if process == 0:
        status = 1
        try:
            os.setgroups([])
            os.setgid(user)
            os.setuid(user)
            os.umask(0)
            work()
            status = 0
        finally:
            os._exit(status)
    return process


def wait_for(process: int) -> None:
    if os.waitpid(process, 0)[1] != 0:
        raise RuntimeError("the attacker failed")


def end(process: int) -> None:
    os.kill(process, signal.SIGKILL)
    os.waitpid(process, 0)


def plant(kind: str, path: Path) -> None:
    wait_for(start(lambda: ALL[kind](path), owner(kind)))


def owner(kind: str) -> int:
    return 0 if kind in BY_ROOT else ATTACKER


def impostor(path: Path) -> int:
    """Starts a process that answers each request with many answers, most of them wrong."""
    def answer() -> None:
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as bound:
            bound.bind(str(path))
            path.chmod(0o777)
            while True:
                request, sender = bound.recvfrom(65536)
                for size in 0, 4, 16, 272, 60000:
                    for head in request[:4], b"none":
                        try:
                            bound.sendto((head + MARK * 3000)[:size], socket.MSG_DONTWAIT, sender)
                        except OSError:
                            pass  # the socket of root accepts datagrams of root only
    process = start(answer)
    while not path.is_socket():
        time.sleep(0.001)
    return process


def swapper(path: Path, other: Path, kinds: tuple[str, str]) -> int:
    """Starts a process that exchanges `path` and `other` again and again, and sometimes removes one. It plants again what it
    or korvel removed."""
    new = other.with_name("new")

    def plant_again(place: Path, kind: str) -> None:
        ALL[kind](new)
        if kind in BY_USER:
            os.chown(new, ATTACKER, ATTACKER, follow_symlinks=False)
        new.rename(place)

    def exchange() -> None:
        names = os.fsencode(path), os.fsencode(other)
        for number in itertools.count():
            LIBC.renameat2(AT_FDCWD, names[0], AT_FDCWD, names[1], RENAME_EXCHANGE)
            for place, kind in zip((path, other), kinds):
                try:
                    if not os.path.lexists(place):
                        plant_again(place, kind)
                    elif number % REMOVING == 0 and not place.is_dir():
                        place.unlink()
                except OSError:
                    remove(new)  # korvel was faster
    return start(exchange, min(map(owner, kinds)))


def remove(path: Path) -> None:
    if path.is_dir() and not path.is_symlink():
        shutil.rmtree(path)
    else:
        path.unlink(missing_ok=True)


def copy_for_attacker(source: Path, target: Path) -> None:
    """Copies folders and files, so that everything belongs to the other user."""
    shutil.copytree(source, target)
    for path in [target, *target.rglob("*")]:
        os.chown(path, ATTACKER, ATTACKER)
