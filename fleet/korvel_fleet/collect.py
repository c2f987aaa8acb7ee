"""korvel-fleet collect: a package from each board."""

import secrets
from argparse import Namespace
from pathlib import Path

from ClusterShell.NodeSet import NodeSet

from korvel_fleet import summary
from korvel_fleet.boards import boards_of
from korvel_fleet.collection import Collection, Plan
from korvel_fleet.errors import WrongUsage
from korvel_fleet.folder import Folder, checksum_of
from korvel_fleet.job import JOB
from korvel_fleet.judge import Judges, find_program
from korvel_fleet.page import page_lines
from korvel_fleet.processes import Interrupted, Processes
from korvel_fleet.progress import Progress
from korvel_fleet.results import BoardResult, print_results
from korvel_fleet.ssh import command_line
from korvel_fleet.texts import one_line
from korvel_fleet.verdicts import Verdict


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
        self._earlier = {result.board: result for result in self._read_earlier()}

    def _read_earlier(self) -> list[BoardResult]:
        found = summary.read_summary(self._folder.path)
        return found[1] if found else []

    def run(self) -> int:
        missing = self._boards - self._whole_boards()
        self._progress = Progress(len(missing))
        plan = Plan(self._folder, self._judges, secrets.token_hex(8), self._arguments.max_bytes,
                    self._arguments.timeout, self._take)
        arguments = self._arguments
        words = ["collect", plan.token]
        rest = [arguments.package, str(arguments.max_bytes), *arguments.port]
        self._processes.add_boards(missing, lambda board: Collection(plan, board),
                                   lambda board: command_line(arguments.ssh, board, [*words, board, *rest], JOB),
                                   arguments.timeout)
        signal_number = None
        try:
            self._processes.run()
        except Interrupted as interruption:
            signal_number = interruption.signal_number
        self._progress.clear()
        self._write()
        status = print_results(self._results.values(), self._folder.path)
        return status if signal_number is None else 128 + signal_number

    def _whole_boards(self) -> NodeSet:
        """The boards whose packages are already there. Without --resume, there must be none."""
        whole = NodeSet.fromlist([board for board in self._boards if self._folder.has_whole(board)])
        if whole and not self._arguments.resume:
            raise WrongUsage(f"{self._folder.path} already has packages of {whole}: use --resume or another directory")
        for board in whole:
            self._recall(board)
        return whole

    def _recall(self, board: str) -> None:
        """Takes the result of an earlier run. A run that was killed has left none, so the package is judged again."""
        package = self._folder.package(board)
        checksum = checksum_of(package)
        earlier = self._earlier.get(board)
        if earlier and earlier.state == "whole" and earlier.sha256 == checksum:
            self._results[board] = earlier
        else:
            self._judges.judge(package, lambda verdict: self._take_recalled(board, package, verdict))

    def _take_recalled(self, board: str, package: Path, verdict: Verdict) -> None:
        foreign = f"package of another board: {one_line(verdict.board or 'unknown')}" if verdict.board != board else None
        damage = None if verdict.is_whole else f"package {verdict.verdict}: {verdict.cause}"
        cause = foreign or damage
        state = "altered" if cause else "whole"
        self._results[board] = BoardResult(
            board, state, cause, verdict=verdict.verdict, file=package.name, sha256=verdict.sha256, size=verdict.size,
            package_time=verdict.time, findings=verdict.findings, probes=verdict.probes)

    def _take(self, result: BoardResult) -> None:
        self._results[result.board] = result
        self._progress.count(failed=result.state != "whole")

    def _write(self) -> None:
        """Writes about all boards of the folder, also those that this run did not name."""
        for board in self._boards:
            if board not in self._results:
                earlier = self._earlier.get(board)
                if earlier is None or earlier.state == "whole":  # that package is gone
                    earlier = BoardResult(board, "not asked", "the run was interrupted")
                self._results[board] = earlier
        everything = {**self._earlier, **self._results}
        results = [everything[board] for board in NodeSet.fromlist(list(everything))]
        keyword = self._arguments.package
        self._folder.write(summary.NAME, summary.summary_lines(results, keyword))
        self._folder.write("index.html", page_lines(results))


def collect(arguments: Namespace) -> int:
    return CollectRun(arguments).run()
