"""Errors that end korvel-fleet with a message."""


class Trouble(Exception):
    """Something here, not on a board, is wrong: exit status 3."""


class WrongUsage(Exception):
    """The command line is wrong: exit status 3."""
