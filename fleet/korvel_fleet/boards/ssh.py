"""The ssh command line of a board, and the causes that ssh's own messages name."""

import re
import shlex
from collections.abc import Sequence
from pathlib import Path

from korvel_fleet.boards.processes import Command

# The file of the job, beside the folder of all modules. Not resolved: in the build tree, the modules are links, and the
# job is not.
JOB = str(Path(__file__).parents[2] / "job.sh")

# The user's configuration applies, except for these options. Options in the user's own ssh command come first, so they win.
OPTIONS = (
    "BatchMode=yes",  # never asks for a password
    "ConnectTimeout=10",
    "ServerAliveInterval=15",
    "ServerAliveCountMax=3",
    # Only the job runs, in the foreground, with its own standard input.
    "StdinNull=no",
    "ForkAfterAuthentication=no",
    "SessionType=default",
    "RemoteCommand=none",
    "RequestTTY=no",
    # Nothing else happens here or on the board.
    "PermitLocalCommand=no",
    "Tunnel=no",
    "ClearAllForwardings=yes",
    "ForwardAgent=no",
    "ForwardX11=no",
)

FAILED = 255  # ssh's own exit status

# How ssh's own messages begin. Other lines can be a banner of the board, or what a program there printed.
OWN_MESSAGE = re.compile(
    r"ssh: |ssh_\w+: |kex_|client_loop: |mux_client|banner exchange: |channel \d+: open failed: |Host key |Timeout, server |"
    r"Connection (closed|reset|timed out|to) |Read from remote host |Received disconnect from |Disconnected from |"
    r"[^ ]+: Permission denied \(|Corrupted MAC |Bad packet length |No .* host key is known ")
LAST_LINES = 8

STOPPED = "stopped answering"

# The first pattern that matches a message of ssh names the cause.
CAUSES = (
    (r"REMOTE HOST IDENTIFICATION HAS CHANGED|Host key verification failed|host key is known", "host key not accepted"),
    (r"Permission denied|Too many authentication failures|no mutual signature", "permission denied"),
    (r"Could not resolve hostname|Name or service not known", "name not known"),
    (r"Connection refused", "connection refused"),
    (r"No route to host|Network is unreachable|Host is down", "no route to the board"),
    (r"Timeout, server .* not responding", STOPPED),
    (r"timed out", "connection timed out"),
    (r"Connection closed|Connection reset|closed by remote host|Broken pipe|kex_exchange", "connection closed"),
    (r"Bad configuration option|terminating, \d+ bad|Can't open user config", "wrong configuration of ssh"),
)


def command_line(ssh: Sequence[str], board: str, arguments: Sequence[str]) -> Command:
    """The command that runs the job on a board. The shell there reads the job from standard input."""
    options = [word for option in OPTIONS for word in ("-o", option)]
    return Command([*ssh, *options, "--", board, shlex.join(["sh", "-s", "--", *arguments])], stdin=JOB)


def _last_lines(messages: str) -> list[str]:
    return [line.strip() for line in messages.splitlines() if line.strip()][-LAST_LINES:]


def ends_with_own_message(messages: str) -> bool:
    """Whether the last line is a message of ssh."""
    return any(OWN_MESSAGE.match(line) for line in _last_lines(messages)[-1:])


def cause_of(messages: str) -> str:
    """What ssh's messages say in a few words. Its last one ends the run; those of a jump host come shortly before."""
    lines = _last_lines(messages)
    own = "\n".join([*filter(OWN_MESSAGE.match, lines[:-1]), *lines[-1:]])
    for pattern, cause in CAUSES:
        if re.search(pattern, own):
            return cause
    return "cannot connect"


def why_it_ended(status: int | None, messages: str, began: bool, timeout: float) -> str:
    """Why an ssh ended before the job did. `status` is None after the timeout, and negative for a signal."""
    if status is None:
        return f"{STOPPED}: ended after {timeout:g} s" if began else f"no answer within {timeout:g} s"
    if status < 0:
        return f"ssh was ended by signal {-status}"
    if status == FAILED and began:
        cause = cause_of(messages) if ends_with_own_message(messages) else STOPPED
        return STOPPED if cause == STOPPED else f"{STOPPED}: {cause}"
    if status == FAILED:
        return cause_of(messages)
    if began:
        return f"the job ended early with status {status}"
    return f"the job did not start: the board's shell ended with status {status}"
