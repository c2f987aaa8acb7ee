"""Boards that are asked for a text: each board's answer, folded by equal texts."""

from argparse import Namespace
from collections.abc import Callable, Sequence

from ClusterShell.MsgTree import MsgTree
from ClusterShell.NodeSet import NodeSet

from korvel_fleet.boards import boards_of
from korvel_fleet.processes import Conversation, Interrupted, Processes
from korvel_fleet.progress import Progress
from korvel_fleet.results import BoardResult, folded_causes
from korvel_fleet.ssh import command_line
from korvel_fleet.texts import decoded, visible

RULE = "-" * 15


class Answers:
    """What the boards answered. Equal lines of several boards are kept once."""

    def __init__(self, boards: NodeSet) -> None:
        self.boards = boards
        self._tree = MsgTree()
        self._answered: set[str] = set()
        self._failed: dict[str, BoardResult] = {}
        self.all_well = True
        self._progress = Progress(len(boards))

    def add(self, board: str, lines: Sequence[bytes], *, well: bool) -> None:
        """Takes an answer. It is `well` if the exit status of korvel-fleet can be 0."""
        self._answered.add(board)
        for line in lines or [b""]:
            self._tree.add(board, line)
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
        for board in self.boards:
            if board not in self._answered and board not in self._failed:
                self.fail(board, "the run was interrupted")
        answers = [(NodeSet.fromlist(boards), message) for message, boards in self._tree.walk()]
        for boards, message in sorted(answers, key=lambda answer: (-len(answer[0]), str(answer[0]))):
            print(f"{RULE}\n{boards} ({len(boards)})\n{RULE}")
            for line in message:
                print(visible(decoded(line)))
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
