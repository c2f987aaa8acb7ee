"""By default the simulated board is built if CMake finds toml++. The user can override this."""

import tempfile
import unittest
from pathlib import Path

from configuring import configure, outputs

# These hide an installed toml++ from CMake and the compiler.
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

    def test_is_built_only_while_toml_is_installed(self) -> None:
        for header, built in ((NO_HEADER, False), (HEADER, True), (NO_HEADER, False)):
            self.configure(header)
            self.assertEqual(self.is_built(), built, header)

    def test_stays_off_if_the_user_disables_it(self) -> None:
        self.configure(NO_HEADER, KORVEL_BOARDSIM="OFF")
        self.configure(HEADER)

        self.assertFalse(self.is_built())

    def test_fails_without_toml_if_the_user_enables_it(self) -> None:
        with self.assertRaisesRegex(AssertionError, "tomlplusplus"):
            self.configure(NO_HEADER, KORVEL_BOARDSIM="ON")


if __name__ == "__main__":
    unittest.main()
