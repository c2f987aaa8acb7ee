"""Whether the simulated board is built: where toml++ is found, unless the user decides."""

import tempfile
import unittest
from pathlib import Path

from configuring import configure, outputs

# In place of toml++ on this machine, of which the compiler and CMake are to find nothing.
NO_PACKAGE = "set(tomlplusplus_FOUND FALSE)\n"
NO_HEADER = "#error no toml++ here\n"
HEADER = "namespace toml {}\n"


class BoardsimByDefault(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.header = self.folder / "include/toml++/toml.h"
        self.header.parent.mkdir(parents=True)
        (self.folder / "tomlplusplusConfig.cmake").write_text(NO_PACKAGE)

    def configure(self, header: str, **options: str) -> None:
        self.header.write_text(header)
        configure(
            self.folder / "build",
            tomlplusplus_DIR=self.folder,
            CMAKE_CXX_FLAGS=f"-isystem {self.folder}/include",
            **options,
        )

    def is_built(self) -> bool:
        return "bin/boardsim" in outputs(self.folder / "build")

    def test_comes_once_toml_is_installed_and_goes_with_it(self) -> None:
        for header, built in ((NO_HEADER, False), (HEADER, True), (NO_HEADER, False)):
            self.configure(header)
            self.assertEqual(self.is_built(), built, header)

    def test_stays_off_for_a_user_who_wants_none(self) -> None:
        self.configure(NO_HEADER, KORVEL_BOARDSIM="OFF")
        self.configure(HEADER)

        self.assertFalse(self.is_built())

    def test_is_not_left_out_for_a_user_who_wants_it(self) -> None:
        with self.assertRaisesRegex(AssertionError, "tomlplusplus"):
            self.configure(NO_HEADER, KORVEL_BOARDSIM="ON")


if __name__ == "__main__":
    unittest.main()
