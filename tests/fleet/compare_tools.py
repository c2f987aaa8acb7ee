"""Compares korvel-fleet with two other tools that ask many boards: ansible's raw, and GNU parallel. All of them reach the
same 32 boards over ssh. On two boards, a full disk cuts the package. Prints the time of each tool, and the packages that the
tool takes for good ones although they are cut.

The boards compute on this machine, so what a tool lets them do takes its time. The two tools run supervision and then
korvel. korvel-fleet's job also describes the board and sets earlier files aside. Therefore GNU parallel also
runs this job: then the boards do the same as for korvel-fleet.
"""

import base64
import json
import os
import subprocess
import tempfile
import time
from collections.abc import Callable
from pathlib import Path

import fleet
import ssh_test

NUMBER = 32
PACKAGE = "/ffs/run/logs/netfp_logs_post_mortem.tgz"
BOARDS = [f"board{number}" for number in range(1, NUMBER + 1)]
PROXIES = {number: f"{ssh_test.ON_BOARD} --full-logs --ffs-size 32K" for number in (17, 19)}


def by_fleet(folder: Path, config: Path) -> list[Path]:
    fleet.run("collect", "-w", f"board[1-{NUMBER}]", "-o", folder, "--ssh", f"ssh -F {config}")
    return list(folder.glob("*.tgz"))


def by_parallel(folder: Path, config: Path) -> list[Path]:
    """GNU parallel notes the exit status of each board in its log."""
    folder.mkdir()
    probe = "timeout 3 korvel supervision; korvel pkg-pm"
    command = f"ssh -n -F {config} {{}} '{probe} > /dev/null 2>&1; cat {PACKAGE}' > {folder}/{{}}.tgz"
    log = folder / "log"
    subprocess.run(["parallel", "--will-cite", "-j", str(NUMBER), "--joblog", log, command, ":::", *BOARDS],
                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    rows = [line.split("\t") for line in log.read_text(encoding="utf-8").splitlines()[1:]]
    return [Path(row[-1].rpartition(" > ")[2]) for row in rows if row[6] == "0"]


def by_parallel_with_job(folder: Path, config: Path) -> list[Path]:
    """Keeps the answers as they come. Nothing looks for a package in them."""
    folder.mkdir()
    command = (f"ssh -F {config} {{}} 'sh -s -- collect TOKEN {{}} pkg-pm 100000000' < "
               f"{fleet.BUILD}/share/korvel-fleet/job.sh > {folder}/{{}}.answer")
    subprocess.run(["parallel", "--will-cite", "-j", str(NUMBER), command, ":::", *BOARDS],
                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return []


def by_ansible(folder: Path, config: Path) -> list[Path]:
    """raw brings text, so the package comes in base64."""
    folder.mkdir()
    inventory = folder / "hosts"
    inventory.write_text("\n".join(BOARDS), encoding="utf-8")
    command = f"(timeout 3 korvel supervision; korvel pkg-pm) > /dev/null 2>&1; base64 {PACKAGE}"
    settings = {"ANSIBLE_HOME": str(folder), "ANSIBLE_SSH_ARGS": f"-F {config} -o ControlMaster=no"}
    results = folder / "results"
    subprocess.run(["ansible", "all", "-i", inventory, "-f", str(NUMBER), "-t", results, "-m", "raw", "-a", command],
                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, env=os.environ | settings)
    good = []
    for board in BOARDS:
        result = json.loads((results / board).read_text(encoding="utf-8"))
        if not result.get("failed") and not result.get("unreachable") and result.get("rc") == 0:
            good.append(folder / f"{board}.tgz")
            good[-1].write_bytes(base64.b64decode(result["stdout"]))
    return good


def main() -> None:
    tools: dict[str, Callable[[Path, Path], list[Path]]] = {
        "korvel-fleet": by_fleet, "parallel with the same job": by_parallel_with_job, "parallel": by_parallel,
        "ansible": by_ansible}
    with tempfile.TemporaryDirectory(prefix="korvel-fleet-") as name:
        folder = Path(name)
        config = ssh_test.write_configuration(folder, PROXIES)
        for tool, collect in tools.items():
            began = time.monotonic()
            good = collect(folder / tool.replace(" ", "-"), config)
            seconds = time.monotonic() - began
            cut = [path.name for path in good if fleet.verdict(path) != 0]
            print(f"{tool}: {seconds:.1f} s, {len(good)} packages taken for good, of these cut: {cut or 'none'}", flush=True)


if __name__ == "__main__":
    main()
