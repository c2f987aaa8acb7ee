"""korvel-fleet collect into a directory that fails: each board is named with what is wrong, and the others are kept."""

import shutil
import subprocess
import unittest

import fleet

# Commands run in a mount namespace of their own. $packages is the directory.
IN_NAMESPACE = ("unshare", "--user", "--map-root-user", "--mount", "sh", "-c")


class ADirectory(fleet.FolderCase):
    def setUp(self) -> None:
        super().setUp()
        if subprocess.run([*IN_NAMESPACE, "true"], capture_output=True).returncode != 0:
            self.skipTest("this machine does not allow mount namespaces")
        self.packages.mkdir()
        self.answer = self.folder / "answer"
        recorder = fleet.write_stand_in(self.folder / "recorder", {"*": f"on_board --full-logs | tee {self.answer}"})
        fleet.run("collect", "-w", "board0", "-o", self.folder / "recorded", "--ssh", recorder)

    def collect(self, prepare: str, nodes: str, *options: str) -> fleet.Outcome:
        """Runs shell commands, then korvel-fleet. Boards send what one board sent."""
        send = f"""set -- $command
            LC_ALL=C sed "1s/[^ ]*$/$5/; s/^board: board0$/board: $board/" {self.answer}"""
        ssh = fleet.write_stand_in(self.folder / "ssh", {"*": send})
        script = f"""packages={self.packages}
            {prepare}
            {fleet.PROGRAM} collect -w "{nodes}" -o $packages --ssh {ssh} {" ".join(options)}
            status=$?
            cp -r $packages {self.folder}/copy
            exit $status"""
        done = subprocess.run([*IN_NAMESPACE, script], capture_output=True, text=True, timeout=100)
        return fleet.Outcome(done.returncode, done.stdout, done.stderr)

    def test_that_is_full_keeps_the_packages_that_fit(self) -> None:
        size = self.answer.stat().st_size
        outcome = self.collect(f"mount -t tmpfs -o size={3 * size} tmpfs $packages", "board[1-9]")
        lines = outcome.out.splitlines()
        self.assertEqual(len(lines), 2, outcome)
        self.assertRegex(lines[0], rf"^board\[[0-9,-]+\]: cannot write to {self.packages}: No space left on device$")
        self.assertRegex(lines[1], r"^[1-3] of 9 boards have a whole package in ")
        whole = list((self.folder / "copy").glob("*.tgz"))
        self.assertEqual(len(whole), int(lines[1][0]))
        self.assertEqual({fleet.verdict(path) for path in whole}, {0})

    def test_that_cannot_make_room_for_a_board_still_takes_the_others(self) -> None:
        busy = "touch $packages/board1.tgz.part; mount --bind $packages/board1.tgz.part $packages/board1.tgz.part"
        for options in ((), ("--resume",)):
            outcome = self.collect(busy, "board[1-3]", *options)
            self.assertEqual(outcome, (1, f"board1: cannot write to {self.packages}: Device or resource busy\n"
                                          f"2 of 3 boards have a whole package in {self.packages}\n", ""))
            shutil.rmtree(self.folder / "copy")


if __name__ == "__main__":
    unittest.main()
