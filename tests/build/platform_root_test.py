"""The libraries that a build against a board's file system links."""

import re
import tempfile
import unittest
from pathlib import Path

from configuring import configure, link_command, outputs


def lay_out(root: Path) -> Path:
    for name in ("libnetfpsmlog.so", "libWENVASK.so"):
        library = root / "usr/lib" / name
        library.parent.mkdir(parents=True, exist_ok=True)
        library.touch()
    return root


class PlatformRoot(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.build = self.folder / "build"

    def configure(self, root: Path) -> None:
        configure(self.build, KORVEL_PLATFORM="board", KORVEL_PLATFORM_ROOT=root, KORVEL_BOARDSIM="OFF",
                  KORVEL_REPORT="AUTO")

    def linked_folders(self) -> list[str]:
        return re.findall(rf"-L{self.folder}/(\S+)", link_command(self.build, "bin/korvel"))

    def test_replaces_the_libraries_of_an_earlier_root(self) -> None:
        self.configure(lay_out(self.folder / "old"))
        self.configure(lay_out(self.folder / "new"))

        self.assertEqual(self.linked_folders(), ["new/usr/lib"])
        self.assertNotIn("bin/korvel-report", outputs(self.build), "a board does not read packages")

    def test_without_libraries_does_not_keep_those_of_an_earlier_root(self) -> None:
        self.configure(lay_out(self.folder / "old"))

        with self.assertRaisesRegex(AssertionError, "needs libnetfpsmlog.so"):
            self.configure(self.folder / "empty")


if __name__ == "__main__":
    unittest.main()
