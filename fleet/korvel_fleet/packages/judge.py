"""Runs korvel-report for packages that arrived."""

import functools
import os
import shutil
import sys
from collections import deque
from collections.abc import Callable, Sequence
from dataclasses import dataclass
from pathlib import Path

from korvel_fleet.boards.processes import Command, Processes
from korvel_fleet.common.errors import Trouble
from korvel_fleet.common.texts import Tail
from korvel_fleet.packages.verdicts import JsonLines, Verdict

# korvel-report needs longer to read its rules than to read a package. So it waits for some packages, but not for long.
BATCH = 32
FEW = 8
PATIENCE = 0.5  # seconds
SECONDS = 20  # for each package; korvel-report itself stops after ten seconds of processor time


def find_program() -> str:
    """korvel-report beside this program, or else on the search path."""
    beside = Path(sys.argv[0]).resolve().with_name("korvel-report")
    program = str(beside) if beside.exists() else shutil.which("korvel-report")
    if program is None:
        raise Trouble("korvel-report is not installed: it must be beside korvel-fleet or in PATH")
    return program


def command_line(program: str, keyword: str, packages: Sequence[Path]) -> Command:
    """The job collects everything, so a collector that left no part at all is missing."""
    return Command([program, "json", "--kind", keyword, "--expect", "all", *(str(package.absolute()) for package in packages)])


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

    def complained(self, data: bytes) -> bool:
        return self._errors.add(data)

    def ended(self, _status: int | None) -> None:
        self._done(self._lines.verdicts[:self._lines.complete], self._errors.last_line())


class Judges:
    """Runs korvel-report for packages while others still arrive: as many at once as there are processors, each for
    several packages that wait. `sync` is called before the verdicts of a run are handed out.
    """

    def __init__(self, processes: Processes, program: str, keyword: str, sync: Callable[[], None]) -> None:
        self._processes = processes
        self._program = program
        self._keyword = keyword
        self._sync = sync
        self._free = os.cpu_count() or 1
        self._waiting: deque[Case] = deque()
        self._is_patient = False
        processes.when_answered(functools.partial(self._start, BATCH))

    def judge(self, package: Path, take: Callable[[Verdict], None]) -> None:
        """Calls `take` with the verdict, later."""
        self._waiting.append(Case(package, take))
        if len(self._waiting) >= FEW or not self._processes.boards_left:
            self._start(BATCH)
        elif not self._is_patient:
            self._is_patient = True
            self._processes.later(PATIENCE, self._lose_patience)

    def _lose_patience(self) -> None:
        self._is_patient = False
        self._start(BATCH)

    def _start(self, most: int) -> None:
        while self._free and self._waiting:
            self._free -= 1
            cases = [self._waiting.popleft() for _ in range(min(most, len(self._waiting)))]
            command = command_line(self._program, self._keyword, [case.package for case in cases])
            session = _Session(functools.partial(self._hand_out, cases))
            self._processes.add("korvel-report", session, command, SECONDS * len(cases))

    def _hand_out(self, cases: list[Case], verdicts: list[Verdict], error: str) -> None:
        """Packages after one that korvel-report cannot cope with are judged again, each for itself."""
        self._free += 1
        try:
            self._sync()
        except OSError as trouble:
            verdicts = [Verdict(failure=f"the disk failed: {trouble.strerror}") for _ in cases]
        for case, verdict in zip(cases, verdicts):
            case.take(verdict)
        left = cases[len(verdicts):]
        if len(cases) == 1 and left:
            left[0].take(Verdict(failure=f"korvel-report failed: {error or 'no result'}"))
        elif left:
            self._waiting.extendleft(reversed(left))
            self._start(1)
        self._start(BATCH)
