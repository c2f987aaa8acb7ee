"""Lets every system call of korvel fail, in every scenario, and judges what korvel does then. Takes hours. It continues where
it was ended.

    system_calls.py [--minutes N] [--jobs N] [SCENARIO]      SCENARIO: a regular expression

Prints each kind of defect once, with the command that repeats it, and a table of outcomes. The exit status is 1 if there are
defects. The results are in build-prove/system-calls.jsonl.
"""

import argparse
import collections
import json
import os
import random
import re
import subprocess
import sys
import time
from collections.abc import Iterator
from concurrent.futures import ThreadPoolExecutor, as_completed
from dataclasses import dataclass
from pathlib import Path
from typing import Any

import judgement
from scenarios import SCENARIOS, Scenario

SOURCE = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("KORVEL_BUILD", SOURCE / "build-release"))
RESULTS = SOURCE / "build-prove/system-calls.jsonl"
ON_BOARD = (Path(__file__).parent / "on_board.py").read_text(encoding="utf-8")
ERRORS = ("EIO", "ENOSPC", "EINTR", "ENOMEM", "EAGAIN", "EMFILE")
# These do not fail in any kernel, or not with an error that a program could handle. strace does not execute a call that it
# lets fail, but a close that fails closes the descriptor.
NEVER_FAIL = set("""arch_prctl brk close clock_gettime clock_nanosleep execve exit_group futex getegid geteuid getgid getpid getppid gettid
    getuid restart_syscall rseq rt_sigaction rt_sigprocmask rt_sigreturn set_robust_list set_tid_address""".split())
# A kernel says these now and then, so they last for twenty calls at most.
PASSING = {"EINTR", "EAGAIN"}
RUNS_OF_A_BOARD = 24


@dataclass(frozen=True)
class Fault:
    call: str
    number: int  # of the first call that fails, from 1
    error: str
    lasting: bool  # so do the calls after it

    def options(self) -> list[str]:
        end = (f"..{self.number + 19}" if self.error in PASSING else "+") if self.lasting else ""
        return ["-e", f"trace={self.call}", "-e", f"inject={self.call}:error={self.error}:when={self.number}{end}"]

    def __str__(self) -> str:
        return self.options()[-1].removeprefix("inject=")


def on_board(scenario: Scenario, faults: list[list[str]], **more: Any) -> list[Any]:
    """Runs korvel with each fault, see on_board.py."""
    job = {"words": scenario.words.split(), "seconds": scenario.seconds, "faults": faults, **more}
    done = subprocess.run([BUILD / "boardsim", *scenario.board, "--", "python3", "-", json.dumps(job)], input=ON_BOARD,
                          capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{scenario}: {done.stderr}")
    return [json.loads(line) for line in done.stdout.splitlines()]


def runs_of(scenario: Scenario, faults: list[Fault]) -> list[Any]:
    return on_board(scenario, [fault.options() for fault in faults])


def faults_of(calls: list[str]) -> Iterator[Fault]:
    """The loader unmaps its cache after the last library. Before that, no program runs that could handle an error."""
    of_loader = collections.Counter(calls[:calls.index("munmap") + 1])
    for call, count in collections.Counter(calls).items():
        if call not in NEVER_FAIL:
            for number in range(of_loader[call] + 1, count + 1):
                for error in ERRORS:
                    for lasting in (False, True):
                        yield Fault(call, number, error, lasting)


def name_of(scenario: Scenario) -> str:
    return " ".join([*scenario.board, "korvel", scenario.words])


def known_results() -> list[dict[str, str]]:
    if not RESULTS.exists():
        return []
    return [json.loads(line) for line in RESULTS.read_text(encoding="utf-8").splitlines() if line.endswith("}")]


class Search:
    def __init__(self, minutes: float, jobs: int) -> None:
        self.end = time.monotonic() + minutes * 60
        self.jobs = jobs
        self.results = known_results()
        self.done = {(result["scenario"], result["fault"]) for result in self.results}
        RESULTS.parent.mkdir(exist_ok=True)
        self.file = RESULTS.open("a", encoding="utf-8")

    def run(self, scenarios: list[Scenario]) -> None:
        with ThreadPoolExecutor(self.jobs) as pool:
            usual = dict(zip(scenarios, pool.map(lambda scenario: on_board(scenario, []), scenarios)))
            chunks = []
            total = 0
            for scenario, (_, calls) in usual.items():
                faults = [fault for fault in faults_of(calls) if (name_of(scenario), str(fault)) not in self.done]
                random.Random(1).shuffle(faults)
                total += len(faults)
                chunks += [(scenario, faults[i:i + RUNS_OF_A_BOARD]) for i in range(0, len(faults), RUNS_OF_A_BOARD)]
            random.Random(1).shuffle(chunks)
            print(f"{len(self.done)} faults are done, {total} are left.", flush=True)
            began = time.monotonic()
            done = 0
            for finished in as_completed([pool.submit(self.chunk, chunk) for chunk in chunks]):
                scenario, faults, runs = finished.result()
                for fault, run in zip(faults, runs):
                    self.note(scenario, fault, run, usual[scenario][0])
                done += len(runs)
                if runs:
                    left = (time.monotonic() - began) / done * (total - done)
                    print(f"[{done}/{total}] {left / 60:.0f} min left ", end="\r", file=sys.stderr)

    def chunk(self, work: tuple[Scenario, list[Fault]]) -> tuple[Scenario, list[Fault], list[Any]]:
        scenario, faults = work
        return scenario, faults, runs_of(scenario, faults) if time.monotonic() < self.end else []

    def note(self, scenario: Scenario, fault: Fault, run: dict[str, Any], usual: dict[str, Any]) -> None:
        if not run["injected"] and not run["hung"]:
            return  # another order of calls
        outcome = judgement.judge(fault.call, run, usual)
        if outcome.startswith(judgement.SILENT_DEFECT):
            [traced] = on_board(scenario, [fault.options() + ["-k"]])
            if judgement.excuse(traced["stacks"]):
                outcome = judgement.DOCUMENTED
            run["stacks"] = traced["stacks"][:1500]
        result = {"scenario": name_of(scenario), "fault": str(fault), "outcome": outcome}
        if outcome not in judgement.RIGHT:
            result["run"] = run
        self.results.append(result)
        self.file.write(json.dumps(result) + "\n")
        self.file.flush()

    def report(self) -> int:
        outcomes = collections.Counter(result["outcome"].partition(":")[0] for result in self.results)
        defects = [result for result in self.results if result["outcome"] not in judgement.RIGHT]
        kinds: dict[tuple[str, str], list[dict[str, str]]] = {}
        for result in defects:
            kinds.setdefault((result["outcome"], result["fault"].split(":")[0]), []).append(result)
        for (outcome, _), results in sorted(kinds.items(), key=lambda kind: -len(kind[1])):
            print(f"{len(results)} times: {outcome}\n    {results[0]['scenario']}   {results[0]['fault']}")
        for outcome, number in outcomes.most_common():
            print(f"{number:8,}  {outcome}")
        print(f"{len(self.results):8,}  in all")
        return 1 if defects else 0


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--minutes", type=float, default=24 * 60)
    parser.add_argument("--jobs", type=int, default=4 * (os.cpu_count() or 1))
    parser.add_argument("scenario", nargs="?", default=".")
    arguments = parser.parse_args()
    search = Search(arguments.minutes, arguments.jobs)
    search.run([scenario for scenario in SCENARIOS if re.search(arguments.scenario, name_of(scenario))])
    return search.report()


if __name__ == "__main__":
    sys.exit(main())
