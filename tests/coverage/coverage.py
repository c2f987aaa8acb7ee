"""Judges the coverage of src and report: coverage.py FILE

FILE is in the format of lcov. Each line that did not run must be in not-run.txt, beside this program. A row there has the path,
the text of the line, and the reason. Prints the figures, and what differs. The exit status is 1 if a line that did not run is
not listed, a listed one runs, or less than 95 % of the branches are taken. Branches of exceptions are not in the file.
"""

import collections
import sys
from dataclasses import dataclass, field
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
LIST = Path(__file__).parent / "not-run.txt"
FOLDERS = ("src", "report")
BRANCHES = 0.95


@dataclass
class Coverage:
    lines: dict[int, int] = field(default_factory=dict)  # how often they ran, by number
    branches: dict[tuple[str, ...], bool] = field(default_factory=dict)  # whether they were taken


def read(path: Path) -> dict[str, Coverage]:
    """The coverage of each file in FOLDERS, by its path in the source tree."""
    files: dict[str, Coverage] = {}
    current = Coverage()
    for line in path.read_text(encoding="utf-8").splitlines():
        key, _, value = line.partition(":")
        if key == "SF":
            name = Path(value).relative_to(SOURCE).as_posix() if Path(value).is_relative_to(SOURCE) else value
            current = files.setdefault(name, Coverage())
        elif key == "DA":
            number, count = value.split(",")[:2]
            current.lines[int(number)] = current.lines.get(int(number), 0) + int(count)
        elif key == "BRDA":
            *branch, count = value.split(",")
            taken = count not in ("-", "0")
            current.branches[tuple(branch)] = current.branches.get(tuple(branch), False) or taken
    return {name: coverage for name, coverage in files.items() if name.startswith(tuple(f"{folder}/" for folder in FOLDERS))}


def listed() -> dict[tuple[str, str], str]:
    """The reasons, by path and text."""
    rows = [line.split(" | ") for line in LIST.read_text(encoding="utf-8").splitlines() if line and not line.startswith("#")]
    return {(path, text): reason for path, text, reason in rows}


def not_run(files: dict[str, Coverage]) -> collections.Counter[tuple[str, str, int]]:
    found: collections.Counter[tuple[str, str, int]] = collections.Counter()
    for name, coverage in files.items():
        text = (SOURCE / name).read_text(encoding="utf-8").splitlines()
        for number, count in coverage.lines.items():
            if count == 0:
                found[name, text[number - 1].strip(), number] += 1
    return found


def share(values: list[bool]) -> float:
    return sum(values) / max(len(values), 1)


def main() -> int:
    files = read(Path(sys.argv[1]))
    reasons = listed()
    missing = not_run(files)
    unlisted = [(name, number, text) for name, text, number in missing if (name, text) not in reasons and text.strip("{} ;")]
    stale = set(reasons) - {(name, text) for name, text, _ in missing}
    status = 0
    for name, number, text in sorted(unlisted):
        print(f"not run: {name}:{number}: {text}")
    for name, text in sorted(stale):
        print(f"runs, but is in not-run.txt: {name}: {text}")
    for folder in FOLDERS:
        chosen = [coverage for name, coverage in files.items() if name.startswith(f"{folder}/")]
        lines = [count > 0 for coverage in chosen for count in coverage.lines.values()]
        branches = [taken for coverage in chosen for taken in coverage.branches.values()]
        print(f"{folder}: {share(lines):.2%} of {len(lines):,} lines, {share(branches):.2%} of {len(branches):,} branches")
        status |= share(branches) < BRANCHES
    return int(status or bool(unlisted or stale))


if __name__ == "__main__":
    sys.exit(main())
