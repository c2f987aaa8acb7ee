"""The ssh command line of a board, and the causes that ssh's own messages name."""

import re
import shlex
from collections.abc import Sequence
from pathlib import Path

from korvel_fleet.processes import Command

# The file of the job, beside the folder of this module. Not resolved: in the build tree, the modules are links, and the
# job is not.
JOB = str(Path(__file__).parent.parent / "job.sh")

# The user's configuration applies. Options in the user's own ssh command come first, so they win over these.
OPTIONS = (
    "BatchMode=yes",  # never asks for a password
    "ConnectTimeout=10",
    "ServerAliveInterval=15",
    "ServerAliveCountMax=3",
    "ClearAllForwardings=yes",
    "ForwardAgent=no",
    "ForwardX11=no",
    "RequestTTY=no",
    "RemoteCommand=none",
)

FAILED = 255  # ssh's own exit status

# The first pattern that matches a message of ssh names the cause.
CAUSES = (
    (r"REMOTE HOST IDENTIFICATION HAS CHANGED|Host key verification failed|host key is known", "host key not accepted"),
    (r"Permission denied|Too many authentication failures|no mutual signature", "permission denied"),
    (r"Could not resolve hostname|Name or service not known", "name not known"),
    (r"Connection refused", "connection refused"),
    (r"No route to host|Network is unreachable|Host is down", "no route to the board"),
    (r"Timeout, server .* not responding", "stopped answering"),
    (r"timed out", "connection timed out"),
    (r"Connection closed|Connection reset|closed by remote host|Broken pipe|kex_exchange", "connection closed"),
    (r"Bad configuration option|terminating, \d+ bad|Can't open user config", "wrong configuration of ssh"),
)


def command_line(ssh: Sequence[str], board: str, arguments: Sequence[str]) -> Command:
    """The command that runs the job on a board. The shell there reads the job from standard input."""
    options = [word for option in OPTIONS for word in ("-o", option)]
    return Command([*ssh, *options, "--", board, shlex.join(["sh", "-s", "--", *arguments])], stdin=JOB)


def cause_of(messages: str) -> str:
    """What ssh's messages say in a few words."""
    for pattern, cause in CAUSES:
        if re.search(pattern, messages):
            return cause
    return "cannot connect"


def why_it_ended(status: int | None, messages: str, began: bool, timeout: float) -> str:
    """Why an ssh ended before the job did. `status` is None after the timeout, and negative for a signal."""
    if status is None:
        return f"stopped answering: ended after {timeout:g} s" if began else f"no answer within {timeout:g} s"
    if status < 0:
        return f"ssh was ended by signal {-status}"
    if status == FAILED:
        return f"stopped answering: {cause_of(messages)}" if began else cause_of(messages)
    if began:
        return f"the job ended early with status {status}"
    return f"the job did not start: the board's shell ended with status {status}"
