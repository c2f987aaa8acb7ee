"""The completions that one shell offers for korvel-fleet. The argument names the shell."""

import os
import sys
import tempfile
import unittest
from pathlib import Path

from interactive_shell import InteractiveShell

KIND = sys.argv.pop(1)

sys.path.append(str(Path(os.environ["KORVEL_SOURCE"]) / "tests/man"))
import help_text  # noqa: E402

PACKAGES = ["pkg", "pkg-trs", "pkg-sup", "pkg-pm", "pkg-sdown"]


class FleetCompletionTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        home = tempfile.TemporaryDirectory(prefix="korvel-completion-")
        cls.addClassCleanup(home.cleanup)
        (Path(home.name) / "case-4711").mkdir()
        (Path(home.name) / "case.prom").touch()
        cls.shell = InteractiveShell(KIND, Path(home.name))
        cls.addClassCleanup(cls.shell.close)

    def assert_offers(self, line: str, words: list[str]) -> None:
        with self.subTest(line=line):
            matches = [match.rstrip("/") for match in self.shell.matches(f"korvel-fleet {line}")]
            self.assertEqual(matches, sorted(words))

    def test_completes_words(self) -> None:
        arguments = self.shell.arguments_after("korvel-fleet coll\t-w board1 --pack\tpkg-t\t--res\t")
        self.assertEqual(arguments, ["collect", "-w", "board1", "--package", "pkg-trs", "--resume"])

    def test_offers_the_subcommands_first(self) -> None:
        self.assert_offers("", help_text.fleet_subcommands())

    def test_offers_the_options_of_each_subcommand(self) -> None:
        self.assert_offers("-", sorted(help_text.fleet_options()))
        for subcommand in help_text.fleet_subcommands():
            self.assert_offers(f"{subcommand} -", sorted(help_text.fleet_options(subcommand)))

    def test_offers_the_values_of_options(self) -> None:
        self.assert_offers("collect --package ", PACKAGES)
        self.assert_offers("collect -o case-", ["case-4711"])
        self.assert_offers("status --metrics case.", ["case.prom"])

    def test_offers_directories_to_status(self) -> None:
        self.assert_offers("status case-", ["case-4711"])


if __name__ == "__main__":
    unittest.main()
