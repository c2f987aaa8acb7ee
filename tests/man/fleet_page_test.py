"""korvel-fleet(1) describes exactly the subcommands and options of the program."""

import re
import unittest

import help_text
import manual

PAGE = "korvel-fleet.1"


class FleetPageTest(unittest.TestCase):
    maxDiff = None

    def test_has_every_subcommand(self) -> None:
        subcommands = re.search(r"^\.Ss Subcommands\n(.*?)^\.S[sh] ", manual.source_of(PAGE), re.M | re.S)[1]
        described = re.findall(r"^\.It Cm (\w+)$", subcommands, re.M)
        self.assertEqual(described, help_text.fleet_subcommands())

    def test_has_every_option(self) -> None:
        options = help_text.fleet_options().union(
            *(help_text.fleet_options(subcommand) for subcommand in help_text.fleet_subcommands()))
        self.assertEqual(manual.options_of(PAGE), options)

    def test_has_every_cause_that_ssh_names(self) -> None:
        code = (manual.SOURCE / "fleet/korvel_fleet/boards/ssh.py").read_text(encoding="utf-8")
        table = re.search(r"^CAUSES = \((.*?)^\)", code, re.M | re.S)[1]
        text = manual.text_of(PAGE)
        causes = re.findall(r'", "([^"]+)"\),$', table, re.M)
        self.assertEqual([cause for cause in causes if cause not in text], [])

    def test_has_every_key_of_a_board_in_the_summary(self) -> None:
        code = (manual.SOURCE / "fleet/korvel_fleet/packages/results.py").read_text(encoding="utf-8")
        keys = re.findall(r"^    (\w+): ", re.search(r"^class BoardResult:(.*?)^    def ", code, re.M | re.S)[1], re.M)
        described = re.search(r"^\.Ss The summary\n(.*?)^\.Sh ", manual.source_of(PAGE), re.M | re.S)[1]
        heads = re.findall(r"^\.It Em (.*)$", described, re.M)
        self.assertEqual([word for head in heads for word in head.split(" , ")], keys)


if __name__ == "__main__":
    unittest.main()
