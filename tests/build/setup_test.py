"""scripts/setup.sh, called with an unknown purpose or without one."""

import subprocess
import unittest

from configuring import SOURCE

USAGE = "usage: scripts/setup.sh PURPOSE...\nPurposes: build board report fleet test lint bench browser prove package arm emulated\n"


def setup(*purposes: str) -> tuple[int, str, str]:
    """Returns exit status, standard output and standard error."""
    outcome = subprocess.run([SOURCE / "scripts/setup.sh", *purposes], capture_output=True, text=True, check=False)
    return outcome.returncode, outcome.stdout, outcome.stderr


class Setup(unittest.TestCase):
    def test_refuses_an_unknown_purpose(self) -> None:
        for purposes in (["tests"], ["build", "tests"], ["tests", "build"]):
            self.assertEqual(setup(*purposes), (2, "", "Unknown purpose: tests\n" + USAGE))

    def test_prints_its_usage_without_a_purpose(self) -> None:
        self.assertEqual(setup(), (2, "", USAGE))


if __name__ == "__main__":
    unittest.main()
