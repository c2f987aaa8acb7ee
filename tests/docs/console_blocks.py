"""The console blocks of a page: the commands that a reader types, and the output that must follow.

Markdown fences a block as ```console. In a manual page, a block is a literal display that begins with a prompt:
  "$ "       The command runs at the root of the source tree.
  "board# "  The command runs on a simulated board. Each block gets a new board.
  "> "       Directly after a command: its next line.
If "$ boardsim OPTION..." directly precedes a board command, the options apply to the board.
All other lines are output: standard output and standard error, as a terminal shows them.
"""

import os
import re
import shlex
import subprocess
from dataclasses import dataclass, field
from pathlib import Path

HOST_PROMPT = "$ "
BOARD_PROMPT = "board# "
CONTINUATION = "> "
PROMPTS = (HOST_PROMPT, BOARD_PROMPT)

# Separates the outputs of two commands on a board. No command of a page prints this character.
MARK = "\x1e"
SHELL_LOOP = 'for command; do printf "\\036"; eval "$command"; done'

# mdoc's escapes for plain characters. The backslash comes last, so that it is not replaced twice.
ESCAPES = {r"\&": "", r"\-": "-", r"\(dq": '"', r"\(aq": "'", r"\(ha": "^", r"\(ti": "~", r"\(ga": "`", r"\e": "\\"}

# Texts that differ from run to run, each with the name that replaces it in a comparison.
VARIABLE_TEXTS = (
    (re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?Z?"), "TIME"),
    (re.compile(r"\d{4}-\d\d-\d\d \d\d:\d\d(:\d\d(\.\d+)?)?"), "TIME"),
    (re.compile(r"\b\d\d:\d\d:\d\d\.\d+"), "TIME"),
    (re.compile(r"netfp_logs_[\d_.:-]+tgz"), "netfp_logs_TIME.tgz"),
    (re.compile(r"0x[0-9a-f]{9,}"), "POINTER"),
    (re.compile(r"\b[0-9a-f]{64}\b"), "CHECKSUM"),
    (re.compile(r"\b\d+\.\d KiB"), "N KiB"),
    (re.compile(r"in service for \d+ s"), "in service for N s"),
    (re.compile(r"\b(response ID:|request) \d+\b"), r"\1 NUMBER"),
)


@dataclass
class Step:
    """One command and the output that must follow it."""

    prompt: str
    command: str
    output: list[str] = field(default_factory=list)


@dataclass
class Block:
    line: int
    steps: list[Step]


def blocks_of(page: Path) -> list[Block]:
    """The console blocks of a Markdown or mdoc page."""
    lines = page.read_text(encoding="utf-8").splitlines()
    if page.suffix == ".md":
        displays = _displays(lines, "```console", "```")
    else:
        displays = [(number, [_without_escapes(line) for line in display])
                    for number, display in _displays(lines, ".Bd -literal", ".Ed")
                    if display[0].startswith(PROMPTS)]
    return [Block(number, _steps(display)) for number, display in displays]


def outputs_of(block: Block, source: Path, build: Path, folder: Path) -> list[list[str]]:
    """Runs a block in an empty folder and returns the output lines of each command."""
    environment = _reader_environment(build)
    _lay_out(folder, source, build)
    outputs: list[list[str]] = []
    options: list[str] = []
    steps = list(block.steps)
    while steps:
        step = steps.pop(0)
        if step.prompt == BOARD_PROMPT:
            commands = [step.command]
            while steps and steps[0].prompt == BOARD_PROMPT:
                commands.append(steps.pop(0).command)
            outputs += _on_board(options, commands, folder, environment)
        elif steps and steps[0].prompt == BOARD_PROMPT:
            options = shlex.split(step.command)[1:]
            outputs.append([])
        else:
            outputs.append(_run(["bash", "-c", step.command], folder, environment).splitlines())
    return outputs


def comparable(lines: list[str]) -> list[str]:
    """Replaces texts that differ from run to run, and removes blank lines at the end."""
    text = "\n".join(line.rstrip() for line in lines).rstrip("\n")
    for pattern, name in VARIABLE_TEXTS:
        text = pattern.sub(name, text)
    return text.split("\n") if text else []


def _displays(lines: list[str], begin: str, end: str) -> list[tuple[int, list[str]]]:
    found: list[tuple[int, list[str]]] = []
    inside = False
    for number, line in enumerate(lines, start=1):
        if inside and line == end:
            inside = False
        elif inside:
            found[-1][1].append(line)
        elif line.startswith(begin):
            found.append((number + 1, []))
            inside = True
    return found


def _steps(lines: list[str]) -> list[Step]:
    steps: list[Step] = []
    for line in lines:
        prompt = next((each for each in PROMPTS if line.startswith(each)), None)
        if prompt:
            steps.append(Step(prompt, line.removeprefix(prompt)))
        elif line.startswith(CONTINUATION) and not steps[-1].output:
            steps[-1].command += "\n" + line.removeprefix(CONTINUATION)
        else:
            steps[-1].output.append(line)
    return steps


def _without_escapes(line: str) -> str:
    for escape, character in ESCAPES.items():
        line = line.replace(escape, character)
    return line


def _reader_environment(build: Path) -> dict[str, str]:
    return {
        "PATH": f"{build / 'bin'}:/usr/local/bin:/usr/bin:/bin",
        "HOME": "/nonexistent",
        "LANG": "C.UTF-8",
        "TERM": "dumb",
        # LeakSanitizer must trace the process. This fails if a board command already traces it.
        "ASAN_OPTIONS": "detect_leaks=0",
    }


def _lay_out(folder: Path, source: Path, build: Path) -> None:
    """Makes links to the source tree's entries, and to the build tree as `build`, the name that pages use."""
    for entry in source.iterdir():
        if not entry.name.startswith(("build", ".")):
            os.symlink(entry, folder / entry.name)
    os.symlink(build, folder / "build")


def _on_board(options: list[str], commands: list[str], folder: Path, environment: dict[str, str]) -> list[list[str]]:
    board = ["boardsim", *options, "--", "sh", "-c", SHELL_LOOP, "sh", *commands]
    output = _run(board, folder, environment)
    return [part.splitlines() for part in output.split(MARK)[1:]]


def _run(command: list[str], folder: Path, environment: dict[str, str]) -> str:
    finished = subprocess.run(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    return finished.stdout.decode(errors="backslashreplace")
