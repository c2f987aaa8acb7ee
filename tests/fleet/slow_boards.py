"""Measures whether boards are asked at the same time. The SSH servers of 28 boards each wait five seconds before they
answer. All of them must take at most 1.3 times as long as one.
"""

import sys
import tempfile
import time
from pathlib import Path

import fleet
import ssh_test

NUMBER = 28
SECONDS = 5
FACTOR = 1.3


def seconds_for(number: int, folder: Path, ssh: str) -> float:
    began = time.monotonic()
    outcome = fleet.run("collect", "-w", f"board[1-{number}]", "-o", folder / f"packages-{number}", "--ssh", ssh)
    if outcome.status != 0:
        sys.exit(outcome.out + outcome.err)
    return time.monotonic() - began


def main() -> None:
    with tempfile.TemporaryDirectory(prefix="korvel-fleet-") as name:
        folder = Path(name)
        proxies = {number: f"sh -c \"sleep {SECONDS}; exec {ssh_test.ON_BOARD}\"" for number in range(1, NUMBER + 1)}
        ssh = f"ssh -F {ssh_test.write_configuration(folder, proxies)}"
        one = seconds_for(1, folder, ssh)
        many = seconds_for(NUMBER, folder, ssh)
    print(f"1 board: {one:.1f} s, {NUMBER} boards: {many:.1f} s, {many / one:.2f} times as long (limit {FACTOR})")
    sys.exit(many > FACTOR * one)


if __name__ == "__main__":
    main()
