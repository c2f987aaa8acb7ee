"""Boards that are asked for a text: each board's answer, folded by equal texts."""

import hashlib
import io
from argparse import Namespace
from collections.abc import Callable

from ClusterShell.NodeSet import NodeSet

from korvel_fleet.boards.names import boards_of
from korvel_fleet.boards.processes import Conversation, Interrupted, Processes
from korvel_fleet.boards.progress import Progress
from korvel_fleet.boards.ssh import command_line
from korvel_fleet.common.texts import decoded, visible
from korvel_fleet.packages.results import BoardResult, folded_causes

RULE = "-" * 15
MAX_BYTES = 128 * 1024 * 1024
TOO_MUCH_IN_ALL = f"too much output: the answers of all boards have more than {MAX_BYTES >> 20} MiB"


class Answers:
    """What the boards answered. Equal answers are kept once, and all of them together have a limit."""

    def __init__(self, boards: NodeSet) -> None:
        self.boards = boards
        self._texts: dict[bytes, bytes] = {}  # by checksum
        self._boards: dict[bytes, list[str]] = {}
        self._failed: dict[str, BoardResult] = {}
        self._held = 0
        self.all_well = True
        self._progress = Progress(len(boards))

    def hold(self, size: int) -> bool:
        """Counts bytes of answers in memory. False if they are too many."""
        self._held += size
        return self._held <= MAX_BYTES

    def add(self, board: str, text: bytes, *, well: bool) -> None:
        """Takes an answer, with a line feed at its end. It is `well` if the exit status of korvel-fleet can be 0."""
        checksum = hashlib.sha256(text).digest()
        if checksum not in self._texts:
            if not self.hold(len(text)):
                self.hold(-len(text))
                self.fail(board, TOO_MUCH_IN_ALL)
                return
            self._texts[checksum] = text
        self._boards.setdefault(checksum, []).append(board)
        self.all_well = self.all_well and well
        self._progress.count(failed=not well)

    def fail(self, board: str, cause: str) -> None:
        """Takes the cause why a board did not answer."""
        self._failed[board] = BoardResult(board, "failed", cause)
        self.all_well = False
        self._progress.count(failed=True)

    def print(self) -> None:
        """Prints each answer below the boards that gave it, as clush -b does, then the causes of failures."""
        self._progress.clear()
        answered = {board for boards in self._boards.values() for board in boards}
        for board in self.boards:
            if board not in answered and board not in self._failed:
                self.fail(board, "the run was interrupted")
        answers = [(NodeSet.fromlist(boards), self._texts[checksum]) for checksum, boards in self._boards.items()]
        for boards, text in sorted(answers, key=lambda answer: (-len(answer[0]), str(answer[0]))):
            print(f"{RULE}\n{boards} ({len(boards)})\n{RULE}")
            for line in io.BytesIO(text or b"\n"):
                print(visible(decoded(line)), end="")
        for boards, cause in folded_causes(self._failed.values()):
            print(f"{boards}: {cause}")


def ask(arguments: Namespace, mode: Callable[[str], list[str]],
        begin: Callable[[Answers, str], Conversation]) -> int:
    """Asks all boards of the command line, prints their answers, and returns the exit status. `mode` gives the arguments
    of the job for a board, `begin` what reads its answer.
    """
    answers = Answers(boards_of(arguments.nodes, arguments.exclude))
    processes = Processes(arguments.fanout)
    processes.add_boards(answers.boards, lambda board: begin(answers, board),
                         lambda board: command_line(arguments.ssh, board, mode(board)), arguments.timeout)
    try:
        processes.run()
    except Interrupted as interruption:
        answers.print()
        return 128 + interruption.signal_number
    answers.print()
    return 0 if answers.all_well else 1
