"""What make-package does beside the package: the file that describes the run, and the files of an earlier collection."""

import re
import unittest

import board

MAKE = f"{board.HELPERS}/make-package {board.PREFIX}/bin/korvel"
RELEASE = re.search(r"VERSION (\d+\.\d+\.\d+)", (board.SOURCE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
PACKAGE = "netfp_logs_post_mortem.tgz"
NOT_MOVED = ("make-package: cannot move the files of an earlier collection out of /tmp/korvel: "
             "the package contains them\n")
NO_PRIVATE = ("make-package: /tmp/korvel-runs is a link, or not a directory of this user: "
              "earlier files stay, standard error is not kept\n")

BOARD = """
cd /ffs/run/logs
instead() {  # writes a program that runs the commands of standard input before korvel, as /tmp/instead
    { echo '#!/bin/sh'; cat; echo 'exec korvel "$@"'; } > /tmp/instead; chmod +x /tmp/instead
}
standard_error() { sed '1,/^$/d' "$1"; }
has_right_checksum() { grep -qx "sha256: $(sha256sum < "${1%.run}" | cut -d ' ' -f 1)" "$1" && echo right; }
earlier() { tar -tzf /tmp/korvel-runs/earlier.tgz | sort; }
"""
MAKE_INSTEAD = f"{board.HELPERS}/make-package /tmp/instead"


def run(script: str, *options: str) -> board.Outcome:
    return board.run(BOARD + script, *options)


class RunFiles(unittest.TestCase):
    maxDiff = None

    def test_describe_the_run_and_hold_its_standard_error(self) -> None:
        outcome = run(f"""
            instead << 'end'
echo 'first line' >&2; printf 'no end of line, byte \\377' >&2; echo 'not this'
end
            {MAKE_INSTEAD} pkg-pm 2> /tmp/errors; sed '/^sha256/s/ .*/ SUM/' {PACKAGE}.run; echo
            standard_error {PACKAGE}.run | cmp - /tmp/errors; has_right_checksum {PACKAGE}.run; uname -r""")
        lines = outcome.out.encode("utf-8", "surrogateescape").decode("utf-8", "replace").splitlines()
        kernel = lines.pop()
        for place in (6, 7):
            lines[place] = re.sub(r" \d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$", " TIME", lines[place])
        self.assertEqual(lines, [
            "not this", "format: 1", "board: board", f"korvel: {RELEASE}", "command: /tmp/instead pkg-pm", "status: 0",
            "began: TIME", "ended: TIME", "zone: +00:00", "deployment: is_master", f"kernel: {kernel}", "sha256: SUM",
            "", "first line", "no end of line, byte \N{REPLACEMENT CHARACTER}", "right"])
        self.assertEqual(outcome.err, "")

    def test_name_the_files_that_decide_the_deployment(self) -> None:
        for deployment, value in (("iwf", "deployment_type=4core_Iwf"), ("sfn-antenna", "is_ant")):
            with self.subTest(deployment):
                outcome = run(f"{MAKE} pkg; grep ^deployment *.run", "--deployment", deployment)
                self.assertEqual(outcome, (0, f"deployment: {value}\n", ""))
        outcome = run(f"rm -r /rom/private/*; {MAKE} pkg; grep ^deployment *.run")
        self.assertEqual(outcome, (0, "deployment: no deployment_type\n", ""))

    def test_name_the_zone_of_local_times(self) -> None:
        zones = {"Europe/Helsinki": "Europe/Helsinki", ":Asia/Tokyo": "Asia/Tokyo", "CET-1CEST": "CET-1CEST",
                 "/usr/share/zoneinfo/Asia/Tokyo": "Asia/Tokyo", "/etc/localtime": "+00:00"}
        script = "\n".join(f"TZ={zone} {MAKE} pkg-pm; grep ^zone *.run" for zone in zones)
        self.assertEqual(run(script), (0, "".join(f"zone: {zone}\n" for zone in zones.values()), ""))

    def test_show_the_status_of_korvel(self) -> None:
        outcome = run(f"""
            printf '#!/bin/sh\\nkorvel "$@"; exit 3' > /tmp/instead; chmod +x /tmp/instead
            {MAKE_INSTEAD} pkg-pm; echo $?; grep ^status *.run""")
        self.assertEqual(outcome, (0, "0\nstatus: 3\n", ""))

    def test_move_with_their_packages(self) -> None:
        outcome = run(f"""
            {MAKE} pkg-pm; cp {PACKAGE} /tmp/old; cp {PACKAGE}.run /tmp/old.run
            instead << 'end'
ls /ffs/run/logs; cmp /tmp/old /ffs/run/logs/*.previous; cmp /tmp/old.run /ffs/run/logs/*.previous.run
echo failed >&2; exit 1
end
            {MAKE_INSTEAD} pkg-pm 2> /dev/null; echo $?; ls; cmp {PACKAGE} /tmp/old; cmp {PACKAGE}.run /tmp/old.run
            {MAKE} pkg-pm; echo $?; ls; has_right_checksum {PACKAGE}.run""")
        both = f"{PACKAGE}\n{PACKAGE}.run\n"
        self.assertEqual(outcome, (0, f"{PACKAGE}.previous\n{PACKAGE}.previous.run\n1\n{both}0\n{both}right\n", ""))

    def test_go_with_their_plain_packages(self) -> None:
        outcome = run(f"""
            for minute in $(seq -w 12); do
                for end in tgz tgz.run; do touch -d "2026-01-01 00:$minute" netfp_logs_260101_00${{minute}}00.$end; done
            done
            touch netfp_logs_260101_999999.tgz.run netfp_logs_mine.tgz.run
            {MAKE} pkg; ls netfp_logs_260101* | sed 's/_00/ /; s/00[.]/ /' | cut -d ' ' -f 2- | paste -s; ls *mine*""")
        kept = "\t".join(f"{minute:02} {end}" for minute in range(4, 13) for end in ("tgz", "tgz.run"))
        self.assertEqual(outcome, (0, f"{kept}\nnetfp_logs_mine.tgz.run\n", ""))

    def test_are_cut_if_standard_error_is_very_long(self) -> None:
        outcome = run(f"""
            instead << 'end'
seq 200000 >&2
end
            {MAKE_INSTEAD} pkg-pm 2> /tmp/errors; standard_error *.run > /tmp/kept; wc -c < /tmp/kept; tail -n 1 /tmp/kept
            head -c 1044480 /tmp/kept | cmp - /tmp/errors 2>&1 | grep -o EOF; tail -n 1 /tmp/errors""")
        rest = "make-package: the rest of standard error is missing"
        self.assertEqual(outcome, (0, f"{1044480 + len(rest) + 2}\n{rest}\nEOF\n200000\n", ""))

    def test_do_not_count_if_a_full_disk_has_no_room_for_them(self) -> None:
        outcome = run(f"""
            instead << 'end'
head -c 100000 /dev/urandom | od -x >&2; echo done
end
            fill() {{ dd if=/dev/zero of=/ffs/filler bs=4k count="$1" 2> /dev/null; }}
            fill 200; {MAKE_INSTEAD} pkg-pm 2> /tmp/errors; echo $?; ls; gzip -t *; grep make-package: /tmp/errors""",
                      "--ffs-size", "1M")
        self.assertEqual(outcome, (0, f"done\n0\n{PACKAGE}\nmake-package: cannot write {PACKAGE}.run: "
                                      "nothing describes the run of this package\n", ""))

    def test_do_not_wait_for_a_process_that_outlives_korvel(self) -> None:
        outcome = run(f"""
            instead << 'end'
echo before >&2; sleep 1000 &
end
            {MAKE_INSTEAD} pkg-pm 2> /dev/null; echo $?; standard_error *.run""")
        self.assertEqual(outcome, (0, "0\nbefore\nmake-package: the rest of standard error is missing\n", ""))

    def test_are_whole_if_the_run_is_terminated(self) -> None:
        outcome = run(f"""
            instead << 'end'
echo before >&2; kill -TERM $PPID; sleep 1; echo after >&2
end
            {MAKE_INSTEAD} pkg-pm 2> /dev/null; echo $?; standard_error *.run""")
        self.assertEqual(outcome, (0, "0\nbefore\nafter\n", ""))


class EarlierFiles(unittest.TestCase):
    maxDiff = None

    def test_are_not_in_the_new_package_but_kept(self) -> None:
        outcome = run(f"""
            korvel dump netfp > /dev/null 2>&1; kill $(pidof netfp_server)
            mkdir -p /tmp/korvel/archive/syslib; echo entry > /tmp/korvel/archive/syslib/runtime.log
            {MAKE} pkg-pm; echo $?; tar -tzf {PACKAGE} | grep -e netfp_server -e runtime; earlier | grep netfp_server
            tar -xOzf /tmp/korvel-runs/earlier.tgz ti/netfp_server.log | tail -n 1; ls -l -d /tmp/korvel-runs | cut -c 1-10
            ls /tmp/korvel-runs""")
        self.assertEqual(outcome, (0, "0\n./archive/syslib/runtime.log\nti/netfp_server.log\n</netfp_server_dump>\n"
                                      "drwx------\nearlier.tgz\n", ""))

    def test_are_all_those_that_a_collection_makes(self) -> None:
        outcome = run(f"""
            touch {PACKAGE}; korvel -d all pkg-trs > /dev/null 2>&1; ls /tmp/korvel
            mkdir /tmp/korvel/archive.1; echo own > /tmp/korvel/own; {MAKE} pkg-pm
            earlier | grep -v /.; tar -tzf {PACKAGE} | grep -e own -e archive.1 | sort""")
        self.assertEqual(outcome, (0, f"fuse\nlinux\nmmi\n{PACKAGE}\nti\n"
                                      f"fuse/\nlinux/\nmmi/\n{PACKAGE}\nti/\n./archive.1/\n./own\n", ""))

    def test_without_text_do_not_replace_those_with_text(self) -> None:
        outcome = run(f"""
            mkdir -p /tmp/korvel/ti; echo text > /tmp/korvel/ti/mine.log; {MAKE} pkg; cp /tmp/korvel-runs/earlier.tgz /tmp/old
            rm -r /tmp/korvel/*; mkdir -p /tmp/korvel/ti; touch /tmp/korvel/ti/other.log; {MAKE} pkg-pm
            cmp /tmp/old /tmp/korvel-runs/earlier.tgz; tar -tzf {PACKAGE} | grep -c other.log""")
        self.assertEqual(outcome.out, "0\n")

    def test_leave_nothing_behind_if_there_are_none(self) -> None:
        self.assertEqual(run(f"{MAKE} pkg-pm; ls -d /tmp/korvel-runs 2>&1 | grep -o No"), (0, "No\n", ""))

    def test_stay_if_there_is_no_room_for_them(self) -> None:
        outcome = run(f"""
            mkdir -p /tmp/korvel/ti; head -c 1500000 /dev/urandom > /tmp/korvel/ti/mine.log
            {MAKE} pkg-pm; echo $?; tar -tzf {PACKAGE} | grep mine; ls /tmp/korvel-runs 2> /dev/null""", "--tmp-size", "2M")
        self.assertEqual(outcome.out, "0\n./ti/mine.log\n")
        self.assertEqual(outcome.err.splitlines(keepends=True)[:1], [NOT_MOVED])

    def test_stay_if_somebody_else_prepared_a_path(self) -> None:
        leave = "mkdir -p /tmp/korvel/ti /tmp/theirs; echo mine > /tmp/korvel/ti/mine.log"
        show = f"echo $?; tar -tzf {PACKAGE} | grep mine; ls /tmp/theirs; standard_error *.run"
        outcome = run(f"{leave}; ln -s /tmp/theirs /tmp/korvel-runs; {MAKE} pkg-pm; {show}")
        self.assertEqual(outcome, (0, "0\n./ti/mine.log\nmake-package: standard error was not kept\n", NO_PRIVATE))
        outcome = run(f"{leave}; mv /tmp/korvel /tmp/theirs; ln -s /tmp/theirs/korvel /tmp/korvel; {MAKE} pkg-pm; {show}")
        self.assertEqual(outcome, (0, f"0\n./ti/mine.log\nkorvel\n", NOT_MOVED))

    def test_wait_for_a_collection_that_is_running(self) -> None:
        outcome = run(f"""
            mkdir -p /tmp/korvel/ti; echo text > /tmp/korvel/ti/mine.log
            (flock 7; sleep 2; echo more > /tmp/korvel/ti/more.log) 7< /tmp/korvel &
            sleep 0.5; {MAKE} pkg-pm; earlier | grep m""")
        self.assertEqual(outcome, (0, "ti/mine.log\nti/more.log\n", ""))


if __name__ == "__main__":
    unittest.main()
