"""korvel-fleet status: what a folder of collected packages holds."""

import os
import subprocess
import sys
from argparse import Namespace
from collections.abc import Iterator
from datetime import datetime, timezone
from pathlib import Path

from korvel_fleet import summary
from korvel_fleet.errors import Trouble
from korvel_fleet.judge import find_program
from korvel_fleet.results import BoardResult, print_results

SEVERITIES = ("error", "warning", "note")
UNITS = ((86400, "d"), (3600, "h"), (60, "min"), (1, "s"))
COLUMNS = ("Board", "State", "Age", "Errors", "Warnings", "Notes", "Package")


def _age(time: str | None) -> float | None:
    """Seconds since a time in a summary."""
    if time is None:
        return None
    return max(0.0, (datetime.now(timezone.utc) - datetime.fromisoformat(time)).total_seconds())


def _age_text(time: str | None) -> str:
    age = _age(time)
    if age is None:
        return "-"
    size, unit = next((size, unit) for size, unit in UNITS if age >= size or size == 1)
    return f"{age / size:.0f} {unit}"


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


METRICS = (
    ("korvel_fleet_collected", "1 if the directory has a whole package of the board, otherwise 0.",
     lambda result: 1 if result.state == "whole" else 0),
    ("korvel_fleet_asked_age_seconds", "Time since the board was last asked.", lambda result: _age(result.ended)),
    *((f"korvel_fleet_findings_{severity}", f"Findings of severity {severity} in the package of the board.",
       lambda result, severity=severity: result.findings.get(severity, 0) if result.verdict else None)
      for severity in SEVERITIES),
)


def _label(text: str) -> str:
    return text.replace("\\", r"\\").replace('"', r'\"').replace("\n", r"\n")


def _metrics_lines(results: list[BoardResult]) -> Iterator[str]:
    for name, text, value_of in METRICS:
        yield f"# HELP {name} {text}\n# TYPE {name} gauge\n"
        for result in results:
            value = value_of(result)
            if value is not None:
                yield f'{name}{{board="{_label(result.board)}"}} {value:.15g}\n'


def _write_metrics(target: Path, folder: Path, results: list[BoardResult]) -> None:
    """Replaces the file when all of it is written, so that node_exporter never reads half of it."""
    part = target.with_name(f".{target.name}.part")
    packages = [str((folder / result.file).absolute()) for result in results if result.state == "whole"]
    try:
        with part.open("w", encoding="utf-8") as file:
            file.writelines(_metrics_lines(results))
            file.flush()
            if packages:
                subprocess.run([find_program(), "metrics", *packages], stdin=subprocess.DEVNULL, stdout=file, check=True)
            os.fsync(file.fileno())
        part.chmod(0o644)
        part.rename(target)
    except (OSError, subprocess.CalledProcessError) as error:
        part.unlink(missing_ok=True)
        reason = error.strerror if isinstance(error, OSError) else "korvel-report metrics failed"
        raise Trouble(f"cannot write {target}: {reason}") from error


def status(arguments: Namespace) -> int:
    folder = Path(arguments.folder)
    found = summary.read_summary(folder)
    if found is None:
        raise Trouble(f"{folder} has no {summary.NAME}: nothing was collected into it")
    results = [summary.verified(result, folder) for result in found.results]
    if arguments.metrics is not None:
        _write_metrics(Path(arguments.metrics), folder, results)
        return 0
    for line in _table(results):
        print(line)
    print()
    return print_results(results, folder)
