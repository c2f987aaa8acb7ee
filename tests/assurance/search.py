"""Runs korvel with many faults on simulated boards, and judges what it does. A search is a program of its own, such as
system_calls.py. It may take hours, and continues where it was ended:

    SEARCH.py [--minutes N] [--jobs N] [--sample N] [SCENARIO]

SCENARIO is a regular expression. With --sample, each scenario has N faults at most, chosen at random but the same each time.
Prints each kind of defect once, with a scenario and fault that show it, and a table of outcomes. The exit status is 1 if there
are defects. The results are in build-prove/NAME.jsonl.
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
from collections.abc import Callable, Iterable
from concurrent.futures import ThreadPoolExecutor, as_completed
from dataclasses import dataclass
from pathlib import Path
from typing import Any, Protocol

import judgement
from judgement import Run
from scenarios import SCENARIOS, Scenario

SOURCE = Path(__file__).resolve().parents[2]
BUILD = Path(os.environ.get("KORVEL_BUILD", SOURCE / "build-release"))
ON_BOARD = (Path(__file__).parent / "on_board.py").read_text(encoding="utf-8")
RUNS_OF_A_BOARD = 24


class Fault(Protocol):
    """str() of a fault is unique within a scenario."""

    def options(self) -> list[str]:
        """Options of strace, or what Kind.on_board takes."""

    def companions(self) -> list[str]:
        """Shell commands that run at the same time. A fault may lack this function."""


@dataclass(frozen=True)
class Kind:
    name: str
    faults: Callable[[Scenario, list[str]], Iterable[Fault]]  # from korvel's system calls in an undisturbed run
    judge: Callable[[Scenario, Fault, list[Run], Run], str]  # from the runs with a fault, and the undisturbed one
    runs_of_a_board: int = RUNS_OF_A_BOARD
    again: bool = False  # after each run with a fault, korvel runs once more without it
    on_board: Callable[..., list[Any]] | None = None  # instead of on_board(); may list something else than system calls
    more_scenarios: tuple[Scenario, ...] = ()


def on_board(scenario: Scenario, faults: list[list[str]], **more: Any) -> list[Any]:
    """Runs korvel with each fault, see on_board.py."""
    job = {"words": scenario.words.split(), "seconds": scenario.seconds, "faults": faults, **more}
    done = subprocess.run([BUILD / "boardsim", *scenario.board, "--", "python3", "-", json.dumps(job)], input=ON_BOARD,
                          capture_output=True, text=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"{scenario}: {done.stderr}")
    return [json.loads(line) for line in done.stdout.splitlines()]


def name_of(scenario: Scenario) -> str:
    return " ".join([*scenario.board, "korvel", scenario.words])


class Search:
    def __init__(self, kind: Kind, minutes: float, jobs: int, sample: int | None) -> None:
        self.kind = kind
        self.end = time.monotonic() + minutes * 60
        self.jobs = jobs
        self.sample = sample
        self.on_board = kind.on_board or on_board
        path = SOURCE / f"build-prove/{kind.name}.jsonl"
        path.parent.mkdir(exist_ok=True)
        path.touch()
        lines = path.read_text(encoding="utf-8").splitlines()
        self.results = [json.loads(line) for line in lines if line.endswith("}")]
        self.done = {(result["scenario"], result["fault"]) for result in self.results}
        self.file = path.open("a", encoding="utf-8")

    def faults_left(self, scenario: Scenario, calls: list[str]) -> list[Fault]:
        faults = list(self.kind.faults(scenario, calls))
        random.Random(1).shuffle(faults)
        return [fault for fault in faults[:self.sample] if (name_of(scenario), str(fault)) not in self.done]

    def run(self, scenarios: list[Scenario]) -> None:
        with ThreadPoolExecutor(self.jobs) as pool:
            usual = dict(zip(scenarios, pool.map(lambda scenario: self.on_board(scenario, []), scenarios)))
            left = dict(zip(scenarios, pool.map(lambda scenario: self.faults_left(scenario, usual[scenario][1]), scenarios)))
            chunks = [(scenario, faults[i:i + self.kind.runs_of_a_board], usual[scenario][0])
                      for scenario, faults in left.items() for i in range(0, len(faults), self.kind.runs_of_a_board)]
            random.Random(1).shuffle(chunks)
            total = sum(len(faults) for _, faults, _ in chunks)
            print(f"{len(self.done)} faults are done, {total} are left.", flush=True)
            began = time.monotonic()
            done = 0
            for finished in as_completed([pool.submit(self.chunk, *chunk) for chunk in chunks]):
                done += finished.result()
                minutes = (time.monotonic() - began) / max(done, 1) * (total - done) / 60
                print(f"[{done}/{total}] {minutes:.0f} min left ", end="\r", file=sys.stderr)

    def chunk(self, scenario: Scenario, faults: list[Fault], usual: Run) -> int:
        """Returns how many faults it tried."""
        if time.monotonic() >= self.end:
            return 0
        companions = [getattr(fault, "companions", list)() for fault in faults]
        runs = self.on_board(scenario, [fault.options() for fault in faults], again=self.kind.again, companions=companions)
        runs_of_a_fault = 2 if self.kind.again else 1
        for number, fault in enumerate(faults):
            of_fault = runs[number * runs_of_a_fault:(number + 1) * runs_of_a_fault]
            if of_fault[0]["injected"] or of_fault[0]["hung"]:  # otherwise, the order of the calls differed
                self.note(scenario, fault, of_fault, usual)
        return len(faults)

    def note(self, scenario: Scenario, fault: Fault, runs: list[Run], usual: Run) -> None:
        outcome = self.kind.judge(scenario, fault, runs, usual)
        result: dict[str, Any] = {"scenario": name_of(scenario), "fault": str(fault), "outcome": outcome}
        if outcome not in judgement.RIGHT:
            result["runs"] = runs
        self.results.append(result)
        self.file.write(json.dumps(result) + "\n")
        self.file.flush()

    def report(self) -> int:
        defects = [result for result in self.results if result["outcome"] not in judgement.RIGHT]
        kinds: dict[tuple[str, str], list[dict[str, str]]] = {}
        for result in defects:
            kinds.setdefault((result["outcome"], result["fault"].split(":")[0]), []).append(result)
        for (outcome, _), results in sorted(kinds.items(), key=lambda kind: -len(kind[1])):
            print(f"{len(results)} times: {outcome}\n    {results[0]['scenario']}   {results[0]['fault']}")
        outcomes = collections.Counter(result["outcome"].partition(":")[0] for result in self.results)
        for outcome, number in outcomes.most_common():
            print(f"{number:8,}  {outcome}")
        print(f"{len(self.results):8,}  in all")
        return 1 if defects else 0


def main(kind: Kind) -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--minutes", type=float, default=24 * 60)
    parser.add_argument("--jobs", type=int, default=4 * (os.cpu_count() or 1))
    parser.add_argument("--sample", type=int)
    parser.add_argument("scenario", nargs="?", default=".")
    arguments = parser.parse_args()
    search = Search(kind, arguments.minutes, arguments.jobs, arguments.sample)
    scenarios = *SCENARIOS, *kind.more_scenarios
    search.run([scenario for scenario in scenarios if re.search(arguments.scenario, name_of(scenario))])
    return search.report()
