"""korvel-fleet collect: a package from each board."""

import secrets
import sys
from argparse import Namespace
from collections.abc import Callable
from pathlib import Path

from ClusterShell.NodeSet import NodeSet

from korvel_fleet.boards.names import boards_of
from korvel_fleet.boards.processes import Interrupted, Processes
from korvel_fleet.boards.progress import Progress
from korvel_fleet.boards.ssh import command_line
from korvel_fleet.commands.collection import Collection, Plan
from korvel_fleet.commands.recall import Recall
from korvel_fleet.common.errors import WrongUsage
from korvel_fleet.packages import summary
from korvel_fleet.packages.folder import Folder, boards_with_packages
from korvel_fleet.packages.judge import Judges, find_program
from korvel_fleet.packages.page import page_lines
from korvel_fleet.packages.results import BoardResult, print_results
from korvel_fleet.packages.summary import Damaged, Summary, verified


class CollectRun:
    """One run of the subcommand."""

    def __init__(self, arguments: Namespace) -> None:
        self._arguments = arguments
        self._boards = boards_of(arguments.nodes, arguments.exclude)
        self._processes = Processes(arguments.fanout)
        program = find_program()
        self._folder = Folder(Path(arguments.output))
        self._judges = Judges(self._processes, program, arguments.package, self._folder.sync)
        self._results: dict[str, BoardResult] = {}
        self._recall = Recall(self._folder, self._judges, arguments.package, self._take_recalled)
        self._summary = self._read_summary()
        self._earlier = {result.board: result for result in self._summary.results}

    def _read_summary(self) -> Summary:
        """The results of earlier runs. With --resume, the packages are enough."""
        try:
            return summary.read_summary(self._folder.path) or Summary()
        except Damaged as error:
            if not self._arguments.resume:
                raise
            print(f"korvel-fleet: {error}; reading the packages", file=sys.stderr)
            return Summary(is_damaged=True)

    def run(self) -> int:
        # The names of packages tell the boards of runs that were killed before they wrote a summary.
        unknown = [board for board in boards_with_packages(self._folder.path) if board not in self._earlier]
        known = self._boards | NodeSet.fromlist(unknown)
        found = self._find(known)
        if self._summary.is_damaged:
            self._folder.keep_damaged(summary.NAME)
        signal_number = None
        try:
            if self._arguments.resume:
                self._recall.take(known, found, self._earlier)
                self._processes.run()
            self._ask(self._boards - NodeSet.fromlist(list(self._results)))
        except Interrupted as interruption:
            signal_number = interruption.signal_number
        self._complete_results()
        status = print_results([self._results[board] for board in self._boards], self._folder.path)
        self._write()
        return status if signal_number is None else 128 + signal_number

    def _find(self, boards: NodeSet) -> dict[str, str]:
        """The packages that are already there. Without --resume, there must be none, and all must be of one kind."""
        path, kind = self._folder.path, self._summary.kind
        if kind not in (None, self._arguments.package):
            raise WrongUsage(f"{path} has packages of the kind {kind}: use --package {kind} or another directory")
        found = self._recall.find(boards)
        if found and not self._arguments.resume:
            raise WrongUsage(f"{path} already has packages of {NodeSet.fromlist(list(found))}: "
                             "use --resume or another directory")
        return found

    def _ask(self, boards: NodeSet) -> None:
        arguments = self._arguments
        progress = Progress(len(boards))

        def take(result: BoardResult) -> None:
            self._results[result.board] = result
            progress.count(failed=result.state != "whole")

        boards -= NodeSet.fromlist([board for board in boards if not self._has_room(board, take)])

        plan = Plan(self._folder, self._judges, secrets.token_hex(8), arguments.max_bytes, arguments.timeout, take)
        words = ["collect", plan.token]
        rest = [arguments.package, str(arguments.max_bytes), *arguments.port]
        self._processes.add_boards(boards, lambda board: Collection(plan, board),
                                   lambda board: command_line(arguments.ssh, board, [*words, board, *rest]),
                                   arguments.timeout)
        try:
            self._processes.run()
        finally:
            progress.clear()

    def _has_room(self, board: str, take: Callable[[BoardResult], None]) -> bool:
        """Makes room for the package of a board. If that fails, the board is not asked."""
        try:
            self._folder.make_room(board)
        except OSError as error:
            take(BoardResult(board, "failed", self._folder.trouble(error)))
            return False
        return True

    def _take_recalled(self, result: BoardResult) -> None:
        self._results[result.board] = result

    def _complete_results(self) -> None:
        """Adds the boards of the folder that this run did not ask, also those that it did not name."""
        for board in self._boards:
            if board not in self._results:
                earlier = self._earlier.get(board)
                if earlier is None or earlier.state == "whole":  # that package is gone
                    earlier = BoardResult(board, "not asked", "the run was interrupted")
                self._results[board] = earlier
        for board in self._earlier.keys() - self._results.keys():
            self._results[board] = verified(self._earlier[board], self._folder.path)

    def _write(self) -> None:
        results = [self._results[board] for board in NodeSet.fromlist(list(self._results))]
        self._folder.write(summary.NAME, summary.summary_lines(results, self._arguments.package))
        self._folder.write("index.html", page_lines(results))


def collect(arguments: Namespace) -> int:
    return CollectRun(arguments).run()
