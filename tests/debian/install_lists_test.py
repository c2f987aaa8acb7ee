"""Compares debian/*.install with the files of an installation, without building the packages."""

import os
import re
import subprocess
import tempfile
import unittest
from fnmatch import fnmatch
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])

# Folders that debian/rules sets to other paths than a plain build does.
MOVED = {
    r"usr/lib/(?:[^/]+/)?korvel/": "usr/lib/TRIPLET/korvel/",
    r"usr/lib/systemd/": "lib/systemd/",
    r"usr/share/zsh/site-functions/": "usr/share/zsh/vendor-completions/",
}


def in_package(path: str) -> str:
    for folder, moved in MOVED.items():
        path = re.sub(f"^{folder}", moved, path)
    return path


def installed_files() -> list[str]:
    with tempfile.TemporaryDirectory() as root:
        command = ["cmake", "--install", BUILD, "--prefix", "/usr"]
        subprocess.run(command, env=os.environ | {"DESTDIR": root}, capture_output=True, check=True)
        files = [str(path.relative_to(root)) for path in Path(root).rglob("*") if not path.is_dir()]
    return sorted(in_package(path) for path in files)


def listed() -> dict[str, list[str]]:
    """The patterns of each package. A pattern names a file, or a folder with everything below it."""
    return {path.stem: path.read_text().split() for path in (SOURCE / "debian").glob("*.install")}


def matches(pattern: str, path: str) -> bool:
    return fnmatch(path, pattern) or fnmatch(path, f"{pattern}/*")


class InstallLists(unittest.TestCase):
    maxDiff = None

    def test_put_each_file_into_one_package(self) -> None:
        for path in installed_files():
            with self.subTest(path):
                packages = [name for name, patterns in listed().items()
                            if any(matches(pattern, path) for pattern in patterns)]
                self.assertEqual(len(packages), 1, packages)

    def test_have_no_line_that_matches_no_file(self) -> None:
        files = installed_files()
        unused = [word for words in listed().values() for word in words
                  if not any(matches(word, file) for file in files)]
        self.assertEqual(unused, [])


class Changelog(unittest.TestCase):
    def test_begins_with_this_release(self) -> None:
        release = re.search(r"project\(korvel VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)
        newest = re.match(r"korvel \(([^)]+)\)", (SOURCE / "debian/changelog").read_text()).group(1)
        self.assertEqual(newest, release)


if __name__ == "__main__":
    unittest.main()
