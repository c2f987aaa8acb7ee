"""The simulated board works if libraries and helpers are installed outside the prefix."""

import shutil
import tempfile
import unittest
from pathlib import Path

from configuring import configure, run

# The product's program, a board command that is a program, and a board command that is a script.
ON_BOARD = "korvel getport eth1; devmem 0x02090510; fp_linux_log_collect /tmp/collected && ls /tmp/collected"


class InstalledElsewhere(unittest.TestCase):
    def test_has_all_commands_on_its_board(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            build = Path(folder) / "build"
            configure(
                build,
                CMAKE_INSTALL_PREFIX=f"{folder}/prefix",
                CMAKE_INSTALL_LIBDIR=f"{folder}/libraries",
                CMAKE_INSTALL_LIBEXECDIR=f"{folder}/helpers",
                KORVEL_BOARDSIM="ON",
            )
            run("cmake", "--build", build)
            run("cmake", "--install", build)
            for boardsim in (build / "boardsim", Path(folder) / "prefix/bin/boardsim"):
                self.assertEqual(run(boardsim, "--", "sh", "-c", ON_BOARD), "2\n0x00000000\nlinux\n", boardsim)
                if shutil.which("man"):
                    page = run(boardsim, "--bare", "--", "man", "-w", "korvel").rstrip()
                    self.assertEqual(Path(page).name, "korvel.1", boardsim)


if __name__ == "__main__":
    unittest.main()
