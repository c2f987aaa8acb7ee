"""Another user attacks korvel in /tmp: at each path that korvel, or a program that it starts, touches there, and with each
kind of plants.py. One plant is there before korvel runs. Two are exchanged while it runs. search.py has the options; there
are too many attacks to try them all, so use --sample.

The search finds the paths in a trace of each scenario. The other user is a real one, and was first: everything from /tmp to
the path belongs to that user. The plants lead into a vault of root in /tmp (vault.py), which must stay as it is. The search
needs root, or a user who may use sudo without a password.

Whoever owns /tmp/korvel or /tmp/fuse controls what is in there. What docs/security.md lists under "What remains open"
counts as "open, as documented". All other harm is a defect.
"""

import itertools
import json
import subprocess
import sys
from collections.abc import Iterator
from dataclasses import dataclass
from pathlib import Path
from typing import Any

import judgement
import plants
from judgement import Run
from scenarios import Scenario
from search import BUILD, SOURCE, Kind, main

MODULES = ("on_board", "vault", "plants", "touched")
PROGRAM = "attacks_on_board"
WORK_FOLDER = Path("/tmp/korvel")
PEERS_FOLDER = Path("/tmp/fuse")
MASTER_SOCKET = Path("/tmp/NetfpMaster")
# docs/security.md: these commands follow links in a work folder of another user. The kernel cuts their names.
FOLLOWING = {"cp", "gzip", "mkdir", "rm", "tar", "fp_linux_log_co"}
ROTATION = Scenario("archive", ("--full-logs", "--traffic", "flood"), seconds=6.5)  # runs cp and gzip


@dataclass(frozen=True)
class Attack:
    path: str
    kind: str
    other: str = ""

    def options(self) -> list[str]:
        return [self.path, self.kind, self.other]

    def __str__(self) -> str:
        return f"{self.kind}{' and ' + self.other if self.other else ''}: {self.path}"


def program() -> str:
    """A board has no files of the host, so the program brings its modules along."""
    here = Path(__file__).parent
    sources = {name: (here / f"{name}.py").read_text(encoding="utf-8") for name in MODULES}
    return ("import sys, types\n"
            f"for name, source in {sources!r}.items():\n"
            "    sys.modules[name] = types.ModuleType(name)\n"
            "    exec(compile(source, name, 'exec'), sys.modules[name].__dict__)\n"
            + (here / f"{PROGRAM}.py").read_text(encoding="utf-8"))


def on_board(scenario: Scenario, faults: list[list[str]], **_: Any) -> list[Any]:
    job = {"words": scenario.words.split(), "seconds": scenario.seconds, "faults": faults}
    done = subprocess.run([SOURCE / "tests/support/privileged/board", "users", BUILD / "boardsim", *scenario.board, "--",
                           "python3", "-", json.dumps(job)], input=program(), capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{scenario}: {done.stderr}")
    return [json.loads(line) for line in done.stdout.splitlines()]


def faults_of(_: Scenario, paths: list[str]) -> Iterator[Attack]:
    for path, kind in itertools.product(paths, plants.KINDS):
        yield Attack(path, kind)
    for path, (kind, other) in itertools.product(paths, plants.SWAPS):
        if other not in plants.BY_ROOT or Path(path).parent != Path("/tmp"):  # which is sticky: users cannot remove those
            yield Attack(path, kind, other)


def is_open(attack: Attack, harm: dict[str, Any]) -> bool:
    """Whether docs/security.md says that this harm remains possible."""
    path = Path(attack.path)
    if path.is_relative_to(WORK_FOLDER):
        return bool(harm["by"]) and set(harm["by"]) <= FOLLOWING
    if path.is_relative_to(PEERS_FOLDER):
        return harm["what"] == "taken"
    return path == MASTER_SOCKET and harm["what"] == "received"


def judge(_: Scenario, attack: Attack, runs: list[Run], usual: Run) -> str:
    [run] = runs
    path = Path(attack.path)
    defects = [harm for harm in run["harms"] if not is_open(attack, harm)]
    if defects:
        harm = defects[0]
        return f"{harm['what'].upper()}: {harm['path']} by {', '.join(harm['by']) or 'nobody'}"
    outcome = judgement.judge("", run, usual)
    if outcome == "HUNG" and any(is_following(command) for command in run["left"]):
        return judgement.OPEN
    changes_content = outcome.startswith((judgement.SILENT_DEFECT, "DAMAGED", "REPORTED, BUT"))
    if changes_content and (path.is_relative_to(WORK_FOLDER) or path.is_relative_to(PEERS_FOLDER)):
        return judgement.OPEN
    return judgement.OPEN if outcome in judgement.RIGHT and run["harms"] else outcome


def is_following(command: str) -> bool:
    return bool(command) and Path(command.split()[0]).name in FOLLOWING


if __name__ == "__main__":
    sys.exit(main(Kind("attacks", faults_of, judge, on_board=on_board, more_scenarios=(ROTATION,))))
