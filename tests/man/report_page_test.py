"""korvel-report(1) describes exactly the subcommands, options and states of the program."""

import re
import unittest

import help_text
import manual

PAGE = "korvel-report.1"


def names_in_code(table: str) -> list[str]:
    """The words of a table in the code that names the enumerations."""
    code = (manual.SOURCE / "report/model/Names.cpp").read_text()
    return re.findall(r'"([^"]+)"', re.search(rf"> {table}\{{(.*?)\}};", code, re.S)[1])


def subsection(title: str) -> str:
    return re.search(rf"^\.Ss {title}\n(.*?)^\.S[sh] ", manual.source_of(PAGE), re.M | re.S)[1]


class ReportPageTest(unittest.TestCase):
    maxDiff = None

    def test_has_every_subcommand(self) -> None:
        described = re.findall(r"^\.It Cm (\w+)$", subsection("Subcommands"), re.M)
        self.assertEqual(sorted(described), sorted(help_text.report_subcommands()))

    def test_has_every_option(self) -> None:
        options = help_text.report_options().union(
            *(help_text.report_options(subcommand) for subcommand in help_text.report_subcommands()))
        self.assertEqual(manual.options_of(PAGE), options)

    def test_has_every_state_and_verdict(self) -> None:
        for title, table in (("Parts and states", "states"), ("Verdicts", "verdicts")):
            described = re.findall(r"^\.It Em (.*)$", subsection(title), re.M)
            self.assertEqual(sorted(described), sorted(names_in_code(table)))


if __name__ == "__main__":
    unittest.main()
