"""Lets every allocation of memory fail, once and from there on, in every scenario. search.py has the options.

Allocations before main() are left out: no code of korvel could report them, so the C++ library ends the program with a message.
"""

import subprocess
import sys
from collections.abc import Iterator
from dataclasses import dataclass

import judgement
from judgement import Run
from scenarios import Scenario
from search import BUILD, Kind, main, on_board

LIBRARY = ["-e", "trace=none", "-E", "LD_PRELOAD=/opt/korvel/tests/libfailing_memory.so",
           "-E", "FAILING_MEMORY_COUNT=/run/failing_memory"]


@dataclass(frozen=True)
class FailingAllocation:
    number: int  # of the first one that fails, from 1
    lasting: bool  # so do those after it

    def options(self) -> list[str]:
        return LIBRARY + ["-E", f"FAILING_MEMORY={self.number}-{sys.maxsize if self.lasting else self.number}"]

    def __str__(self) -> str:
        return f"allocation:{self.number}{'+' if self.lasting else ''}"


def faults_of(scenario: Scenario, _: list[str]) -> Iterator[FailingAllocation]:
    [undisturbed] = on_board(scenario, [LIBRARY])
    for number in range(1, undisturbed["allocations"] + 1):
        for lasting in (False, True):
            yield FailingAllocation(number, lasting)


def judge(_: Scenario, fault: FailingAllocation, runs: list[Run], usual: Run) -> str:
    [run] = runs
    outcome = judgement.judge("", run, usual)
    if outcome.startswith(judgement.SILENT_DEFECT) and judgement.excuse(functions_of(run["callers"])):
        return judgement.DOCUMENTED
    return outcome


def functions_of(callers: list[str]) -> str:
    return subprocess.run(["addr2line", "-C", "-f", "-e", BUILD / "bin/korvel", *callers], stdout=subprocess.PIPE, text=True,
                          check=True).stdout


if __name__ == "__main__":
    sys.exit(main(Kind("allocations", faults_of, judge)))
