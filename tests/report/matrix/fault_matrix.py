"""Checks korvel-report on packages of faulty boards, and prints a table of figures.

korvel makes each package on a simulated board. korvel-report judges it with its sidecar and without it.

    fault_matrix.py [--quick] [--verbose] [PATTERN]

PATTERN selects scenarios by name. --quick makes one package for every other scenario, and leaves out some scenarios
with an earlier run. Exits 1 if a figure misses its limit.
"""

import argparse
import concurrent.futures
import json
import os
import re
import subprocess
import sys
import tempfile
from dataclasses import dataclass, field, fields
from pathlib import Path

from board_package import BUILD, BoardPackage, make_package
from harms import Harm, Harms, was_disturbed
from scenarios import Scenario, all_scenarios

PROGRAM = Path(os.environ.get("KORVEL_REPORT", BUILD / "korvel-report"))
BOARDS_AT_ONCE = 8  # they mostly wait
STATUSES = {"whole": 0, "incomplete": 1, "cut": 2}
LEAST_RIGHT = 0.95  # of the causes
MOST_REPETITIONS = 3


@dataclass
class Figures:
    """What came out. The lists hold a line for each case."""

    packages: int = 0
    repeated: int = 0  # because this machine was too busy
    harmed: int = 0  # parts
    named: int = 0
    right: int = 0  # with the right cause
    stale: int = 0
    stale_named: int = 0
    unnamed: list[str] = field(default_factory=list)
    wrong_causes: list[str] = field(default_factory=list)
    wrong_certain: list[str] = field(default_factory=list)
    false_alarms: list[str] = field(default_factory=list)  # a healthy part is called harmed
    wrong_verdicts: list[str] = field(default_factory=list)

    def add(self, other: "Figures") -> None:
        for row in fields(self):
            setattr(self, row.name, getattr(self, row.name) + getattr(other, row.name))

    def are_good(self) -> bool:
        bad = (self.unnamed, self.wrong_certain, self.false_alarms, self.wrong_verdicts)
        return not any(bad) and self.right >= LEAST_RIGHT * self.harmed and self.stale_named == self.stale

    def table(self) -> str:
        share = f" ({self.right / self.harmed:.1%})" if self.harmed else ""
        rows = (
            ("packages, judged with and without a sidecar", f"{self.packages}", ""),
            ("packages made again, on a busy machine", f"{self.repeated}", ""),
            ("harmed parts", f"{self.harmed}", ""),
            ("named", f"{self.named}", "all"),
            ("with the right cause", f"{self.right}{share}", "95 %"),
            ("with a wrong cause", f"{len(self.wrong_causes)}", ""),
            ("with a wrong cause that is called certain", f"{len(self.wrong_certain)}", "0"),
            ("stale parts", f"{self.stale}", ""),
            ("stale parts that are named", f"{self.stale_named}", "all"),
            ("healthy parts that are called harmed", f"{len(self.false_alarms)}", "0"),
            ("wrong verdicts and exit statuses", f"{len(self.wrong_verdicts)}", "0"),
        )
        lines = [f"{what:45}{count:>16}  {limit}".rstrip() for what, count, limit in rows]
        return "\n".join([f"{'':45}{'Count':>16}  Limit", *lines])

    def troubles(self) -> list[str]:
        lists = {"not named": self.unnamed, "wrong cause": self.wrong_causes, "wrong and certain": self.wrong_certain,
                 "false alarm": self.false_alarms, "verdict": self.wrong_verdicts}
        return [f"{title}: {line}" for title, lines in lists.items() for line in lines]


class Judgement:
    """What korvel-report says about a package."""

    def __init__(self, path: Path, *options: str) -> None:
        done = subprocess.run([PROGRAM, "json", *options, path], capture_output=True, check=False, timeout=600)
        package = json.loads(done.stdout)["packages"][0]
        self.verdict = package["verdict"]
        self.parts = {part["name"]: part for part in package["parts"]}
        self.findings = package["findings"]
        self.status = subprocess.run([PROGRAM, "check", *options, path], stdout=subprocess.DEVNULL, check=False,
                                     timeout=600).returncode

    def is_found(self, rule: str, name: str) -> bool:
        """Whether a finding of the rule names the part, or its folder."""
        folder = name.partition("/")[0]
        return any(finding["part"] == name or folder in (line["source"] for line in finding["evidence"])
                   for finding in self.findings if finding["rule"] == rule)


def judge_part(label: str, name: str, expected: Harm, judgement: Judgement) -> Figures:
    part = judgement.parts.get(name, {"state": "absent", "cause": None, "certainty": None})
    line = f"{label}: {name} is {part['state']} ({part['certainty']}): {part['cause']}"
    by_state = part["state"] in expected.states
    by_finding = part["state"] == "present" and expected.finding and judgement.is_found(expected.finding, name)
    right = by_finding or (by_state and re.search(expected.cause, part["cause"] or "") is not None)
    named = bool(by_state or by_finding)
    is_stale = expected.states == {"stale"}
    wrong = part["state"] != "present" and not right
    return Figures(harmed=1, named=named, right=bool(right), stale=is_stale, stale_named=is_stale and named,
                   unnamed=[] if named else [f"{line}, not {'/'.join(sorted(expected.states))}"],
                   wrong_causes=[f"{line}, not /{expected.cause}/"] if wrong else [],
                   wrong_certain=[line] if wrong and part["certainty"] == "certain" else [])


def judge_package(label: str, judgement: Judgement, harms: Harms, verdict: str | None) -> Figures:
    figures = Figures(packages=1)
    for name, expected in harms.items():
        figures.add(judge_part(label, name, expected, judgement))
    others = {name: part for name, part in judgement.parts.items() if name not in harms}
    if verdict is None:
        figures.false_alarms += [f"{label}: {name} is {part['state']}: {part['cause']}"
                                 for name, part in others.items() if part["state"] != "present"]
        harmed = any(judgement.parts.get(name, {"state": "absent"})["state"] != "present" or not expected.finding
                     for name, expected in harms.items())
        verdict = "incomplete" if harmed else "whole"
    if (judgement.verdict, judgement.status) != (verdict, STATUSES[verdict]):
        figures.wrong_verdicts.append(f"{label}: {judgement.verdict}, status {judgement.status}, not {verdict}")
    return figures


def judge_board(package: BoardPackage, scenario: Scenario) -> Figures:
    figures = Figures()
    harms = scenario.truth(package)
    with tempfile.TemporaryDirectory(prefix="korvel-matrix-") as folder:
        path = Path(folder) / package.file_name
        path.write_bytes(package.data)
        Path(f"{path}.run").write_text(package.sidecar, encoding="utf-8")
        for title, options in (("with sidecar", ()), ("without sidecar", ("--no-run",))):
            label = f"{scenario.name}, {package.kind}, {title}"
            shown = {name: found for name, found in harms.items() if not (options and found.needs_sidecar)}
            figures.add(judge_package(label, Judgement(path, *options), shown, scenario.verdict))
    return figures


def run(scenario: Scenario, kind: str) -> Figures:
    package = make_package(kind, scenario.making)
    repeated = 0
    while repeated < MOST_REPETITIONS and scenario.verdict != "cut" and was_disturbed(package, scenario.truth(package)):
        package = make_package(kind, scenario.making)
        repeated += 1
    figures = judge_board(package, scenario)
    figures.repeated = repeated
    return figures


def run_all(tasks: list[tuple[Scenario, str]]) -> Figures:
    figures = Figures()
    with concurrent.futures.ThreadPoolExecutor(BOARDS_AT_ONCE) as executor:
        for done, result in enumerate(executor.map(lambda task: run(*task), tasks), 1):
            figures.add(result)
            if sys.stderr.isatty():
                print(f"\r  {100 * done // len(tasks)} % ", end="\n" if done == len(tasks) else "", file=sys.stderr)
    return figures


def names_listed_by_boardsim(fault: str, start: str) -> list[str]:
    """boardsim lists the valid names if a name is wrong. Arguments such as ':MS' are left out."""
    done = subprocess.run([BUILD / "boardsim", "--fault", fault], capture_output=True, text=True, check=False)
    lists = [line.partition(start)[2] for line in done.stderr.splitlines() if start in line]
    return [name.partition(":")[0] for name in lists[0].split(", ")]


def forgotten_faults() -> list[str]:
    """The faults of boardsim that no scenario has."""
    options = [word for scenario in all_scenarios() for word in scenario.making.board]
    tried = {word.partition(":")[0] for option, word in zip(options, options[1:]) if option == "--fault"}
    peers = names_listed_by_boardsim("=", "peers with faults: ")
    faults = {f"{peer}={fault}" for peer in peers
              for fault in names_listed_by_boardsim(f"{peer}=", "valid faults: ")}
    return sorted(faults - tried)


def chosen_tasks(pattern: str, quick: bool) -> list[tuple[Scenario, str]]:
    """The quick matrix takes every other scenario, and the kinds in turn."""
    if not quick:
        return [(scenario, kind) for scenario in all_scenarios() for kind in scenario.kinds if re.search(pattern, scenario.name)]
    samples = [scenario for scenario in all_scenarios() if scenario.is_sample and re.search(pattern, scenario.name)]
    return [(scenario, scenario.kinds[index % len(scenario.kinds)]) for index, scenario in enumerate(samples[::2])]


def main() -> int:
    parser = argparse.ArgumentParser(description="Checks korvel-report on packages of faulty boards.")
    parser.add_argument("--quick", action="store_true", help="one package for every other scenario")
    parser.add_argument("--verbose", action="store_true", help="also list the causes that are wrong, but not certain")
    parser.add_argument("pattern", nargs="?", default="", help="selects scenarios by name")
    arguments = parser.parse_args()
    if forgotten := forgotten_faults():
        print("No scenario has these faults:", *forgotten)
        return 1
    figures = run_all(chosen_tasks(arguments.pattern, arguments.quick))
    print(figures.table())
    for line in figures.troubles() if arguments.verbose or not figures.are_good() else []:
        print(line)
    return 0 if figures.are_good() else 1


if __name__ == "__main__":
    sys.exit(main())
