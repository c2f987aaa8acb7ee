"""The job of korvel-fleet on a board: what it leaves there, and what it sends if something is in its way."""

import re
import subprocess
import unittest

import fleet

JOB = "/opt/korvel/share/korvel-fleet/job.sh"  # the build tree's path on the board
BOARD = f"""
cd /ffs/run/logs
sed 's/^heartbeat_seconds=3 /heartbeat_seconds=0.1 /' {JOB} > /tmp/job  # only one test needs the whole cycle
job() {{ sh -s -- "$@" < /tmp/job; }}
collect() {{
    job collect TOKEN lab-17 "$1" 10000000 > /tmp/stream
    echo "status $?"; tail -c 40 /tmp/stream | grep -ao 'end$\\|failed .*$'
}}
files() {{ find /ffs/run /tmp/korvel /tmp/korvel-fleet-* 2> /dev/null | sort; }}
contents() {{ find /ffs/run /tmp/korvel -type f | sort | xargs md5sum; }}
"""


def run(script: str, *options: str) -> tuple[int, str, str]:
    """Runs shell commands on a simulated board."""
    done = subprocess.run([fleet.BUILD / "boardsim", *options, "--", "sh", "-c", BOARD + script],
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace", timeout=100)
    return done.returncode, done.stdout, done.stderr


class TheJob(unittest.TestCase):
    maxDiff = None

    def test_removes_nothing_that_was_on_the_board_and_leaves_nothing_of_its_own(self) -> None:
        for keyword in ("pkg", "pkg-pm"):
            with self.subTest(keyword):
                outcome = run(f"""
                    korvel pkg-pm 2> /dev/null; echo old > netfp_logs_post_mortem.tgz; echo run > netfp_logs_post_mortem.tgz.run
                    mkdir -p /tmp/korvel/archive; echo kept > /tmp/korvel/archive/x; echo older > /tmp/korvel/mmi/iwf/Old.log
                    files > /tmp/before; contents > /tmp/before.md5
                    collect {keyword}
                    files | diff /tmp/before - && contents | diff /tmp/before.md5 -""")
                self.assertEqual(outcome, (0, "status 0\nend\n", ""))

    def test_removes_no_earlier_files_that_it_could_not_set_aside(self) -> None:
        outcome = run("""
            touch "/tmp/korvel-fleet-$(id -u)"; mkdir -p /tmp/korvel/ti /tmp/korvel/fuse/iwf
            echo older > /tmp/korvel/ti/old.log; echo mine > /tmp/korvel/fuse/iwf/mine
            collect pkg-pm; cat /tmp/korvel/ti/old.log /tmp/korvel/fuse/iwf/mine""")
        self.assertEqual(outcome, (0, "status 0\nend\nolder\nmine\n", "korvel-fleet: cannot move the files of an earlier "
                                   "collection: the package contains them\n"))

    def test_leaves_nothing_of_a_probe(self) -> None:
        outcome = run("files > /tmp/before; job probe TOKEN lab-17 eth0 > /dev/null; files | diff /tmp/before -")
        self.assertEqual(outcome, (0, "", ""))

    def test_cleans_up_if_the_connection_breaks(self) -> None:
        outcome = run("""
            echo old > netfp_logs_post_mortem.tgz; mkdir -p /tmp/korvel/mmi; echo older > /tmp/korvel/mmi/x
            files > /tmp/before; contents > /tmp/before.md5
            job collect TOKEN lab-17 pkg-pm 10000000 2> /dev/null | head -n 1
            files | diff /tmp/before - && contents | diff /tmp/before.md5 -""")
        self.assertEqual(outcome, (0, "korvel-fleet/1 TOKEN\n", ""))

    def test_sends_a_package_of_this_run_only(self) -> None:
        _, out, _ = run("""
            korvel pkg-pm 2> /dev/null; echo older > /tmp/korvel/mmi/iwf/Old.log; rm *
            collect pkg-pm
            size=$(sed -n 's/^package \\([0-9]*\\) .*/\\1/p' /tmp/stream)
            head -c -4 /tmp/stream | tail -c "$size" | tar -tzf - | grep -c 'iwf/'
            head -c -4 /tmp/stream | tail -c "$size" | tar -tzf - | grep -c Old""")
        self.assertEqual(out, "status 0\nend\n9\n0\n")

    def test_describes_its_run_and_the_board(self) -> None:
        _, out, _ = run("""
            printf '#!/bin/sh\\necho "first line" >&2; printf "no end" >&2; exec /opt/korvel/bin/korvel "$@"\\n' > /tmp/korvel-1
            mkdir /tmp/bin; mv /tmp/korvel-1 /tmp/bin/korvel; chmod +x /tmp/bin/korvel; PATH=/tmp/bin:$PATH
            job collect TOKEN lab-17 pkg-pm 10000000 eth1 nix | sed -n '/^format/,/package [0-9]/p'""")
        out = re.sub(r"(began|ended): \d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", r"\1: TIME", out)
        out = re.sub(r"(sha256: |package \d+ )[0-9a-f]{64}", r"\1SUM", re.sub(r"kernel: .*", "kernel: K", out))
        self.assertEqual(re.sub(r"package \d+", "package N", out), """\
format: 1
board: lab-17
zone: +00:00
deployment: is_master
kernel: K
probe: getport eth1: first line no end2
probe: getport nix: first line no endResponse from Server was not successful. Get Port: Invalid port number "nix"
probe: heartbeat: healthy
command: korvel pkg-pm
status: 0
began: TIME
ended: TIME
sha256: SUM

first line
no endpackage N SUM
""")

    def test_tells_which_process_has_no_heartbeat(self) -> None:
        for fault, text in (
            ("sfn_dispatcher=netlink-silent", "IWF Dispatcher:OK SFN Dispatcher:NOT_RECEIVED NetfpProxy: OK"),
            ("netfp_proxy=netlink-error:3", "IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR"),
        ):
            _, out, _ = run(f"sh -s -- probe TOKEN lab-17 < {JOB} | sed -n 's/^probe: //p'", "--fault", fault)
            self.assertEqual(out, f"heartbeat: unhealthy: {text}\n")

    def test_cleans_up_after_a_job_that_was_killed(self) -> None:
        """The numbers are those of processes that no longer run."""
        outcome = run("""
            mkdir -p -m 0700 /tmp/korvel-fleet-0/999999/mmi; echo earlier > /tmp/korvel-fleet-0/999999/mmi/x
            mkdir /tmp/korvel
            echo previous > netfp_logs_post_mortem.tgz.before-fleet.999999
            echo unsent > netfp_logs_999999.tgz.fleet.999999
            collect pkg-pm; ls; cat netfp_logs_post_mortem.tgz /tmp/korvel/mmi/x; ls -d /tmp/korvel-fleet-0""")
        self.assertEqual(outcome, (2, "status 0\nend\nnetfp_logs_post_mortem.tgz\nprevious\nearlier\n",
                                   "ls: cannot access '/tmp/korvel-fleet-0': No such file or directory\n"))

    def test_never_replaces_a_newer_package_by_one_that_a_killed_job_set_aside(self) -> None:
        _, out, _ = run("""
            echo previous > netfp_logs_post_mortem.tgz.before-fleet.999999; echo newer > netfp_logs_post_mortem.tgz
            collect pkg-pm; cat netfp_logs_post_mortem.tgz netfp_logs_post_mortem.tgz.before-fleet.999999""")
        self.assertEqual(out, "status 0\nend\nnewer\nprevious\n")

    def test_waits_for_the_package_services_of_the_board(self) -> None:
        _, out, err = run("""
            sed -i 's/^lock_tries=60 /lock_tries=1 /' /tmp/job
            flock /ffs/run/logs sh -s -- collect TOKEN lab-17 pkg-pm 10000000 < /tmp/job""")
        self.assertEqual((out, err), ("korvel-fleet/1 TOKEN\nfailed locked\n",
                                      "korvel-fleet: another run held /ffs/run/logs for 1 seconds\n"))

    def test_names_what_is_missing_on_the_board(self) -> None:
        for script, out, err in (
            ("PATH=/usr/bin job collect TOKEN a pkg 10", "failed no-korvel", "korvel is not installed: not found in "),
            ("cd /; rmdir /ffs/run/logs; job collect TOKEN a pkg 10", "failed no-directory", "/ffs/run/logs is missing"),
            ("job collect TOKEN a pkg 10 | grep -ao 'failed .*'", "failed too-large", "the package has "),
        ):
            outcome = run(script)
            self.assertEqual(outcome[1].splitlines()[-1], out)
            self.assertIn(f"korvel-fleet: {err}", outcome[2])

    def test_says_that_no_room_is_left_if_that_cut_its_package(self) -> None:
        _, out, _ = run("collect pkg-pm", "--full-logs", "--ffs-size", "32K")
        self.assertEqual(out.splitlines()[-1], "failed no-room")


if __name__ == "__main__":
    unittest.main()
