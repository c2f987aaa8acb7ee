"""Runs korvel in each scenario while other jobs of korvel run: every second job, at the same moment or a little later, alone
or with the archiver and supervision beside it. In other runs, the wall clock steps forward, back and beyond 2038 while
korvel works. search.py has the options.

A run must do what it does alone, or say why it does not. Files of the other jobs do not count. Each run has a board of its own,
because actions change what the NetFP processes write into their dumps. Beside such an action, these dumps do not count.
"""

import sys
from collections.abc import Iterator
from dataclasses import dataclass
from pathlib import Path

import judgement
from judgement import Run
from scenarios import SCENARIOS, Scenario
from search import Kind, main

SERVICES = ("archive", "supervision")
SECONDS = 5  # of a job that does not end by itself
DELAYS = (0, 0.05, 0.3)
FAKE_TIME = next(iter(sorted(Path("/usr/lib").glob("*/faketime/libfaketime.so.1"))), None)
CLOCK = "/run/clock"
SYSTEM_LOG = "/linux/system.log"
CHANGING = ("mirrorport", "loopbackport", "portswap", "addmulticastmac", "add_interface")
CHANGED_DUMPS = ("/ti/netfp_master.log", "/ti/netfp_proxy.log")
STEPS = {"forward": "+86400", "back": "-86400", "beyond 2038": "@2039-05-01 12:00:00"}


def command(words: str) -> str:
    return f"timeout {SECONDS} korvel {words}"


@dataclass(frozen=True)
class Beside:
    words: str
    delay: float
    with_services: bool

    def options(self) -> list[str]:
        return ["-e", "trace=none"]

    def companions(self) -> list[str]:
        services = [command(words) for words in SERVICES] if self.with_services else []
        return [f"sleep {self.delay}; {command(self.words)}", *services]

    def __str__(self) -> str:
        return f"beside korvel {self.words}: after {self.delay} s{', with services' if self.with_services else ''}"


@dataclass(frozen=True)
class Step:
    name: str
    delay: float

    def options(self) -> list[str]:
        variables = {"LD_PRELOAD": FAKE_TIME, "FAKETIME_TIMESTAMP_FILE": CLOCK, "FAKETIME_NO_CACHE": 1,
                     "FAKETIME_DONT_FAKE_MONOTONIC": 1}
        return ["-e", "trace=none", *(word for name, value in variables.items() for word in ("-E", f"{name}={value}"))]

    def companions(self) -> list[str]:
        return [f"echo +0 > {CLOCK}; sleep {self.delay}; echo '{STEPS[self.name]}' > {CLOCK}"]

    def __str__(self) -> str:
        return f"the clock steps: {self.name}, after {self.delay} s"


def faults_of(_: Scenario, __: list[str]) -> Iterator[Beside | Step]:
    for partner in SCENARIOS:
        if not partner.board:
            for delay in DELAYS:
                yield Beside(partner.words, delay, False)
                yield Beside(partner.words, delay, True)
    for name in STEPS if FAKE_TIME else ():
        for delay in (0.02, 0.1, 0.5, 1.5):
            yield Step(name, delay)


def judge(scenario: Scenario, fault: Beside | Step, runs: list[Run], usual: Run) -> str:
    is_changed = isinstance(fault, Beside) and fault.words.startswith(CHANGING)
    changing = (SYSTEM_LOG, *CHANGED_DUMPS) if is_changed else (SYSTEM_LOG,)  # the system log has lines of all jobs
    own = {name: digest for name, digest in runs[0]["files"].items() if name in usual["files"]}
    other = {name: digest for name, digest in own.items() if name.endswith(changing)}
    out = runs[0]["out"] if is_changed and "print" in scenario.words else usual["out"]
    return judgement.judge("", runs[0] | {"files": own}, usual | {"files": usual["files"] | other, "out": out})


if __name__ == "__main__":
    sys.exit(main(Kind("together", faults_of, judge, runs_of_a_board=1)))
