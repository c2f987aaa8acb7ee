"""boardsim(1) describes exactly the options, peers and faults of boardsim's help text."""

import re
import unittest

import help_text
import manual


class BoardsimPageTest(unittest.TestCase):
    maxDiff = None

    def test_has_every_option(self) -> None:
        self.assertEqual(manual.options_of("boardsim.1"), help_text.boardsim_options())

    def test_has_every_peer(self) -> None:
        self.assertEqual(manual.item_heads("boardsim.1", "Ic"), help_text.boardsim_peers())

    def test_has_every_fault_under_its_heading(self) -> None:
        tables = re.findall(r"^\.Ss Faults of (.*)\n((?:(?!\.S[hs] ).*\n)*)", manual.source_of("boardsim.1"), re.M)
        faults = {title: set(re.findall(r"^\.It Cm ([a-z-]+)", body, re.M)) for title, body in tables}
        self.assertEqual(faults, help_text.boardsim_faults())


if __name__ == "__main__":
    unittest.main()
