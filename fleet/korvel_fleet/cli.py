"""The command line of korvel-fleet."""

import argparse
import os
import re
import shlex
import shutil
import signal
import sys
from collections.abc import Callable, Iterable
from typing import Any, NoReturn

from korvel_fleet import VERSION
from korvel_fleet.commands.collect import collect
from korvel_fleet.commands.probe import probe
from korvel_fleet.commands.run import run
from korvel_fleet.commands.status import status
from korvel_fleet.common.errors import Trouble, WrongUsage
from korvel_fleet.common.texts import visible

PACKAGES = ("pkg", "pkg-trs", "pkg-sup", "pkg-pm", "pkg-sdown")
FANOUT = 64
TROUBLE = 3


class _HelpFormatter(argparse.HelpFormatter):
    """The titles as in the help texts of the other programs."""

    def add_usage(self, usage: str | None, actions: Iterable[argparse.Action], groups: Iterable[object],
                  prefix: str | None = None) -> None:
        super().add_usage(usage, actions, groups, "Usage: " if prefix is None else prefix)

    def start_section(self, heading: str | None) -> None:
        super().start_section(heading.capitalize() if heading else heading)


class _Parser(argparse.ArgumentParser):
    def __init__(self, **settings: Any) -> None:
        super().__init__(allow_abbrev=False, formatter_class=_HelpFormatter, **settings)

    def error(self, message: str) -> NoReturn:
        raise WrongUsage(f"{message}\nTry '{self.prog} --help'.")


def positive(text: str) -> int:
    if not re.fullmatch("[1-9][0-9]{0,8}", text):
        raise argparse.ArgumentTypeError(f"not a number above 0: '{text}'")
    return int(text)


def seconds(text: str) -> float:
    try:
        number = float(text)
    except ValueError:
        number = 0
    if not 0 < number < 1e6:
        raise argparse.ArgumentTypeError(f"not a number of seconds above 0: '{text}'")
    return number


def size(text: str) -> int:
    factor = {"K": 1 << 10, "M": 1 << 20, "G": 1 << 30}.get(text[-1:].upper(), 1)
    digits = text if factor == 1 else text[:-1]
    if not re.fullmatch("[1-9][0-9]{0,11}", digits):
        raise argparse.ArgumentTypeError(f"not a size: '{text}'")
    return int(digits) * factor


def ssh_command(text: str) -> list[str]:
    try:
        words = shlex.split(text)
    except ValueError as error:
        raise argparse.ArgumentTypeError(f"wrong quotes: '{text}'") from error
    if not words or shutil.which(words[0]) is None:
        raise argparse.ArgumentTypeError(f"no such program: '{words[0] if words else ''}'")
    return words


def interfaces(text: str) -> list[str]:
    names = text.split(",")
    if not all(names):
        raise argparse.ArgumentTypeError(f"an empty name of an interface: '{text}'")
    return names


def _add_boards(parser: argparse.ArgumentParser, timeout: float) -> None:
    parser.add_argument("-w", dest="nodes", metavar="NODES", action="append", required=True,
                        help="the boards, as a node set: 'board[1-32]', '@racks'; may be repeated")
    parser.add_argument("-x", dest="exclude", metavar="NODES", action="append", default=[],
                        help="boards to leave out; may be repeated")
    parser.add_argument("--fanout", metavar="N", type=positive, default=FANOUT,
                        help=f"ask at most N boards at the same time (default: {FANOUT})")
    parser.add_argument("--timeout", metavar="SECONDS", type=seconds, default=timeout,
                        help=f"give a board this time for its answer (default: {timeout:g})")
    parser.add_argument("--ssh", metavar="COMMAND", type=ssh_command, default=["ssh"],
                        help="the ssh command, with options such as 'ssh -F FILE' (default: ssh)")


def _add_port(parser: argparse.ArgumentParser) -> None:
    parser.add_argument("--port", metavar="IF,...", type=interfaces, default=[],
                        help="also ask for the switch ports of these interfaces")


def _add_collect(parser: argparse.ArgumentParser) -> None:
    _add_boards(parser, 600)
    parser.add_argument("-o", dest="output", metavar="DIR", required=True, help="the directory for the packages")
    parser.add_argument("--package", metavar="KEYWORD", choices=PACKAGES, default="pkg-pm",
                        help="the kind of package: " + ", ".join(PACKAGES) + " (default: pkg-pm)")
    _add_port(parser)
    parser.add_argument("--resume", action="store_true", help="ask only boards without a whole package in DIR")
    _add_max_bytes(parser, "64M", "refuse larger packages")


def _add_max_bytes(parser: argparse.ArgumentParser, default: str, text: str) -> None:
    parser.add_argument("--max-bytes", metavar="SIZE", type=size, default=default,
                        help=f"{text}; SIZE is in bytes, or ends in K, M or G (default: {default})")


def _add_run(parser: argparse.ArgumentParser) -> None:
    _add_boards(parser, 60)
    _add_max_bytes(parser, "1M", "end a board that prints more")
    parser.add_argument("words", metavar="ARGUMENT", nargs="+", help="the arguments of korvel, without its name, after --")


def _add_probe(parser: argparse.ArgumentParser) -> None:
    _add_boards(parser, 60)
    _add_port(parser)


def _add_status(parser: argparse.ArgumentParser) -> None:
    parser.add_argument("folder", metavar="DIR", help="the directory of the packages")
    parser.add_argument("--metrics", metavar="FILE",
                        help="write FILE for the textfile collector of node_exporter, and print nothing")


SUBCOMMANDS: dict[str, tuple[Callable[[argparse.Namespace], int], Callable[[argparse.ArgumentParser], None], str]] = {
    "collect": (collect, _add_collect, "Collect a package from each board."),
    "run": (run, _add_run, "Run a command line of korvel on each board."),
    "probe": (probe, _add_probe, "Tell how the boards are: heartbeats, ports, platform."),
    "status": (status, _add_status, "Tell what a directory of collected packages holds."),
}


def _parser() -> argparse.ArgumentParser:
    parser = _Parser(prog="korvel-fleet", description="Asks many boards at once, over ssh.")
    parser.add_argument("--version", action="version", version=f"korvel-fleet {VERSION}")
    subparsers = parser.add_subparsers(title="subcommands", metavar="SUBCOMMAND", required=True, parser_class=_Parser)
    for name, (start, add_arguments, text) in SUBCOMMANDS.items():
        subparser = subparsers.add_parser(name, help=text, description=text)
        add_arguments(subparser)
        subparser.set_defaults(run=start, subcommand=name)
    return parser


def _drop_output() -> None:
    """Python writes the rest of the output at its end, too."""
    os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())


def _parse() -> argparse.Namespace:
    """The arguments. An error names the subcommand's own help."""
    arguments, rest = _parser().parse_known_args()
    if rest:
        hint = "; write -- before the arguments of korvel" if arguments.run is run and "--" not in sys.argv else ""
        raise WrongUsage(f"unrecognized argument: {rest[0]}{hint}\nTry 'korvel-fleet {arguments.subcommand} --help'.")
    return arguments


def main() -> int:
    try:
        arguments = _parse()
        status = arguments.run(arguments)
        sys.stdout.flush()
        return status
    except (WrongUsage, Trouble) as error:
        print(f"korvel-fleet: {visible(str(error))}", file=sys.stderr)
    except BrokenPipeError:
        _drop_output()
        return 128 + signal.SIGPIPE
    except OSError as error:
        _drop_output()
        print(f"korvel-fleet: cannot write the result: {error.strerror}", file=sys.stderr)
    return TROUBLE
