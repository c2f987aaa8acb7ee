"""Each installed program and library has a package note with the release number."""

import json
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])

WITH_NOTE = ["boardsim", "devmem", "korvel", "korvel-report", "libWENVASK.so", "libnetfpsmlog.so"]


def install_stripped(root: str) -> list[Path]:
    """Installs stripped files. Returns the ELF files, sorted by name."""
    command = ["cmake", "--install", BUILD, "--prefix", "/usr", "--strip"]
    subprocess.run(command, env=os.environ | {"DESTDIR": root}, capture_output=True, check=True)
    files = (path for path in Path(root).rglob("*") if path.is_file())
    return sorted((path for path in files if path.read_bytes().startswith(b"\x7fELF")), key=lambda path: path.name)


def readelf(part: str, binary: Path) -> str:
    return subprocess.run(["readelf", part, "--wide", binary], capture_output=True, text=True, check=True).stdout


def setting(name: str) -> str:
    """A value from the CMake cache."""
    return re.search(rf"^{name}:\w+=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE).group(1)


class PackageNote(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.binaries = install_stripped(folder.name)

    def test_is_checked_in_every_binary(self) -> None:
        self.assertEqual([path.name for path in self.binaries], WITH_NOTE)

    def test_has_the_type_name_and_version_of_the_package(self) -> None:
        release = re.search(r"project\(korvel VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)
        wanted = {"type": setting("KORVEL_PACKAGE_TYPE"), "name": "korvel", "version": release}
        for binary in self.binaries:
            with self.subTest(binary.name):
                notes = readelf("--notes", binary)
                found = re.findall(r"FDO_PACKAGING_METADATA\s+Packaging Metadata: (.*)$", notes, re.MULTILINE)
                self.assertEqual([json.loads(text) for text in found], [wanted])

    def test_is_loaded_and_so_part_of_a_core_dump(self) -> None:
        for binary in self.binaries:
            with self.subTest(binary.name):
                sections = readelf("--sections", binary)
                self.assertRegex(sections, r"\.note\.package +NOTE +(?:\w+ +){4} A ")


if __name__ == "__main__":
    unittest.main()
