"""korvel-fleet status: what a folder of collected packages holds."""

import sys
from argparse import Namespace
from collections.abc import Iterator
from pathlib import Path

from ClusterShell.NodeSet import NodeSet

from korvel_fleet.common.errors import Trouble
from korvel_fleet.packages import summary
from korvel_fleet.packages.folder import boards_with_packages
from korvel_fleet.packages.metrics import write_metrics
from korvel_fleet.packages.results import SEVERITIES, BoardResult, age, print_results

UNITS = ((86400, "d"), (3600, "h"), (60, "min"), (1, "s"))
COLUMNS = ("Board", "State", "Age", "Errors", "Warnings", "Notes", "Package")


def _age_text(time: str | None) -> str:
    seconds = age(time)
    if seconds is None:
        return "-"
    size, unit = next((size, unit) for size, unit in UNITS if seconds >= size or size == 1)
    return f"{seconds / size:.0f} {unit}"


def _table(results: list[BoardResult]) -> Iterator[str]:
    rows = [COLUMNS]
    for result in results:
        findings = [str(result.findings.get(severity, 0)) if result.verdict else "-" for severity in SEVERITIES]
        rows.append((result.board, result.state, _age_text(result.ended), *findings, result.file or "-"))
    widths = [max(len(row[column]) for row in rows) for column in range(len(COLUMNS))]
    for row in rows:
        cells = [cell.rjust(width) if 2 <= column <= 5 else cell.ljust(width)
                 for column, (cell, width) in enumerate(zip(row, widths))]
        yield "  ".join(cells).rstrip()


def status(arguments: Namespace) -> int:
    folder = Path(arguments.folder)
    found = summary.read_summary(folder)
    if found is None:
        raise Trouble(f"{folder} has no {summary.NAME}: nothing was collected into it")
    results = [summary.verified(result, folder) for result in found.results]
    unknown = set(boards_with_packages(folder)) - {result.board for result in results}
    if unknown:
        print(f"korvel-fleet: {folder} also has packages of {NodeSet.fromlist(list(unknown))}, of a run that was killed: "
              "collect --resume looks at them", file=sys.stderr)
    if arguments.metrics is not None:
        return write_metrics(Path(arguments.metrics), folder, results)
    for line in _table(results):
        print(line)
    print()
    return print_results(results, folder)
