"""The metrics of a folder, for the textfile collector of node_exporter."""

import os
import shutil
import subprocess
import sys
import tempfile
from collections.abc import Iterator, Sequence
from pathlib import Path
from typing import BinaryIO

from korvel_fleet.common.errors import Trouble
from korvel_fleet.common.texts import decoded, visible
from korvel_fleet.packages.judge import SECONDS, find_program
from korvel_fleet.packages.results import SEVERITIES, BoardResult, age

BATCH = 200  # packages in one run of korvel-report: a command line has a limit, and all of them are in its memory

METRICS = (
    ("korvel_fleet_collected", "1 if the directory has a whole package of the board, otherwise 0.",
     lambda result: 1 if result.state == "whole" else 0),
    ("korvel_fleet_asked_age_seconds", "Time since the board was last asked.", lambda result: age(result.ended)),
    *((f"korvel_fleet_findings_{severity}", f"Findings of severity {severity} in the package of the board.",
       lambda result, severity=severity: result.findings.get(severity, 0) if result.verdict else None)
      for severity in SEVERITIES),
)


def _label(text: str) -> str:
    return text.replace("\\", r"\\").replace('"', r'\"').replace("\n", r"\n")


def _metrics_lines(results: list[BoardResult]) -> Iterator[str]:
    for name, text, value_of in METRICS:
        yield f"# HELP {name} {text}\n# TYPE {name} gauge\n"
        for result in results:
            value = value_of(result)
            if value is not None:
                yield f'{name}{{board="{_label(result.board)}"}} {value:.15g}\n'


class _PackageMetrics:
    """Joins the texts of several runs of `korvel-report metrics`: each metric has one header, and then all its values."""

    def __init__(self) -> None:
        self._files: dict[bytes, BinaryIO] = {}  # by header; without names, so that nothing is left behind
        self.failed = False

    def read(self, program: str, packages: Sequence[Path]) -> None:
        """Adds the values of some packages. A package that korvel-report cannot cope with does not affect the others."""
        with tempfile.TemporaryFile() as output:
            done = self._run(program, packages, output)
            if done.returncode < 0 and len(packages) > 1:
                for package in packages:
                    self.read(program, [package])
                return
            output.seek(0)
            self._take(output)
        self._report(done, packages)

    @staticmethod
    def _run(program: str, packages: Sequence[Path], output: BinaryIO) -> subprocess.CompletedProcess[bytes]:
        command = [program, "metrics", *(str(package.absolute()) for package in packages)]
        try:
            return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.PIPE,
                                  timeout=SECONDS * len(packages))
        except subprocess.TimeoutExpired:
            raise Trouble(f"korvel-report did not end within {SECONDS * len(packages)} s") from None

    def _report(self, done: subprocess.CompletedProcess[bytes], packages: Sequence[Path]) -> None:
        if done.returncode == 0:
            return
        self.failed = True
        reason = decoded(done.stderr).strip() or f"korvel-report: {packages[0]}: ended with status {done.returncode}"
        print(visible(reason), file=sys.stderr)

    def _take(self, output: BinaryIO) -> None:
        header = b""
        for line in output:
            if line.startswith(b"# HELP "):
                header = line
            elif line.startswith(b"# TYPE "):
                header += line
            else:
                if header not in self._files:
                    self._files[header] = tempfile.TemporaryFile()
                self._files[header].write(line)

    def copy_to(self, target: BinaryIO) -> None:
        for header, file in self._files.items():
            target.write(header)
            file.seek(0)
            shutil.copyfileobj(file, target)
            file.close()


def write_metrics(target: Path, folder: Path, results: list[BoardResult]) -> int:
    """Replaces the file when all of it is written, so that node_exporter never reads half of it. Returns the exit status."""
    part = target.with_name(f".{target.name}.part")
    packages = [folder / result.file for result in results if result.state == "whole"]
    values = _PackageMetrics()
    try:
        with part.open("wb") as file:
            for start in range(0, len(packages), BATCH):
                values.read(find_program(), packages[start:start + BATCH])
            file.writelines(line.encode() for line in _metrics_lines(results))
            values.copy_to(file)
            file.flush()
            os.fsync(file.fileno())
        part.chmod(0o644)
        part.rename(target)
    except OSError as error:
        raise Trouble(f"cannot write {target}: {error.strerror}") from error
    finally:
        part.unlink(missing_ok=True)
    return int(values.failed)
