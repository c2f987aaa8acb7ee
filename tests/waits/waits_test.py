"""Makes every wait in the table of docs/architecture.md reach its limit, each on a simulated board.

korvel must continue with the documented text, and not before the limit. All boards run in parallel, so the test checks
only lower bounds.
"""

import json
import os
import re
import subprocess
import unittest
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path
from typing import NamedTuple

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])
ARCHITECTURE = SOURCE / "docs" / "architecture.md"
ON_BOARD = Path(__file__).with_name("on_board.py")
PRIVILEGED = SOURCE / "tests" / "support" / "privileged" / "board"

STAMPS = 0.02  # seconds: largest error of the difference of two time stamps
DURATION = re.compile(r"\d+ m?s\b")
TERMINATED = -15


@dataclass(frozen=True)
class Scenario:
    """Makes a wait reach its limit, and describes the expected result."""

    wait: str  # the first cell of its row
    limit: str  # a part of the row's second cell
    seconds: float
    board: tuple[str, ...]  # boardsim's options
    steps: tuple[str, ...]  # a function of on_board.py and its arguments
    text: str  # korvel's whole output, as a regular expression
    status: int = 0
    privilege: str = ""


class Observation(NamedTuple):
    seconds: float
    status: int
    text: str


MASTER = "answer of the NetFP master"
HEARTBEATS = "answers to the heartbeats of a cycle"
RESET = "answer to resetqosstats"
REPLY = "next datagram of an MMI reply"
OUTPUT = "space on standard output and standard error"
STUCK_STATE = "/tmp/fuse/iwf/tracing_on"
NO_PORT = 'Get Port: Invalid port number "eth1"\n'
NO_STATE = f"Error while opening {STUCK_STATE}\n"
EMPTY_STATE = "Output of /tmp/korvel/fuse/iwf/tracing_on.log is empty\n"
POLL = r"poll\(\): Timed out while waiting for response\n"
CUT = "Reply to SocketSvcInfo does not end, cut\n"
INFORMATION = ("-d", "iwf", "dump", "dinf")

SCENARIOS = (
    Scenario(MASTER, "1 s", 1, ("--fault", "netfp_master=silent"), ("run", "getport", "eth1"), NO_PORT),
    Scenario("answer of netfp_proxy to add_interface", "2 s", 2, ("--fault", "netfp_proxy=netlink-silent"),
             ("run", "add_interface", "fp0"), "AddInterface fp0 failed. Check logs for more info.\n", 1),
    Scenario(HEARTBEATS, "2 s", 20,
             ("--fault", "netfp_proxy=netlink-silent", "--fault", "iwf_dispatcher=netlink-silent"),
             ("run", "-d", "iwf", "supervision"), "", 1),
    Scenario(HEARTBEATS, "10 s", 10, ("--without", "netfp_proxy"),
             ("with_foreign_heartbeats", "-d", "iwf", "supervision"),
             "Heartbeat status: IWF Dispatcher:OK NetfpProxy: NOT_RECEIVED\n", 1),
    Scenario(RESET, "1.5 s", 1.5, ("--fault", "iwf_dispatcher=silent"), ("run", "-d", "iwf", "resetqosstats"), POLL, 1),
    Scenario(RESET, "7.5 s", 7.5, ("--without", "iwf_dispatcher"),
             ("with_trickling_dispatcher", "7777", "-d", "iwf", "resetqosstats"), r"(tick\n+)+"),
    Scenario("pause after a healthy cycle", "4 s", 4 - STAMPS, (), ("between_cycles", "supervision"), "", TERMINATED),
    Scenario("pause between two reads of the logs", "5 s", 5 - STAMPS, (), ("between_reads", "archive"), "",
             TERMINATED),
    Scenario(REPLY, "500 ms", 0.5, ("--fault", "iwf_dispatcher=silent"), ("run", *INFORMATION), POLL),
    Scenario(REPLY, "16 MiB", 0, ("--fault", "iwf_dispatcher=endless"), ("run", *INFORMATION), CUT),
    Scenario(REPLY, "60 s", 60, ("--without", "iwf_dispatcher"), ("with_trickling_dispatcher", "7777", *INFORMATION),
             NO_STATE + CUT + EMPTY_STATE),
    Scenario("dump of a NetFP process", "20 rounds of 50 ms", 1, ("--fault", "netfp_proxy=silent"),
             ("run", "print", "proxy"),
             "### netfp_proxy #+\n\n====> This log may be not complete, terminator pattern was not found <====\n\n"),
    Scenario("access to a file of another process", "5 s", 5, (),
             ("with_stuck_folder", "/tmp/fuse/iwf", "READ", *INFORMATION),
             f"Error while reading {STUCK_STATE}: Connection timed out\n" + EMPTY_STATE, privilege="mounts"),
    Scenario("lock of another collection", "60 s", 60, (), ("with_lock", "/tmp/korvel", *INFORMATION),
             "Another log collection is running, waiting for its end\n"),
    Scenario("space in the queue of a peer", "1 s", 1, (),
             ("with_stopped_reader", "netfp_master", "/tmp/NetfpMaster", "getport", "eth1"),
             'Failed to Send to Master Socket "/tmp/NetfpMaster": 11: Resource temporarily unavailable\n' + NO_PORT),
    Scenario("space in the system log", "1 s", 1, (),
             ("with_stopped_reader", "system_log", "/dev/log", "-v", "getport", "4"),
             r"Verbose mode enabled\.\n\n(.+\n)+4\n"),
    Scenario(OUTPUT, "none", 2, (), ("with_full_pipe", "2", "getport", "4"), "4\n"),
    Scenario(OUTPUT, "none", 2, (), ("with_full_pipe", "2", "resetqosstats", "now"),
             "ResetQosStats: Wrong number of parameters\n", 1),
    Scenario("shell commands", "none", 2, (), ("with_slow_command", "ps", "2", "dump", "slog"), ""),
)


def rows() -> dict[str, str]:
    """The limit of each wait in the table."""
    section = re.search(r"^## Waits and their limits\n(.*?)^## ", ARCHITECTURE.read_text(encoding="utf-8"), re.M | re.S)
    assert section
    cells = re.findall(r"^\| (.*?) \| (.*) \|$", section[1], re.M)
    return dict(cells[1:])  # without the heading


def observe(scenario: Scenario) -> Observation:
    board = [str(BUILD / "boardsim"), *scenario.board, "--", "python3", "-", *scenario.steps]
    if scenario.privilege:
        board = [str(PRIVILEGED), scenario.privilege, *board]
    with ON_BOARD.open("rb") as program:
        done = subprocess.run(board, stdin=program, stdout=subprocess.PIPE, check=True)
    return Observation(*json.loads(done.stdout))


class Waits(unittest.TestCase):
    maxDiff = None

    def test_each_have_a_row_and_a_scenario(self) -> None:
        self.assertEqual(sorted({scenario.wait for scenario in SCENARIOS}), sorted(rows()))

    def test_have_a_scenario_for_each_limit_in_their_row(self) -> None:
        for wait, text in rows().items():
            with self.subTest(wait):
                rest = text
                for limit in (scenario.limit for scenario in SCENARIOS if scenario.wait == wait):
                    self.assertIn(limit, text)
                    rest = rest.replace(limit, "")
                self.assertEqual(DURATION.findall(rest), [])

    def test_end_without_help_and_not_before_their_limit(self) -> None:
        with ThreadPoolExecutor(len(SCENARIOS)) as boards:
            for scenario, observation in zip(SCENARIOS, boards.map(observe, SCENARIOS)):
                with self.subTest(scenario.wait, limit=scenario.limit):
                    self.assertRegex(observation.text, rf"\A(?:{scenario.text})\Z")
                    self.assertEqual(observation.status, scenario.status)
                    self.assertGreaterEqual(observation.seconds, scenario.seconds)


if __name__ == "__main__":
    unittest.main()
