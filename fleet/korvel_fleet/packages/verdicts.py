"""What korvel-report says of packages, read from its JSON."""

import json
import sys
from dataclasses import dataclass, field
from typing import Any

from korvel_fleet.common.texts import one_line

MAX_LINE = 8 * 1024 * 1024
MAX_TEXTS = 10  # of findings of a package; korvel-report writes the gravest first


@dataclass
class Verdict:
    """What is known of a package."""

    verdict: str = "unreadable"
    cause: str = ""
    failure: str | None = None  # why there is no verdict: something here failed, not the package
    board: str | None = None
    run_file: str = "absent"  # used, absent, foreign or unreadable
    sha256: str | None = None
    size: int | None = None
    time: str | None = None
    probes: dict[str, str] = field(default_factory=dict)
    findings: dict[str, int] = field(default_factory=dict)  # by severity
    finding_texts: tuple[str, ...] = ()  # of the first ones

    @property
    def is_whole(self) -> bool:
        return self.verdict == "whole"

    def flaw(self, board: str) -> tuple[str, str] | None:
        """The state and the cause of a package that is not a whole one of the board."""
        if self.failure is not None:
            return "failed", self.failure
        if self.run_file != "used":
            return "refused", f"the run file of the package is {self.run_file}"
        if self.board != board:
            return "refused", f"package of another board: {one_line(self.board or 'unknown')}"
        if not self.is_whole:
            state = "incomplete" if self.verdict in ("incomplete", "not fully read") else "cut"
            return state, f"package {self.verdict}: {self.cause or 'cause unknown'}"
        return None


class JsonLines:
    """Reads `korvel-report json` while it arrives: the document has a line for each package, part, finding, value and
    log entry. Packages inside packages are skipped: they could pretend to be those of other boards.
    """

    def __init__(self) -> None:
        self.verdicts: list[Verdict] = []  # in the order of the command line
        self.complete = 0  # the number of verdicts that are complete
        self._rest = b""
        self._depth = 0
        self._between_packages = True

    def feed(self, data: bytes) -> bool:
        """False if a line is too long."""
        lines = (self._rest + data).split(b"\n")
        self._rest = lines.pop()
        for line in lines:
            if self._between_packages:
                self._enter(line)
            else:
                self._take(line)
        return len(self._rest) <= MAX_LINE

    def _enter(self, line: bytes) -> None:
        if line.startswith(b'{"source":'):
            self._between_packages = False
            if self._depth == 0:
                self.verdicts.append(self._verdict(json.loads(line.rstrip(b",") + b"}")))
        elif line.startswith(b"]") and self._depth > 0:
            self._depth -= 1
            self._leave()

    def _take(self, line: bytes) -> None:
        if line.startswith(b'"nested":[]'):
            self._leave()
        elif line.startswith(b'"nested":['):
            self._depth += 1
            self._between_packages = True
        elif self._depth == 0 and line.startswith(b"{"):
            self._take_part_or_finding(line)

    def _leave(self) -> None:
        self._between_packages = True
        self.complete += self._depth == 0

    def _take_part_or_finding(self, line: bytes) -> None:
        verdict = self.verdicts[-1]
        if line.startswith(b'{"rule":'):
            self._take_finding(json.loads(line.rstrip(b",")))
        elif line.startswith(b'{"name":') and not verdict.cause and not verdict.is_whole:
            # The object goes on in later lines.
            part = json.loads(line.partition(b',"evidence":')[0] + b"}")
            if part["expected"] and part["state"] != "present":
                verdict.cause = one_line(f"{part['name']} {part['state']}: {part['cause'] or 'cause unknown'}")

    def _take_finding(self, finding: dict[str, Any]) -> None:
        """Texts are kept once: those of many packages are equal."""
        verdict, severity = self.verdicts[-1], sys.intern(finding["severity"])
        verdict.findings[severity] = verdict.findings.get(severity, 0) + 1
        if len(verdict.finding_texts) < MAX_TEXTS:
            pieces = filter(None, (severity, finding.get("part"), finding.get("meaning")))
            verdict.finding_texts += (sys.intern(one_line(": ".join(pieces))),)

    @staticmethod
    def _verdict(package: dict[str, Any]) -> Verdict:
        contents = package["sidecar"]["contents"] or {"probes": []}
        return Verdict(
            verdict=sys.intern(package["verdict"]), cause=one_line(package["cause"] or package["reason"] or ""),
            board=package["board"], run_file=package["sidecar"]["state"], sha256=package["sha256"],
            size=package["size"], time=package["time"],
            probes={sys.intern(one_line(probe["name"])): one_line(probe["result"]) for probe in contents["probes"]})
