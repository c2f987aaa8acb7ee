"""The completions that one shell offers for korvel-report. The argument names the shell."""

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
COVERAGE = ["all", "netfp", "proxy", "server", "master", "resmgr", "slog", "dall", "dinf", "dstat", "dlog"]


class ReportCompletionTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        home = tempfile.TemporaryDirectory(prefix="korvel-completion-")
        cls.addClassCleanup(home.cleanup)
        (Path(home.name) / "netfp_logs.tgz").touch()
        cls.shell = InteractiveShell(KIND, Path(home.name))
        cls.addClassCleanup(cls.shell.close)

    def assert_offers(self, line: str, words: list[str]) -> None:
        with self.subTest(line=line):
            self.assertEqual(self.shell.matches(f"korvel-report {line}"), sorted(words))

    def test_completes_words_and_adds_a_blank(self) -> None:
        arguments = self.shell.arguments_after("korvel-report che\t--ki\tpkg-t\tnet\t")
        self.assertEqual(arguments, ["check", "--kind", "pkg-trs", "netfp_logs.tgz"])

    def test_offers_the_subcommands_first(self) -> None:
        self.assert_offers("", sorted(help_text.report_subcommands()))
        self.assert_offers("--explain x ", sorted(help_text.report_subcommands()))

    def test_offers_the_options_of_each_subcommand(self) -> None:
        self.assert_offers("-", sorted(help_text.report_options()))
        for subcommand in help_text.report_subcommands():
            self.assert_offers(f"{subcommand} -", sorted(help_text.report_options(subcommand)))

    def test_offers_the_values_of_options(self) -> None:
        self.assert_offers("check --kind ", PACKAGES)
        self.assert_offers("check --expect ", COVERAGE)
        self.assert_offers("show --explain log-", ["log-full", "log-overlap", "log-perhaps-lost"])
        for option in ("show --rules", "json --run", "html -o", "diff --output", "clean --words", "restore --map"):
            self.assert_offers(f"{option} net", ["netfp_logs.tgz"])

    def test_offers_files_after_a_subcommand(self) -> None:
        for words in ("check", "show --log", "diff netfp_logs.tgz", "clean --map x"):
            self.assert_offers(f"{words} net", ["netfp_logs.tgz"])


if __name__ == "__main__":
    unittest.main()
