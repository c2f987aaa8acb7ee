"""Only the simulated board makes apt install the stand-ins for a board's libraries.

apt-get simulates installations from a repository without packages. Its index is made from debian/control.
"""

import os
import re
import subprocess
import tempfile
import textwrap
import unittest
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])

# Debian packages that ours depend on, without their own dependencies.
OTHERS = ["bubblewrap", "procps"]

EXTRA = "Version: 1\nFilename: ./none.deb\nSize: 1\n"


def control_of_the_packages() -> list[str]:
    """The paragraphs of debian/control that describe binary packages."""
    return (SOURCE / "debian/control").read_text().split("\n\n")[1:]


def control_of_a_board() -> str:
    """The paragraph that debian/README.source offers to a board's integrator."""
    (paragraph,) = re.findall(r"^    Package: .*?(?=\n\n)", (SOURCE / "debian/README.source").read_text(), re.M | re.S)
    return textwrap.dedent(paragraph)


def indexed(paragraph: str) -> str:
    """Turns a paragraph of debian/control into one of a package index."""
    paragraph = paragraph.replace("${binary:Version}", "1")
    paragraph = re.sub(r",?\s*\$\{\w+:Depends\}", "", paragraph)
    paragraph = re.sub(r"^Depends:\s*\n(?! )", "", paragraph, flags=re.M)
    paragraph = re.sub(r"^Depends:,\s*", "Depends: ", paragraph, flags=re.M)
    return re.sub(r"^Architecture: .*", "Architecture: armhf", paragraph, flags=re.M).strip() + "\n" + EXTRA


class PlatformDependency(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        self.index = {re.match(r"Package: (\S+)", text).group(1): indexed(text) for text in self.paragraphs()}

    @staticmethod
    def paragraphs() -> list[str]:
        others = [f"Package: {name}\nArchitecture: armhf\nDescription: {name}\n" for name in OTHERS]
        return [*control_of_the_packages(), control_of_a_board(), *others]

    def lay_out(self, available: list[str], installed: list[str]) -> None:
        for folder in ("etc/apt", "var/lib/apt/lists/partial", "var/cache/apt/archives/partial", "repository"):
            (self.root / folder).mkdir(parents=True)
        status = [self.index[name] + "Status: install ok installed\n" for name in installed]
        (self.root / "status").write_text("\n".join(status))
        (self.root / "repository/Packages").write_text("\n".join(self.index[name] for name in available))
        (self.root / "etc/apt/sources.list").write_text(f"deb [trusted=yes] file:{self.root}/repository ./\n")

    def apt_get(self, *words: str) -> str:
        settings = {
            "Dir": self.root,
            "Dir::State::status": self.root / "status",
            "APT::Architecture": "armhf",
            "APT::Architectures::": "armhf",
            "APT::Sandbox::User": "",
            "APT::Install-Recommends": "true",
        }
        options = [word for name, value in settings.items() for word in ("-o", f"{name}={value}")]
        outcome = subprocess.run(["apt-get", *options, *words], capture_output=True, text=True, check=True)
        return outcome.stdout

    def changes(self, wanted: str, available: list[str], installed: list[str] = ()) -> tuple[set[str], set[str]]:
        """Simulates an installation. Returns the packages that apt installs and those that it removes."""
        self.lay_out([*available, *OTHERS], list(installed))
        self.apt_get("update")
        steps = self.apt_get("install", "--simulate", "--yes", wanted)
        return set(re.findall(r"^Inst (\S+)", steps, re.M)), set(re.findall(r"^Remv (\S+)", steps, re.M))

    def test_leaves_out_the_stand_ins_even_if_no_other_platform_exists(self) -> None:
        ours = ["korvel", "korvel-host-platform", "korvel-boardsim"]
        self.assertEqual(self.changes("korvel", ours), ({"korvel", "procps"}, set()))

    def test_leaves_out_the_stand_ins_if_the_board_has_its_platform(self) -> None:
        ours = ["korvel", "korvel-host-platform", "korvel-boardsim"]
        changes = self.changes("korvel", ours, installed=["board-korvel-platform"])
        self.assertEqual(changes, ({"korvel", "procps"}, set()))

    def test_installs_the_stand_ins_with_the_simulated_board(self) -> None:
        ours = ["korvel", "korvel-host-platform", "korvel-boardsim"]
        self.assertEqual(self.changes("korvel-boardsim", ours), ({*ours, *OTHERS}, set()))

    def test_replaces_the_stand_ins_with_the_platform_of_a_board(self) -> None:
        changes = self.changes(
            "board-korvel-platform",
            ["korvel", "korvel-host-platform", "board-korvel-platform"],
            installed=["korvel", "korvel-host-platform", "procps"],
        )
        self.assertEqual(changes, ({"board-korvel-platform"}, {"korvel-host-platform"}))


if __name__ == "__main__":
    unittest.main()
