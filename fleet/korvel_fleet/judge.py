"""What korvel-report says of a package: verdict, cause and findings."""

import functools
import json
import os
import shutil
import sys
from collections import deque
from collections.abc import Callable, Sequence
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from ClusterShell.NodeSet import NodeSet

from korvel_fleet.errors import Trouble
from korvel_fleet.processes import Command, Processes
from korvel_fleet.texts import Tail, one_line

BATCH = 32  # korvel-report needs longer to read its rules than to read a package
SECONDS = 20  # for each package; korvel-report itself stops after ten seconds of processor time
MAX_LINE = 8 * 1024 * 1024


@dataclass
class Verdict:
    """What is known of a package."""

    verdict: str = "unreadable"
    cause: str = ""
    board: str | None = None
    run_file: str = "absent"  # used, absent, foreign or unreadable
    sha256: str | None = None
    size: int | None = None
    time: str | None = None
    probes: dict[str, str] = field(default_factory=dict)
    findings: dict[str, int] = field(default_factory=dict)  # by severity

    @property
    def is_whole(self) -> bool:
        return self.verdict == "whole"


def find_program() -> str:
    """korvel-report beside this program, or else on the search path."""
    beside = Path(sys.argv[0]).resolve().with_name("korvel-report")
    program = str(beside) if beside.exists() else shutil.which("korvel-report")
    if program is None:
        raise Trouble("korvel-report is not installed: it must be beside korvel-fleet or in PATH")
    return program


def command_line(program: str, keyword: str, packages: Sequence[Path]) -> Command:
    return Command([program, "json", "--kind", keyword, *(str(package.absolute()) for package in packages)])


class JsonLines:
    """Reads `korvel-report json` while it arrives: the document has a line for each package, part, finding, value and
    log entry. Packages inside packages are skipped: they could pretend to be those of other boards.
    """

    def __init__(self) -> None:
        self.verdicts: list[Verdict] = []  # in the order of the command line
        self.complete = 0  # the number of verdicts that are complete
        self._rest = b""
        self._depth = 0
        self._between_packages = True

    def feed(self, data: bytes) -> bool:
        """False if a line is too long."""
        lines = (self._rest + data).split(b"\n")
        self._rest = lines.pop()
        for line in lines:
            if self._between_packages:
                self._enter(line)
            else:
                self._take(line)
        return len(self._rest) <= MAX_LINE

    def _enter(self, line: bytes) -> None:
        if line.startswith(b'{"source":'):
            self._between_packages = False
            if self._depth == 0:
                self.verdicts.append(self._verdict(json.loads(line.rstrip(b",") + b"}")))
        elif line.startswith(b"]") and self._depth > 0:
            self._depth -= 1
            self._leave()

    def _take(self, line: bytes) -> None:
        if line.startswith(b'"nested":[]'):
            self._leave()
        elif line.startswith(b'"nested":['):
            self._depth += 1
            self._between_packages = True
        elif self._depth == 0 and line.startswith(b"{"):
            self._take_part_or_finding(line)

    def _leave(self) -> None:
        self._between_packages = True
        self.complete += self._depth == 0

    def _take_part_or_finding(self, line: bytes) -> None:
        verdict = self.verdicts[-1]
        if line.startswith(b'{"rule":'):
            severity = json.loads(line.rstrip(b","))["severity"]
            verdict.findings[severity] = verdict.findings.get(severity, 0) + 1
        elif line.startswith(b'{"name":') and not verdict.cause and not verdict.is_whole:
            # The object goes on in later lines.
            part = json.loads(line.partition(b',"evidence":')[0] + b"}")
            if part["expected"] and part["state"] != "present":
                verdict.cause = one_line(f"{part['name']} {part['state']}: {part['cause'] or 'cause unknown'}")

    @staticmethod
    def _verdict(package: dict[str, Any]) -> Verdict:
        contents = package["sidecar"]["contents"] or {"probes": []}
        return Verdict(
            verdict=package["verdict"], cause=one_line(package["cause"] or package["reason"] or ""),
            board=package["board"], run_file=package["sidecar"]["state"], sha256=package["sha256"],
            size=package["size"], time=package["time"],
            probes={one_line(probe["name"]): one_line(probe["result"]) for probe in contents["probes"]})


@dataclass(frozen=True)
class Case:
    """A package to be judged, and who wants to know."""

    package: Path
    take: Callable[[Verdict], None]


class _Session:
    """One run of korvel-report."""

    def __init__(self, done: Callable[[list[Verdict], str], None]) -> None:
        self._done = done
        self._lines = JsonLines()
        self._errors = Tail()

    def received(self, data: bytes) -> bool:
        return self._lines.feed(data)

    def complained(self, data: bytes) -> None:
        self._errors.add(data)

    def ended(self, _status: int | None) -> None:
        self._done(self._lines.verdicts[:self._lines.complete], self._errors.last_line())


class Judges:
    """Runs korvel-report for packages while others still arrive: as many at once as there are processors, each for all
    packages that wait. `sync` is called before the verdicts of a run are handed out.
    """

    def __init__(self, processes: Processes, program: str, keyword: str, sync: Callable[[], None]) -> None:
        self._processes = processes
        self._program = program
        self._keyword = keyword
        self._sync = sync
        self._free = os.cpu_count() or 1
        self._waiting: deque[Case] = deque()

    def judge(self, package: Path, take: Callable[[Verdict], None]) -> None:
        """Calls `take` with the verdict, later."""
        self._waiting.append(Case(package, take))
        self._start(BATCH)

    def _start(self, most: int) -> None:
        while self._free and self._waiting:
            self._free -= 1
            cases = [self._waiting.popleft() for _ in range(min(most, len(self._waiting)))]
            command = command_line(self._program, self._keyword, [case.package for case in cases])
            self._processes.add(
                NodeSet("korvel-report"),
                begin=lambda _, cases=cases: _Session(functools.partial(self._hand_out, cases)),
                command_of=lambda _, command=command: command, timeout=SECONDS * len(cases), counts=False)

    def _hand_out(self, cases: list[Case], verdicts: list[Verdict], error: str) -> None:
        """Packages after one that korvel-report cannot cope with are judged again, each for itself."""
        self._free += 1
        self._sync()
        for case, verdict in zip(cases, verdicts):
            case.take(verdict)
        left = cases[len(verdicts):]
        if len(cases) == 1 and left:
            left[0].take(Verdict(cause=f"korvel-report failed: {error or 'no result'}"))
        elif left:
            self._waiting.extendleft(reversed(left))
            self._start(1)
        self._start(BATCH)
