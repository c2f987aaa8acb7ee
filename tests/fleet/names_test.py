"""Many names, through a stand-in for ssh. `many_names.py NUMBER` does the same with any number of names."""

import unittest

import fleet
import many_names

NUMBER = 500


class ManyNames(fleet.FolderCase):
    def test_are_collected_and_failures_are_folded_by_cause(self) -> None:
        outcome = many_names.collect(self.folder, NUMBER)
        self.assertEqual(outcome.out, f"""\
board[200,300]: permission denied
board[400,500]: host key not accepted
board100: connection timed out
495 of {NUMBER} boards have a whole package in {self.packages}
""")
        self.assertEqual((outcome.status, outcome.err), (1, ""))
        self.assertEqual(outcome.summary["states"], {"whole": 495, "failed": 5})
        self.assertEqual([board["board"] for board in outcome.summary["boards"]],
                         [f"board{number}" for number in range(1, NUMBER + 1)])


if __name__ == "__main__":
    unittest.main()
