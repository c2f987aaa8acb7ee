"""korvel-fleet probe: how boards are, without a collection."""

import secrets
from argparse import Namespace

from korvel_fleet.boards.ssh import why_it_ended
from korvel_fleet.boards.stream import JobStream, Refused
from korvel_fleet.commands.answers import Answers, ask
from korvel_fleet.commands.collection import JOB_CAUSES
from korvel_fleet.common.texts import TOO_MANY_ERRORS, Tail

# The keys of the run file that are the same in each run on the board.
STATE = (b"korvel", b"deployment", b"kernel", b"zone")
HEALTHY = b"heartbeat: healthy"


class RunFile:
    """Takes only a run file."""

    def __init__(self) -> None:
        self.text = b""

    def write_run(self, data: bytes) -> None:
        self.text += data

    def write_package(self, _data: bytes) -> None:
        raise Refused("the board sent a package that nobody asked for")


class Probing:
    """Reads the probes of one board."""

    def __init__(self, answers: Answers, board: str, token: str, timeout: float) -> None:
        self._answers = answers
        self._board = board
        self._timeout = timeout
        self._run_file = RunFile()
        self._stream = JobStream(token, 0, self._run_file)
        self._messages = Tail()
        self._refusal: str | None = None

    def received(self, data: bytes) -> bool:
        try:
            self._stream.feed(data)
        except Refused as error:
            self._refusal = str(error)
        return self._refusal is None

    def complained(self, data: bytes) -> bool:
        if not self._messages.add(data):
            self._refusal = TOO_MANY_ERRORS
        return self._refusal is None

    def ended(self, status: int | None) -> None:
        if self._refusal is None and not self._stream.complete:
            self._refusal = why_it_ended(status, self._messages.text(), self._stream.began, self._timeout)
        elif self._stream.failure is not None:
            evidence = self._messages.last_line().removeprefix("korvel-fleet: ")
            self._refusal = JOB_CAUSES.get(self._stream.failure, "the job failed") + (f": {evidence}" if evidence else "")
        if self._refusal is not None:
            self._answers.fail(self._board, self._refusal)
        else:
            lines = self._lines()
            self._answers.add(self._board, b"".join(line + b"\n" for line in lines), well=HEALTHY in lines)

    def _lines(self) -> list[bytes]:
        """The probes, then the state of the platform."""
        lines = self._run_file.text.split(b"\n\n")[0].splitlines()
        probes = [line.removeprefix(b"probe: ") for line in lines if line.startswith(b"probe: ")]
        return probes + [line for line in lines if line.partition(b":")[0] in STATE]


def probe(arguments: Namespace) -> int:
    token = secrets.token_hex(8)
    return ask(arguments, lambda board: ["probe", token, board, *arguments.port],
               lambda answers, board: Probing(answers, board, token, arguments.timeout))
