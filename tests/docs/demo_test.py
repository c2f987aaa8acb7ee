"""scripts/demo.sh, run without its installation and its build, and the picture of it."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml
from pathlib import Path

from console_blocks import comparable

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])

sys.path.insert(0, str(SOURCE / "scripts"))
from record_demo import PICTURE, picture, recorded_part  # noqa: E402

# The whole output has at most 150 lines. Without the stand-ins, installation and build print eight lines more.
LINES_WITH_STANDINS = 142


def lay_out(folder: Path) -> None:
    """The script as in a source tree, with the tested build; programs that only succeed install and build."""
    shutil.copytree(SOURCE / "scripts", folder / "scripts")
    (folder / "build").mkdir()
    for program in ("boardsim", "korvel-report"):
        (folder / "build" / program).symlink_to(BUILD / program)
    for name in ("scripts/setup.sh", "bin/cmake"):
        path = folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text("#!/bin/sh\n")
        path.chmod(0o755)


def demo() -> subprocess.CompletedProcess[str]:
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        lay_out(folder)
        # The sanitizers' search for leaks cannot trace a process that the board's commands trace already.
        environment = os.environ | {"PATH": f"{folder}/bin:{os.environ['PATH']}", "ASAN_OPTIONS": "detect_leaks=0"}
        return subprocess.run([folder / "scripts/demo.sh"], env=environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)


def lines_of(svg: str) -> list[str]:
    return comparable(["".join(element.itertext()) for element in xml.fromstring(svg).findall(".//{*}text")])


class DemoTest(unittest.TestCase):
    maxDiff = None

    def test_ends_well_within_150_lines_and_its_picture_shows_what_it_prints(self) -> None:
        outcome = demo()

        self.assertEqual(outcome.returncode, 0, outcome.stdout)
        self.assertLessEqual(len(outcome.stdout.splitlines()), LINES_WITH_STANDINS)
        self.assertEqual(lines_of(PICTURE.read_text(encoding="utf-8")),
                         lines_of(picture(recorded_part(outcome.stdout))))


if __name__ == "__main__":
    unittest.main()
