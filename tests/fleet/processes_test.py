"""Many processes at once, as korvel-fleet starts and reads them."""

import resource
import sys
import time
import unittest
from pathlib import Path

import fleet

# ClusterShell is Debian's; this interpreter may be another one.
sys.path += [str(fleet.BUILD / "share/korvel-fleet"), "/usr/lib/python3/dist-packages"]
from korvel_fleet.boards.processes import Command, Processes  # noqa: E402

# Waits for a file, but not longer than the test lives.
WAIT = "wait_for() { until [ -e $1 ] || [ ! -d $PWD ]; do sleep 0.01; done; }; "


class Heard:
    """Notes what a process prints, and may react to it."""

    def __init__(self, creates: Path | None = None) -> None:
        self._creates = creates
        self.out = b""
        self.status: int | None = None

    def received(self, data: bytes) -> bool:
        self.out += data
        if self._creates:
            self._creates.touch()
        return True

    def complained(self, _data: bytes) -> bool:
        return True

    def ended(self, status: int | None) -> None:
        self.status = status


class TheEngine(fleet.FolderCase):
    def run_both(self, first: str, second: str, reaction: Path | None = None) -> tuple[Heard, Heard]:
        processes = Processes(2)
        heard = Heard(), Heard(creates=reaction)
        for name, text, conversation in zip("ab", (first, second), heard):
            command = Command(["sh", "-c", f"cd {self.folder}; {WAIT}{text}"])
            processes.add(name, conversation, command, 100)
        processes.run()
        return heard

    def test_goes_on_while_a_process_without_outputs_lives_on(self) -> None:
        """The first process ends when the output of the second one was read."""
        first, second = self.run_both(
            "exec >&- 2>&-; : > closed; wait_for heard; exit 7",
            "wait_for closed; sleep 0.1; echo b", self.folder / "heard")
        self.assertEqual((first.status, second.status), (7, 0))

    def test_ends_with_a_process_whose_child_keeps_the_outputs(self) -> None:
        """The second process ends the child of the first one."""
        first, _ = self.run_both("(wait_for over) & seq 10000; exit 7", "true; sleep 0.1; : > over")
        self.assertEqual((first.status, first.out.count(b"\n")), (7, 10000))

    def test_leaves_the_children_of_a_process_that_ended_by_itself(self) -> None:
        self.run_both("(wait_for go; : > alive) > /dev/null 2>&1 &", "true")
        (self.folder / "go").touch()
        deadline = time.monotonic() + 30
        while not (self.folder / "alive").exists() and time.monotonic() < deadline:
            time.sleep(0.01)
        self.assertTrue((self.folder / "alive").exists())

    def test_may_open_more_files_for_more_boards(self) -> None:
        soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
        self.addCleanup(resource.setrlimit, resource.RLIMIT_NOFILE, (soft, hard))
        resource.setrlimit(resource.RLIMIT_NOFILE, (100, hard))
        first, second = self.run_both("true", "true")
        Processes(200)
        self.assertGreaterEqual(resource.getrlimit(resource.RLIMIT_NOFILE)[0], 600)
        self.assertEqual((first.status, second.status), (0, 0))


if __name__ == "__main__":
    unittest.main()
