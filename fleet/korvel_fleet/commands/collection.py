"""The conversation with one board that sends a package."""

from collections.abc import Callable
from dataclasses import dataclass
from pathlib import Path

from korvel_fleet.boards import ssh
from korvel_fleet.boards.stream import MAX_RUN_FILE, JobStream, Refused
from korvel_fleet.common.clock import now
from korvel_fleet.common.texts import TOO_MANY_ERRORS, Tail
from korvel_fleet.packages.folder import Folder
from korvel_fleet.packages.judge import Judges
from korvel_fleet.packages.results import BoardResult
from korvel_fleet.packages.verdicts import Verdict

# The causes that the job names, see job.sh.
JOB_CAUSES = {
    "no-korvel": "korvel not found on the board",
    "no-tool": "a tool is missing on the board",
    "no-room": "no room on the board",
    "no-directory": "no directory for packages on the board",
    "no-package": "korvel made no package",
    "locked": "another run was busy on the board",
    "hung": "korvel hung on the board",
    "too-large": "too much output",
}
# What the system says on the board where a disk is full.
NO_ROOM = b"No space left on device"


@dataclass(frozen=True)
class Plan:
    """What is the same for all boards."""

    folder: Folder
    judges: Judges
    token: str
    max_bytes: int
    timeout: float
    done: Callable[[BoardResult], None]


class Collection:
    """Takes the stream of a board into files, has the package judged, and gives it a name."""

    def __init__(self, plan: Plan, board: str) -> None:
        self._plan = plan
        self._result = BoardResult(board, "failed", began=now())
        self._arrival = plan.folder.arrival(board)
        self._stream = JobStream(plan.token, plan.max_bytes, self._arrival)
        self._messages = Tail()
        self._state = "failed"  # if something went wrong: with this cause
        self._cause: str | None = None

    def received(self, data: bytes) -> bool:
        try:
            self._stream.feed(data)
        except Refused as error:
            self._state, self._cause = "refused", str(error)
        except OSError as error:
            self._cause = self._plan.folder.trouble(error)
        return self._cause is None

    def complained(self, data: bytes) -> bool:
        if not self._messages.add(data):
            self._cause = TOO_MANY_ERRORS
        return self._cause is None

    def ended(self, status: int | None) -> None:
        self._arrival.close()
        self._result.evidence = self._messages.last_line() or None
        if self._cause is None and not self._stream.complete:
            self._cause = ssh.why_it_ended(status, self._messages.text(), self._stream.began, self._plan.timeout)
            if self._stream.package_bytes:
                self._state = "cut"
                self._cause += " in the middle of the package"
        if self._cause is not None:
            self._finish()
        elif self._stream.sha256 is None:
            self._cause = self._cause_of_the_job() or "korvel made no package"
            self._finish()
        else:
            self._plan.judges.judge(self._arrival.package, self._take_verdict)

    def _cause_of_the_job(self) -> str | None:
        return JOB_CAUSES["no-room"] if self._has_no_room() else JOB_CAUSES.get(self._stream.failure or "")

    def _has_no_room(self) -> bool:
        try:
            with self._arrival.run_file.open("rb") as file:
                return NO_ROOM in file.read(MAX_RUN_FILE)
        except OSError:
            return False

    def _take_verdict(self, verdict: Verdict) -> None:
        self._result.describe(verdict)
        flaw = verdict.flaw(self._result.board)
        if flaw is not None:
            self._state, self._cause = flaw
        if self._state in ("incomplete", "cut"):
            self._cause = self._cause_of_the_job() or self._cause
            self._result.evidence = verdict.cause or self._result.evidence
        self._finish()

    def _finish(self) -> None:
        """Gives the files their names, and reports the result."""
        result, folder = self._result, self._plan.folder
        try:
            if self._cause is None:
                kept: Path | None = folder.publish(result.board)
                self._state = "whole"
                result.evidence = None
            else:
                kept = folder.keep(result.board, self._state if self._state != "failed" else "cut")
        except OSError as error:
            kept = None
            self._state, self._cause = "failed", folder.trouble(error)
        result.state, result.cause = self._state, self._cause
        # Without a package, only its run file arrived, perhaps not even that.
        result.file = kept.name if kept and kept.exists() else None
        result.ended = now()
        self._plan.done(result)
