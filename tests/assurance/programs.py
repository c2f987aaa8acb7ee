"""Lets system calls fail in korvel and in the programs that it starts (sh, tar, gzip, cp, ps, rm, mkdir, cat): the same call of
each process, and pairs of calls. search.py has the options; there are too many faults to try them all, so use --sample."""

import itertools
import random
import sys
from collections.abc import Iterator
from dataclasses import dataclass

import judgement
from judgement import Run
from scenarios import Scenario
from search import Kind, main, on_board
from system_calls import ERRORS, FailingCall, faults_of as faults_of_korvel

CALLS = """openat read write newfstatat fstat lseek mmap wait4 fcntl dup2 getdents64 unlinkat mkdir utimensat rename pipe2 clone3
    vfork""".split()
FIRST_CALLS = 60  # more than most of these programs have of a kind
PAIRS = 1000


@dataclass(frozen=True)
class InEveryProcess:
    failing: FailingCall  # its number is counted in each process

    def options(self) -> list[str]:
        return ["-f", "-Y", *self.failing.options()]

    def __str__(self) -> str:
        return f"{self.failing} in every process"


@dataclass(frozen=True)
class Pair:
    first: FailingCall
    second: FailingCall

    def options(self) -> list[str]:
        [_, _, *inject] = self.second.options()
        return ["-f", "-Y", *self.first.options(), "-e", f"trace={self.first.call},{self.second.call}", *inject]

    def __str__(self) -> str:
        return f"{self.first} and {self.second}"


def faults_of(scenario: Scenario, calls: list[str]) -> Iterator[InEveryProcess | Pair]:
    if scenario.seconds:
        return  # strace slows every process, so a run of fixed length does less
    for call, number, error, lasting in itertools.product(CALLS, range(1, FIRST_CALLS + 1), ERRORS, (False, True)):
        yield InEveryProcess(FailingCall(call, number, error, lasting))
    of_korvel = list(faults_of_korvel(scenario, calls))
    chance = random.Random(scenario.words)
    for _ in range(PAIRS):
        first, second = chance.sample(of_korvel, 2)
        if first.call != second.call:  # strace has one fault for each call
            yield Pair(first, second)


def judge(scenario: Scenario, fault: InEveryProcess | Pair, runs: list[Run], usual: Run) -> str:
    [run] = runs
    outcome = judgement.judge("write" if "write:" in str(fault) else "", run, usual)
    if not outcome.startswith(judgement.SILENT_DEFECT):
        return outcome
    if "korvel" not in run["programs"]:
        return judgement.DOCUMENTED  # the program that failed did not say so, such as ps for a process that it cannot read
    [traced] = on_board(scenario, [fault.options() + ["-k"]])
    return judgement.DOCUMENTED if judgement.excuse(traced["stacks"]) else outcome


if __name__ == "__main__":
    sys.exit(main(Kind("programs", faults_of, judge)))
