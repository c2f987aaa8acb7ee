"""The job of korvel-fleet on a board: what it leaves there, and what it sends if something is in its way."""

import re
import unittest

from job_board import BoardCase

class TheJob(BoardCase):
    def test_removes_nothing_that_was_on_the_board_and_leaves_nothing_of_its_own(self) -> None:
        for keyword in ("pkg", "pkg-pm"):
            with self.subTest(keyword):
                outcome = self.run_on_board(f"""
                    korvel pkg-pm 2> /dev/null; echo old > netfp_logs_post_mortem.tgz; echo run > netfp_logs_post_mortem.tgz.run
                    mkdir -p /tmp/korvel/archive; echo kept > /tmp/korvel/archive/x; echo older > /tmp/korvel/mmi/iwf/Old.log
                    files > /tmp/before; contents > /tmp/before.md5
                    collect {keyword}
                    files | diff /tmp/before - && contents | diff /tmp/before.md5 -""")
                self.assertEqual(outcome, (0, "status 0\nend\n", ""))

    def test_removes_no_earlier_files_that_it_could_not_set_aside(self) -> None:
        outcome = self.run_on_board("""
            touch "/tmp/korvel-fleet-$(id -u)"; mkdir -p /tmp/korvel/ti /tmp/korvel/fuse/iwf
            echo older > /tmp/korvel/ti/old.log; echo mine > /tmp/korvel/fuse/iwf/mine
            collect pkg-pm; cat /tmp/korvel/ti/old.log /tmp/korvel/fuse/iwf/mine""")
        self.assertEqual(outcome, (0, "status 0\nend\nolder\nmine\n", "korvel-fleet: cannot move the files of an earlier "
                                   "collection: the package contains them\n"))

    def test_touches_nothing_in_a_directory_that_somebody_else_prepared(self) -> None:
        _, out, _ = self.run_on_board("""
            mkdir -p /tmp/other /tmp/korvel/ti; ln -s /tmp/other /tmp/korvel-fleet-0; remember
            replace_korvel 'case $1 in pkg*) mkdir -p /tmp/other/mmi; echo x > /tmp/other/mmi/x
                for job in /proc/[0-9]*; do ln -s mmi "/tmp/other/${job##*/}" 2> /dev/null; done ;; esac; real "$@"'
            collect pkg-pm; ls /tmp/other/mmi; grep -rl ^x /tmp/korvel/x""")
        self.assertEqual(out, "status 0\nend\nx\n")

    def test_keeps_much_of_a_long_standard_error(self) -> None:
        _, out, _ = self.run_on_board("""
            replace_korvel 'case $1 in pkg*) head -c 3000000 /dev/zero | tr "\\000" x >&2 ;; esac; real "$@"'
            collect pkg-pm; tr -cd x < /tmp/stream | wc -c | cut -c 1-3""")
        self.assertEqual(out, "status 0\nend\n104\n")

    def test_leaves_nothing_where_nothing_was(self) -> None:
        outcome = self.run_on_board("files > /tmp/before; collect pkg-pm; files | diff /tmp/before -")
        self.assertEqual(outcome, (0, "status 0\nend\n", ""))

    def test_leaves_nothing_of_a_probe(self) -> None:
        outcome = self.run_on_board("files > /tmp/before; job probe TOKEN lab-17 eth0 > /dev/null; files | diff /tmp/before -")
        self.assertEqual(outcome, (0, "", ""))

    def test_cleans_up_if_the_connection_breaks(self) -> None:
        outcome = self.run_on_board("""
            echo old > netfp_logs_post_mortem.tgz; mkdir -p /tmp/korvel/mmi; echo older > /tmp/korvel/mmi/x
            files > /tmp/before; contents > /tmp/before.md5
            job collect TOKEN lab-17 pkg-pm 10000000 2> /dev/null | head -n 1
            files | diff /tmp/before - && contents | diff /tmp/before.md5 -""")
        self.assertEqual(outcome, (0, "korvel-fleet/1 TOKEN\n", ""))

    def test_sends_a_package_of_this_run_only(self) -> None:
        _, out, _ = self.run_on_board("""
            korvel pkg-pm 2> /dev/null; echo older > /tmp/korvel/mmi/iwf/Old.log; rm *
            collect pkg-pm
            size=$(sed -n 's/^package \\([0-9]*\\) .*/\\1/p' /tmp/stream)
            head -c -4 /tmp/stream | tail -c "$size" | tar -tzf - | grep -c 'iwf/'
            head -c -4 /tmp/stream | tail -c "$size" | tar -tzf - | grep -c Old""")
        self.assertEqual(out, "status 0\nend\n9\n0\n")

    def test_describes_its_run_and_the_board(self) -> None:
        _, out, _ = self.run_on_board("""
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

    def test_waits_for_the_package_services_of_the_board(self) -> None:
        _, out, err = self.run_on_board("""
            sed -i 's/^lock_tries=60 /lock_tries=1 /' /tmp/job
            exec 5< /ffs/run/logs; flock 5; job collect TOKEN lab-17 pkg-pm 10000000""")
        self.assertEqual((out, err), ("korvel-fleet/1 TOKEN\nfailed locked\n",
                                      "korvel-fleet: another run held /ffs/run/logs for 1 seconds\n"))

    def test_names_what_is_missing_on_the_board(self) -> None:
        for script, out, err in (
            ("PATH=/usr/bin job collect TOKEN a pkg 10", "failed no-korvel", "korvel is not installed: not found in "),
            ("cd /; rmdir /ffs/run/logs; job collect TOKEN a pkg 10", "failed no-directory", "/ffs/run/logs is missing"),
            ("job collect TOKEN a pkg 10 | grep -ao 'failed .*'", "failed too-large", "the package has "),
        ):
            outcome = self.run_on_board(script)
            self.assertEqual(outcome[1].splitlines()[-1], out)
            self.assertIn(f"korvel-fleet: {err}", outcome[2])

    def test_says_that_no_room_is_left_if_there_is_no_package(self) -> None:
        outcome = self.run_on_board("""
            replace_korvel 'case $1 in pkg*) exit 1 ;; *) exec /opt/korvel/bin/korvel "$@" ;; esac'
            dd if=/dev/zero of=filled bs=1k 2> /dev/null; collect pkg-pm""", "--ffs-size", "32K")
        self.assertEqual(outcome[1], "status 1\nfailed no-room\n")

    def test_names_the_release_of_korvel(self) -> None:
        outcome = self.run_on_board("job probe TOKEN lab-17 | grep -c '^korvel: [0-9]'")
        self.assertEqual(outcome, (0, "1\n", ""))

    def test_says_that_no_room_is_left_if_that_cut_its_package(self) -> None:
        _, out, _ = self.run_on_board("collect pkg-pm", "--full-logs", "--ffs-size", "32K")
        self.assertEqual(out.splitlines()[-1], "failed no-room")


class InBusybox(TheJob):
    shell = "busybox"


if __name__ == "__main__":
    unittest.main()
