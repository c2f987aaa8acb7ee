"""coverage.py finds lines that nobody runs."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
PROGRAM = Path(__file__).parent / "coverage.py"
LISTED = "src/main/CommandLanguage.cpp"


def judged(*lines: str) -> str:
    with tempfile.NamedTemporaryFile("w", suffix=".lcov") as file:
        file.write("\n".join(lines))
        file.flush()
        done = subprocess.run([sys.executable, "-B", PROGRAM, file.name], capture_output=True, text=True, check=False)
    return f"{done.stdout}{done.stderr}status {done.returncode}"


def number_of(name: str, text: str) -> int:
    return (SOURCE / name).read_text(encoding="utf-8").splitlines().index(text) + 1


class Coverage(unittest.TestCase):
    def test_names_a_line_that_did_not_run_and_is_not_listed(self) -> None:
        number = number_of(LISTED, "void setCommandLanguage() {")
        self.assertIn(f"not run: {LISTED}:{number}: void setCommandLanguage() {{", judged(f"SF:{SOURCE}/{LISTED}", f"DA:{number},0"))

    def test_accepts_a_line_that_is_listed(self) -> None:
        number = number_of(LISTED, '        failErrno("Error while setting the language of commands: ");')
        self.assertNotIn(LISTED, judged(f"SF:{SOURCE}/{LISTED}", f"DA:{number},0"))

    def test_names_a_listed_line_that_runs(self) -> None:
        self.assertIn(f"runs, but is in not-run.txt: {LISTED}", judged(f"SF:{SOURCE}/{LISTED}", "DA:1,1"))

    def test_counts_a_line_that_one_program_of_several_ran(self) -> None:
        number = number_of(LISTED, "void setCommandLanguage() {")
        self.assertIn("src: 100.00% of 1 lines", judged(f"SF:{SOURCE}/{LISTED}", f"DA:{number},0", f"SF:{SOURCE}/{LISTED}", f"DA:{number},3"))

    def test_fails_below_the_limit_of_branches(self) -> None:
        outcome = judged(f"SF:{SOURCE}/{LISTED}", *(f"BRDA:1,0,{branch},{branch % 2}" for branch in range(10)))
        self.assertIn("50.00% of 10 branches", outcome)
        self.assertTrue(outcome.endswith("status 1"))


if __name__ == "__main__":
    unittest.main()
