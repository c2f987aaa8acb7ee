"""korvel-fleet run: a command line of korvel on many boards."""

import math
import secrets
from argparse import Namespace

from korvel_fleet.boards.ssh import FAILED, ends_with_own_message, why_it_ended
from korvel_fleet.boards.stream import FirstLine, Refused
from korvel_fleet.commands.answers import TOO_MUCH_IN_ALL, Answers, ask
from korvel_fleet.common.texts import Tail

NOT_FOUND = 127


def _lines(data: bytes, prefix: bytes = b"") -> bytes:
    """The text with line feeds only, also at its end, and with the prefix before each line."""
    if not data:
        return b""
    lines = data.replace(b"\r\n", b"\n").replace(b"\r", b"\n").removesuffix(b"\n")
    return prefix + lines.replace(b"\n", b"\n" + prefix) + b"\n"


class Output:
    """Reads the output of korvel on one board."""

    def __init__(self, answers: Answers, board: str, token: str, max_bytes: int, timeout: float) -> None:
        self._answers = answers
        self._board = board
        self._first_line = FirstLine(token)
        self._max_bytes = max_bytes
        self._timeout = timeout
        self._out = bytearray()
        self._errors = bytearray()
        self._refusal: str | None = None

    def received(self, data: bytes) -> bool:
        try:
            return self._take(self._out, self._first_line.skip(data))
        except Refused as error:
            self._refusal = str(error)
            return False

    def complained(self, data: bytes) -> bool:
        return self._take(self._errors, data)

    def _take(self, kept: bytearray, data: bytes) -> bool:
        kept += data
        if not self._answers.hold(len(data)):
            self._refusal = TOO_MUCH_IN_ALL
        elif self._size() > self._max_bytes:
            self._refusal = f"too much output: more than {self._max_bytes} bytes"
        return self._refusal is None

    def _size(self) -> int:
        return len(self._out) + len(self._errors)

    def ended(self, status: int | None) -> None:
        self._answers.hold(-self._size())
        failure = self._failure(status)
        if failure is not None:
            self._answers.fail(self._board, failure)
            return
        text = _lines(self._out) + _lines(self._errors, b"stderr: ")
        if status != 0:
            text += b"exit status: %d\n" % status
        self._answers.add(self._board, text, well=status == 0)

    def _failure(self, status: int | None) -> str | None:
        """Why there is no answer. An exit status of ssh itself can be that of korvel, too."""
        if self._refusal is not None:
            return self._refusal
        if status == NOT_FOUND and self._first_line.found:
            return "korvel not found on the board"
        messages = Tail()
        messages.add(self._errors)
        if self._first_line.found and status is not None and status >= 0:
            if status != FAILED or not ends_with_own_message(messages.text()):
                return None
        return why_it_ended(status, messages.text(), self._first_line.found, self._timeout)


def run(arguments: Namespace) -> int:
    token = secrets.token_hex(8)
    return ask(arguments, lambda board: ["run", token, str(math.ceil(arguments.timeout)), *arguments.words],
               lambda answers, board: Output(answers, board, token, arguments.max_bytes, arguments.timeout))
