"""The result of each board."""

import re
from collections.abc import Collection, Iterable
from dataclasses import asdict, dataclass, field
from datetime import datetime, timezone
from pathlib import Path
from typing import Any

from ClusterShell.NodeSet import NodeSet

from korvel_fleet.packages.verdicts import Verdict

SEVERITIES = ("error", "warning", "note")


@dataclass(slots=True)
class BoardResult:
    """What became of one board. The names of the fields are the keys in summary.json."""

    board: str
    state: str  # whole, incomplete, cut, altered, refused, failed or not asked
    cause: str | None = None  # None for a whole package
    evidence: str | None = None  # the message behind the cause
    verdict: str | None = None  # that of korvel-report, if a package arrived
    file: str | None = None  # the package, in the folder of summary.json
    sha256: str | None = None
    size: int | None = None  # bytes
    package_time: str | None = None  # when the package was made, by the board's clock
    began: str | None = None  # by the clock here
    ended: str | None = None
    findings: dict[str, int] = field(default_factory=dict)  # number by severity
    finding_texts: tuple[str, ...] = ()  # of the gravest ones
    probes: dict[str, str] = field(default_factory=dict)

    def describe(self, verdict: Verdict) -> None:
        """Takes what korvel-report knows of the package."""
        self.verdict, self.probes = verdict.verdict, verdict.probes
        self.findings, self.finding_texts = verdict.findings, verdict.finding_texts
        self.sha256, self.size, self.package_time = verdict.sha256, verdict.size, verdict.time

    def as_json(self) -> dict[str, Any]:
        return asdict(self)


def age(time: str | None) -> float | None:
    """Seconds since a time of a result."""
    if time is None:
        return None
    return max(0.0, (datetime.now(timezone.utc) - datetime.fromisoformat(time)).total_seconds())


def _natural(nodes: NodeSet) -> list[tuple[bool, int, str]]:
    """A key that sorts board2 before board10."""
    parts = re.split(r"(\d+)", str(nodes))
    return [(part.isdigit(), int(part) if part.isdigit() else 0, part) for part in parts]


def folded_causes(results: Iterable[BoardResult]) -> list[tuple[NodeSet, str]]:
    """The boards of each cause, the most frequent first."""
    boards: dict[str, list[str]] = {}
    for result in results:
        if result.cause is not None:
            boards.setdefault(result.cause, []).append(result.board)
    return sorted(((NodeSet.fromlist(names), cause) for cause, names in boards.items()),
                  key=lambda item: (-len(item[0]), _natural(item[0])))


def print_results(results: Collection[BoardResult], folder: Path) -> int:
    """Prints the causes and the number of whole packages. Returns the exit status."""
    for boards, cause in folded_causes(results):
        print(f"{boards}: {cause}")
    whole = sum(result.state == "whole" for result in results)
    print(f"{whole} of {len(results)} boards have a whole package in {folder}")
    return 0 if whole == len(results) else 1
