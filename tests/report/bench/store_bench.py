"""Measures korvel-report add, trend and export with 10,000 packages: 2,000 boards, five hours. Exits 1 if a limit is exceeded.

    store_bench.py BUILD
"""

import re
import sys
import tempfile
from pathlib import Path

import many_packages
from report_bench import MIB, Table, measured, two_packages

OUTLIERS = (many_packages.Outlier("board-0777", "fuse/sfn/dmaStats", "transfers failed", 400),
            many_packages.Outlier("board-1234", "mmi/iwf/HeapStats", "bytes in use", 3_000_000))
FIRST_LINES = re.compile(r"transfers failed\n    board-0777 .*\n.*bytes in use\n    board-1234 ")


def measure(table: Table, label: str, limits: tuple[float, float], command: list[str | Path]) -> str:
    """Adds rows of the time (s) and the memory (MiB) to the table. Returns what the program prints."""
    with tempfile.TemporaryFile("w+") as output:
        usage = measured.run(command, stdout=output)
        if usage.status != 0:
            sys.exit(f"{label} failed with status {usage.status}")
        table.row(label, usage.wall, limits[0], "s")
        table.row(f"{label}: memory", usage.memory, limits[1], "MiB")
        output.seek(0)
        return output.read()


def main() -> int:
    build = Path(sys.argv[1]).resolve()
    table = Table()
    with tempfile.TemporaryDirectory(prefix="korvel-bench-") as name:
        folder = Path(name)
        package = two_packages(build / "boardsim", folder)[1]
        packages = list(many_packages.write(package, folder, boards=2000, hours=5, outliers=OUTLIERS))
        program, store = build / "korvel-report", folder / "site.db"
        for run in ("first time", "again"):
            measure(table, f"add, 10,000 packages, {run}", (15, 32), [program, "add", store, *packages])
        trend = measure(table, "trend, all boards", (8, 32), [program, "trend", store])
        measure(table, "trend, one board", (1, 32), [program, "trend", store, "--board", "board-0777"])
        measure(table, "export, 10,000 packages", (8, 16), [program, "export", store, folder / "csv"])
        if not FIRST_LINES.search(trend):
            sys.exit(f"trend does not print the planted outliers first:\n{trend}")
        print(f"The store has {store.stat().st_size / MIB:.1f} MiB.")
    return 0 if table.holds else 1


if __name__ == "__main__":
    sys.exit(main())
