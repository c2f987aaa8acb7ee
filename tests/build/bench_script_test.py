"""The output of scripts/bench.sh. Fake programs that only print replace the build and the measured programs."""

import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from configuring import SOURCE

LIBRARIES = ("libnetfpsmlog.so", "libWENVASK.so")
FIGURES = "a figure   kept\n" * 3  # one run measures commands, two measure long-running jobs


class BenchScript(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.put("scripts/setup.sh", "exit 0")
        self.put("bin/cmake", "echo built; echo and a warning >&2")
        self.put("build-release/boardsim", 'case "$*" in *--verbose) echo measured ;; esac; echo "a figure   kept"')
        shutil.copy(SOURCE / "scripts/bench.sh", self.folder / "scripts")

    def put(self, name: str, script: str) -> None:
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(f"#!/bin/sh\n{script}\n")
        path.chmod(0o755)

    def bench(self, *options: str) -> tuple[int, str, str]:
        """Returns exit status, standard output and standard error."""
        path = f"{self.folder}/bin:{os.environ['PATH']}"
        command = [self.folder / "scripts/bench.sh", *options]
        outcome = subprocess.run(command, env=os.environ | {"PATH": path}, capture_output=True, text=True, check=False)
        return outcome.returncode, outcome.stdout, outcome.stderr

    def test_prints_only_the_figures(self) -> None:
        self.assertEqual(self.bench(), (0, FIGURES, ""))

    def test_prints_everything_if_verbose(self) -> None:
        everything = "built\n" * 2 + "measured\n" + FIGURES
        for option in ("-v", "--verbose"):
            self.assertEqual(self.bench(option), (0, everything, "and a warning\n" * 2))

    def test_prints_the_output_of_a_failed_build(self) -> None:
        self.put("bin/cmake", "echo built; echo and an error >&2; exit 1")
        self.assertEqual(self.bench(), (1, "", "built\nand an error\n"))

    def test_prints_every_figure_if_one_exceeds_its_limit(self) -> None:
        self.put("build-release/boardsim", 'echo "a figure   EXCEEDED"; exit 1')
        self.assertEqual(self.bench(), (1, FIGURES.replace("kept", "EXCEEDED"), ""))

    def test_prints_the_footprint_tables(self) -> None:
        for file in ("korvel", "libexec/korvel/board/devmem", *(f"lib/korvel/{name}" for name in LIBRARIES)):
            self.put(f"build-release/{file}", "")
        self.put("bin/size", "echo text data; echo 5120 7")
        self.put("bin/strip", 'head -c 7168 /dev/zero > "$2"')
        sizes = "| File | Text (KiB) | Stripped file (KiB) |\n|---|---:|---:|\n"
        sizes += "".join(f"| `{file}` | 5 | 7 |\n" for file in ("korvel", "boardsim", "devmem", *LIBRARIES))
        self.assertEqual(self.bench("--footprint"), (0, f"{sizes}\na figure   kept\n", ""))

    def test_measures_the_reader_of_packages(self) -> None:
        self.put("bin/python3", 'echo "${1##*/}" "$2"; exit 1')
        printed = "report_bench.py build-release\nstore_bench.py build-release\nhostile_test.py --whole\n"
        self.assertEqual(self.bench("--report"), (1, printed, ""))

    def test_prints_its_usage_for_an_unknown_option(self) -> None:
        usage = (
            "scripts/bench.sh [-v | --verbose]     also prints the build and each measurement\n"
            "scripts/bench.sh --footprint          prints the size and memory tables of docs/footprint.md\n"
            "scripts/bench.sh --report             measures korvel-report: large packages, many packages, then hostile ones\n"
        )
        self.assertEqual(self.bench("--quiet"), (2, "", usage))


if __name__ == "__main__":
    unittest.main()
