"""korvel-report on a terminal: colours, width and the pager."""

import fcntl
import os
import pty
import struct
import subprocess
import termios
import unittest

from report_program import PROGRAM, ReportTest

COLOUR = "\x1b["


class TerminalTest(ReportTest):
    def on_terminal(self, *words: str, columns: int = 80, **variables: str) -> tuple[int, str]:
        """Runs the program at a terminal. Returns its status, and what the terminal shows."""
        ours, theirs = pty.openpty()
        fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
        environment = {"PATH": os.environ["PATH"], "TERM": "xterm", "PAGER": "cat"} | variables
        process = subprocess.Popen([PROGRAM, *words], cwd=self.folder, env=environment, stdin=theirs, stdout=theirs,
                                   stderr=theirs)
        os.close(theirs)
        shown = self.drain(ours)
        return process.wait(), shown

    @staticmethod
    def drain(terminal: int) -> str:
        shown = b""
        while True:
            try:
                piece = os.read(terminal, 65536)
            except OSError:  # the last process has closed the terminal
                os.close(terminal)
                return shown.decode().replace("\r\n", "\n")
            shown += piece

    def setUp(self) -> None:
        super().setUp()
        self.package("x.tgz")
        self.plain = self.run_report("show", "x.tgz").out

    def test_has_colours_unless_the_environment_forbids_them(self) -> None:
        self.assertIn(COLOUR, self.on_terminal("show", "x.tgz")[1])
        self.assertIn(COLOUR, self.on_terminal("show", "x.tgz", NO_COLOR="")[1])
        for variables in ({"NO_COLOR": "1"}, {"TERM": "dumb"}, {"TERM": ""}):
            with self.subTest(**variables):
                self.assertEqual(self.on_terminal("show", "x.tgz", **variables), (0, self.plain))

    def test_gives_files_and_pipes_no_colours(self) -> None:
        self.assertNotIn(COLOUR, self.plain)
        self.on_terminal("show", "x.tgz", "-o", "file")
        self.assertEqual((self.folder / "file").read_text(), self.plain)

    def test_breaks_lines_at_its_width(self) -> None:
        narrow = self.on_terminal("check", "x.tgz", columns=40, NO_COLOR="1")[1]
        self.assertLessEqual(max(len(line) for line in narrow.splitlines() if "SHA" not in line), 40)

    def test_shows_results_in_the_pager_of_the_environment(self) -> None:
        for subcommand in (["show", "x.tgz"], ["diff", "x.tgz", str(self.package("y.tgz", "netfp_logs.tgz"))]):
            with self.subTest(subcommand=subcommand):
                paged = self.on_terminal(*subcommand, PAGER="sed s/^/PAGED:/", NO_COLOR="1")[1]
                self.assertTrue(paged.startswith("PAGED:"))
        chosen = self.on_terminal("show", "x.tgz", PAGER="false", KORVEL_PAGER="cat >file; echo done")
        self.assertEqual(chosen, (0, "done\n"))
        self.assertIn(COLOUR, (self.folder / "file").read_text())

    def test_shows_how_far_a_long_run_is(self) -> None:
        status, shown = self.on_terminal("add", "site.db", "x.tgz", "x.tgz")
        self.assertEqual(status, 0)
        self.assertTrue(shown.startswith("\r1 of 2 packages"), shown)
        self.assertTrue(shown.endswith("\bsite.db: 1 package added, 1 already there\n"), shown)

    def test_gives_less_its_options(self) -> None:
        self.assertEqual(self.on_terminal("show", "x.tgz", PAGER="cat >file; echo $LESS"), (0, "FRX\n"))
        self.assertEqual(self.on_terminal("show", "x.tgz", PAGER="cat >file; echo $LESS", LESS="M"), (0, "M\n"))

    def test_uses_no_pager_if_none_is_wanted_or_found(self) -> None:
        for variables in ({"PAGER": ""}, {"PAGER": "cat"}, {"KORVEL_PAGER": ""}):
            self.assertEqual(self.on_terminal("show", "x.tgz", NO_COLOR="1", **variables), (0, self.plain))
        self.assertEqual(self.on_terminal("show", "--no-pager", "x.tgz", PAGER="false", NO_COLOR="1"), (0, self.plain))
        self.assertEqual(self.on_terminal("show", "x.tgz", PAGER="less", PATH="/nowhere", NO_COLOR="1"), (0, self.plain))
        self.assertEqual(self.on_terminal("show", "x.tgz", PAGER="no-such-pager -x", NO_COLOR="1"),
                         (0, f"korvel-report: no-such-pager -x: No such file or directory\n{self.plain}"))

    def test_is_no_source_of_a_package(self) -> None:
        message = "korvel-report: standard input is a terminal\n"
        for words, status in ((["check", "-"], 3), (["clean", "-", "-o", "c"], 3), (["diff", "x.tgz", "-"], 2)):
            with self.subTest(words=words):
                self.assertEqual(self.on_terminal(*words), (status, message))

    def test_shows_what_clean_replaced(self) -> None:
        (self.folder / "words").write_text("eth1\n")
        status, shown = self.on_terminal("clean", "x.tgz", "--words", "words", "-o", "c.tgz")
        self.assertRegex(shown, r"^korvel-report: c\.tgz: \d+ address(es)? and \d+ names? replaced; "
                                r"the map is c\.tgz\.map\n$")
        self.assertEqual(status, 0)
        self.assertEqual(self.run_report("clean", "x.tgz", "-o", "quiet.tgz").err, "")

    def test_receives_no_restored_package(self) -> None:
        (self.folder / "x.tgz.map").write_text("korvel-report map 1\nname alice bqzkd\n")
        refusal = (3, "korvel-report: standard output is a terminal: use -o\n")
        self.assertEqual(self.on_terminal("restore", "x.tgz"), refusal)
        self.assertEqual(self.on_terminal("restore", "x.tgz", "-o", "-"), refusal)
        (self.folder / "answer").write_text("bqzkd\n")
        self.assertEqual(self.on_terminal("restore", "--map", "x.tgz.map", "answer"), (0, "alice\n"))

    def test_is_quiet_if_the_user_leaves_the_pager_early(self) -> None:
        self.package("archive.tgz", "archive.tgz")
        packages = ["x.tgz", "archive.tgz"] * 40  # more than a pipe holds
        status, shown = self.on_terminal("show", *packages, PAGER="head -n 1", NO_COLOR="1")
        self.assertEqual((status, shown), (0, "x.tgz: whole\n"))


if __name__ == "__main__":
    unittest.main()
