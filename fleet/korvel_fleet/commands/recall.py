"""What earlier runs left in the folder. A board with a whole package there is not asked again."""

import functools
from collections.abc import Callable, Iterable
from pathlib import Path

from korvel_fleet.common.errors import WrongUsage
from korvel_fleet.packages.folder import Folder, described_checksum, recorded
from korvel_fleet.packages.judge import Judges
from korvel_fleet.packages.results import BoardResult
from korvel_fleet.packages.verdicts import Verdict


class Recall:
    """Finds packages, and takes only those that korvel-report calls whole. The others lose the name of a whole one."""

    def __init__(self, folder: Folder, judges: Judges, keyword: str, take: Callable[[BoardResult], None]) -> None:
        self._folder = folder
        self._judges = judges
        self._command = f"korvel {keyword}"
        self._take = take

    def find(self, boards: Iterable[str]) -> dict[str, str]:
        """The checksums of packages that their run files describe. Refuses packages of another kind. Changes nothing."""
        found = {}
        for board in boards:
            package = self._folder.package(board)
            if package.exists() and (checksum := described_checksum(package)):
                found[board] = checksum
                if not self._is_of_this_kind(package):
                    raise WrongUsage(f"{package} was made by another command: {recorded(package)['command']}")
        return found

    def _is_of_this_kind(self, package: Path) -> bool:
        return recorded(package).get("command", self._command) == self._command

    def take(self, boards: Iterable[str], found: dict[str, str], earlier: dict[str, BoardResult]) -> None:
        """Takes the results of an earlier run for the same packages. The other packages are judged again, also those
        of runs that were killed: they have left no results.
        """
        for board in boards:
            known = earlier.get(board)
            if known and known.state == "whole" and known.sha256 == found.get(board):
                self._take(known)
            elif board in found:
                self._judges.judge(self._folder.package(board), functools.partial(self._take_package, board))
            elif self._can(self._folder.free_name, board):
                self._judge_arrived(board)

    def _judge_arrived(self, board: str) -> None:
        """Judges a package that arrived as a whole, but has not got its name."""
        part = self._folder.part(board)
        if part.exists() and described_checksum(part) and self._is_of_this_kind(part):
            self._judges.judge(part, functools.partial(self._take_arrived, board))

    def _take_package(self, board: str, verdict: Verdict) -> None:
        if verdict.flaw(board) is None:
            self._take_whole(board, verdict)
        else:
            self._can(self._folder.set_aside, board)

    def _take_arrived(self, board: str, verdict: Verdict) -> None:
        if verdict.flaw(board) is None and self._can(self._folder.publish, board):
            self._take_whole(board, verdict)

    @staticmethod
    def _can(rename: Callable[[str], object], board: str) -> bool:
        """If it cannot, the board is asked again, and Folder.make_room() says what is wrong."""
        try:
            rename(board)
        except OSError:
            return False
        return True

    def _take_whole(self, board: str, verdict: Verdict) -> None:
        result = BoardResult(board, "whole", file=self._folder.package(board).name)
        result.describe(verdict)
        self._take(result)
