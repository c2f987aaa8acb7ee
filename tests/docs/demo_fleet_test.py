"""scripts/demo-fleet.sh, run without its installation and its build."""

import re
import tempfile
import unittest
from pathlib import Path

import demo_script

# The whole output has at most 190 lines. Without the stand-ins, installation and build print eight lines more.
LINES_WITH_STANDINS = 182

CAUSES = """\
board5: package incomplete: mmi/sfn/HeapStats empty: dispatcher sfn did not answer HeapStats
board8: connection refused
6 of 8 boards have a whole package in build/demo-fleet/packages
exit status 1
"""
REPAIRED = "8 of 8 boards have a whole package in build/demo-fleet/packages\n"


def results(output: str) -> list[str]:
    """What each run of korvel-fleet collect printed."""
    return re.findall(r"^\$ build/korvel-fleet collect (?:.*\\\n)*.*\n((?:.+\n)*)", output, re.M)


class DemoFleetTest(unittest.TestCase):
    maxDiff = None

    def test_names_both_boards_that_gave_no_whole_package_and_in_the_end_has_eight_on_its_page(self) -> None:
        with tempfile.TemporaryDirectory() as name:
            outcome = demo_script.run("demo-fleet.sh", Path(name))
            self.assertEqual(outcome.returncode, 0, outcome.stdout)
            page = (Path(name) / "build/demo-fleet/packages/index.html").read_text(encoding="utf-8")

        self.assertEqual(results(outcome.stdout), [CAUSES, REPAIRED])
        self.assertEqual(sorted(set(re.findall(r"\bboard\d\b", page))), [f"board{number}" for number in range(1, 9)])
        self.assertLessEqual(len(outcome.stdout.splitlines()), LINES_WITH_STANDINS)


if __name__ == "__main__":
    unittest.main()
