"""The scripts of the demos, run without their installation and their build."""

import os
import shutil
import subprocess
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])
PROGRAMS = ("boardsim", "korvel-report", "korvel-fleet")


def lay_out(folder: Path) -> None:
    """The scripts as in a source tree, with the tested build; programs that only succeed install and build."""
    shutil.copytree(SOURCE / "scripts", folder / "scripts")
    (folder / "build").mkdir()
    for program in PROGRAMS:
        (folder / "build" / program).symlink_to(BUILD / program)
    for name in ("scripts/setup.sh", "bin/cmake"):
        path = folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text("#!/bin/sh\n")
        path.chmod(0o755)


def run(script: str, folder: Path) -> subprocess.CompletedProcess[str]:
    """Runs scripts/SCRIPT in an empty folder. The output has standard error, too."""
    lay_out(folder)
    # The sanitizers' search for leaks cannot trace a process that the board's commands trace already.
    environment = os.environ | {"PATH": f"{folder}/bin:{os.environ['PATH']}", "ASAN_OPTIONS": "detect_leaks=0"}
    return subprocess.run([folder / "scripts" / script], env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
