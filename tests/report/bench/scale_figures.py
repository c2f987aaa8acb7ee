#!/usr/bin/env python3
"""Prints the figures of docs/packages-at-scale.md: sizes and times of a store, of CSV and of Parquet.

BUILD is a folder with the programs. Each board has a package an hour. Without DuckDB, the figures of DuckDB and Parquet
are missing; see duckdb_program.py.
"""

import argparse
import contextlib
import sqlite3
import subprocess
import sys
import tempfile
import time
from collections.abc import Iterable, Sequence
from pathlib import Path

import many_packages
from report_bench import MIB, measured, two_packages

import duckdb_program
from scale_page import LOAD_CSV, QUERIES, READ_PARQUET, WRITE_PARQUET, WRITE_VALUES


def run(command: Sequence[str | Path], folder: Path) -> measured.Usage:
    usage = measured.run(command, cwd=folder, stdout=subprocess.DEVNULL)
    if usage.status != 0:
        sys.exit(f"{command[0]} failed with status {usage.status}")
    return usage


def mebibytes(files: Iterable[Path]) -> float:
    return sum(file.stat().st_size for file in files) / MIB


def add(report: Path, folder: Path, packages: Sequence[Path]) -> None:
    """A command line holds some thousand names."""
    begin = time.monotonic()
    memory = max(run([report, "add", "site.db", *packages[first:first + 10_000]], folder).memory
                 for first in range(0, len(packages), 10_000))
    print(f"Packages: {len(packages):,}, {mebibytes(folder / package for package in packages):.1f} MiB")
    print(f"add: {time.monotonic() - begin:.1f} s, {memory:.1f} MiB of memory")
    print(f"Store: {mebibytes([folder / 'site.db']):.1f} MiB")


def export(report: Path, folder: Path) -> None:
    usage = run([report, "export", "site.db", "csv"], folder)
    print(f"export: {usage.wall:.1f} s, {usage.memory:.1f} MiB of memory")
    print(f"CSV: {mebibytes((folder / 'csv').iterdir()):.1f} MiB")


def write_parquet(folder: Path) -> None:
    answers = duckdb_program.run([*LOAD_CSV, *WRITE_PARQUET, *WRITE_VALUES], folder)
    load, write, values = answers[:len(LOAD_CSV)], answers[len(LOAD_CSV):-1], answers[-1]
    tables = [folder / file.with_suffix(".parquet").name for file in (folder / "csv").iterdir()]
    print(f"DuckDB loads the CSV files: {sum(answer.seconds for answer in load):.1f} s")
    print(f"DuckDB writes the Parquet files: {sum(answer.seconds for answer in write):.1f} s")
    print(f"Parquet files of the five tables: {mebibytes(tables):.1f} MiB")
    print(f"Parquet file with all values: {mebibytes(folder.glob('values-*.parquet')):.1f} MiB, {values.seconds:.1f} s")


def sqlite_seconds(folder: Path) -> list[float]:
    seconds = []
    with contextlib.closing(sqlite3.connect(folder / "site.db")) as store:
        for query in QUERIES.values():
            begin = time.monotonic()
            store.execute(query).fetchall()
            seconds.append(time.monotonic() - begin)
    return seconds


def duckdb_seconds(folder: Path, load: list[str]) -> list[float]:
    return [answer.seconds for answer in duckdb_program.run([*load, *QUERIES.values()], folder)[len(load):]]


def ask(folder: Path) -> None:
    columns = {"SQLite": sqlite_seconds(folder)}
    if duckdb_program.INSTALLED:
        columns |= {"DuckDB": duckdb_seconds(folder, LOAD_CSV), "Parquet": duckdb_seconds(folder, READ_PARQUET)}
    print(f"\n{'Seconds':<60}" + "".join(f"{name:>9}" for name in columns))
    for title, *seconds in zip(QUERIES, *columns.values(), strict=True):
        print(f"{title[:59]:<60}" + "".join(f"{figure:>9.2f}" for figure in seconds))


def main() -> None:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=Path)
    parser.add_argument("--boards", type=int, default=2000)
    parser.add_argument("--hours", type=int, default=5)
    arguments = parser.parse_args()
    report = arguments.build.resolve() / "korvel-report"
    with tempfile.TemporaryDirectory(prefix="korvel-scale-") as name:
        folder = Path(name)
        package = two_packages(report.with_name("boardsim"), folder)[1]
        packages = [path.relative_to(folder) for path in many_packages.write(package, folder / "many", arguments.boards,
                                                                                       arguments.hours, ())]
        add(report, folder, packages)
        export(report, folder)
        if duckdb_program.INSTALLED:
            write_parquet(folder)
        ask(folder)


if __name__ == "__main__":
    main()
