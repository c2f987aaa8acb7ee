"""Wrong usage of korvel-fleet: a message, exit status 3, and no board is asked."""

import fcntl
import unittest

import fleet

TRY = "Try 'korvel-fleet collect --help'.\n"


class WrongUsage(fleet.FolderCase):
    def assert_refused(self, message: str, *arguments: str, **environment: str) -> None:
        with self.subTest(arguments):
            outcome = fleet.run(*arguments, **environment)
            self.assertEqual(outcome, (3, "", f"korvel-fleet: {message}"))

    def collect(self, *arguments: str) -> tuple[str, ...]:
        return ("collect", "-o", str(self.packages), *arguments)

    def test_of_options_is_refused(self) -> None:
        for message, *arguments in (
            ("the following arguments are required: -w", *self.collect()),
            ("argument --fanout: not a number above 0: '0'", *self.collect("-w", "a", "--fanout", "0")),
            ("argument --timeout: not a number of seconds above 0: 'x'", *self.collect("-w", "a", "--timeout", "x")),
            ("argument --max-bytes: not a size: 'M'", *self.collect("-w", "a", "--max-bytes", "M")),
            ("argument --package: invalid choice: 'dump' (choose from 'pkg', 'pkg-trs', 'pkg-sup', 'pkg-pm', 'pkg-sdown')",
             *self.collect("-w", "a", "--package", "dump")),
            ("argument --port: an empty name of an interface: 'eth0,,eth1'", *self.collect("-w", "a", "--port", "eth0,,eth1")),
            ("argument --ssh: no such program: 'no-such-ssh'", *self.collect("-w", "a", "--ssh", "no-such-ssh -v")),
        ):
            self.assert_refused(f"{message}\n{TRY}", *arguments)
        self.assertFalse(self.packages.exists())

    def test_of_arguments_is_refused(self) -> None:
        for message, subcommand, *arguments in (
            ("unrecognized argument: -d; write -- before the arguments of korvel", "run", "-w", "a", "-d", "all", "print"),
            ("unrecognized argument: --resume", "status", "case", "--resume"),
            ("unrecognized argument: other", "status", "case", "other"),
        ):
            self.assert_refused(f"{message}\nTry 'korvel-fleet {subcommand} --help'.\n", subcommand, *arguments)

    def test_of_names_is_refused(self) -> None:
        for message, nodes in (
            ("wrong node set: missing bracket: \"board[\"\n", "board["),
            ("no boards: a group without members, or not defined in groups.conf(5)\n", "@no-such-group"),
            ("not a name of a board: board1 board4; commas separate names\n", "board1 board4"),
            ("not a name of a board: ../board\n", "../board"),
            ("not a name of a board: a/b\n", "board1,a/b"),
            ("not a name of a board: -oProxyCommand=id\n", "-oProxyCommand=id"),
            ("not a name of a board: a;id\n", "a;id"),
            ("not a name of a board: a\\x1bb\n", "a\x1bb"),
        ):
            self.assert_refused(message, *self.collect(f"-w{nodes}"))
        self.assert_refused("no boards: the node set is empty\n", *self.collect("-w", "board[1-2]", "-x", "board[1-2]"))
        self.assert_refused("no boards: the node set is empty\n", "run", "-w", "a", "-x", "a", "--", "print")

    def test_of_a_directory_is_refused(self) -> None:
        file = self.folder / "file"
        file.touch()
        self.assert_refused(f"cannot use {file}: not a directory\n", "collect", "-w", "a", "-o", str(file))
        self.assert_refused(f"{self.folder} has no summary.json: nothing was collected into it\n", "status",
                            str(self.folder))
        (self.folder / "summary.json").write_text("[]", encoding="utf-8")
        self.assert_refused(f"{self.folder}/summary.json is not a summary of korvel-fleet\n", "status", str(self.folder))

    def test_two_runs_into_a_directory_are_refused(self) -> None:
        self.packages.mkdir()
        with (self.packages / ".korvel-fleet.lock").open("wb") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            self.assert_refused(f"another korvel-fleet collects into {self.packages}\n", *self.collect("-w", "a"))

    def test_without_a_subcommand_is_refused(self) -> None:
        self.assert_refused("the following arguments are required: SUBCOMMAND\nTry 'korvel-fleet --help'.\n")


class Help(unittest.TestCase):
    def test_and_version_are_printed(self) -> None:
        self.assertEqual(fleet.run("--version").out.split()[0], "korvel-fleet")
        outcome = fleet.run("--help", COLUMNS="80")
        self.assertEqual((outcome.status, outcome.err), (0, ""))
        for subcommand in ("collect", "run", "probe", "status"):
            self.assertIn(f"\n    {subcommand} ", outcome.out)


if __name__ == "__main__":
    unittest.main()
