"""The options, keywords, peers and faults in the help texts of the programs."""

import os
import re
import subprocess
from pathlib import Path

BUILD = Path(os.environ["KORVEL_BUILD"])
PROGRAM = r"\S*korvel\S*"  # under an emulator, the help text shows a path


def help_of(program: str, *words: str) -> str:
    return subprocess.run([BUILD / program, *words, "--help"], check=True, capture_output=True, text=True).stdout


def korvel_options() -> set[str]:
    return set(re.findall(r"^    (-\S+)", help_of("korvel"), re.M))


def korvel_keywords() -> set[str]:
    text = help_of("korvel")
    collection, rest = text.split("  Log Collection:\n")[1].split("  Actions:\n")
    collected = re.findall(r"^      ([a-z-]+)\*? *\(", collection, re.M)
    actions = re.findall(rf"^    =+\n +(?:{PROGRAM} )?(\w+)", rest, re.M)
    long_running = re.findall(rf"^      {PROGRAM}  (\w+)$", rest, re.M)
    return {*collected, *actions, *long_running}


def boardsim_options() -> set[str]:
    return set(re.findall(r"^  (-\S+)", help_of("boardsim"), re.M))


def boardsim_peers() -> set[str]:
    peers = help_of("boardsim").split("Peers (each is a process with this name):\n")[1].split("\n\n")[0]
    return set(re.findall(r"^  (\w+)", peers, re.M))


def boardsim_faults() -> dict[str, set[str]]:
    """The faults of each table, by the table's title."""
    tables = re.findall(r"^Faults of (.*):\n((?:  .*\n)*)", help_of("boardsim"), re.M)
    return {title: set(re.findall(r"^    ([a-z-]+)", rows, re.M)) for title, rows in tables}


def options_in(text: str) -> set[str]:
    """Each option has a row, which may give it two names: `-h, --help`."""
    names = re.findall(r"^  (-[^\s,]+(?:, -\S+)*)", text, re.M)
    return {name for row in names for name in row.split(", ")}


def fleet_subcommands() -> list[str]:
    return re.findall(r"^    (\w+) ", help_of("korvel-fleet").split("Subcommands:\n")[1], re.M)


def fleet_options(*subcommand: str) -> set[str]:
    """The options of a subcommand, or those without one."""
    return options_in(help_of("korvel-fleet", *subcommand))


def report_subcommands() -> list[str]:
    rows = help_of("korvel-report").split("Subcommands:\n")[1].split("\n\n")[0]
    return re.findall(r"^  (\w+)", rows, re.M)


def report_options(*subcommand: str) -> set[str]:
    """The options of a subcommand, or those without one."""
    return options_in(help_of("korvel-report", *subcommand))
