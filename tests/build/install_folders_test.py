"""With absolute installation folders, programs find their libraries in the build tree and installed."""

import os
import re
import tempfile
import unittest
from pathlib import Path

from configuring import configure, link_command, outputs, run

LIBRARY = "libnetfpsmlog.so"
PROGRAMS = ["boardsim", "devmem", "korvel"]


def runpath(program: str, command: str) -> str:
    """The folder in which a program looks for its libraries. `command` is the command that links the program."""
    below = re.search(r'-rpath,"\\\$ORIGIN/(\S+)"', command).group(1)
    return os.path.normpath(f"/{program}/../{below}")


class InstallFolders(unittest.TestCase):
    maxDiff = None

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.build = self.folder / "build"

    def built(self) -> list[str]:
        return [path for path in outputs(self.build) if Path(path).name in [*PROGRAMS, LIBRARY]]

    def installed(self) -> list[str]:
        """Installs empty files instead of built ones, which saves the time to build them."""
        for output in outputs(self.build):
            path = self.build / output
            path.parent.mkdir(parents=True, exist_ok=True)
            path.touch()
        root = Path(tempfile.mkdtemp(dir=self.folder))
        run("cmake", "--install", self.build, DESTDIR=str(root))
        files = [path for path in root.rglob("*") if path.is_file()]
        programs = [path for path in files if path.name in PROGRAMS and os.access(path, os.X_OK)]
        libraries = [path for path in files if path.name == LIBRARY]
        return [str(path.relative_to(root)) for path in programs + libraries]

    def assert_programs_find_their_libraries(self, tree: list[str]) -> None:
        commands = {Path(path).name: link_command(self.build, path) for path in self.built()}
        programs = [path for path in tree if not path.endswith(LIBRARY)]
        (library,) = (f"/{path}" for path in tree if path.endswith(LIBRARY))
        self.assertEqual(sorted(Path(path).name for path in programs), PROGRAMS)
        for path in programs:
            self.assertEqual(runpath(path, commands[Path(path).name]), str(Path(library).parent), path)

    def test_let_programs_find_their_libraries_in_the_build_tree_and_installed(self) -> None:
        cases = [
            {"LIBDIR": "/usr/lib64"},
            {"BINDIR": "/usr/local/sbin", "LIBDIR": "/usr/lib", "LIBEXECDIR": "/usr/lib/helpers"},
            {"LIBDIR": "/opt/libraries"},
            {"BINDIR": "/bin", "LIBEXECDIR": "/opt/helpers"},
            {"LIBDIR": "../lib"},
        ]
        usual = {"BINDIR": "bin", "LIBDIR": "lib", "LIBEXECDIR": "libexec"}
        for case in cases:
            with self.subTest(**case):
                folders = {f"CMAKE_INSTALL_{name}": folder for name, folder in (usual | case).items()}
                configure(self.build, CMAKE_INSTALL_PREFIX="/usr", KORVEL_BOARDSIM="ON", **folders)

                self.assert_programs_find_their_libraries(self.built())
                self.assert_programs_find_their_libraries(self.installed())


if __name__ == "__main__":
    unittest.main()
