"""The job of korvel-fleet on a board where korvel, or something that it needs, hangs or is missing."""

import unittest

from job_board import BoardCase

# These functions change the job. A limit of time is over when something hangs, however busy the machine is.
OVER_WHEN_IT_HANGS = """
sed -i 's,^    sleep "$2" &$,    until [ -e /tmp/hangs ]; do sleep 0.1; done \\&,' /tmp/job
"""
QUICK_PROBE = "sed -i 's/^probe_seconds=10 /probe_seconds=3 /' /tmp/job\n"
PROBE = "job probe TOKEN lab-17 eth1 | sed -n 's/^probe: //p'\n"
HUNG = "korvel-fleet: korvel hung: it was ended after 180 seconds\n"


class KorvelThatHangs(BoardCase):
    def test_is_ended_and_named(self) -> None:
        outcome = self.run_on_board(OVER_WHEN_IT_HANGS + """
            replace_korvel 'case $1 in
                pkg*) trap "" TERM; echo begun >&2; true > /tmp/hangs; sleep 600; sleep 600 ;; *) real "$@" ;; esac'
            echo old > netfp_logs_post_mortem.tgz; mkdir /tmp/korvel; remember
            collect pkg-pm; sed -n '/^$/,$p' /tmp/stream; compare
            flock -n /ffs/run/logs echo free; ps -C sleep -o args= | grep -c 600""")
        self.assertEqual(outcome, (1, "status 1\nfailed hung\n\nbegun\nkorvel-fleet: korvel hung: it was ended after 180 "
                                   "seconds\nfailed hung\nfree\n0\n", HUNG))

    def test_in_a_program_that_it_started_still_makes_a_package_that_is_sent(self) -> None:
        outcome = self.run_on_board(OVER_WHEN_IT_HANGS + """
            mkdir -p /tmp/bin; printf '#!/bin/sh\\ntrue > /tmp/hangs; sleep 600\\n' > /tmp/bin/fp_linux_log_collect
            chmod +x /tmp/bin/fp_linux_log_collect; PATH=/tmp/bin:$PATH
            sed -i 's/collection_grace=2 /collection_grace=60 /' /tmp/job
            collect pkg-pm
            size=$(sed -n 's/^package \\([0-9]*\\) .*/\\1/p' /tmp/stream)
            head -c -12 /tmp/stream | tail -c "$size" | tar -tzf - | grep -c 'iwf/'""")
        self.assertEqual(outcome, (0, "status 1\nfailed hung\n9\n", HUNG))

    def test_leaves_a_program_behind_that_does_not_keep_the_job(self) -> None:
        outcome = self.run_on_board("""
            replace_korvel 'case $1 in pkg*) sleep 600 & printf "no end of line" >&2 ;; esac; real "$@"'
            collect pkg-pm; grep -ao '^no end of linepackage' /tmp/stream; flock -n /ffs/run/logs echo free""")
        self.assertEqual(outcome, (0, "status 0\nend\nno end of linepackage\nfree\n", ""))

    def test_does_not_keep_a_probe(self) -> None:
        _, out, _ = self.run_on_board(QUICK_PROBE + """
            replace_korvel 'case $1 in getport) exec sleep 600 ;; *) exec /opt/korvel/bin/korvel "$@" ;; esac'\n""" + PROBE)
        self.assertEqual(out, "getport eth1: korvel hung: it was ended after 3 seconds\nheartbeat: healthy\n")

    def test_does_not_outlive_the_time_of_a_run(self) -> None:
        outcome = self.run_on_board("""
            job run TOKEN 1 supervision; echo "status $?"; ps -C korvel -o args=
            job run TOKEN 60 getport eth1; replace_korvel 'exit 7'; job run TOKEN 60 getport eth1; echo "status $?"
            """)
        self.assertEqual(outcome, (0, "korvel-fleet/1 TOKEN\nstatus 124\nkorvel-fleet/1 TOKEN\n2\nkorvel-fleet/1 TOKEN\nstatus 7\n", ""))


SILENT = ("--fault", "sfn_dispatcher=netlink-silent")
# These change the job, too. A kernel without names of functions does not tell where supervision waits.
SHORT_CYCLE = "sed -i 's/^cycle_seconds=7 /cycle_seconds=1 /' /tmp/job\n"
NO_PLACE = "sed -i 's,read -r place < .*,place=0,' /tmp/job\n"


class TheHeartbeat(BoardCase):
    NOT_BEGUN = "heartbeat: unknown: supervision did not begin\n"
    NOT_LOGGED = "heartbeat: unknown: the log of the dispatchers does not show that supervision began\n"

    def heartbeat(self, script: str, *options: str) -> str:
        return self.run_on_board(f"{script}\n{PROBE}", *options)[1].partition("\n")[2]

    def test_names_a_process_that_does_not_answer(self) -> None:
        for fault, text in (
            ("sfn_dispatcher=netlink-silent", "IWF Dispatcher:OK SFN Dispatcher:NOT_RECEIVED NetfpProxy: OK"),
            ("netfp_proxy=netlink-error:3", "IWF Dispatcher:OK SFN Dispatcher:OK NetfpProxy: ERROR"),
        ):
            for kernel in ("", NO_PLACE):
                self.assertEqual(self.heartbeat(kernel, "--fault", fault), f"heartbeat: unhealthy: {text}\n")

    def test_needs_no_log_if_all_processes_answer(self) -> None:
        self.assertEqual(self.heartbeat("""
            replace_korvel 'case $1 in print) exit 1 ;; *) exec /opt/korvel/bin/korvel "$@" ;; esac'"""), "heartbeat: healthy\n")

    def test_needs_the_log_if_the_kernel_does_not_tell_where_supervision_waits(self) -> None:
        self.assertEqual(self.heartbeat(NO_PLACE), "heartbeat: healthy\n")
        self.assertEqual(self.heartbeat(f"""{NO_PLACE}
            replace_korvel 'case $1 in print) exit 1 ;; *) exec /opt/korvel/bin/korvel "$@" ;; esac'"""), self.NOT_LOGGED)

    def test_is_not_healthy_if_only_a_later_cycle_is(self) -> None:
        self.assertEqual(self.heartbeat("""
            sfn=$(pgrep sfn_dispatcher); kill -STOP "$sfn"; { sleep 3; kill -CONT "$sfn"; } &"""),
            "heartbeat: unhealthy: IWF Dispatcher:OK SFN Dispatcher:NOT_RECEIVED NetfpProxy: OK\n")

    def test_does_not_take_many_short_sleeps_for_a_healthy_cycle(self) -> None:
        """While the log is locked, supervision looks at the lock again and again."""
        self.assertEqual(self.heartbeat(QUICK_PROBE + "flock /dev/shm/dispatcher_log_memory sleep 600 &", *SILENT), self.NOT_LOGGED)

    def test_is_unknown_if_supervision_hangs_before_it_begins(self) -> None:
        self.assertEqual(self.heartbeat("""
            replace_korvel 'case $1 in supervision) exec sleep 600 ;; *) real "$@" ;; esac'"""), self.NOT_BEGUN)

    def test_is_unknown_if_the_log_cannot_be_read(self) -> None:
        for text in ("exit 1", "exec sleep 600"):
            self.assertEqual(self.heartbeat(f"""{SHORT_CYCLE}{QUICK_PROBE}
                replace_korvel 'case $1 in print) {text} ;; *) exec /opt/korvel/bin/korvel "$@" ;; esac'""", *SILENT),
                self.NOT_LOGGED)

    def test_is_unknown_if_supervision_hangs_in_its_cycle(self) -> None:
        self.assertEqual(self.heartbeat(f"""{SHORT_CYCLE}
            replace_korvel 'case $1 in supervision) {{ sleep 0.5; kill -STOP $$; }} & ;; esac; exec /opt/korvel/bin/korvel "$@"'
            """, *SILENT), "heartbeat: unknown: supervision needed more than 1 seconds for a cycle\n")

    def test_is_unhealthy_if_supervision_ends(self) -> None:
        self.assertEqual(self.heartbeat("""
            replace_korvel 'case $1 in supervision) exit 1 ;; *) real "$@" ;; esac'"""),
            "heartbeat: unhealthy: supervision ended with status 1\n")

    def test_is_over_when_supervision_cannot_be_terminated(self) -> None:
        self.assertEqual(self.heartbeat("trap '' TERM"), "heartbeat: healthy\n")

    def test_is_over_before_the_package_is_made(self) -> None:
        _, out, _ = self.run_on_board("""
            replace_korvel 'case $1 in
                pkg*) ps -C korvel -o args= >&2; echo 3 > /run/boardsim/heartbeat/sfn_dispatcher; real "$@" ;;
                *) exec /opt/korvel/bin/korvel "$@" ;; esac'
            collect pkg-pm; grep -ac '^/opt/korvel/bin/korvel supervision' /tmp/stream; sed -n 's/^probe: //p' /tmp/stream""")
        self.assertEqual(out, "status 0\nend\n0\nheartbeat: healthy\n")


class ABoard(BoardCase):
    def test_without_a_tool_is_named_with_it(self) -> None:
        for tool in ("flock", "sha256sum", "find"):
            outcome = self.run_on_board(f"""
                mkdir /tmp/few; for folder in /usr/bin /bin; do ln -sf $folder/* /tmp/few; done
                ln -sf /opt/korvel/bin/korvel /tmp/few; rm -f /tmp/few/{tool} /tmp/applets/{tool}
                sed -i 's|^PATH=.*|PATH=${{PATH%%:/*}}:/tmp/few|' /tmp/job; PATH=/tmp/few:$PATH
                collect pkg-pm""")
            self.assertEqual(outcome[1], "status 1\nfailed no-tool\n")
            self.assertIn(f"korvel-fleet: {tool} is not installed: not found in ", outcome[2])

    def test_with_a_find_that_lacks_a_test_is_named_with_it(self) -> None:
        outcome = self.run_on_board("""
            mkdir -p /tmp/bin /tmp/applets; rm -f /tmp/applets/find
            printf '#!/bin/sh\\ncase $* in *-newer*) exit 1 ;; esac; exec /usr/bin/find "$@"\\n' > /tmp/bin/find
            chmod +x /tmp/bin/find; PATH=/tmp/bin:$PATH
            collect pkg-pm""")
        self.assertEqual(outcome[1:], ("status 1\nfailed no-tool\n", "korvel-fleet: find does not know -newer\n"))


class InBusybox(KorvelThatHangs, TheHeartbeat):
    shell = "busybox"


class InBash(KorvelThatHangs):
    shell = "bash"


if __name__ == "__main__":
    unittest.main()
