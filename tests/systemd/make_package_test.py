"""The script make-package, which makes packages and checks them, with korvel on a simulated board."""

import unittest

import board

MAKE = f"{board.HELPERS}/make-package {board.PREFIX}/bin/korvel"
# Replaces korvel with a program that makes no package.
MAKE_NONE = f"{board.HELPERS}/make-package true"
INCOMPLETE = ("make-package: netfp_logs_post_mortem.tgz is missing or incomplete; "
              "the previous package, if any, is kept\n")

BOARD = """
cd /ffs/run/logs
pack() {  # NAME WORD: makes a complete package that contains the word
    mkdir -p /tmp/packed; echo "$2" > /tmp/packed/word; tar -czf "$1" -C /tmp/packed word
}
word() { tar -xOzf "$1" word; }
packages() { ls | grep -v '[.]run$'; }
is_complete() { gzip -t "$1" && tar -tzf "$1" > /dev/null && echo complete; }
fill() { dd if=/dev/zero of=/ffs/filler bs=1k count="$1" 2> /dev/null; }
twelve_packages() {  # DAY: makes twelve packages, the first is the oldest
    for minute in $(seq -w 12); do
        pack "netfp_logs_260101_00${minute}00.tgz" old
        touch -d "$1 00:$minute" "netfp_logs_260101_00${minute}00.tgz"
    done
}
"""


def run(script: str, *options: str) -> board.Outcome:
    return board.run(BOARD + script, *options)


class PackagesOfAFixedName(unittest.TestCase):
    maxDiff = None
    names = {
        "pkg-trs": "netfp_logs.tgz",
        "pkg-sup": "netfp_logs_sup.tgz",
        "pkg-pm": "netfp_logs_post_mortem.tgz",
        "pkg-sdown": "netfp_logs_shutdown.tgz",
    }

    def test_replace_the_previous_one_after_they_are_complete(self) -> None:
        for keyword, name in self.names.items():
            with self.subTest(keyword):
                outcome = run(f"pack netfp_logs_post_mortem.tgz last; pack {name} old\n"
                              f"{MAKE} {keyword}; echo $?; tar -tzf {name} | grep -e word -e ./ti/netfp_proxy.log; packages")
                names = "".join(f"{each}\n" for each in sorted({name, "netfp_logs_post_mortem.tgz"}))
                self.assertEqual(outcome, (0, f"0\n./ti/netfp_proxy.log\n{names}", ""))

    def test_are_made_if_there_was_none(self) -> None:
        outcome = run(f"{MAKE} pkg-pm; echo $?; packages; is_complete *.tgz")
        self.assertEqual(outcome, (0, "0\nnetfp_logs_post_mortem.tgz\ncomplete\n", ""))

    def test_leave_the_previous_one_if_a_full_disk_cuts_them(self) -> None:
        outcome = run(f"pack netfp_logs_post_mortem.tgz old; fill 1012; {MAKE} pkg-pm; echo $?; ls; word *.tgz",
                      "--ffs-size", "1M", "--full-logs")
        self.assertEqual(outcome.out, "1\nnetfp_logs_post_mortem.tgz\nold\n")
        self.assertTrue(outcome.err.endswith(INCOMPLETE), outcome.err)

    def test_leave_the_previous_one_if_korvel_makes_none(self) -> None:
        outcome = run(f"pack netfp_logs_post_mortem.tgz old; {MAKE_NONE} pkg-pm; echo $?; ls; word *.tgz")
        self.assertEqual(outcome, (0, "1\nnetfp_logs_post_mortem.tgz\nold\n", INCOMPLETE))

    def test_can_be_disabled_for_the_shutdown(self) -> None:
        outcome = run("echo doNotCollectLogOnExit=1 > /rom/private/fpdispatcher.conf\n"
                      f"pack netfp_logs_shutdown.tgz old; {MAKE} pkg-sdown; echo $?; ls; word *.tgz")
        self.assertEqual(outcome, (0, "0\nnetfp_logs_shutdown.tgz\nold\n", ""))

    def test_replace_a_link_of_their_name_and_keep_its_target(self) -> None:
        outcome = run("echo theirs > /tmp/elsewhere; ln -s /tmp/elsewhere netfp_logs_post_mortem.tgz\n"
                      f"{MAKE} pkg-pm; echo $?; cat /tmp/elsewhere; find . -type l; is_complete *.tgz; packages")
        self.assertEqual(outcome, (0, "0\ntheirs\ncomplete\nnetfp_logs_post_mortem.tgz\n", ""))


class AfterAKilledRun(unittest.TestCase):
    maxDiff = None

    def test_the_previous_package_replaces_an_incomplete_one(self) -> None:
        outcome = run("pack netfp_logs_post_mortem.tgz.previous old; echo cut > netfp_logs_post_mortem.tgz\n"
                      f"{MAKE_NONE} pkg-pm 2> /dev/null; ls; word *.tgz")
        self.assertEqual(outcome, (0, "netfp_logs_post_mortem.tgz\nold\n", ""))

    def test_the_previous_package_is_restored_if_there_is_none(self) -> None:
        outcome = run(f"pack netfp_logs_post_mortem.tgz.previous old; {MAKE_NONE} pkg-pm 2> /dev/null; ls; word *.tgz")
        self.assertEqual(outcome, (0, "netfp_logs_post_mortem.tgz\nold\n", ""))

    def test_a_complete_package_is_kept(self) -> None:
        outcome = run("pack netfp_logs_post_mortem.tgz.previous old; pack netfp_logs_post_mortem.tgz new\n"
                      f"{MAKE_NONE} pkg-pm 2> /dev/null; ls; word *.tgz")
        self.assertEqual(outcome, (0, "netfp_logs_post_mortem.tgz\nnew\n", ""))


class PlainPackages(unittest.TestCase):
    maxDiff = None
    nine_newest = "".join(f"netfp_logs_260101_00{minute:02}00.tgz\n" for minute in range(4, 13))
    show = "echo $?; ls netfp_logs_260101_*.tgz; packages | wc -l"

    def test_are_reduced_to_the_new_one_and_the_nine_newest(self) -> None:
        outcome = run(f"twelve_packages 2026-01-01; {MAKE} pkg; {self.show}; is_complete $(ls -t *.tgz | head -n 1)")
        self.assertEqual(outcome, (0, f"0\n{self.nine_newest}10\ncomplete\n", ""))

    def test_keep_the_new_one_even_if_older_ones_have_later_times(self) -> None:
        outcome = run(f"twelve_packages 2099-01-01; {MAKE} pkg; {self.show}")
        self.assertEqual(outcome, (0, f"0\n{self.nine_newest}10\n", ""))

    def test_are_reduced_before_a_new_one_needs_the_space(self) -> None:
        outcome = run(f"twelve_packages 2026-01-01; {MAKE_NONE} pkg; echo $?; ls | wc -l")
        self.assertEqual(outcome, (0, "1\n10\n", "make-package: korvel made no package\n"))

    def test_are_deleted_if_a_full_disk_cuts_them(self) -> None:
        outcome = run(f"fill 1012; {MAKE} pkg; echo $?; ls", "--ffs-size", "1M", "--full-logs")
        self.assertEqual(outcome.out, "1\n")
        self.assertRegex(outcome.err.splitlines()[-1],
                         r"^make-package: netfp_logs_\d{6}_\d{6}\.tgz is incomplete and was removed$")

    def test_do_not_affect_files_with_other_names(self) -> None:
        outcome = run(f"""
            twelve_packages 2026-01-01; pack netfp_logs_post_mortem.tgz pm; touch -d 2020-01-01 netfp_logs_mine.tgz
            {MAKE_NONE} pkg 2> /dev/null; ls | grep -v _260101_""")
        self.assertEqual(outcome, (0, "netfp_logs_mine.tgz\nnetfp_logs_post_mortem.tgz\n", ""))


class MakePackage(unittest.TestCase):
    maxDiff = None

    def test_completes_the_package_if_it_is_terminated(self) -> None:
        outcome = run(f"""
            {MAKE} pkg-pm & until pgrep -x korvel > /dev/null; do sleep 0.01; done
            kill -TERM $!; wait $!; echo $?; packages; is_complete *.tgz""")
        self.assertEqual(outcome, (0, "0\nnetfp_logs_post_mortem.tgz\ncomplete\n", ""))

    def test_makes_one_package_at_a_time(self) -> None:
        outcome = run(f"{MAKE} pkg-pm & first=$!; {MAKE} pkg-sdown & wait $first; echo $?; wait $!; echo $?; packages")
        self.assertEqual(outcome, (0, "0\n0\nnetfp_logs_post_mortem.tgz\nnetfp_logs_shutdown.tgz\n", ""))

    def test_makes_no_package_if_it_cannot_lock_the_folder(self) -> None:
        outcome = run(f"pack netfp_logs_post_mortem.tgz old; PATH=/no/flock {MAKE} pkg-pm; echo $?; ls; word *.tgz")
        self.assertEqual(outcome.out, "1\nnetfp_logs_post_mortem.tgz\nold\n")
        self.assertEqual(outcome.err.splitlines()[-1], "make-package: cannot lock /ffs/run/logs: no package was made")

    def test_rejects_other_keywords_and_a_missing_one(self) -> None:
        outcome = run(f"{MAKE} print; echo $?; ls")
        self.assertEqual(outcome, (0, "1\n", "make-package: unknown package keyword: print\n"))
        self.assertEqual(run(f"{MAKE}; echo $?; ls"), (0, "1\n", "make-package: usage: make-package KORVEL KEYWORD\n"))

    def test_reports_a_missing_folder_of_packages(self) -> None:
        outcome = run(f"cd /; rmdir /ffs/run/logs; {MAKE} pkg; echo $?")
        self.assertEqual(outcome, (0, "1\n", "make-package: directory /ffs/run/logs is missing\n"))


if __name__ == "__main__":
    unittest.main()
