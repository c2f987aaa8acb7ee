"""What korvel-report says of a package: verdict, cause and findings."""

import json
import os
import shutil
import sys
from collections import deque
from collections.abc import Callable
from dataclasses import dataclass, field
from pathlib import Path

from ClusterShell.NodeSet import NodeSet

from korvel_fleet.errors import Trouble
from korvel_fleet.processes import Command, Processes
from korvel_fleet.texts import decoded, one_line

SECONDS = 60  # korvel-report itself stops after ten seconds of processor time
MAX_LINE = 8 * 1024 * 1024

# `korvel-report json` writes each package, part, finding, value and log entry on a line of its own. So this program
# reads a line at a time, and stops before the values and logs.
_PACKAGE = b'{"source":'
_FINDING = b'{"rule":'
_PART = b'{"name":'
_VALUES = b'"values":['


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


def command_line(program: str, keyword: str, package: Path) -> Command:
    return Command([program, "json", "--kind", keyword, str(package)])


class Reader:
    """Reads the lines of `korvel-report json` as they come."""

    def __init__(self, take: Callable[[Verdict], None]) -> None:
        self.verdict = Verdict()
        self.errors = b""
        self._take_result = take
        self._rest = b""
        self._known = False

    def received(self, data: bytes) -> bool:
        """False once all was read that is needed, or if a line is too long."""
        lines = (self._rest + data).split(b"\n")
        self._rest = lines.pop()
        return all(self._take(line) for line in lines) and len(self._rest) <= MAX_LINE

    def complained(self, data: bytes) -> None:
        self.errors = (self.errors + data)[:4096]

    def ended(self, _status: int | None) -> None:
        if not self._known:
            self.verdict.cause = f"korvel-report failed: {one_line(decoded(self.errors)) or 'no output'}"
        self._take_result(self.verdict)

    def _take(self, line: bytes) -> bool:
        if line.startswith(_PACKAGE) and not self._known:
            self._take_package(json.loads(line.rstrip(b",") + b"}"))
        elif line.startswith(_PART) and not self.verdict.cause and not self.verdict.is_whole:
            self._take_part(line)
        elif line.startswith(_FINDING):
            severity = json.loads(line.rstrip(b","))["severity"]
            self.verdict.findings[severity] = self.verdict.findings.get(severity, 0) + 1
        return not line.startswith(_VALUES)

    def _take_package(self, package: dict) -> None:
        self._known = True
        verdict = self.verdict
        for name in ("verdict", "board", "sha256", "size", "time"):
            setattr(verdict, name, package[name])
        verdict.cause = one_line(package["cause"] or package["reason"] or "")
        verdict.run_file = package["sidecar"]["state"]
        contents = package["sidecar"]["contents"] or {"probes": []}
        verdict.probes = {one_line(probe["name"]): one_line(probe["result"]) for probe in contents["probes"]}

    def _take_part(self, line: bytes) -> None:
        """The first part that is not as it should be is the cause. The object goes on in later lines."""
        head = line.partition(b',"evidence":')[0]
        part = json.loads(head + b"}")
        if part["expected"] and part["state"] != "present":
            self.verdict.cause = one_line(f"{part['name']} {part['state']}: {part['cause'] or 'cause unknown'}")


class Judges:
    """Runs korvel-report for packages while others still arrive: as many at once as there are processors."""

    def __init__(self, processes: Processes, program: str, keyword: str) -> None:
        self._processes = processes
        self._program = program
        self._keyword = keyword
        self._free = os.cpu_count() or 1
        self._waiting: deque[tuple[str, Path, Callable[[Verdict], None]]] = deque()

    def judge(self, board: str, package: Path, take: Callable[[Verdict], None]) -> None:
        """Calls `take` with the verdict, later."""
        self._waiting.append((board, package, take))
        self._start()

    def _start(self) -> None:
        while self._free and self._waiting:
            self._free -= 1
            board, package, take = self._waiting.popleft()
            self._processes.add(
                NodeSet(board),
                begin=lambda _: Reader(lambda verdict, take=take: self._take(take, verdict)),
                command_of=lambda _, package=package: command_line(self._program, self._keyword, package),
                timeout=SECONDS, counts=False)

    def _take(self, take: Callable[[Verdict], None], verdict: Verdict) -> None:
        self._free += 1
        take(verdict)
        self._start()
