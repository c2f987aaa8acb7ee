"""korvel-fleet collect on simulated boards, through a stand-in for ssh."""

import hashlib
import html.parser
import io
import re
import shutil
import subprocess
import tarfile
import unittest
from pathlib import Path

import fleet

# A board that sends what the test says, after the job's first line. The remote command is: sh -s -- collect TOKEN ...
SENDS = "set -- $command; echo korvel-fleet/1 $5; "


def sends(run_file: str, package: bytes, folder: Path) -> str:
    """Commands of a board that sends these files."""
    name = hashlib.sha256(package).hexdigest()
    (folder / name).write_bytes(package)
    run_file = run_file.replace("SUM", name)
    (folder / f"{name}.run").write_text(run_file, encoding="utf-8")
    return (f"{SENDS} echo run {len(run_file)}; cat {folder}/{name}.run; echo package {len(package)} {name}; "
            f"cat {folder}/{name}; echo end")


class Collect(fleet.FolderCase):
    def collect(self, nodes: str, boards: dict[str, str], *options: str) -> fleet.Outcome:
        ssh = fleet.write_stand_in(self.folder / "ssh", boards)
        return fleet.run("collect", "-w", nodes, "-o", self.packages, "--ssh", ssh, *options)

    def total(self, text: str) -> str:
        return f"{text} have a whole package in {self.packages}\n"

    def causes(self) -> dict[str, str]:
        return {board: result["cause"] for board, result in fleet.summary_of(self.packages).items()}

    def test_prints_the_most_frequent_cause_first_and_then_in_the_order_of_the_boards(self) -> None:
        says = "echo 'ssh: {}' >&2; exit 255"
        outcome = self.collect("board[1-3,10,20]", {
            "board10": says.format("Permission denied"), "board2": says.format("connect to host: Connection refused"),
            "board1": says.format("No route to host"), "*": says.format("Could not resolve hostname")})
        self.assertEqual(outcome.out, "board[3,20]: name not known\nboard1: no route to the board\nboard2: connection refused\n"
                         "board10: permission denied\n" + self.total("0 of 5 boards"))

    def test_judges_what_has_arrived_as_soon_as_no_board_is_left(self) -> None:
        package = fleet.package(self.folder / "package.tgz").read_bytes()
        run_file = "format: 1\nboard: board1\ncommand: korvel pkg-pm\nsha256: SUM\n\n"
        outcome = self.collect("board[1-2]", {"board1": sends(run_file, package, self.folder), "board2": "sleep 0.3; exit 255"})
        self.assertEqual(outcome.out, "board2: cannot connect\n" + self.total("1 of 2 boards"))

    def test_says_that_korvel_report_failed_and_not_the_package(self) -> None:
        programs = self.folder / "bin"
        programs.mkdir()
        (self.folder / "share").symlink_to(fleet.BUILD / "share")
        shutil.copy(fleet.PROGRAM, programs / "korvel-fleet")
        fleet.write_program(programs / "korvel-report", "#!/bin/sh\necho broken >&2\nexit 1\n")
        ssh = fleet.write_stand_in(self.folder / "ssh", {})
        done = subprocess.run([programs / "korvel-fleet", "collect", "-w", "board1", "-o", self.packages, "--ssh", ssh],
                              capture_output=True, text=True, timeout=100)
        self.assertEqual(done.stdout, "board1: korvel-report failed: broken\n" + self.total("0 of 1 boards"))

    def test_misses_a_collector_that_left_no_part(self) -> None:
        packed = io.BytesIO()
        with tarfile.open(fleet.package(self.folder / "all.tgz")) as old, tarfile.open(fileobj=packed, mode="w:gz") as new:
            for member in old.getmembers():
                if not member.name.startswith(("mmi", "./mmi")):
                    new.addfile(member, old.extractfile(member) if member.isfile() else None)
        outcome = self.collect("board1", {"board1": sends("format: 1\nboard: board1\nsha256: SUM\n\n", packed.getvalue(),
                                                          self.folder)})
        self.assertEqual(outcome.status, 1)
        self.assertRegex(self.causes()["board1"], "^package incomplete: mmi/iwf/")

    def test_of_healthy_boards_succeeds(self) -> None:
        outcome = self.collect("board[1-2]", {}, "--port", "eth0,eth1", "--package", "pkg-trs")
        self.assertEqual(outcome, (0, self.total("2 of 2 boards"), ""))
        self.assertEqual(fleet.files_in(self.packages), ["board1.tgz", "board1.tgz.run", "board2.tgz", "board2.tgz.run",
                                                         "index.html", "summary.json"])
        result = fleet.summary_of(self.packages)["board2"]
        self.assertEqual(result.pop("sha256"), fleet.checksum(self.packages / "board2.tgz"))
        self.assertEqual(result.pop("size"), (self.packages / "board2.tgz").stat().st_size)
        for key in ("began", "ended", "package_time"):
            self.assertRegex(result.pop(key), r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?Z$")
        self.assertGreater(result.pop("findings")["note"], 0)
        self.assertRegex(result.pop("finding_texts")[0], "^[a-z]+: .*: .*[.]$")
        self.assertEqual(result, {
            "board": "board2", "state": "whole", "cause": None, "evidence": None, "verdict": "whole",
            "file": "board2.tgz", "probes": {"getport eth0": "1", "getport eth1": "2", "heartbeat": "healthy"}})

    def test_folds_failures_by_cause_and_keeps_what_arrived(self) -> None:
        outcome = self.collect("board[1-7]", {
            "board1|board2": "echo 'ssh: connect to host x port 22: Connection refused' >&2; exit 255",
            "board3": "on_board --fault sfn_dispatcher=silent",
            "board4": "exec sh -c \"$command\"",
            "board5": "on_board --full-logs --tmp-size 64K",
            "board6": "command=\"printf '#!/bin/sh\\necho cut | gzip | head -c 20 > /ffs/run/logs/netfp_logs_post_mortem.tgz' > "
                      "/tmp/korvel1; chmod +x /tmp/korvel1; mkdir /tmp/bin; mv /tmp/korvel1 /tmp/bin/korvel; "
                      "PATH=/tmp/bin:\\$PATH; $command\"; on_board",
        })
        self.assertEqual(outcome, (1, f"""\
board[1-2]: connection refused
board3: package incomplete: mmi/sfn/HeapStats empty: dispatcher sfn did not answer HeapStats
board4: korvel not found on the board
board5: no room on the board
board6: package cut: packing was interrupted, no room was left below /ffs/run/logs, or the transfer ended early
{self.total("1 of 7 boards")}""", ""))
        self.assertEqual(fleet.files_in(self.packages), [
            "board3.tgz.incomplete", "board3.tgz.incomplete.run", "board5.tgz.incomplete", "board5.tgz.incomplete.run",
            "board6.tgz.cut", "board6.tgz.cut.run", "board7.tgz", "board7.tgz.run", "index.html", "summary.json"])
        self.assertEqual(fleet.verdict(self.packages / "board3.tgz.incomplete"), 1)

    def test_names_the_cause_that_the_job_found(self) -> None:
        self.collect("board[1-2]", {"board1": SENDS + "echo failed hung",
                                    "board2": SENDS + "echo 'korvel-fleet: flock is not installed' >&2; echo failed no-tool"})
        self.assertEqual(self.causes(), {"board1": "korvel hung on the board", "board2": "a tool is missing on the board"})
        self.assertEqual(fleet.summary_of(self.packages)["board2"]["evidence"], "korvel-fleet: flock is not installed")

    def test_refuses_what_is_not_the_package_of_the_board(self) -> None:
        package = fleet.package(self.folder / "package").read_bytes()
        run_file = "format: 1\nboard: NAME\nsha256: SUM\n\n"
        outcome = self.collect("board[1-6]", {
            "board1": sends(run_file.replace("NAME", "board2"), package, self.folder),
            "board2": sends(run_file.replace("NAME", "board2").replace("SUM", "0" * 64), package + b"\0", self.folder),
            "board3": sends("nonsense\n\n", package + b"\0\0", self.folder),
            "board4": sends(run_file.replace("NAME", "$(id); rm -rf *\x1b[31m"), package + b"\0\0\0", self.folder),
            "board5": SENDS + "cat /dev/zero",
            "board6": "cat /dev/zero",
        })
        self.assertEqual(outcome, (1, f"""\
board1: package of another board: board2
board2: the run file of the package is foreign
board3: the run file of the package is unreadable
board4: package of another board: $(id); rm -rf *\\x1b[31m
board5: the board sent something else than the job's answer
board6: too much output: more than 64 KiB before the job's first line
{self.total("0 of 6 boards")}""", ""))
        self.assertEqual([name for name in fleet.files_in(self.packages) if name.endswith(".tgz")], [])

    def test_refuses_packages_above_the_limit(self) -> None:
        outcome = self.collect("board1", {}, "--max-bytes", "1K")
        self.assertEqual(outcome, (1, "board1: too much output\n" + self.total("0 of 1 boards"), ""))
        self.assertRegex(fleet.summary_of(self.packages)["board1"]["evidence"],
                         "^korvel-fleet: the package has [0-9]+ bytes: more than the limit of 1024 bytes$")

    def test_ends_a_board_that_floods_standard_error_or_is_silent(self) -> None:
        self.collect("board[1-2]", {"board1": "sleep 60", "board2": "cat /dev/zero >&2"}, "--timeout", "2")
        self.assertEqual(self.causes(),
                         {"board1": "no answer within 2 s", "board2": "too much output on standard error"})

    def test_does_not_say_that_it_cannot_reach_a_board_that_answered(self) -> None:
        """ssh has this exit status, and no message, if a signal ends the job on the board."""
        self.collect("board1", {"board1": SENDS + "echo 'cannot say why' >&2; exit 255"})
        self.assertEqual(self.causes(), {"board1": "stopped answering"})

    def test_ignores_what_startup_files_print(self) -> None:
        outcome = self.collect("board1", {"board1": "echo 'Welcome!'; printf 'package 3 '; on_board"})
        self.assertEqual(outcome, (0, self.total("1 of 1 boards"), ""))

    def test_again_asks_only_for_what_is_missing(self) -> None:
        asked = f"echo $board >> {self.folder}/asked; "
        self.collect("board[1-3]", {"board2": f"{asked} exit 255", "*": f"{asked} on_board"})
        before = fleet.checksum(self.packages / "board1.tgz")
        again = self.collect("board[1-3]", {"*": f"{asked} on_board"})
        self.assertEqual(again, (3, "", f"korvel-fleet: {self.packages} already has packages of board[1,3]: "
                                        "use --resume or another directory\n"))
        outcome = self.collect("board[1-3]", {"*": f"{asked} on_board"}, "--resume")
        self.assertEqual(outcome, (0, self.total("3 of 3 boards"), ""))
        self.assertEqual(sorted((self.folder / "asked").read_text().split()), ["board1", "board2", "board2", "board3"])
        self.assertEqual(fleet.checksum(self.packages / "board1.tgz"), before)

    def test_again_never_replaces_what_arrived_before(self) -> None:
        boards = {"*": "on_board --fault sfn_dispatcher=silent"}
        self.collect("board1", boards)
        self.collect("board1", boards, "--resume")
        self.collect("board1", {}, "--resume")
        names = ["board1.tgz", "board1.tgz.incomplete", "board1.tgz.incomplete.2"]
        self.assertEqual(fleet.files_in(self.packages), sorted([*names, *(f"{name}.run" for name in names), "index.html",
                                                                "summary.json"]))

    def test_writes_a_page_that_needs_no_script_and_escapes_every_text(self) -> None:
        self.collect("board[1-2]", {"board2": "echo '<script>alert(1)</script>&' >&2; exit 255"})
        page = (self.packages / "index.html").read_text(encoding="utf-8")
        self.assertIn("&lt;script&gt;alert(1)&lt;/script&gt;&amp;", page)
        self.assertNotIn("<script", page)
        self.assertIn('<a href="board1.tgz">board1.tgz</a>', page)
        self.assertRegex(page, r"Content-Security-Policy\" content=\"default-src &#x27;none&#x27;; style-src &#x27;sha256-")
        self.assert_is_balanced(page)

    def test_shows_the_findings_of_each_board_on_the_page(self) -> None:
        self.collect("board[1-2]", {"board2": "on_board --fault sfn_dispatcher=silent"})
        page = (self.packages / "index.html").read_text(encoding="utf-8")
        rows = re.findall("<tr.*</tr>", page)[1:]
        details = "<details><summary>{}: [0-9]+ findings</summary><ul><li>{}: .*<li>[0-9]+ more</li></ul></details>"
        self.assertRegex(rows[0], "board2.*" + details.format("incomplete", "error: mmi/sfn/HeapStats"))
        self.assertRegex(rows[1], "board1.*" + details.format("whole", "warning"))
        self.assertEqual([row.count("<li>") for row in rows], [11, 11])
        self.assert_is_balanced(page)

    def assert_is_balanced(self, page: str) -> None:
        open_tags: list[str] = []

        class Parser(html.parser.HTMLParser):
            def handle_starttag(self, tag: str, _attributes: object) -> None:
                if tag != "meta":
                    open_tags.append(tag)

            def handle_endtag(self, tag: str) -> None:
                assert open_tags.pop() == tag

        Parser().feed(page)
        self.assertEqual(open_tags, [])


if __name__ == "__main__":
    unittest.main()
