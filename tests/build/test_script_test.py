"""How scripts/test.sh goes on after a failure, and what it prints in the end. Its tools are stand-ins that only print."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from configuring import SOURCE

CLOSING = "\n100% tests passed, 0 tests failed out of 7\n\nTotal Test time (real) =   1.00 sec\n"
TOOLS = ("clang-format", "shellcheck", "cmake")
PASSED = {
    "Formatting": "passed",
    "Scripts": "passed",
    "Build: lint": "passed",
    "Build: sanitizers": "passed",
    "Tests: sanitizers": "passed",
    "Build: release": "passed",
    "Tests: release": "passed",
}


class TestScript(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.put("scripts/setup.sh", "exit 0")
        self.put("bin/ctest", f"echo the run of $2; cat << 'END'\n{CLOSING}END")
        for tool in TOOLS:
            self.put(f"bin/{tool}", "exit 0")
        (self.folder / "source.cpp").touch()
        shutil.copy(SOURCE / "scripts/test.sh", self.folder / "scripts")

    def put(self, name: str, script: str) -> None:
        path = self.folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(f"#!/bin/sh\n{script}\n")
        path.chmod(0o755)

    def run_script(self, *options: str) -> tuple[int, str]:
        """Exit status and standard output."""
        path = f"{self.folder}/bin:{os.environ['PATH']}"
        outcome = subprocess.run([self.folder / "scripts/test.sh", *options], env=os.environ | {"PATH": path},
                                 capture_output=True, text=True, check=False)
        return outcome.returncode, outcome.stdout

    def expect(self, status: int, **results: str) -> None:
        """Runs the script. `results` are those of the steps that did not pass, by their names' last words."""
        outcome = self.run_script()
        self.assertEqual(outcome[0], status)
        rows = outcome[1].split("== Summary\n")[1].split("\n\n")[0].splitlines()[1:]
        self.assertEqual({row[:20].rstrip(): row[22:29].rstrip() for row in rows}, PASSED | results)
        self.assertTrue(outcome[1].endswith(CLOSING.lstrip()), outcome[1])

    def calls_with(self, *options: str) -> list[str]:
        """What the script starts with a preset."""
        for tool in ("cmake", "ctest"):
            self.put(f"bin/{tool}", f'echo {tool} "$@" | sed "s/ -j.*//" >> {self.folder}/calls')
        self.run_script(*options)
        return [line for line in (self.folder / "calls").read_text().splitlines() if not line.startswith("cmake --build")]

    def test_leaves_out_what_takes_long_and_finds_little(self) -> None:
        self.assertEqual(self.calls_with(), [
            "cmake --preset lint -DKORVEL_REPORT=OFF -DKORVEL_TESTS=OFF",
            "cmake --preset sanitizers -DKORVEL_REPORT=OFF",
            "ctest --preset sanitizers",
            "cmake --preset release",
            "ctest --preset release -LE shuffled"])

    def test_leaves_out_nothing_if_asked(self) -> None:
        self.assertEqual(self.calls_with("--full"), [
            "cmake --preset lint -DKORVEL_REPORT=ON -DKORVEL_TESTS=ON",
            "cmake --preset sanitizers -DKORVEL_REPORT=ON",
            "ctest --preset sanitizers",
            "cmake --preset release",
            "ctest --preset release"])

    def test_refuses_other_options(self) -> None:
        self.assertEqual(self.run_script("--ful"), (2, ""))

    def test_reports_that_every_step_passed(self) -> None:
        self.expect(0)

    def test_runs_every_step_after_one_that_failed(self) -> None:
        for tool, step in (("clang-format", "Formatting"), ("shellcheck", "Scripts")):
            self.put(f"bin/{tool}", "exit 1")
            self.expect(1, **{step: "FAILED"})
            self.put(f"bin/{tool}", "exit 0")

    def test_runs_the_next_tests_after_those_that_failed(self) -> None:
        closing = CLOSING.replace("100% tests passed, 0", "86% tests passed, 1")
        self.put("bin/ctest", f"cat << 'END'\n{CLOSING}END\n[ $2 = release ]")
        self.expect(1, **{"Tests: sanitizers": "FAILED"})
        self.put("bin/ctest", f"cat << 'END'\n{closing}END\nexit 8")
        status, output = self.run_script()
        self.assertEqual((status, output.count("FAILED")), (1, 2))
        self.assertTrue(output.endswith(closing.lstrip()), output)

    def test_repeats_what_a_failed_test_printed(self) -> None:
        closing = CLOSING.replace("100% tests passed, 0", "86% tests passed, 1")
        run = """\
        Start 1: Good
        Start 2: Bad
1/2 Test #1: Good ...   Passed    0.01 sec
good
2/2 Test #2: Bad ...***Failed    0.02 sec
first
last
"""
        self.put("bin/ctest", f"cat << 'END'\n{run}{closing}END\nexit 8")
        output = self.run_script()[1]
        repeated = "\n== Failed tests: {}\n2/2 Test #2: Bad ...***Failed    0.02 sec\nfirst\nlast\n"
        for preset in ("sanitizers", "release"):
            self.assertIn(repeated.format(preset), output)
        self.assertTrue(output.endswith(closing.lstrip()), output)

    def test_leaves_out_the_tests_of_a_build_that_failed(self) -> None:
        for tested in ("sanitizers", "release"):
            self.put("bin/cmake", f'case "$*" in "--build --preset {tested}") exit 1 ;; esac')
            self.expect(1, **{f"Build: {tested}": "FAILED", f"Tests: {tested}": "not run"})

    def test_goes_no_further_without_its_packages(self) -> None:
        self.put("scripts/setup.sh", "exit 1")
        self.assertEqual(self.run_script(), (1, ""))


if __name__ == "__main__":
    unittest.main()
