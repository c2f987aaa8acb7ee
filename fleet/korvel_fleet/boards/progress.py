"""A line of progress on a terminal."""

import sys
import time

SECONDS_BETWEEN = 0.1


class Progress:
    """Counts boards on standard error, if that is a terminal."""

    def __init__(self, total: int) -> None:
        self._total = total
        self._done = 0
        self._failed = 0
        self._shown = 0.0
        self._is_terminal = sys.stderr.isatty()

    def count(self, *, failed: bool) -> None:
        self._done += 1
        self._failed += failed
        if self._is_terminal and (self._done == self._total or time.monotonic() - self._shown > SECONDS_BETWEEN):
            self._shown = time.monotonic()
            self._print(f"{self._done} of {self._total} boards, {self._failed} failed")

    def clear(self) -> None:
        if self._is_terminal:
            self._print("")

    @staticmethod
    def _print(text: str) -> None:
        print(f"\r\x1b[K{text}", end="", file=sys.stderr, flush=True)
