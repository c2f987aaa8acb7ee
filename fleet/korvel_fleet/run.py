"""korvel-fleet run: a command line of korvel on many boards."""

import secrets
from argparse import Namespace

from korvel_fleet.answers import Answers, ask
from korvel_fleet.ssh import FAILED, why_it_ended
from korvel_fleet.stream import FirstLine, Refused
from korvel_fleet.texts import Tail

NOT_FOUND = 127


class Output:
    """Reads the output of korvel on one board."""

    def __init__(self, answers: Answers, board: str, token: str, max_bytes: int, timeout: float) -> None:
        self._answers = answers
        self._board = board
        self._first_line = FirstLine(token)
        self._max_bytes = max_bytes
        self._timeout = timeout
        self._out = b""
        self._errors = b""
        self._refusal: str | None = None

    def received(self, data: bytes) -> bool:
        try:
            self._out += self._first_line.skip(data)
        except Refused as error:
            self._refusal = str(error)
        return self._is_bounded()

    def complained(self, data: bytes) -> bool:
        self._errors += data
        return self._is_bounded()

    def _is_bounded(self) -> bool:
        if len(self._out) + len(self._errors) > self._max_bytes:
            self._refusal = f"too much output: more than {self._max_bytes} bytes"
        return self._refusal is None

    def ended(self, status: int | None) -> None:
        failure = self._failure(status)
        if failure is not None:
            self._answers.fail(self._board, failure)
            return
        lines = [*self._out.splitlines(), *(b"stderr: " + line for line in self._errors.splitlines())]
        if status != 0:
            lines.append(b"exit status: %d" % status)
        self._answers.add(self._board, lines, well=status == 0)

    def _failure(self, status: int | None) -> str | None:
        if self._refusal is not None:
            return self._refusal
        if status == NOT_FOUND and self._first_line.found:
            return "korvel not found on the board"
        if status is None or status < 0 or status == FAILED or not self._first_line.found:
            messages = Tail()
            messages.add(self._errors)
            return why_it_ended(status, messages.text(), self._first_line.found, self._timeout)
        return None


def run(arguments: Namespace) -> int:
    token = secrets.token_hex(8)
    return ask(arguments, lambda board: ["run", token, *arguments.words],
               lambda answers, board: Output(answers, board, token, arguments.max_bytes, arguments.timeout))
