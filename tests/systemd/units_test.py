"""The systemd units: systemd-analyze checks them, and a simulated board runs their commands."""

import configparser
import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

import board

UNITS = board.BUILD / "lib/systemd/system"
# The installation prefix of the build, which the units contain.
PREFIX = sys.argv.pop(1)


def commands(unit: str, key: str) -> str:
    """The commands of one key, in order, with the paths that the programs have on the board."""
    lines = (UNITS / unit).read_text().splitlines()
    values = [line.removeprefix(f"{key}=") for line in lines if line.startswith(f"{key}=")]
    return "\n".join(values).replace(f"{PREFIX}/", f"{board.PREFIX}/")


def section(unit: str, name: str) -> dict[str, str]:
    parser = configparser.ConfigParser(strict=False, interpolation=None)
    parser.optionxform = str
    parser.read(UNITS / unit)
    return dict(parser[name])


class Analysis(unittest.TestCase):
    maxDiff = None

    def analyze(self, *words: str | Path, **environment: str) -> tuple[int, str]:
        done = subprocess.run(["systemd-analyze", *words], env=os.environ | environment, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        return done.returncode, done.stdout

    def test_systemd_reports_no_problem(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            for unit in UNITS.iterdir():
                Path(folder, unit.name).write_text(unit.read_text().replace(f"{PREFIX}/", f"{board.BUILD}/"))
            outcome = self.analyze("verify", "--man=no", *Path(folder).iterdir(), SYSTEMD_UNIT_PATH=f"{folder}:")
        self.assertEqual(outcome, (0, ""))

    def test_long_running_services_have_a_low_exposure(self) -> None:
        for unit, tenths in (("korvel-archive.service", 15), ("korvel-supervision.service", 20)):
            with self.subTest(unit):
                status, report = self.analyze("security", "--offline=true", f"--threshold={tenths}", UNITS / unit)
                self.assertEqual(status, 0, report)


class WorkDirectory(unittest.TestCase):
    def test_is_private_limited_and_in_memory(self) -> None:
        self.assertEqual(section("tmp-korvel.mount", "Mount"), {
            "What": "tmpfs",
            "Where": "/tmp/korvel",
            "Type": "tmpfs",
            "Options": "mode=0700,nosuid,nodev,noexec,size=64M",
            "DirectoryMode": "0700",
        })

    def test_is_mounted_for_every_service_that_writes_to_it(self) -> None:
        for unit in ("archive", "package", "postmortem", "shutdown-package"):
            with self.subTest(unit):
                mounts = section(f"korvel-{unit}.service", "Unit")["RequiresMountsFor"].split()
                self.assertIn("/tmp/korvel", mounts)


class Services(unittest.TestCase):
    maxDiff = None

    def test_a_restarted_archive_keeps_the_earlier_one(self) -> None:
        unit = "korvel-archive.service"
        start = f"""
            {commands(unit, "ExecStartPre")}
            {commands(unit, "ExecStart")} & until [ -s /tmp/korvel/archive/syslib/runtime.log ]; do sleep 0.05; done
            kill $!
            """
        files = "".join(f"./{run}/{log}/runtime.log\n" for run in ("archive.1", "archive")
                        for log in ("dispatcher", "syslib"))
        outcome = board.run(f"""
            {start}
            {start}
            cd /tmp/korvel; find . -type f | LC_ALL=C sort; grep -qr netfp_server archive.1 && echo kept""")
        self.assertEqual(outcome, (0, files + "kept\n", ""))

    def test_failed_supervision_leaves_a_post_mortem_package(self) -> None:
        unit = section("korvel-supervision.service", "Unit")["OnFailure"]
        outcome = board.run(f"""
            {commands("korvel-supervision.service", "ExecStart")} || {commands(unit, "ExecStart")}
            ls /ffs/run/logs/*.tgz""", "--fault", "netfp_proxy=netlink-error:3")
        self.assertEqual(outcome, (0, "/ffs/run/logs/netfp_logs_post_mortem.tgz\n",
                                   "Heartbeat status: IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR\n"))

    def test_supervision_is_restarted_by_a_timer_that_stops_with_it(self) -> None:
        timer = section("korvel-supervision.service", "Unit")["Wants"]
        self.assertEqual(section(timer, "Unit")["PartOf"], "korvel-supervision.service")
        self.assertEqual(section(timer, "Timer"), {
            "OnUnitInactiveSec": "30s", "AccuracySec": "1s", "Unit": "korvel-supervision.service"})

    def test_at_most_three_post_mortem_packages_are_made_per_hour(self) -> None:
        unit = section("korvel-postmortem.service", "Unit")
        self.assertEqual((unit["StartLimitBurst"], unit["StartLimitIntervalSec"]), ("3", "1h"))

    def test_a_stop_makes_the_shutdown_package(self) -> None:
        self.assertEqual(commands("korvel-shutdown-package.service", "ExecStart"), "")
        outcome = board.run(commands("korvel-shutdown-package.service", "ExecStop") + "; cd /ffs/run/logs; ls *.tgz")
        self.assertEqual(outcome, (0, "netfp_logs_shutdown.tgz\n", ""))

    def test_a_plain_package_is_made_on_request(self) -> None:
        outcome = board.run(commands("korvel-package.service", "ExecStart") + "; cd /ffs/run/logs; ls *.tgz | sed s/[0-9]/N/g")
        self.assertEqual(outcome, (0, "netfp_logs_NNNNNN_NNNNNN.tgz\n", ""))

    def test_a_stop_sends_sigterm_only_to_the_main_process(self) -> None:
        for unit in UNITS.glob("*.service"):
            with self.subTest(unit.name):
                self.assertEqual(section(unit.name, "Service")["KillMode"], "mixed")


if __name__ == "__main__":
    unittest.main()
