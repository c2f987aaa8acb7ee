"""The completions that one shell offers for korvel. The argument names the shell."""

import sys
import tempfile
import unittest
from collections.abc import Set
from pathlib import Path

from interactive_shell import InteractiveShell

KIND = sys.argv.pop(1)

ACTIONS = ["getport", "mirrorport", "loopbackport", "portswap", "addmulticastmac", "resetqosstats", "mem_dump",
           "desc_dump", "add_interface"]
SERVICES = ["supervision", "archive"]
MODES = ["print", "dump"]
PACKAGES = ["pkg", "pkg-trs", "pkg-sup", "pkg-pm", "pkg-sdown"]
PORTS = {"1", "2", "3", "4"}
COVERAGE = ["all", "netfp", "proxy", "server", "master", "resmgr", "slog", "dall", "dinf", "dstat", "dlog"]


def interfaces() -> set[str]:
    return {folder.name for folder in Path("/sys/class/net").iterdir() if folder.is_dir()}


def without(words: list[str], *given: str) -> list[str]:
    return sorted(set(words) - set(given))


class CompletionTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        home = tempfile.TemporaryDirectory(prefix="korvel-completion-")
        cls.addClassCleanup(home.cleanup)
        (Path(home.name) / "client.socket").touch()
        cls.shell = InteractiveShell(KIND, Path(home.name))
        cls.addClassCleanup(cls.shell.close)

    def assert_completes(self, keys: str, arguments: list[str]) -> None:
        with self.subTest(keys=keys):
            self.assertEqual(self.shell.arguments_after(keys), arguments)

    def assert_offers(self, line: str, words: list[str]) -> None:
        with self.subTest(line=line):
            self.assertEqual(self.shell.matches(line), sorted(words))

    def assert_offers_interfaces(self, line: str, others: Set[str] = frozenset()) -> None:
        """Tolerates interfaces that appear or disappear during the completion."""
        with self.subTest(line=line):
            before = interfaces()
            offered = set(self.shell.matches(line))
            after = interfaces()
            self.assertLessEqual(before & after | others, offered)
            self.assertLessEqual(offered, before | after | others)

    def test_completes_words_and_adds_a_blank(self) -> None:
        for keys, arguments in {
            "korvel pri\tdi\tdst\t": ["print", "dinf", "dstat"],
            "korvel -v -d sf\tpri\tmas\t": ["-v", "-d", "sfn", "print", "master"],
            "korvel mirrorp\ten\t": ["mirrorport", "enable"],
            "korvel --h\t": ["--help"],
            "korvel supe\t-d al\t": ["supervision", "-d", "all"],
        }.items():
            self.assert_completes(keys, arguments)

    def test_ignores_redirections(self) -> None:
        self.assert_completes("korvel 2>/dev/null pri\tdi\t", ["print", "dinf"])
        self.assert_completes("korvel print 2> /dev/null -d sf\tmas\t", ["print", "-d", "sfn", "master"])
        self.assert_completes("korvel print 2>cli\tdi\t", ["print", "dinf"])

    def test_treats_a_path_with_blanks_as_one_word(self) -> None:
        for path in ['"/tmp/a b"', "'/tmp/a b'", "/tmp/a\\ b", '/tmp/"a b"']:
            self.assert_completes(f"korvel -c {path} pri\t", ["-c", "/tmp/a b", "print"])

    def test_offers_every_keyword_first(self) -> None:
        every = ACTIONS + SERVICES + MODES + PACKAGES + COVERAGE
        for options in ["", "-v ", "-d all ", "-c /tmp/client -m /tmp/master ", "-d iwf -v -d sfn "]:
            self.assert_offers(f"korvel {options}", every)

    def test_offers_keywords_with_the_typed_prefix_after_options(self) -> None:
        self.assert_offers("korvel -v -d sfn pr", ["print", "proxy"])
        self.assert_offers("korvel pkg-s", ["pkg-sup", "pkg-sdown"])

    def test_offers_each_collection_keyword_once(self) -> None:
        collection = MODES + PACKAGES + COVERAGE
        self.assert_offers("korvel print ", without(collection, "print"))
        self.assert_offers("korvel dinf dump ", without(collection, "dinf", "dump"))
        self.assert_offers("korvel slog -d all print ", without(collection, "slog", "print"))

    def test_offers_only_one_package_keyword(self) -> None:
        for package in PACKAGES:
            self.assert_offers(f"korvel {package} print ", ["dump", *COVERAGE])

    def test_offers_the_options_that_still_have_an_effect(self) -> None:
        self.assert_offers("korvel -", ["-v", "-c", "-m", "-d", "--help"])
        self.assert_offers("korvel print -", ["-v", "-c", "-m", "-d", "--help"])
        self.assert_offers("korvel -v -d iwf -", ["-c", "-m", "-d", "--help"])
        self.assert_offers("korvel -c /tmp/client -m /tmp/master -", ["-v", "-d", "--help"])

    def test_offers_the_dispatchers(self) -> None:
        self.assert_offers("korvel -d ", ["iwf", "sfn", "all"])
        self.assert_offers("korvel print -d ", ["iwf", "sfn", "all"])

    def test_offers_files_for_socket_paths(self) -> None:
        self.assert_offers("korvel -c cli", ["client.socket"])
        self.assert_offers("korvel getport -m cli", ["client.socket"])

    def test_offers_interfaces_if_an_action_takes_one(self) -> None:
        for words in ["portswap", "portswap eth0", "addmulticastmac 01:00:5e:00:00:01", "-v add_interface"]:
            self.assert_offers_interfaces(f"korvel {words} ")

    def test_offers_port_numbers_and_interfaces_if_an_action_takes_either(self) -> None:
        for words in ["getport", "-v getport", "mirrorport enable", "mirrorport disable eth0", "mirrorport enable 1",
                      "loopbackport enable"]:
            self.assert_offers_interfaces(f"korvel {words} ", PORTS)

    def test_offers_enable_and_disable(self) -> None:
        self.assert_offers("korvel mirrorport ", ["enable", "disable"])
        self.assert_offers("korvel -d iwf loopbackport ", ["enable", "disable"])

    def test_offers_nothing_if_no_argument_is_known_or_left(self) -> None:
        for words in ["getport eth0", "mirrorport enable eth0 eth1", "loopbackport enable eth0", "portswap eth0 eth1",
                      "addmulticastmac", "addmulticastmac 01:00:5e:00:00:01 eth0", "add_interface eth0",
                      "resetqosstats", "mem_dump", "mem_dump 0xeb700040", "desc_dump", "supervision", "archive",
                      "--help", "nonsense"]:
            self.assert_offers(f"korvel {words} ", [])
        self.assert_offers("korvel --help -", ["-"])  # the typed word itself


if __name__ == "__main__":
    unittest.main()
