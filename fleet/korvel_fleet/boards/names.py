"""The boards of a command line."""

import re
import sys
from collections.abc import Sequence

from ClusterShell.NodeSet import NodeSet, NodeSetException
from ClusterShell.NodeUtils import GroupResolverError

from korvel_fleet.common.errors import WrongUsage
from korvel_fleet.common.texts import visible

# A name becomes a file name and an argument of ssh.
_NAME = re.compile(r"[A-Za-z0-9_][A-Za-z0-9_.:@-]{0,199}")


def is_name(text: str) -> bool:
    return _NAME.fullmatch(text) is not None


def boards_of(include: Sequence[str], exclude: Sequence[str]) -> NodeSet:
    """The boards that -w names, without those of -x."""
    boards, left_out = _union(include), _union(exclude)
    if not boards and any("@" in text for text in include):
        raise WrongUsage("no boards: a group without members, or not defined in groups.conf(5)")
    for board in boards:
        if not is_name(board):
            hint = "; commas separate names" if " " in board else ""
            raise WrongUsage(f"not a name of a board: {visible(board)}{hint}")
    if strangers := left_out - boards:
        print(f"korvel-fleet: -x: not among the boards: {visible(str(strangers))}", file=sys.stderr)
    if not boards - left_out:
        raise WrongUsage("no boards: the node set is empty")
    return boards - left_out


def _union(texts: Sequence[str]) -> NodeSet:
    union = NodeSet()
    try:
        for text in texts:
            union.update(NodeSet(text))
    except (NodeSetException, GroupResolverError) as error:
        raise WrongUsage(f"wrong node set: {visible(str(error))}") from error
    return union
