"""Builds korvel against the file system of a board, installs it and runs it with the board's own libraries.

The test builds these libraries from the headers in platform/include.
"""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])
COMPILER = os.environ.get("CXX", "c++")
PARTS = SOURCE / "tests/install/board"


def run(*words: str | Path, **environment: str) -> str:
    """Runs a command and returns its standard output. Fails unless the command exits 0."""
    outcome = subprocess.run(
        words, env=os.environ | environment, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False
    )
    if outcome.returncode != 0:
        raise AssertionError(f"{words}: {outcome.returncode}\n{outcome.stdout}{outcome.stderr}")
    return outcome.stdout


def build_library(folder: Path, name: str, *more: str) -> None:
    includes = ["-I", SOURCE / "platform/include", "-I", PARTS]
    library = folder / f"lib{name}.so"
    run(COMPILER, "-std=c++20", "-shared", "-fPIC", *includes, "-o", library, *more, "-L", folder)


def lay_out_board(root: Path) -> None:
    """Makes a board with three libraries. Only one of the two that korvel links has a soname; both need the third."""
    folder = root / "usr/lib"
    folder.mkdir(parents=True)
    build_library(folder, "boardsupport", str(PARTS / "BoardSupport.cpp"))
    build_library(folder, "netfpsmlog", str(PARTS / "SmLog.cpp"), "-lboardsupport")
    build_library(folder, "WENVASK", str(PARTS / "Vask.cpp"), "-lboardsupport", "-Wl,-soname,libWENVASK.so")


def configure(build: Path, root: Path) -> None:
    options = {
        "KORVEL_PLATFORM": "board",
        "KORVEL_PLATFORM_ROOT": root,
        "KORVEL_BOARDSIM": "OFF",
        "CMAKE_INSTALL_PREFIX": "/usr",
        # The fastest build.
        "CMAKE_BUILD_TYPE": "Debug",
        "CMAKE_CXX_FLAGS_DEBUG": "",
        "CMAKE_UNITY_BUILD": "ON",
        "CMAKE_UNITY_BUILD_BATCH_SIZE": "0",
    }
    run("cmake", "-G", "Ninja", "-S", SOURCE, "-B", build, *(f"-D{name}={value}" for name, value in options.items()))


class BoardPlatform(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        # Below the build folder, because the simulated board shows that folder.
        folder = tempfile.TemporaryDirectory(dir=BUILD / "tests", prefix="board-")
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.root = cls.folder / "root"
        lay_out_board(cls.root)
        configure(cls.folder / "build", cls.root)
        run("cmake", "--build", cls.folder / "build")
        run("cmake", "--install", cls.folder / "build", DESTDIR=str(cls.root))

    def korvel(self, *words: str) -> str:
        """Runs the installed program on a simulated board, with the libraries of this test's board."""
        root = Path("/opt/korvel") / self.root.relative_to(BUILD)
        libraries = f"LD_LIBRARY_PATH={root / 'usr/lib'}"
        return run(BUILD / "boardsim", "--bare", "--", "env", libraries, str(root / "usr/bin/korvel"), *words)

    def test_needs_the_libraries_by_their_names(self) -> None:
        dynamic = run("readelf", "--dynamic", "--wide", self.root / "usr/bin/korvel")
        needed = re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic)
        ours = [name for name in needed if not re.match(r"lib(stdc\+\+|gcc_s|c|m)\.so\.", name)]
        self.assertEqual(sorted(ours), ["libWENVASK.so", "libnetfpsmlog.so"])

    def test_installs_no_library(self) -> None:
        libraries = {path.name for path in self.root.rglob("*.so")}
        self.assertEqual(libraries, {"libWENVASK.so", "libboardsupport.so", "libnetfpsmlog.so"})

    def test_reads_the_logs_of_the_board(self) -> None:
        self.assertEqual(
            self.korvel("-d", "iwf", "print", "dlog"),
            "### NETFP LOG ##################################################\na log entry from this board\n\n",
        )

    def test_reads_the_memory_of_the_board(self) -> None:
        shown = re.sub(r"Virtual:  0x[0-9a-f]+", "Virtual:  ADDRESS", self.korvel("mem_dump", "0xeb6b6100", "26"))
        self.assertEqual(
            shown,
            "Memory dump:\n"
            "    Physical: 0xeb6b6100\n"
            "    Virtual:  ADDRESS\n"
            "Hexdump of 26 bytes:\n"
            " 0000  65 62 36 62 36 31 30 30 20 66 72 6F 6D 20 74 68  'eb6b6100 from th'\n"
            " 0010  69 73 20 62 6F 61 72 64 00 00  'is board..'\n",
        )

    def test_is_not_built_without_the_libraries(self) -> None:
        empty = self.folder / "empty"
        with self.assertRaises(AssertionError) as refusal:
            configure(self.folder / "refused", empty)
        message = " ".join(str(refusal.exception).split())
        self.assertIn(f"needs libnetfpsmlog.so in {empty}/usr/lib or {empty}/lib", message)


if __name__ == "__main__":
    unittest.main()
