"""Measures korvel-report add and export with 10,000 packages: 2,000 boards, five hours. Exits 1 if a limit is exceeded.

    store_bench.py BUILD
"""

import subprocess
import sys
import tempfile
from pathlib import Path

import many_packages
from report_bench import MIB, Table, measured, two_packages

OUTLIERS = (many_packages.Outlier("board-0777", "fuse/sfn/dmaStats", "transfers failed", 400),
            many_packages.Outlier("board-1234", "mmi/iwf/HeapStats", "bytes in use", 3_000_000))


def main() -> int:
    build = Path(sys.argv[1]).resolve()
    table = Table()
    with tempfile.TemporaryDirectory(prefix="korvel-bench-") as name:
        folder = Path(name)
        package = two_packages(build / "boardsim", folder)[1]
        packages = list(many_packages.write(package, folder, boards=2000, hours=5, outliers=OUTLIERS))
        for run, limit in (("first time", 15), ("again", 15)):
            usage = measured.run([build / "korvel-report", "add", folder / "site.db", *packages],
                                 stdout=subprocess.DEVNULL)
            if usage.status != 0:
                sys.exit(f"add failed with status {usage.status}")
            table.row(f"add, 10,000 packages, {run}", usage.wall, limit, "s")
            table.row(f"add, 10,000 packages, {run}: memory", usage.memory, 32, "MiB")
        usage = measured.run([build / "korvel-report", "export", folder / "site.db", folder / "csv"],
                             stdout=subprocess.DEVNULL)
        if usage.status != 0:
            sys.exit(f"export failed with status {usage.status}")
        table.row("export, 10,000 packages", usage.wall, 8, "s")
        table.row("export, 10,000 packages: memory", usage.memory, 16, "MiB")
        print(f"The store has {(folder / 'site.db').stat().st_size / MIB:.1f} MiB.")
    return 0 if table.holds else 1


if __name__ == "__main__":
    sys.exit(main())
