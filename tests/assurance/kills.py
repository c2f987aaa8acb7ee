"""Kills korvel, and the programs that it starts, by a signal at each of their system calls, in every scenario. Then korvel runs
once more, on what the killed run left. search.py has the options.

The second run must do what it does on a fresh board, without a message. No process may be left. A package of the killed run may
be cut, because tar writes it under its final name. But the archive keeps each piece: a compressed one that is cut still has its
source. Actions that change the board differ the second time, also if nothing was killed; of these, the results do not count.
"""

import sys
from collections.abc import Iterator
from dataclasses import dataclass

import judgement
from judgement import Run
from scenarios import Scenario
from search import Kind, main
from system_calls import calls_after_loader

SIGNALS = ("KILL", "TERM", "INT", "HUP", "PIPE")
CHANGING = ("portswap", "add_interface")
CALLS_OF_PROGRAMS = "openat read write close execve wait4 mmap newfstatat".split()
FIRST_CALLS_OF_A_PROGRAM = 60  # more than most of them have


@dataclass(frozen=True)
class Kill:
    signal: str
    call: str
    number: int  # of the call, from 1
    in_children: bool = False  # the call is counted in each process; its first process that comes so far is killed

    def options(self) -> list[str]:
        follow = ["-f"] if self.in_children else []
        return [*follow, "-e", f"signal={self.signal}", "-e", f"trace={self.call}",
                "-e", f"inject={self.call}:signal={self.signal}:when={self.number}"]

    def __str__(self) -> str:
        return f"{self.call}:{self.signal}:{self.number}{' with children' if self.in_children else ''}"


def faults_of(_: Scenario, calls: list[str]) -> Iterator[Kill]:
    counts: dict[str, int] = {}
    for call, number in calls_after_loader(calls):
        counts[call] = number
        for name in SIGNALS:
            yield Kill(name, call, number)
    if "wait4" in counts or "clone3" in counts:
        for call in CALLS_OF_PROGRAMS:
            for number in range(1, FIRST_CALLS_OF_A_PROGRAM + 1):
                yield Kill("KILL", call, number, in_children=True)


def judge(scenario: Scenario, fault: Kill, runs: list[Run], usual: Run) -> str:
    killed, again = runs
    if killed["hung"] or again["hung"]:
        return "HUNG"
    if killed["left"] or again["left"]:
        return f"LEFT PROCESSES: {killed['left'] or again['left']}"
    if judgement.TERMINATED.search(killed["err"] + again["err"]):
        return "CRASHED"
    lost = killed["lost"] + again["lost"]
    if lost:
        return f"LOST: {lost[0]}"
    if scenario.words.startswith(CHANGING):
        return judgement.SAME
    if again["status"] != usual["status"] or again["err"] != usual["err"] or again["out"] != usual["out"]:
        return f"THE NEXT RUN DIFFERS: {again['err'][:100] or again['status']}"
    missing = [name for name, digest in usual["files"].items() if again["files"].get(name) != digest]
    return f"THE NEXT RUN MISSES: {missing[0]}" if missing else judgement.SAME


if __name__ == "__main__":
    sys.exit(main(Kind("kills", faults_of, judge, again=True)))
