"""Texts of boards, made safe for terminals, files and pages."""

import re

TOO_MANY_ERRORS = "too much output on standard error"

_CONTROL = re.compile(r"[\x00-\x08\x0b-\x1f\x7f-\x9f\u200e\u200f\u202a-\u202e\u2066-\u2069\ud800-\udfff]")


def visible(text: str) -> str:
    """The text with control characters as escapes such as \\x1b. Tabs and line feeds stay."""
    return _CONTROL.sub(lambda match: match[0].encode("unicode_escape", "surrogatepass").decode(), text)


def one_line(text: str, length: int = 300) -> str:
    """The text as one line of bounded length."""
    line = visible(" ".join(text.split()))
    return line if len(line) <= length else line[:length - 1] + "\u2026"


def decoded(data: bytes) -> str:
    """Output of a board as text."""
    return data.decode("utf-8", "replace")


class Tail:
    """The end of what a process prints on standard error."""

    KEPT = 8192
    MAX_BYTES = 1 << 20

    def __init__(self) -> None:
        self._data = b""
        self._total = 0

    def add(self, data: bytes) -> bool:
        """Takes the next piece. False if it is too much."""
        self._total += len(data)
        self._data = (self._data + data)[-self.KEPT:]
        return self._total <= self.MAX_BYTES

    def text(self) -> str:
        return decoded(self._data)

    def last_line(self) -> str:
        """The last line that is not blank."""
        lines = [line for line in self.text().splitlines() if line.strip()]
        return one_line(lines[-1]) if lines else ""
