"""The simulated board's shell commands in a build tree, after a developer changes them."""

import shutil
import tempfile
import unittest
from pathlib import Path

from configuring import SOURCE, configure, run

COMMANDS = "libexec/korvel/board"
PARTS = ["CMakeLists.txt", "base", "boardsim", "cmake", "completions", "man", "platform", "src", "systemd"]


class BoardCommands(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.source = Path(folder.name) / "source"
        self.build = Path(folder.name) / "build"
        for part in PARTS:
            copy = shutil.copytree if (SOURCE / part).is_dir() else shutil.copy
            self.source.mkdir(exist_ok=True)
            copy(SOURCE / part, self.source / part)
        self.command = self.source / "boardsim/commands/fp_linux_log_collect"
        configure(self.build, source=self.source)
        self.make()

    def make(self) -> None:
        run("cmake", "--build", self.build, "--target", "boardsim_commands")

    def test_are_copied_again_after_an_edit(self) -> None:
        edited = "#!/bin/sh\necho edited\n"
        self.command.write_text(edited)

        self.make()

        copy = self.build / COMMANDS / self.command.name
        self.assertEqual(copy.read_text(), edited)
        self.assertEqual(run(copy), "edited\n")

    def test_leave_no_copy_under_the_old_name_after_a_rename(self) -> None:
        self.command.rename(self.command.with_name("fp_collect"))
        lists = self.source / "boardsim/CMakeLists.txt"
        lists.write_text(lists.read_text().replace(self.command.name, "fp_collect"))

        self.make()

        self.assertEqual([path.name for path in (self.build / COMMANDS).iterdir()], ["fp_collect"])


if __name__ == "__main__":
    unittest.main()
