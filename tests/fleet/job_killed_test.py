"""The job of korvel-fleet that is ended on the board while korvel runs: nothing that was on the board is lost, and
nothing of the job stays.
"""

import unittest

from job_board import BoardCase

# As korvel, it ignores TERM while it makes a package. A package takes a while after it has its name.
SLOW = """
replace_korvel 'case $1 in pkg*) trap "" TERM; real "$@"; touch /tmp/made; sleep 1 ;; *) exec /opt/korvel/bin/korvel "$@" ;; esac'
"""
EARLIER = """
korvel pkg-pm 2> /dev/null; echo old > netfp_logs_post_mortem.tgz; echo run > netfp_logs_post_mortem.tgz.run
echo older > /tmp/korvel/mmi/iwf/Old.log
remember
"""


class AJobThatIsEnded(BoardCase):
    def test_by_term_while_korvel_runs_leaves_the_board_as_it_was(self) -> None:
        for keyword in ("pkg", "pkg-pm"):
            with self.subTest(keyword):
                outcome = self.run_on_board(EARLIER + SLOW + f"""
                    start {keyword}; until_exists /tmp/made; kill "$job"; wait "$job" 2> /dev/null
                    compare && flock -n /ffs/run/logs echo free""")
                self.assertEqual(outcome, (0, "free\n", ""))

    def test_by_term_to_all_its_processes_leaves_the_board_as_it_was(self) -> None:
        outcome = self.run_on_board(EARLIER + SLOW + """
            start pkg-pm; until_exists /tmp/made; kill -TERM "-$job"; wait "$job" 2> /dev/null
            compare && flock -n /ffs/run/logs echo free""")
        self.assertEqual(outcome, (0, "free\n", ""))

    def test_by_kill_while_korvel_runs_leaves_the_board_as_it_was_soon(self) -> None:
        for keyword in ("pkg", "pkg-pm"):
            with self.subTest(keyword):
                outcome = self.run_on_board(EARLIER + SLOW + f"""
                    start {keyword}; until_exists /tmp/made; kill -9 "$job"; wait "$job" 2> /dev/null
                    flock /ffs/run/logs sleep 0.2
                    compare""")
                self.assertEqual(outcome[:2], (0, ""))

    def test_is_followed_by_one_that_waits_for_what_it_left(self) -> None:
        outcome = self.run_on_board(EARLIER + SLOW + """
            start pkg-pm; until_exists /tmp/made; kill -9 "$job"; wait "$job" 2> /dev/null
            collect pkg-pm; compare""")
        self.assertEqual(outcome[:2], (0, "status 0\nend\n"))


class AfterAJobWasKilledWithAllItsProcesses(BoardCase):
    """The numbers are those of processes that no longer run."""

    def test_the_next_one_brings_back_what_it_set_aside(self) -> None:
        outcome = self.run_on_board("""
            mkdir -p -m 0700 /tmp/korvel-fleet-0/999999/mmi; echo earlier > /tmp/korvel-fleet-0/999999/mmi/x
            touch /tmp/korvel-fleet-0/999999/ended
            echo previous > netfp_logs_post_mortem.tgz.before-fleet.999999
            echo unsent > netfp_logs_999999.tgz.fleet.999999
            collect pkg-pm; ls; cat netfp_logs_post_mortem.tgz; find /tmp/korvel -type f; ls -d /tmp/korvel-fleet-0""")
        self.assertEqual(outcome, (2, "status 0\nend\nnetfp_logs_post_mortem.tgz\nprevious\n/tmp/korvel/mmi/x\n",
                                   "ls: cannot access '/tmp/korvel-fleet-0': No such file or directory\n"))

    def test_a_process_that_has_its_number_now_changes_nothing(self) -> None:
        _, out, _ = self.run_on_board("""
            mkdir -p -m 0700 /tmp/korvel-fleet-0/1/mmi; echo earlier > /tmp/korvel-fleet-0/1/mmi/x
            echo previous > netfp_logs_post_mortem.tgz.before-fleet.1; echo unsent > netfp_logs_1.tgz.fleet.1
            collect pkg-pm; ls; cat netfp_logs_post_mortem.tgz /tmp/korvel/mmi/x""")
        self.assertEqual(out, "status 0\nend\nnetfp_logs_post_mortem.tgz\nprevious\nearlier\n")

    def test_the_earlier_package_is_the_previous_one_if_its_name_is_used_again(self) -> None:
        outcome = self.run_on_board("""
            echo old > netfp_logs_post_mortem.tgz.before-fleet.999999; echo newer > netfp_logs_post_mortem.tgz
            echo "sha256: $(echo old | sha256sum | cut -d ' ' -f 1)" > netfp_logs_post_mortem.tgz.run
            collect pkg-pm; ls; cat netfp_logs_post_mortem.tgz netfp_logs_post_mortem.tgz.previous""")
        self.assertEqual(outcome, (0, "status 0\nend\nnetfp_logs_post_mortem.tgz\nnetfp_logs_post_mortem.tgz.previous\n"
                                   "netfp_logs_post_mortem.tgz.previous.run\nnewer\nold\n",
                                   "korvel-fleet: /ffs/run/logs/netfp_logs_post_mortem.tgz is there again, perhaps from "
                                   "somebody else: the earlier package is /ffs/run/logs/netfp_logs_post_mortem.tgz.previous\n"))

    def test_a_previous_package_of_the_services_stays(self) -> None:
        _, out, err = self.run_on_board("""
            for ending in before-fleet.999999 previous; do echo $ending > netfp_logs_post_mortem.tgz.$ending; done
            echo newer > netfp_logs_post_mortem.tgz
            collect pkg-pm; ls; cat *""")
        self.assertEqual(out, "status 0\nend\nnetfp_logs_post_mortem.tgz\nnetfp_logs_post_mortem.tgz.before-fleet.999999\n"
                         "netfp_logs_post_mortem.tgz.previous\nnewer\nbefore-fleet.999999\nprevious\n")
        self.assertIn("the earlier package is /ffs/run/logs/netfp_logs_post_mortem.tgz.before-fleet.999999", err)

    def test_work_files_whose_names_are_used_again_stay_aside(self) -> None:
        outcome = self.run_on_board("""
            mkdir -p -m 0700 /tmp/korvel-fleet-0/999999/mmi/iwf /tmp/korvel/mmi/iwf
            for name in Free Used; do echo earlier > /tmp/korvel-fleet-0/999999/mmi/iwf/$name; done
            echo newer > /tmp/korvel/mmi/iwf/Used
            mkdir /tmp/korvel-fleet-0/earlier; echo first > /tmp/korvel-fleet-0/earlier/x
            collect pkg-pm; collect pkg-pm 2>&1
            cd /tmp; grep -r . korvel korvel-fleet-0 | sort""")
        self.assertEqual(outcome, (0, "status 0\nend\nstatus 0\nend\n"
                                   "korvel-fleet-0/earlier-/mmi/iwf/Used:earlier\nkorvel-fleet-0/earlier/x:first\n"
                                   "korvel/mmi/iwf/Free:earlier\nkorvel/mmi/iwf/Used:newer\n",
                                   "korvel-fleet: /tmp/korvel has newer files: those of an earlier collection are in "
                                   "/tmp/korvel-fleet-0/earlier-\n"))


class AJobBesideOthers(BoardCase):
    def test_sends_the_checksum_of_its_own_package_if_there_is_another_one_again(self) -> None:
        _, out, _ = self.run_on_board("""
            echo old > netfp_logs_post_mortem.tgz
            replace_korvel 'case $1 in pkg*) real "$@"; { sleep 0.1; while [ -e netfp_logs_post_mortem.tgz ]; do sleep 0.01; done
                echo other > netfp_logs_post_mortem.tgz; } > /dev/null 2>&1 & ;; *) exec /opt/korvel/bin/korvel "$@" ;; esac'
            sed -i 's/^look_at_package() {/look_at_package() { sleep 0.5;/' /tmp/job
            job collect TOKEN lab-17 pkg-pm 10000000 > /tmp/stream 2> /dev/null
            set -- $(sed -n 's/^package //p' /tmp/stream)
            head -c -4 /tmp/stream | tail -c "$1" | sha256sum | grep -c "$2"
            cat netfp_logs_post_mortem.tgz""")
        self.assertEqual(out, "1\nother\n")

    def test_leaves_the_lock_if_the_process_that_makes_the_package_is_killed(self) -> None:
        outcome = self.run_on_board("""
            replace_korvel 'case $1 in pkg*) touch /tmp/begun; exec sleep 2 ;; *) exec /opt/korvel/bin/korvel "$@" ;; esac'
            start pkg-pm; until_exists /tmp/begun
            kill -9 $(cat "/proc/$job/task/$job/children"); wait "$job" 2> /dev/null
            flock -w 20 /ffs/run/logs echo free""")
        self.assertEqual(outcome[:2], (0, "free\n"))


class AJobWithoutAPackage(BoardCase):
    def test_clears_its_own_work_files(self) -> None:
        outcome = self.run_on_board(EARLIER + """
            replace_korvel 'real "$@"; case $1 in pkg*) rm -f /ffs/run/logs/*_post_mortem.tgz ;; esac'
            collect pkg-pm; compare""")
        self.assertEqual(outcome, (0, "status 1\nfailed no-package\n",
                                   "korvel-fleet: no package is known to be of this run: korvel ended with status 0\n"))

    def test_leaves_the_files_of_somebody_who_collects_at_the_same_time(self) -> None:
        _, out, _ = self.run_on_board("""
            replace_korvel 'real "$@"; case $1 in pkg*) touch -t 203701010000 /tmp/korvel/mmi/iwf/Other ;; esac'
            collect pkg-pm; ls /tmp/korvel/mmi/iwf/Other""")
        self.assertEqual(out, "status 0\nend\n/tmp/korvel/mmi/iwf/Other\n")

    def test_leaves_the_files_of_a_collection_that_korvel_waited_for(self) -> None:
        _, out, _ = self.run_on_board("""
            replace_korvel 'case $1 in pkg*)
                flock /tmp/korvel sh -c "touch /tmp/locked; sleep 1; mkdir -p /tmp/korvel/ti; touch /tmp/korvel/ti/other" &
                until [ -e /tmp/locked ]; do sleep 0.05; done ;; esac; real "$@"'
            collect pkg-pm; ls /tmp/korvel/ti/other""")
        self.assertEqual(out, "status 0\nend\n/tmp/korvel/ti/other\n")

    def test_takes_no_plain_package_of_somebody_else(self) -> None:
        _, out, errors = self.run_on_board("""
            replace_korvel 'real "$@"; case $1 in pkg) echo other > /ffs/run/logs/netfp_logs_990101_000000.tgz ;; esac'
            collect pkg; ls | wc -l""")
        self.assertEqual(out, "status 1\nfailed no-package\n2\n")
        self.assertRegex(errors, r"^korvel-fleet: netfp_logs_\d{6}_\d{6}.tgz and netfp_logs_\d{6}_\d{6}.tgz are new in "
                                 r"/ffs/run/logs: somebody else made one of them\n"
                                 "korvel-fleet: no package is known to be of this run: korvel ended with status 0\n$")


class TwoJobs(BoardCase):
    def test_that_send_and_collect_do_not_disturb_each_other(self) -> None:
        _, out, _ = self.run_on_board("""
            replace_korvel 'real "$@"; case $1 in pkg*) touch /tmp/made ;; esac'
            mkfifo /tmp/stream
            { until_exists /tmp/go; cat; } < /tmp/stream > /tmp/first &
            start pkg-pm; until_exists /tmp/made
            rm /tmp/stream; collect pkg-pm
            touch /tmp/go; wait; mv /tmp/first /tmp/stream; result first""", "--full-logs")
        self.assertEqual(out, "status 0\nend\nstatus first\nend\n")


class InBusybox(AJobBesideOthers, AJobThatIsEnded, AfterAJobWasKilledWithAllItsProcesses, AJobWithoutAPackage, TwoJobs):
    shell = "busybox"


class InBash(AJobThatIsEnded, AJobWithoutAPackage):
    shell = "bash"


if __name__ == "__main__":
    unittest.main()
