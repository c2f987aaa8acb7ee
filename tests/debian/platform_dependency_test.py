"""What apt installs with the packages: the stand-ins for a board's libraries come with the simulated board only.

apt-get simulates installations from a repository that consists of an index alone, made of debian/control.
"""

import os
import re
import subprocess
import tempfile
import textwrap
import unittest
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])

# Debian's packages, without what they depend on.
OTHERS = ["bubblewrap", "procps"]

EXTRA = "Version: 1\nFilename: ./none.deb\nSize: 1\n"


def control_of_the_packages() -> list[str]:
    """Paragraphs of debian/control, without that of the source."""
    return (SOURCE / "debian/control").read_text().split("\n\n")[1:]


def control_of_a_board() -> str:
    """The paragraph that debian/README.source gives to the integrator of a board."""
    (paragraph,) = re.findall(r"^    Package: .*?(?=\n\n)", (SOURCE / "debian/README.source").read_text(), re.M | re.S)
    return textwrap.dedent(paragraph)


def indexed(paragraph: str) -> str:
    """A paragraph of debian/control as that of an index of built packages."""
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
        """The packages that come and those that go with an installation."""
        self.lay_out([*available, *OTHERS], list(installed))
        self.apt_get("update")
        steps = self.apt_get("install", "--simulate", "--yes", wanted)
        return set(re.findall(r"^Inst (\S+)", steps, re.M)), set(re.findall(r"^Remv (\S+)", steps, re.M))

    def test_leaves_out_the_stand_ins_where_they_are_the_only_platform(self) -> None:
        ours = ["korvel", "korvel-host-platform", "korvel-boardsim"]
        self.assertEqual(self.changes("korvel", ours), ({"korvel", "procps"}, set()))

    def test_leaves_out_the_stand_ins_where_the_board_has_its_platform(self) -> None:
        ours = ["korvel", "korvel-host-platform", "korvel-boardsim"]
        changes = self.changes("korvel", ours, installed=["board-korvel-platform"])
        self.assertEqual(changes, ({"korvel", "procps"}, set()))

    def test_brings_the_stand_ins_with_the_simulated_board(self) -> None:
        ours = ["korvel", "korvel-host-platform", "korvel-boardsim"]
        self.assertEqual(self.changes("korvel-boardsim", ours), ({*ours, *OTHERS}, set()))

    def test_has_the_platform_of_a_board_take_the_place_of_the_stand_ins(self) -> None:
        changes = self.changes(
            "board-korvel-platform",
            ["korvel", "korvel-host-platform", "board-korvel-platform"],
            installed=["korvel", "korvel-host-platform", "procps"],
        )
        self.assertEqual(changes, ({"board-korvel-platform"}, {"korvel-host-platform"}))


if __name__ == "__main__":
    unittest.main()
