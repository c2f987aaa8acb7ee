"""Makes packages with korvel on the simulated board, and reads what is in them."""

import hashlib
import os
import subprocess
import tarfile
from collections.abc import Mapping
from dataclasses import dataclass
from io import BytesIO
from pathlib import Path

BUILD = Path(os.environ["KORVEL_BUILD"])
PACKAGE_NAMES = {
    "pkg": "netfp_logs_*.tgz",
    "pkg-trs": "netfp_logs.tgz",
    "pkg-sup": "netfp_logs_sup.tgz",
    "pkg-pm": "netfp_logs_post_mortem.tgz",
    "pkg-sdown": "netfp_logs_shutdown.tgz",
}
ENDINGS = (".log.gz", ".log", ".tgz")

# Runs on the board. Standard output is a tar archive of the package and of what describes the run.
SCRIPT = """
now() {{ date -u +%Y-%m-%dT%H:%M:%SZ; }}
mkdir -p /root/out
rm -rf /tmp/korvel
{prepare}
now > /root/out/began
{make} 2> /root/out/errors > /dev/null
echo $? > /root/out/status
now > /root/out/ended
cp /ffs/run/logs/{name} /root/out/package.tgz
cp /ffs/run/logs/{name}.run /root/out/sidecar 2> /dev/null
cd /root/out && tar -cf - .
"""
BY_HAND = '{environment} "$(command -v korvel)" {command}'
BY_UNIT = '/opt/korvel/libexec/korvel/make-package "$(command -v korvel)" {command}'


@dataclass(frozen=True)
class BoardPackage:
    """A package as korvel left it, and its run."""

    kind: str
    data: bytes
    errors: str  # standard error of korvel
    members: Mapping[str, bytes]  # the contents of files, by the names of the parts
    sidecar: str

    @property
    def file_name(self) -> str:
        return PACKAGE_NAMES[self.kind].replace("*", "261122_083033")


def part_name(member: str) -> str:
    name = member.removeprefix("./")
    return next((name.removesuffix(ending) for ending in ENDINGS if name.endswith(ending)), name)


def read_files(archive: tarfile.TarFile) -> dict[str, bytes]:
    """The files of an archive by their names, up to the point where the archive is damaged."""
    files = {}
    try:
        for member in archive:
            if member.isfile():
                files[member.name] = archive.extractfile(member).read()
    except (EOFError, OSError, tarfile.TarError):
        pass
    return files


def read_members(data: bytes) -> dict[str, bytes]:
    try:
        with tarfile.open(fileobj=BytesIO(data), mode="r:gz") as archive:
            return {part_name(name): content for name, content in read_files(archive).items()}
    except (EOFError, OSError, tarfile.TarError):
        return {}


@dataclass(frozen=True)
class Making:
    """How a package is made."""

    board: tuple[str, ...] = ()  # options of boardsim
    prepare: str = ":"  # commands before
    arguments: str = ""  # of korvel, before the kind
    environment: str = ""  # a variable of korvel
    by_unit: bool = False  # by the script of the systemd units, which writes the sidecar itself


def make_package(kind: str, making: Making) -> BoardPackage:
    """Makes a package on a board of its own."""
    command = f"{making.arguments} {kind}".strip()
    make = (BY_UNIT if making.by_unit else BY_HAND).format(environment=making.environment, command=command)
    script = SCRIPT.format(prepare=making.prepare, make=make, name=PACKAGE_NAMES[kind])
    done = subprocess.run([BUILD / "boardsim", *making.board, "--", "sh", "-s"], input=script.encode(),
                          capture_output=True, check=False, timeout=300)
    with tarfile.open(fileobj=BytesIO(done.stdout)) as archive:
        files = {name.removeprefix("./"): content for name, content in read_files(archive).items()}
    data = files["package.tgz"]
    texts = {name: content.decode("utf-8", "replace") for name, content in files.items() if name != "package.tgz"}
    sidecar = texts.get("sidecar") or written_sidecar(command, data, texts)
    return BoardPackage(kind, data, texts["errors"], read_members(data), sidecar)


def written_sidecar(command: str, data: bytes, texts: Mapping[str, str]) -> str:
    """What the script of the units would have written."""
    keys = {"format": "1", "board": "matrix", "command": f"korvel {command}", "status": texts["status"].strip(),
            "began": texts["began"].strip(), "ended": texts["ended"].strip(), "zone": "UTC",
            "sha256": hashlib.sha256(data).hexdigest()}
    return "".join(f"{key}: {value}\n" for key, value in keys.items()) + "\n" + texts["errors"]
