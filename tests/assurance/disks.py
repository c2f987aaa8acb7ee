"""Gives korvel disks of 64 sizes, from nothing to what it needs, for its work directory and archive (/tmp) and for its packages
(/ffs). No file may be damaged or missing without a message.

    disks.py [--jobs N] [SCENARIO]      SCENARIO: a regular expression

Prints the runs that broke this, and a table of outcomes. The exit status is 1 if there are such runs.
"""

import argparse
import bisect
import collections
import dataclasses
import os
import re
import sys
from concurrent.futures import ThreadPoolExecutor
from typing import Any

import judgement
from scenarios import SCENARIOS, Scenario
from search import name_of, on_board

SIZES = 64
PAGE = 4096  # the disks of a simulated board are in memory
DISKS = ("/tmp", "/ffs")
ENOUGH = 32 << 20  # bytes
# A message names the cause, so a package that was cut is no surprise.
RIGHT = (*judgement.RIGHT, "REPORTED, BUT DAMAGED")


def with_rooms(scenario: Scenario, disk: str, rooms: list[int]) -> list[Any]:
    return on_board(scenario, [], disk=disk, rooms=rooms)


def needed_by(scenario: Scenario, disk: str, usual: Any) -> int:
    """The least room with which the run is the usual one."""
    def suffices(pages: int) -> bool:
        [run] = with_rooms(scenario, disk, [pages * PAGE])
        return judgement.judge("", run, usual) == judgement.SAME
    return bisect.bisect_left(range(ENOUGH // PAGE), True, key=suffices) * PAGE


def judged(scenario: Scenario, disk: str) -> list[tuple[str, str]]:
    """Outcomes by the room that korvel had."""
    [usual] = with_rooms(scenario, disk, [ENOUGH])
    needed = needed_by(scenario, disk, usual)
    rooms = [needed * number // SIZES // PAGE * PAGE for number in range(SIZES)]
    return [(f"{room} bytes left on {disk}: {name_of(scenario)}", judgement.judge("", run, usual))
            for room, run in zip(rooms, with_rooms(scenario, disk, rooms))]


def main() -> int:
    parser = argparse.ArgumentParser()
    parser.add_argument("--jobs", type=int, default=4 * (os.cpu_count() or 1))
    parser.add_argument("scenario", nargs="?", default="dump|pkg|archive")
    arguments = parser.parse_args()
    # With full logs, packages and archives need some MiB.
    chosen = [dataclasses.replace(scenario, board=("--full-logs",)) for scenario in SCENARIOS
              if re.search(arguments.scenario, scenario.words)]
    work = [(scenario, disk) for scenario in chosen for disk in DISKS]
    outcomes: collections.Counter[str] = collections.Counter()
    with ThreadPoolExecutor(arguments.jobs) as pool:
        for done, results in enumerate(pool.map(lambda pair: judged(*pair), work), 1):
            print(f"[{done}/{len(work)}]", end="\r", file=sys.stderr)
            for run, outcome in results:
                outcomes[outcome.partition(":")[0]] += 1
                if outcome not in RIGHT:
                    print(f"{outcome}\n    {run}", flush=True)
    for outcome, number in outcomes.most_common():
        print(f"{number:6,}  {outcome}")
    return 0 if set(outcomes) <= set(RIGHT) else 1


if __name__ == "__main__":
    sys.exit(main())
