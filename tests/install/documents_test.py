"""An installation contains all documents, and the links between them work."""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])


class InstalledDocuments(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        command = ["cmake", "--install", BUILD, "--prefix", "/usr"]
        subprocess.run(command, env=os.environ | {"DESTDIR": folder.name}, capture_output=True, check=True)
        cls.documents = Path(folder.name) / "usr/share/doc/korvel"

    def test_include_every_page_of_the_source(self) -> None:
        pages = {str(page.relative_to(SOURCE)) for page in [*SOURCE.glob("*.md"), *SOURCE.glob("docs/**/*.md")]}
        installed = {str(page.relative_to(self.documents)) for page in self.documents.rglob("*.md")}
        self.assertEqual(installed, pages)

    def test_link_to_installed_files(self) -> None:
        for page in self.documents.rglob("*.md"):
            for target in re.findall(r"\]\(([^)\s#]+)[^)\s]*\)", page.read_text(encoding="utf-8")):
                if not target.startswith("https://"):
                    with self.subTest(page=page.name, target=target):
                        self.assertTrue((page.parent / target).exists())


if __name__ == "__main__":
    unittest.main()
