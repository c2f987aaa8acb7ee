"""The boards of a command line."""

import re
from collections.abc import Sequence

from ClusterShell.NodeSet import NodeSet, NodeSetException
from ClusterShell.NodeUtils import GroupResolverError

from korvel_fleet.errors import WrongUsage
from korvel_fleet.texts import visible

# A name becomes a file name and an argument of ssh.
_NAME = re.compile(r"[A-Za-z0-9_][A-Za-z0-9_.:@-]{0,199}")


def boards_of(include: Sequence[str], exclude: Sequence[str]) -> NodeSet:
    """The boards that -w names, without those of -x."""
    boards = NodeSet()
    try:
        for text in include:
            boards.update(NodeSet(text))
        for text in exclude:
            boards.difference_update(NodeSet(text))
    except (NodeSetException, GroupResolverError) as error:
        raise WrongUsage(f"wrong node set: {visible(str(error))}") from error
    if not boards:
        raise WrongUsage("no boards: the node set is empty")
    for board in boards:
        if not _NAME.fullmatch(board):
            raise WrongUsage(f"not a name of a board: {visible(board)}")
    return boards
