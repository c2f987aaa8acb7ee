"""korvel(1) and the completions match the program: keywords, options, files and failures."""

import re
import sys
import tempfile
import unittest
from pathlib import Path

import help_text
import manual

sys.path.append(str(manual.SOURCE / "tests" / "completions"))
from interactive_shell import InteractiveShell  # noqa: E402

SHELLS = ["bash", "zsh", "fish"]
NOT_IN_HELP = {"master", "resmgr", "slog"}

# Destinations of discarded output, and a replacement for a closed stream.
NO_FILES = {"/dev/null", "/var/log/"}
# Parts that the code appends to a folder.
ENDINGS = {"/fuse", "/mmi", "/ti", "/runtime.log", "/startup.log", "/middle.log", "/status"}
# Paths that system libraries use, not the code.
IN_LIBRARIES = {"/bin/sh", "/dev/log"}
# Messages of functions that korvel does not call.
NOT_CALLED = {"Failed to Bind to Linux Socket:", "Failed to Send to Linux Socket:"}


def code() -> str:
    """The code below src, without comments."""
    files = sorted(path for path in (manual.SOURCE / "src").rglob("*") if path.suffix in {".cpp", ".hpp"})
    return re.sub(r"\s//.*", "", "\n".join(path.read_text() for path in files))


def literals(text: str) -> list[str]:
    return [literal.replace('\\"', '"') for literal in re.findall(r'"((?:[^"\\\n]|\\.)*)"', text)]


def paths_in_code() -> set[str]:
    return {path for literal in literals(code()) for path in re.findall(r"(?:^|\s)(/[a-z]\S*)", literal)}


def paths_in_files_section() -> set[str]:
    items = re.findall(r"^\.It Pa (.*)|^\.Pa (/.*)", manual.section("korvel.1", "FILES"), re.M)
    return {word for item in items for word in " ".join(item).split() if word.startswith("/")}


def messages_in_code() -> set[str]:
    """The literal pieces of every failure message on the console."""
    calls = re.findall(r"\bfail(?:Errno|ErrnoNumber|NumberAndReason)?\((.*?)\);", code(), re.S)
    pieces = {manual.flattened(literal) for call in calls for literal in literals(call)}
    return {piece for piece in pieces if re.search("[a-z]{3}", piece)}


def offered_by(shell_kind: str) -> tuple[set[str], set[str]]:
    """The keywords and options that a shell offers."""
    with tempfile.TemporaryDirectory(prefix="korvel-page-") as home:
        shell = InteractiveShell(shell_kind, Path(home))
        try:
            return set(shell.matches("korvel ")), set(shell.matches("korvel -"))
        finally:
            shell.close()


class KorvelPageTest(unittest.TestCase):
    maxDiff = None

    def test_has_every_keyword_of_the_help_text_and_three_more(self) -> None:
        self.assertEqual(manual.keywords_of_korvel(), help_text.korvel_keywords() | NOT_IN_HELP)

    def test_has_every_option_of_the_help_text(self) -> None:
        self.assertEqual(manual.options_of("korvel.1"), help_text.korvel_options())

    def test_completions_offer_the_keywords_and_options_of_the_page(self) -> None:
        page = manual.keywords_of_korvel(), manual.options_of("korvel.1")
        for kind in SHELLS:
            with self.subTest(shell=kind):
                self.assertEqual(offered_by(kind), page)

    def test_has_an_example_of_every_keyword(self) -> None:
        commands = re.findall(r"^board# .*korvel (.*)", manual.section("korvel.1", "EXAMPLES"), re.M)
        words = {word.replace("\\-", "-") for command in commands for word in command.split()}
        self.assertEqual(manual.keywords_of_korvel() - words, set())

    def test_lists_the_files_that_the_code_names(self) -> None:
        documented = paths_in_files_section()
        configuration_page = manual.text_of("fpdispatcher.conf.5")
        for path in paths_in_code() - NO_FILES - ENDINGS:
            with self.subTest(path=path):
                if path.startswith("/etc/"):  # korvel reads this setting but does not use it
                    self.assertIn(path, configuration_page)
                else:
                    self.assertTrue(any(name.startswith(path) for name in documented))

    def test_excepts_only_paths_that_the_code_names(self) -> None:
        self.assertLessEqual(NO_FILES | ENDINGS, paths_in_code())

    def test_lists_only_files_that_the_code_names(self) -> None:
        folders_and_files = paths_in_code() - ENDINGS
        for name in paths_in_files_section() - IN_LIBRARIES:
            with self.subTest(name=name):
                self.assertTrue(any(name.startswith(path) for path in folders_and_files))

    def test_explains_every_failure_that_the_console_shows(self) -> None:
        diagnostics = manual.text_of("korvel.1").split(" DIAGNOSTICS ")[1]
        unexplained = {piece for piece in messages_in_code() if piece not in diagnostics}
        self.assertEqual(unexplained, NOT_CALLED)


if __name__ == "__main__":
    unittest.main()
