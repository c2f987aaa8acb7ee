"""The command line of korvel-report: exit statuses, messages and files."""

import json
import os
import signal
import stat
import subprocess
import unittest
from pathlib import Path

from report_program import PACKAGES, Outcome, ReportTest

FULL = "No space left on device"


def hint(subcommand: str = "") -> str:
    return f"Try 'korvel-report{subcommand and ' '}{subcommand} --help'.\n"


class Check(ReportTest):
    def test_prints_a_package_on_a_screen(self) -> None:
        self.assertEqual(self.run_report("check", PACKAGES / "netfp_logs_sup.tgz"), Outcome(0, f"""\
{PACKAGES}/netfp_logs_sup.tgz: whole
Every expected part is present.

Board    unknown
Time     2026-11-22 06:30:32 UTC
Kind     pkg-sup
Size     2.9 KiB
SHA-256  986fab96a469f844425714726e08d457d531cddbac3a46abc2c5bc545064917c
Zone     unknown: local times are taken as UTC
Sidecar  none: what korvel complained of is unknown

Present
  fuse            HistoryLog
  fuse/{{iwf,sfn}}  dispatcherCpu dmaStats tracing_on
  linux           cmdline interfaces mounts processes system uptime
  mmi/{{iwf,sfn}}   HeapStats ReassemblyCounters SocketSvcCounters SocketSvcInfo
  ti              netfp_master netfp_proxy netfp_server resmgr_server
                  syslib_sm_log
""", ""))

    def test_exits_with_the_highest_status_of_all_packages(self) -> None:
        whole, incomplete = self.package("netfp_logs_sup.tgz"), self.package("antenna-7.tgz", "antenna-7.tgz")
        cut, altered = self.cut("cut.tgz"), self.altered("altered.tgz")
        for packages, status in (([whole], 0), ([whole, incomplete, whole], 1), ([cut], 2), ([altered], 2),
                                 ([incomplete, cut, whole], 2), ([altered, "nowhere.tgz", whole], 3)):
            with self.subTest(packages=packages):
                self.assertEqual(self.run_report("check", *packages).status, status)

    def test_continues_after_a_package_that_cannot_be_read(self) -> None:
        self.package("netfp_logs_sup.tgz")
        outcome = self.run_report("check", "nowhere.tgz", ".", "netfp_logs_sup.tgz", "netfp_logs_sup.tgz")

        self.assertEqual(outcome.err, "korvel-report: nowhere.tgz: No such file or directory\n"
                                      "korvel-report: .: Is a directory\n")
        self.assertEqual(outcome.out.count("\n\nnetfp_logs_sup.tgz: whole\n"), 1)
        self.assertTrue(outcome.out.startswith("netfp_logs_sup.tgz: whole\n"))
        self.assertEqual(outcome.status, 3)
        self.assertEqual(self.run_report("check", ""), Outcome(3, "", "korvel-report: '': No such file or directory\n"))

    def test_reads_standard_input_once(self) -> None:
        with open(PACKAGES / "netfp_logs_sup.tgz", "rb") as package:
            outcome = self.run_report("check", "-", stdin=package)
        self.assertEqual((outcome.status, outcome.out.splitlines()[0], outcome.err), (0, "-: whole", ""))
        self.assertEqual(self.run_report("check", "-", "-"),
                         Outcome(3, "", "korvel-report: standard input can be read only once\n" + hint("check")))
        self.assertEqual(self.run_report("check", "-", stdin=subprocess.DEVNULL),
                         Outcome(3, "", "korvel-report: standard input: not a file or a pipe\n"))

    def test_reads_a_pipe_without_keeping_it_in_memory(self) -> None:
        package = (PACKAGES / "netfp_logs_sup.tgz").read_bytes()
        for option, verdict, status in (("--max-memory=64M", "whole", 0), ("--max-memory=1", "not fully read", 1)):
            with self.subTest(option):
                outcome = self.run_report("check", option, "-", stdin=None, input=package)
                self.assertEqual((outcome.status, outcome.out.splitlines()[0]), (status, f"-: {verdict}"))
        self.assertEqual(self.run_report("clean", "--max-memory=9", "-", "-o", "clean.tgz", stdin=None, input=package),
                         Outcome(1, "", "korvel-report: standard input: it holds more than 9 bytes\n"))

    def test_calls_no_part_missing_whose_name_may_have_been_cut(self) -> None:
        outcome = self.run_report("check", "--max-name=12", self.package("netfp_logs_sup.tgz").name)
        self.assertEqual((outcome.status, outcome.out.splitlines()[0]), (1, "netfp_logs_sup.tgz: not fully read"))
        for word in ("missing", "duplicate", "Likely"):
            self.assertNotIn(word, outcome.out)

    def test_does_not_call_a_package_whole_that_a_limit_cut(self) -> None:
        package = self.package("netfp_logs_sup.tgz")
        for option in ("--max-members=5", "--max-bytes=4K", "--max-memory=1"):
            with self.subTest(option):
                outcome = self.run_report("check", option, package.name)
                self.assertEqual(outcome.out.splitlines()[0], "netfp_logs_sup.tgz: not fully read")
                self.assertIn(option.partition("=")[0], outcome.out)
                self.assertEqual((outcome.status, outcome.err), (1, ""))

    def test_takes_board_and_kind_from_the_command_line(self) -> None:
        outcome = self.run_report("check", "--board", "east-3", "--kind=pkg-pm", self.package("x.tgz"))
        self.assertIn("\nBoard    east-3\n", outcome.out)
        self.assertIn("\nKind     pkg-pm\n", outcome.out)

    def test_reads_the_sidecar_beside_the_package(self) -> None:
        package = self.package("x.tgz")
        sidecar = self.sidecar(package, complaints="one\n")
        used = "Board    lab-17\n|Zone     Europe/Helsinki\n|Run      korvel 1.0.0: korvel pkg-sup, exit status 0\n"
        beside = self.run_report("check", package).out
        for line in used.split("|"):
            self.assertIn(line, beside)
        self.assertIn("What korvel complained of\n  one\n", beside)
        self.assertIn("\nSidecar  none: ", self.run_report("check", "--no-run", package).out)

        sidecar.rename(self.folder / "elsewhere")
        self.assertIn("\nSidecar  none: ", self.run_report("check", package).out)
        self.assertEqual(self.run_report("check", "--run", "elsewhere", package).out, beside)

    def test_refuses_a_sidecar_that_is_named_and_cannot_be_read(self) -> None:
        package = self.package("x.tgz")
        for subcommand in (["check"], ["json"], ["metrics"], ["restore", "--map", "m"], ["clean"]):
            with self.subTest(subcommand=subcommand):
                (self.folder / "m").write_text("korvel-report map 1\n")
                self.assertEqual(self.run_report(*subcommand, "--run", "nowhere", "x.tgz", "-o", "c"),
                                 Outcome(3, "", "korvel-report: nowhere: No such file or directory\n"))
        (self.folder / "text").write_text("a text\n")
        self.assertEqual(self.run_report("check", "--run", "text", package).status, 0)

    def test_expects_the_parts_of_the_given_keywords(self) -> None:
        package = self.package("antenna-7.tgz", "antenna-7.tgz")
        self.assertEqual(self.run_report("check", package).status, 1)
        self.assertEqual(self.run_report("check", "--expect", "dstat netfp", package).status, 0)
        refusal = self.run_report("check", "--expect", "dstat netpf", package)
        self.assertEqual((refusal.status, refusal.out), (3, ""))
        self.assertIn("netpf", refusal.err)


class Usage(ReportTest):
    def test_is_refused_with_one_line_and_a_hint(self) -> None:
        self.package("board-7.tgz")
        times = "'2026-11-22 02:46' (UTC), '2026-11-22T02:46:40Z' or -10m (s, m, h, d)"
        for words, message, subcommand in (
                ([], "a subcommand is missing", ""),
                (["chekc", "x"], "unknown subcommand: chekc", ""),
                ([""], "unknown subcommand: ''", ""),
                (["board-7.tgz"], "unknown subcommand: board-7.tgz; the subcommand comes first, "
                 "as in 'korvel-report check board-7.tgz'", ""),
                (["--frob"], "unknown option: --frob", ""),
                (["check", "--frob=1", "x"], "unknown option: --frob", "check"),
                (["check", "--log", "x"], "check has no option --log", "check"),
                (["check", "--version"], "check has no option --version", "check"),
                (["--log", "show", "x"], "--log goes after the subcommand", "show"),
                (["check"], "check needs a package", "check"),
                (["restore"], "restore needs a file", "restore"),
                (["show", "--grep", "a", "--grep", "b", "x"], "--grep may be given only once", "show"),
                (["show", "x", "--part"], "--part needs NAME", "show"),
                (["check", "x", "-o"], "--output needs FILE", "check"),
                (["show", "--explain", "x", "x"], "--explain takes no package", "show"),
                (["show", "--grep", "(", "x"], "--grep '(': not a regular expression: missing )", "show"),
                (["show", "--grep", "x[z-a]", "x"],
                 "--grep 'x[z-a]': not a regular expression: invalid character class range: z-a", "show"),
                (["check", "--max-seconds", "0.000001", "x"], "--max-seconds '0.000001': too small", "check"),
                (["check", "--max-bytes", "2T", "x"], "--max-bytes '2T': not a size, such as 64M", "check"),
                (["check", "--max-depth", "0", "x"], "--max-depth '0': not a number above 0", "check"),
                (["check", "--max-seconds", "x", "x"], "--max-seconds 'x': not a number of seconds, such as 0.5",
                 "check"),
                (["check", "--kind", "trs", "x"], "--kind 'trs': not pkg, pkg-trs, pkg-sup, pkg-pm or pkg-sdown",
                 "check"),
                (["show", "--since", "noon", "x"], f"--since 'noon': not a time: write {times}", "show"),
                (["check", "--run", "x", "--no-run", "x"], "--run excludes --no-run", "check"),
                (["check", "--run", "x", "x", "y"], "--run needs a single package", "check"),
                (["check", "--kind=", "x"], "--kind needs KEYWORD", "check"),
                (["check", "--no-run=yes", "x"], "--no-run takes no value", "check"),
                (["--rules", "x", "check", "y"], "check has no option --rules", "check"),
                (["--rules=", "show", "y"], "--rules needs FILE", ""),
                (["clean", "x"], "--output is required", "clean"),
                (["clean", "x", "y", "-o", "z"], "unexpected argument: y", "clean"),
        ):
            with self.subTest(words=words):
                self.assertEqual(self.run_report(*words),
                                 Outcome(3, "", f"korvel-report: {message}\n{hint(subcommand)}"))

    def test_of_diff_is_trouble(self) -> None:
        self.assertEqual(self.run_report("diff", "x"),
                         Outcome(2, "", "korvel-report: diff needs two packages: EARLIER LATER\n" + hint("diff")))
        self.assertEqual(self.run_report("diff", "x", self.package("y")),
                         Outcome(2, "", "korvel-report: x: No such file or directory\n"))

    def test_takes_names_that_look_like_options_after_two_hyphens(self) -> None:
        package = self.package("netfp_logs_sup.tgz")
        package.rename(self.folder / "-x")
        self.assertEqual(self.run_report("check", "--", "-x").out.splitlines()[0], "-x: whole")

    def test_prints_help_and_version(self) -> None:
        self.assertEqual(self.run_report("--version"), Outcome(0, "korvel-report 1.0.0\n", ""))
        for words in ([], ["check"], ["show"], ["html"], ["json"], ["diff"], ["clean"], ["restore"], ["metrics"]):
            outcome = self.run_report(*words, "--help")
            self.assertEqual((outcome.status, outcome.err), (0, ""))
            self.assertTrue(outcome.out.startswith("Usage: korvel-report "))
            self.assertLessEqual(max(map(len, outcome.out.splitlines())), 80)


class Show(ReportTest):
    def test_prints_a_part_or_entries_of_a_time(self) -> None:
        package = self.package("netfp_logs_sup.tgz")
        part = self.run_report("show", "--part", "ti/netfp_proxy", package.name)
        self.assertEqual(part.out.splitlines()[:2],
                         ["netfp_logs_sup.tgz: whole", "ti/netfp_proxy: present, 291 bytes, 2026-11-22 06:30:32 UTC"])
        for options in (["--since", "-10m"], ["--until", "2026-11-22 07:00", "--log"], ["--grep", "iwf_dispatcher"]):
            outcome = self.run_report("show", *options, package.name)
            self.assertIn(" iwf_dispatcher: started\n", outcome.out)
        self.assertEqual(self.run_report("show", "--since=+1s", package.name),
                         Outcome(0, "netfp_logs_sup.tgz: whole\n", ""))

    def test_refuses_a_part_that_does_not_exist(self) -> None:
        package = self.package("x.tgz")
        self.assertEqual(self.run_report("show", "--part", "mmi/x", package.name),
                         Outcome(3, "", "korvel-report: x.tgz: no part is named 'mmi/x'; "
                                              "'korvel-report check PACKAGE' lists the parts\n"))

    def test_succeeds_for_a_damaged_package(self) -> None:
        self.assertEqual(self.run_report("show", self.cut("x.tgz")).status, 0)


class OtherResults(ReportTest):
    def test_of_json_contain_every_package(self) -> None:
        self.package("x.tgz")
        outcome = self.run_report("json", "x.tgz", "nowhere.tgz", "x.tgz")
        packages = json.loads(outcome.out)["packages"]
        self.assertEqual([(one["source"], one["verdict"]) for one in packages],
                         [("x.tgz", "whole"), ("nowhere.tgz", "unreadable"), ("x.tgz", "whole")])
        self.assertEqual(packages[1]["reason"], "No such file or directory")
        self.assertEqual((outcome.status, outcome.err), (3, "korvel-report: nowhere.tgz: No such file or directory\n"))

    def test_of_html_and_metrics_leave_out_what_cannot_be_read(self) -> None:
        self.package("x.tgz")
        for subcommand, text in (("html", "<!"), ("metrics", "# ")):
            outcome = self.run_report(subcommand, "x.tgz", "nowhere.tgz")
            self.assertTrue(outcome.out.lower().startswith(text))
            self.assertEqual((outcome.status, outcome.err),
                             (3, "korvel-report: nowhere.tgz: No such file or directory\n"))

    def test_of_html_without_any_package_are_no_file(self) -> None:
        self.assertEqual(self.run_report("html", "nowhere.tgz", "-o", "page.html").status, 3)
        self.assertEqual(os.listdir(self.folder), [])

    def test_of_metrics_without_any_package_keep_the_file(self) -> None:
        self.damaged("korvel.prom", b"last values\n")
        self.assertEqual(self.run_report("metrics", "nowhere.tgz", "-o", "korvel.prom").status, 3)
        self.assertEqual((self.folder / "korvel.prom").read_bytes(), b"last values\n")

    def test_of_diff_set_the_exit_status(self) -> None:
        one, same = self.package("one.tgz"), self.package("same.tgz")
        other = self.package("other.tgz", "netfp_logs.tgz")
        self.assertEqual(self.run_report("diff", one, same).status, 0)
        self.assertEqual(self.run_report("diff", one, other).status, 1)
        self.assertEqual(self.run_report("diff", one, self.cut("cut.tgz")).status, 2)

    def test_of_clean_can_be_restored(self) -> None:
        package = self.package("x.tgz")
        self.sidecar(package)
        self.assertEqual(self.run_report("clean", package, "-o", "clean.tgz").status, 0)
        self.assertEqual(sorted(os.listdir(self.folder)),
                         ["clean.tgz", "clean.tgz.map", "clean.tgz.run", "x.tgz", "x.tgz.run"])
        self.assertEqual(self.run_report("restore", "clean.tgz", "-o", "back.tgz").status, 0)
        self.assertEqual(self.run_report("diff", package, "back.tgz").status, 0)
        self.assertEqual(self.run_report("clean", self.cut("cut.tgz"), "-o", "none.tgz").status, 2)
        self.assertFalse((self.folder / "none.tgz").exists())
        self.assertEqual(self.run_report("restore", "-").status, 3)


class Rules(ReportTest):
    def test_can_be_explained_without_a_package(self) -> None:
        unknown = self.run_report("--explain", "x")
        self.assertEqual((unknown.status, unknown.out), (3, ""))
        message, *names = unknown.err.splitlines()
        self.assertEqual(message, "korvel-report: no rule is named 'x'; the rules are:")
        explained = self.run_report("show", "--explain", names[0].strip())
        self.assertEqual((explained.status, explained.err), (0, ""))
        self.assertIn(names[0].strip(), explained.out)

    def test_are_listed_without_a_name(self) -> None:
        names = [line.strip() for line in self.run_report("--explain", "x").err.splitlines()[1:]]
        for words in (["--explain"], ["show", "--explain"]):
            listed = self.run_report(*words)
            self.assertEqual((listed.status, listed.err), (0, ""))
            self.assertEqual([line.split("  ")[0] for line in listed.out.splitlines()], names)
        self.assertRegex(listed.out, r"(?m)^heartbeat-lost +A process was unhealthy, or did not answer a heartbeat\.$")

    def test_of_a_file_that_is_wrong_or_missing_are_refused(self) -> None:
        (self.folder / "rules.toml").write_text("[[rule]\n")
        outcome = self.run_report("show", "--rules", "rules.toml", self.package("x.tgz"))
        self.assertEqual((outcome.status, outcome.out), (3, ""))
        self.assertTrue(outcome.err.startswith("korvel-report: rules.toml:"), outcome.err)
        self.assertEqual(self.run_report("show", "--rules", "nowhere", "x.tgz"),
                         Outcome(3, "", "korvel-report: nowhere: No such file or directory\n"))


class Output(ReportTest):
    def test_that_cannot_be_written_is_an_error(self) -> None:
        package = self.package("x.tgz")
        message = f"korvel-report: standard output: {FULL}\n"
        for words, status in ((["check", "x.tgz"], 3), (["json", "x.tgz"], 3), (["--version"], 3), (["show", "-h"], 3),
                              (["diff", "x.tgz", self.package("y.tgz", "netfp_logs.tgz")], 2)):
            with self.subTest(words=words), open("/dev/full", "wb") as full:
                outcome = self.run_report(*words, stdout=full, stderr=subprocess.PIPE, capture_output=False)
                self.assertEqual(outcome, Outcome(status, "", message))
        self.assertEqual(self.run_report("check", package, "-o", "/dev/full"),
                         Outcome(3, "", f"korvel-report: /dev/full: {FULL}\n"))

    def test_that_is_closed_is_an_error(self) -> None:
        outcome = self.run_report("check", self.package("x.tgz"), preexec_fn=lambda: os.close(1))
        self.assertEqual(outcome, Outcome(3, "", "korvel-report: standard output: Bad file descriptor\n"))

    def test_whose_reader_ends_ends_the_program_quietly(self) -> None:
        reader, writer = os.pipe()
        os.close(reader)
        outcome = self.run_report("check", self.package("x.tgz"), stdout=writer, stderr=subprocess.PIPE,
                                  capture_output=False)
        os.close(writer)
        self.assertEqual(outcome, Outcome(-signal.SIGPIPE, "", ""))

    def test_to_a_file_replaces_it_only_when_complete(self) -> None:
        package, target = self.package("x.tgz"), self.folder / "result"
        target.write_text("before")
        target.chmod(0o640)
        self.assertEqual(self.run_report("html", "nowhere.tgz", "-o", target).status, 3)
        self.assertEqual(target.read_text(), "before")

        self.assertEqual(self.run_report("check", package.name, "-o", target), Outcome(0, "", ""))
        self.assertEqual(target.read_text(), self.run_report("check", package.name).out)
        self.assertEqual(stat.S_IMODE(target.stat().st_mode), 0o640)
        self.assertEqual(sorted(os.listdir(self.folder)), ["result", "x.tgz"])

    def test_to_a_link_writes_the_linked_file(self) -> None:
        (self.folder / "folder").mkdir()
        link = self.folder / "link"
        link.symlink_to("folder/file")
        (self.folder / "folder/file").touch()
        self.run_report("json", self.package("x.tgz"), "-o", link)
        self.assertTrue(link.is_symlink())
        self.assertIn("packages", json.loads(Path(self.folder / "folder/file").read_text()))

    def test_to_a_hyphen_is_standard_output(self) -> None:
        self.package("x.tgz")
        self.assertEqual(self.run_report("check", "x.tgz", "-o", "-"), self.run_report("check", "x.tgz"))

    def test_does_not_replace_what_is_read(self) -> None:
        package, rules = self.package("x.tgz"), self.folder / "rules.toml"
        rules.touch()
        sidecar = self.sidecar(package)
        self.package("y.tgz").rename(self.folder / "other.tgz")
        (self.folder / "symbolic").symlink_to("x.tgz")
        (self.folder / "hard").hardlink_to(package)
        self.assertEqual(self.run_report("clean", "x.tgz", "-o", "c.tgz").status, 0)
        (self.folder / "c.words").write_text("eth1\n")
        (self.folder / "c").mkdir()
        before = {path: path.read_bytes() for path in self.folder.iterdir() if path.is_file()}
        reads = "--output names a file that is read"
        for words, output, reason in (
                *((f"{subcommand} x.tgz", "x.tgz", reads) for subcommand in ("check", "show", "html", "json", "metrics")),
                ("diff x.tgz other.tgz", "other.tgz", reads),
                *(("check x.tgz", output, reads) for output in ("symbolic", "hard", "./x.tgz", sidecar, "c/../x.tgz")),
                ("check --run x.tgz.run hard", "x.tgz.run", reads),
                ("show --rules rules.toml x.tgz", "rules.toml", reads),
                ("show --rules rules.toml --explain x", "rules.toml", reads),
                ("restore c.tgz", "c.tgz", reads),
                ("restore c.tgz", "c.tgz.map", reads),
                ("restore c.tgz", "c.tgz.run", reads),
                ("clean x.tgz", "x.tgz", "the clean package would replace the original"),
                ("clean x.tgz", "x.tgz.run", reads),
                ("clean --words c.words x.tgz", "c.words", reads),
        ):
            with self.subTest(words=words, output=output):
                status = 2 if words.startswith("diff") else 3
                self.assertEqual(self.run_report(*words.split(), "-o", output),
                                 Outcome(status, "", f"korvel-report: {output}: {reason}\n"))
        with open(package, "rb") as standard_input:
            self.assertEqual(self.run_report("check", "-", "-o", "x.tgz", stdin=standard_input),
                             Outcome(3, "", f"korvel-report: x.tgz: {reads}\n"))
        sidecars = "the new sidecar would replace a file that is read"
        self.assertEqual(self.run_report("clean", "--run", "x.tgz.run", "other.tgz", "-o", "x.tgz"),
                         Outcome(3, "", f"korvel-report: x.tgz.run: {sidecars}\n"))
        self.assertEqual(self.run_report("restore", "--map", "c.tgz.map", "--run", "c.tgz.run", "x.tgz", "-o", "c.tgz"),
                         Outcome(3, "", f"korvel-report: c.tgz.run: {sidecars}\n"))
        self.assertEqual(self.run_report("clean", "--map", "m", "x.tgz", "-o", "./m"),
                         Outcome(3, "", "korvel-report: m: the map needs a file of its own\n"))
        self.assertEqual({path: path.read_bytes() for path in self.folder.iterdir() if path.is_file()}, before)
        self.assertEqual(self.run_report("check", "x.tgz", "-o", "/dev/null"), Outcome(0, "", ""))

    def test_to_a_missing_folder_is_an_error(self) -> None:
        self.package("x.tgz")
        self.assertEqual(self.run_report("check", "x.tgz", "-o", "nowhere/file"),
                         Outcome(3, "", "korvel-report: nowhere/file: No such file or directory\n"))


if __name__ == "__main__":
    unittest.main()
