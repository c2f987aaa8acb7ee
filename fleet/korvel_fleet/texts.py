"""Texts of boards, made safe for terminals, files and pages."""

import re
from collections.abc import Iterable

from ClusterShell.NodeSet import NodeSet

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


def folded(boards: Iterable[str]) -> str:
    """Names as a node set, such as board[1-3]."""
    return str(NodeSet.fromlist(list(boards)))




class Tail:
    """The end of a text that comes in pieces."""

    MAX_BYTES = 8192

    def __init__(self) -> None:
        self._data = b""

    def add(self, data: bytes) -> None:
        self._data = (self._data + data)[-self.MAX_BYTES:]

    def text(self) -> str:
        return decoded(self._data)

    def last_line(self) -> str:
        """The last line that is not blank."""
        lines = [line for line in self.text().splitlines() if line.strip()]
        return one_line(lines[-1]) if lines else ""
