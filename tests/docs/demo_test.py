"""scripts/demo.sh, run without its installation and its build, and the picture of it."""

import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

import demo_script
from console_blocks import comparable

sys.path.insert(0, str(demo_script.SOURCE / "scripts"))
from record_demo import PICTURE, picture, recorded_part  # noqa: E402

# The whole output has at most 150 lines. Without the stand-ins, installation and build print eight lines more.
LINES_WITH_STANDINS = 142


def lines_of(svg: str) -> list[str]:
    return comparable(["".join(element.itertext()) for element in xml.fromstring(svg).findall(".//{*}text")])


class DemoTest(unittest.TestCase):
    maxDiff = None

    def test_ends_well_within_150_lines_and_its_picture_shows_what_it_prints(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            outcome = demo_script.run("demo.sh", Path(folder))

        self.assertEqual(outcome.returncode, 0, outcome.stdout)
        self.assertLessEqual(len(outcome.stdout.splitlines()), LINES_WITH_STANDINS)
        self.assertEqual(lines_of(PICTURE.read_text(encoding="utf-8")),
                         lines_of(picture(recorded_part(outcome.stdout))))


if __name__ == "__main__":
    unittest.main()
