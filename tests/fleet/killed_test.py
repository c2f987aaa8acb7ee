"""korvel-fleet collect that is killed anywhere: nothing torn, nothing twice, nothing left running."""

import signal
import subprocess
import time
import unittest
from pathlib import Path

import fleet
import many_names

NUMBER = 60  # no name ends in 00, so no board of the stand-in fails
ROUNDS = 9


def processes_below(folder: Path) -> list[str]:
    """The command lines of processes that work in the folder."""
    found = []
    for entry in Path("/proc").glob("[0-9]*"):
        try:
            line = (entry / "cmdline").read_bytes().replace(b"\0", b" ").decode("utf-8", "replace")
        except OSError:
            continue
        if str(folder) in line:
            found.append(line)
    return found


class Killed(fleet.FolderCase):
    def setUp(self) -> None:
        super().setUp()
        slow = many_names.stand_in(self.folder, fleet.package(self.folder / "package.tgz")).read_text(encoding="utf-8")
        # Each board is noted, and takes a while between its first line and its package.
        slow = slow.replace("set -- $3\n", f"set -- $3\necho $board >> {self.folder}/asked\n")
        self.ssh = fleet.write_program(self.folder / "ssh", slow.replace('echo "package', 'sleep 0.1\necho "package'))
        self.nodes = f"board[1-{NUMBER}]"

    def start(self, *options: str) -> subprocess.Popen[str]:
        return subprocess.Popen(
            [fleet.PROGRAM, "collect", "-w", self.nodes, "-o", self.packages, "--ssh", self.ssh, "--fanout", "8", *options],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def assert_nothing_runs(self) -> None:
        deadline = time.monotonic() + 60
        while (found := processes_below(self.folder)) and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertEqual(found, [])

    def assert_only_whole_packages(self) -> list[str]:
        """Returns the boards that have one."""
        names = [name for name in fleet.files_in(self.packages) if name.endswith(".tgz")] if self.packages.exists() else []
        original = fleet.checksum(self.folder / "package.tgz")
        for name in names:
            self.assertEqual(fleet.checksum(self.packages / name), original, name)
            self.assertIn(f"\nsha256: {original}\n", (self.packages / f"{name}.run").read_text(encoding="utf-8"), name)
        return [name.removesuffix(".tgz") for name in names]

    def asked(self) -> list[str]:
        path = self.folder / "asked"
        return path.read_text(encoding="ascii").split() if path.exists() else []

    def test_anywhere_it_goes_on_with_what_is_missing(self) -> None:
        """Kills run after run, each a bit later in its life, until one comes to its end."""
        for step in range(1, ROUNDS + 1):
            number = (signal.SIGKILL, signal.SIGTERM, signal.SIGINT)[step % 3]
            have = self.assert_only_whole_packages()
            (self.folder / "asked").unlink(missing_ok=True)
            process = self.start("--resume")
            time.sleep(0.1 + 0.08 * step)
            process.send_signal(number)
            _, err = process.communicate(timeout=60)
            self.assertNotIn("korvel", err, "a traceback of the program; the interpreter's own start can be interrupted, too")
            self.assertIn(process.returncode, (-number, 128 + number, 0), step)
            self.assert_nothing_runs()
            self.assertEqual(set(self.asked()) & set(have), set(), "asked although there is a whole package")
        out, err = self.start("--resume").communicate(timeout=60)
        self.assertEqual((out, err), (f"{NUMBER} of {NUMBER} boards have a whole package in {self.packages}\n", ""))
        self.assertEqual(len(self.assert_only_whole_packages()), NUMBER)

    def test_by_a_signal_it_says_what_is_missing(self) -> None:
        self.ssh.write_text("#!/bin/sh\nsleep 600\n", encoding="ascii")
        process = self.start()
        while len(processes_below(self.ssh)) < 8:
            time.sleep(0.01)
        process.send_signal(signal.SIGINT)
        out, err = process.communicate(timeout=60)
        self.assertEqual((process.returncode, out, err), (
            130, f"{self.nodes}: the run was interrupted\n0 of {NUMBER} boards have a whole package in {self.packages}\n", ""))
        self.assert_nothing_runs()

    def test_an_ssh_that_is_killed_fails_only_its_board(self) -> None:
        script = self.ssh.read_text(encoding="utf-8")
        self.ssh.write_text(script.replace('sleep 0.1', '[ $board != board7 ] || kill -9 $$\nsleep 0.1'), encoding="utf-8")
        process = self.start()
        out, err = process.communicate(timeout=60)
        self.assertEqual((process.returncode, out, err), (
            1, f"board7: ssh was ended by signal 9\n{NUMBER - 1} of {NUMBER} boards have a whole package in {self.packages}\n",
            ""))

    def test_between_its_last_two_renames_it_finishes_them(self) -> None:
        self.start().communicate(timeout=60)
        package = self.packages / "board1.tgz"
        package.rename(self.packages / "board1.tgz.part")
        (self.folder / "asked").unlink()
        out, _ = self.start("--resume").communicate(timeout=60)
        self.assertEqual(out, f"{NUMBER} of {NUMBER} boards have a whole package in {self.packages}\n")
        self.assertEqual(self.asked(), [])
        self.assertEqual(len(self.assert_only_whole_packages()), NUMBER)

    def test_shows_what_earlier_runs_found_if_the_next_one_is_interrupted(self) -> None:
        refusal = "ssh: connect to host board port 22: Connection refused"
        self.ssh.write_text(f"#!/bin/sh\necho '{refusal}' >&2\nexit 255\n", encoding="ascii")
        self.start().communicate(timeout=60)
        self.ssh.write_text("#!/bin/sh\nsleep 600\n", encoding="ascii")
        process = self.start("--resume")
        while len(processes_below(self.ssh)) < 8:
            time.sleep(0.01)
        process.send_signal(signal.SIGTERM)
        out, _ = process.communicate(timeout=60)
        self.assertEqual((process.returncode, out), (
            143, f"{self.nodes}: connection refused\n0 of {NUMBER} boards have a whole package in {self.packages}\n"))

    def test_leaves_no_name_of_a_whole_package_to_others_although_it_asked_few_boards(self) -> None:
        self.packages.mkdir()
        for number in range(1, NUMBER + 1):
            (self.packages / f"board{number}.tgz").write_bytes(b"no package")
        self.ssh.write_text("#!/bin/sh\nsleep 600\n", encoding="ascii")
        process = self.start()
        while len(processes_below(self.ssh)) < 8:
            time.sleep(0.01)
        process.send_signal(signal.SIGINT)
        process.communicate(timeout=60)
        self.assertEqual(self.assert_only_whole_packages(), [])
        self.assertEqual(len(list(self.packages.glob("*.altered"))), NUMBER)

    def test_does_not_call_a_package_whole_that_is_gone(self) -> None:
        self.start().communicate(timeout=60)
        for name in ("board1.tgz", "board1.tgz.run"):
            (self.packages / name).unlink()
        process = subprocess.Popen([fleet.PROGRAM, "collect", "-w", self.nodes, "-o", self.packages, "--resume", "--ssh",
                                    fleet.write_program(self.folder / "hanging", "#!/bin/sh\nexec sleep 60\n")],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        time.sleep(2)
        process.send_signal(signal.SIGINT)
        out, _ = process.communicate(timeout=60)
        self.assertTrue(out.startswith("board1: the run was interrupted\n"), out)

    def test_takes_the_name_from_a_package_of_another_board_and_asks_again(self) -> None:
        self.start().communicate(timeout=60)
        (self.packages / "summary.json").unlink()
        for ending in ("", ".run"):
            (self.packages / f"board1.tgz{ending}").write_bytes((self.packages / f"board2.tgz{ending}").read_bytes())
        (self.folder / "asked").unlink()
        self.start("--resume").communicate(timeout=60)
        self.assertEqual(self.asked(), ["board1"])
        self.assertEqual(len(self.assert_only_whole_packages()), NUMBER)
        self.assertTrue((self.packages / "board1.tgz.altered.run").exists())

    def test_keeps_a_package_without_its_run_file_and_asks_again(self) -> None:
        self.start().communicate(timeout=60)
        (self.packages / "board1.tgz.run").unlink()
        (self.folder / "asked").unlink()
        self.start("--resume").communicate(timeout=60)
        self.assertEqual(self.asked(), ["board1"])
        self.assertEqual(len(self.assert_only_whole_packages()), NUMBER)
        self.assertTrue((self.packages / "board1.tgz.altered").exists())


if __name__ == "__main__":
    unittest.main()
