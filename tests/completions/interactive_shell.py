"""Shells at a terminal with installed completions. Shell functions named as the programs print their arguments."""

import os
import re
import subprocess
from pathlib import Path
from typing import NamedTuple

import pexpect

HERE = Path(__file__).parent
BUILD = Path(os.environ["KORVEL_BUILD"])

PROMPT = "READY> "
ALL_MATCHES = "\x14"  # Ctrl-T
TIMEOUT_SECONDS = 60


class Kind(NamedTuple):
    """How a shell is started. Values may contain {home}, {share} and {functions}: the home folder, the folder of
    installed data and the folder of installed zsh functions.
    """

    arguments: list[str]
    environment: dict[str, str]


KINDS = {
    "bash": Kind(
        ["bash", "--noprofile", "--rcfile", f"{HERE}/start.bash"],
        {"TERM": "dumb", "COMPLETION_SCRIPTS": "{share}/bash-completion/completions/*"}),
    "bash-with-its-completion-package": Kind(
        ["bash", "--noprofile", "--rcfile", f"{HERE}/start.bash"],
        {"TERM": "dumb", "COMPLETION_SCRIPTS": "/usr/share/bash-completion/bash_completion"}),
    "zsh": Kind(
        ["zsh"],
        {"TERM": "dumb", "ZDOTDIR": "{home}", "COMPLETION_FOLDER": "{functions}"}),
    "fish": Kind(
        ["fish", "--init-command", f"source {HERE}/start.fish"],
        {"TERM": "xterm"}),
}


def install_completions(prefix: Path) -> None:
    subprocess.run(
        ["cmake", f"-DCMAKE_INSTALL_PREFIX={prefix}", "-P", BUILD / "completions" / "cmake_install.cmake"],
        check=True, stdout=subprocess.DEVNULL)


class InteractiveShell:
    """A shell with the home folder `home`, which also holds the installed completions. close() ends the shell."""

    def __init__(self, kind: str, home: Path) -> None:
        install_completions(home)
        (home / ".zshrc").symlink_to(HERE / "start.zsh")
        arguments, settings = KINDS[kind]
        share = home / "share"
        places = {"home": home, "share": share, "functions": next(share.rglob("_korvel")).parent}
        environment = {"HOME": str(home), "PATH": f"{BUILD}/bin:/usr/bin:/bin", "LANG": "C.UTF-8",
                       "INPUTRC": "/dev/null", "XDG_DATA_DIRS": str(share), "XDG_CONFIG_HOME": f"{home}/config",
                       "XDG_RUNTIME_DIR": str(home)}
        environment |= {name: value.format(**places) for name, value in settings.items()}
        self.terminal = pexpect.spawn(arguments[0], arguments[1:], cwd=home, env=environment, encoding="utf-8",
                                      dimensions=(50, 400), timeout=TIMEOUT_SECONDS)
        self.terminal.expect_exact(PROMPT)

    def arguments_after(self, keys: str) -> list[str]:
        """Types `keys` and Enter. Returns the arguments that korvel receives."""
        self.terminal.send(keys + "\r")
        self.terminal.expect("ARGUMENTS(.*?)END")
        arguments = re.findall("<([^>]*)>", self.terminal.match[1])
        self.terminal.expect_exact(PROMPT)
        return arguments

    def matches(self, line: str) -> list[str]:
        """The completions for the last word of `line`, in alphabetical order."""
        before = line.split()[1:] if line.endswith(" ") else line.split()[1:-1]
        return sorted(self.arguments_after(line + ALL_MATCHES)[len(before):])

    def close(self) -> None:
        self.terminal.close(force=True)
