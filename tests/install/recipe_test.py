"""Compares the BitBake recipe in docs/porting with the files of an installation."""

import os
import re
import subprocess
import tempfile
import unittest
from collections import Counter
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])

# The recipe does not build what reads packages and asks many boards.
NOT_ON_A_BOARD = re.compile("korvel-(report|fleet)")

# The values of BitBake's folder variables in an installation below /usr.
FOLDERS = {
    "bindir": "/usr/bin",
    "datadir": "/usr/share",
    "docdir": "/usr/share/doc",
    "libdir": "/usr/lib",
    "libexecdir": "/usr/libexec",
    "mandir": "/usr/share/man",
    "systemd_system_unitdir": "/usr/lib/systemd/system",
}


def recipe_path() -> Path:
    (path,) = (SOURCE / "docs/porting").glob("korvel_*.bb")
    return path


def variables() -> dict[str, str]:
    """The recipe's assignments, with continued lines joined."""
    text = recipe_path().read_text().replace("\\\n", " ")
    return dict(re.findall(r'^(\S+) \??\??\+?= "(.*)"$', text, re.MULTILINE))


def expand(word: str) -> str:
    values = FOLDERS | {"PN": "korvel"}
    return re.sub(r"\$\{(\w+)\}", lambda reference: values[reference.group(1)], word)


def file_lists(recipe: dict[str, str]) -> dict[str, list[str]]:
    """The files of each package."""
    lists = {expand(name): value for name, value in recipe.items() if name.startswith("FILES:")}
    return {name.removeprefix("FILES:"): [expand(word) for word in value.split()] for name, value in lists.items()}


def installed_files() -> list[str]:
    with tempfile.TemporaryDirectory() as root:
        command = ["cmake", "--install", BUILD, "--prefix", "/usr"]
        subprocess.run(command, env=os.environ | {"DESTDIR": root}, capture_output=True, check=True)
        files = sorted("/" + str(path.relative_to(root)) for path in Path(root).rglob("*") if not path.is_dir())
        return [file for file in files if not NOT_ON_A_BOARD.search(file)]


def matches(entry: str, file: str) -> bool:
    """Whether an entry of a file list names the file, or a folder that contains it."""
    return file == entry or file.startswith(f"{entry}/")


def libraries_folder() -> str:
    """This build's folder for libraries. On Debian it is below FOLDERS["libdir"]."""
    return re.search(r"^CMAKE_INSTALL_LIBDIR:\w+=(.*)$", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE).group(1)


class Recipe(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.recipe = variables()
        cls.lists = file_lists(cls.recipe)
        cls.listed = [file for files in cls.lists.values() for file in files]
        libraries = f"/usr/{libraries_folder()}/korvel/"
        cls.installed = sorted(file.replace(libraries, "/usr/lib/korvel/") for file in installed_files())

    def test_packs_each_installed_file_once(self) -> None:
        matching = {file: [entry for entry in self.listed if matches(entry, file)] for file in self.installed}
        self.assertEqual({file: entries for file, entries in matching.items() if len(entries) != 1}, {})

    def test_lists_only_installed_files(self) -> None:
        unused = [entry for entry in self.listed if not any(matches(entry, file) for file in self.installed)]
        self.assertEqual(unused, [])

    def test_has_a_file_list_for_each_package_with_files(self) -> None:
        packages = [expand(word) for word in self.recipe["PACKAGES"].split()]
        self.assertEqual(Counter(packages), Counter([*self.lists, "korvel-dbg"]))

    def test_lists_the_units_and_enables_none(self) -> None:
        folder = FOLDERS["systemd_system_unitdir"] + "/"
        units = [file.removeprefix(folder) for file in self.installed if file.startswith(folder)]
        self.assertEqual(self.recipe["SYSTEMD_SERVICE:${PN}"].split(), units)
        self.assertEqual(self.recipe["SYSTEMD_AUTO_ENABLE"], "disable")

    def test_sets_only_options_of_the_build(self) -> None:
        options = set(re.findall(r"-D(\w+)=", recipe_path().read_text()))
        known = set(re.findall(r"^(\w+):\w+=", (BUILD / "CMakeCache.txt").read_text(), re.MULTILINE))
        self.assertEqual(options - known, set())

    def test_has_the_number_of_this_release(self) -> None:
        release = re.search(r"project\(korvel VERSION (\S+)", (SOURCE / "CMakeLists.txt").read_text()).group(1)
        self.assertEqual(recipe_path().name, f"korvel_{release}.bb")
        numbers = re.findall(r"korvel[-_](\d+\.\d+\.\d+)", recipe_path().read_text())
        self.assertEqual(set(numbers), {release})


if __name__ == "__main__":
    unittest.main()
