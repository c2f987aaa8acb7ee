"""Packages that try to harm their reader, read by every subcommand.

usage: hostile_test.py [--whole]
With --whole, also all packages that only limits end, and a limit of processor time. This takes ten minutes.
"""

import re
import sys
import tempfile
import unittest
from pathlib import Path

from hostile_packages import LARGE, SCRIPT, SMALL, ordinary
from hostile_run import COMMANDS, Page, Result, run
from program import PROGRAM, write

MOST_MEMORY = 64  # MiB
MOST_TIME = 10  # seconds of processor time

# The exit status of check, and what it prints.
CHECK = {
    "links": (1, "symbolic link to /etc/passwd"),
    "names": (1, "../../tmp/korvel-hostile"),
    "not-a-package": (2, "altered"),
    "empty": (2, "cut"),
    "gzip-of-gzip": (2, "altered"),
    "nesting-of-50": (1, "--max-depth"),
    "gzip-of-50": (1, "--max-depth"),
    "damaged": (2, "altered"),
}

WRITING_CALLS = ("creat,mkdir,mkdirat,mknod,mknodat,rename,renameat,renameat2,link,linkat,symlink,symlinkat,"
                 "truncate,ftruncate,chmod,fchmod,fchmodat,chown,fchown,fchownat,unlink,unlinkat,rmdir")


class HostileTest(unittest.TestCase):
    maxDiff = None
    limited = {"million-members": ("check", "json"), "zeros": ("check",)}
    measures_time = False

    @classmethod
    def setUpClass(cls) -> None:
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="korvel-report-")))
        cls.ordinary = write(cls.folder / "ordinary", ordinary())

    def package(self, name: str) -> Path:
        path = self.folder / f"{name}.tgz"
        return path if path.exists() else write(path, (SMALL | LARGE)[name]())

    def run_on(self, name: str, command: str) -> Result:
        return run([PROGRAM], command, self.package(name), self.ordinary)

    def examine(self, result: Result) -> None:
        self.assertEqual(result.problems, [])
        self.assertLessEqual(result.usage.memory, MOST_MEMORY)

    def test_each_subcommand_is_safe(self) -> None:
        for name in SMALL:
            for command in COMMANDS:
                with self.subTest(name, command=command):
                    result = self.run_on(name, command)
                    self.examine(result)

    def test_limits_end_what_would_not_end(self) -> None:
        for name, commands in self.limited.items():
            for command in commands:
                with self.subTest(name, command=command):
                    result = self.run_on(name, command)
                    self.examine(result)
                    if self.measures_time:
                        self.assertLessEqual(result.usage.processor, MOST_TIME)

    def test_nothing_is_written(self) -> None:
        trace = self.folder / "trace"
        strace = ["strace", "-f", "-qq", "-o", trace, "-e", f"trace=open,openat,{WRITING_CALLS}", PROGRAM]
        for name in ("names", "links", "script"):
            for command in COMMANDS[:-1]:  # clean writes what it is asked for
                run(strace, command, self.package(name), self.ordinary)
                calls = trace.read_text().splitlines()
                self.assertGreater(len(calls), 3)
                self.assertEqual([call for call in calls if not re.search(r" open(at)?\(.*O_RDONLY", call)], [])

    def test_check_names_what_is_wrong(self) -> None:
        for name, (status, text) in CHECK.items():
            with self.subTest(name):
                result = self.run_on(name, "check")
                self.assertIn(text, result.out)
                self.assertEqual(result.usage.status, status)

    def test_a_page_shows_markup_as_text(self) -> None:
        shown = SCRIPT.decode()
        self.assertGreater(Page(self.run_on("script", "html").out).text.count(shown), 10)


if __name__ == "__main__":
    if "--whole" in sys.argv:
        sys.argv.remove("--whole")
        HostileTest.limited = dict.fromkeys(LARGE, COMMANDS)
        HostileTest.measures_time = True
    unittest.main()
