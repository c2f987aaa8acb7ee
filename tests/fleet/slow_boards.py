"""Measures whether boards are asked at the same time. Each of 28 boards waits five seconds before it answers. All of them
must take at most 1.3 times as long as one.

The limit is for boards that do not use the processors of this machine, as real ones: a stand-in for ssh sends a recorded
answer. The second figure is that of simulated boards behind real SSH servers, which all compute here.
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
RECORDED = "board00"  # the other names are as long: the answer contains the length of its run file


def seconds_for(number: int, names: str, folder: Path, ssh: str) -> float:
    began = time.monotonic()
    outcome = fleet.run("collect", "-w", names.format(number), "-o", f"{folder}-{number}", "--ssh", ssh)
    if outcome.status != 0:
        sys.exit(outcome.out + outcome.err)
    return time.monotonic() - began


def factor(what: str, names: str, folder: Path, ssh: str) -> float:
    one = seconds_for(1, names, folder, ssh)
    many = seconds_for(NUMBER, names, folder, ssh)
    print(f"{what}: 1 board: {one:.1f} s, {NUMBER} boards: {many:.1f} s, {many / one:.2f} times as long")
    return many / one


def recorded_answers(folder: Path) -> str:
    """A stand-in for ssh whose boards send what one simulated board sent."""
    answer = folder / "answer"
    recorder = fleet.write_stand_in(folder / "recorder", {RECORDED: f"on_board | tee {answer}"})
    outcome = fleet.run("collect", "-w", RECORDED, "-o", folder / "recording", "--ssh", recorder)
    if outcome.status != 0:
        sys.exit(outcome.out + outcome.err)
    answering = f"""sleep {SECONDS}
set -- $command
LC_ALL=C sed "1s/[^ ]*$/$5/; s/^board: {RECORDED}$/board: $board/" {answer}"""
    return str(fleet.write_stand_in(folder / "ssh", {"*": answering}))


def simulated_boards(folder: Path) -> str:
    proxies = {number: f"sh -c \"sleep {SECONDS}; exec {ssh_test.ON_BOARD}\"" for number in range(1, NUMBER + 1)}
    return f"ssh -F {ssh_test.write_configuration(folder, proxies)}"


def main() -> None:
    with tempfile.TemporaryDirectory(prefix="korvel-fleet-") as name:
        folder = Path(name)
        recorded = factor("Recorded answers", "board[01-{:02}]", folder / "recorded", recorded_answers(folder))
        factor("Simulated boards", "board[1-{}]", folder / "simulated", simulated_boards(folder))
    print(f"Limit for recorded answers: {FACTOR}")
    sys.exit(recorded > FACTOR)


if __name__ == "__main__":
    main()
