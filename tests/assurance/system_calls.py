"""Lets every system call of korvel fail, in every scenario, and judges what korvel does then. search.py has the options."""

import collections
import sys
from collections.abc import Iterator
from dataclasses import dataclass

import judgement
from judgement import Run
from scenarios import Scenario
from search import Kind, main, on_board

ERRORS = ("EIO", "ENOSPC", "EINTR", "ENOMEM", "EAGAIN", "EMFILE")
# These do not fail in any kernel, or not with an error that a program could handle. strace does not execute a call that it
# lets fail, but a close that fails closes the descriptor.
NEVER_FAIL = set("""arch_prctl brk close clock_gettime clock_nanosleep execve exit_group futex getegid geteuid getgid getpid getppid gettid
    getuid restart_syscall rseq rt_sigaction rt_sigprocmask rt_sigreturn set_robust_list set_tid_address""".split())
# A kernel says these now and then, so they last for twenty calls at most.
PASSING = {"EINTR", "EAGAIN"}


@dataclass(frozen=True)
class FailingCall:
    call: str
    number: int  # of the first call that fails, from 1
    error: str
    lasting: bool  # so do the calls after it

    def options(self) -> list[str]:
        end = (f"..{self.number + 19}" if self.error in PASSING else "+") if self.lasting else ""
        return ["-e", f"trace={self.call}", "-e", f"inject={self.call}:error={self.error}:when={self.number}{end}"]

    def __str__(self) -> str:
        return self.options()[-1].removeprefix("inject=")


def calls_after_loader(calls: list[str]) -> Iterator[tuple[str, int]]:
    """Calls with their numbers, from 1. The loader unmaps its cache after the last library; before that, no program runs that
    could handle an error."""
    of_loader = collections.Counter(calls[:calls.index("munmap") + 1])
    for call, count in collections.Counter(calls).items():
        for number in range(of_loader[call] + 1, count + 1):
            yield call, number


def faults_of(_: Scenario, calls: list[str]) -> Iterator[FailingCall]:
    for call, number in calls_after_loader(calls):
        if call not in NEVER_FAIL:
            for error in ERRORS:
                for lasting in (False, True):
                    yield FailingCall(call, number, error, lasting)


def judge(scenario: Scenario, fault: FailingCall, runs: list[Run], usual: Run) -> str:
    [run] = runs
    outcome = judgement.judge(fault.call, run, usual)
    if outcome.startswith(judgement.SILENT_DEFECT):
        [traced] = on_board(scenario, [fault.options() + ["-k"]])
        if judgement.excuse(traced["stacks"]):
            return judgement.DOCUMENTED
        run["stacks"] = traced["stacks"][:1500]
    return outcome


if __name__ == "__main__":
    sys.exit(main(Kind("system-calls", faults_of, judge)))
