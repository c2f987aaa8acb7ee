"""Files of root that no attack may reach. They lie in /tmp, because a hard link does not leave its file system."""

import os
import shutil
import stat
from pathlib import Path
from typing import NamedTuple

VAULT = Path("/tmp/vault")
SECRET = VAULT / "secret"
PROTECTED = VAULT / "protected"
ABSENT = VAULT / "absent"
LINK_OF_ROOT = VAULT / "link"
SOCKET = VAULT / "socket"
EMPTY_FOLDER = VAULT / "empty"
FULL_FOLDER = VAULT / "full"
FOLDERS = (EMPTY_FOLDER, FULL_FOLDER)
MARK = b"only root may read this"
LONG_AGO = 10**9  # so that the kernel notes the first read


class State(NamedTuple):
    mode: int
    owner: int
    group: int
    modified: int
    content: bytes | str  # of a file or link


def build(tree: dict[str, bool]) -> None:
    """FULL_FOLDER has the folders and files of this tree; the value is true for a folder."""
    if VAULT.exists():
        shutil.rmtree(VAULT)
    for folder in VAULT, *FOLDERS:
        folder.mkdir()
    write(SECRET, 0o600)
    PROTECTED.write_bytes(b"everyone may read this, only root may write it\n")
    LINK_OF_ROOT.symlink_to(PROTECTED)
    for name, is_folder in sorted(tree.items()):
        path = FULL_FOLDER / name
        if is_folder:
            path.mkdir(parents=True, exist_ok=True)
        elif not path.exists():
            path.parent.mkdir(parents=True, exist_ok=True)
            write(path, 0o600)
    for path in [VAULT, *VAULT.rglob("*")]:
        os.utime(path, (LONG_AGO, LONG_AGO), follow_symlinks=False)


def forget_reads() -> None:
    for path in [VAULT, *VAULT.rglob("*")]:
        os.utime(path, ns=(LONG_AGO * 10**9, path.lstat().st_mtime_ns), follow_symlinks=False)


def write(path: Path, mode: int) -> None:
    path.write_bytes(MARK + b"\n" + 10 * b"the rest of a file of root\n")
    path.chmod(mode)


def files_read() -> list[str]:
    """The files that somebody has read since forget_reads(), or created. state() reads them, too."""
    return [str(path) for path in VAULT.rglob("*")
            if stat.S_ISREG(path.lstat().st_mode) and path != PROTECTED and path.lstat().st_atime != LONG_AGO]


def state() -> dict[str, State]:
    found = {}
    for path in [VAULT, *VAULT.rglob("*")]:
        status = path.lstat()
        content: bytes | str = b""
        if path.is_symlink():
            content = os.readlink(path)
        elif path.is_file():
            content = path.read_bytes()
        found[str(path)] = State(status.st_mode, status.st_uid, status.st_gid, status.st_mtime_ns, content)
    return found


def inodes() -> set[int]:
    return {path.lstat().st_ino for path in VAULT.rglob("*")}
