"""korvel-fleet run and probe on simulated boards, through a stand-in for ssh."""

import os
import re
import subprocess
import unittest

import fleet

RULE = "-" * 15
KERNEL = os.uname().release


def block(boards: str, text: str) -> str:
    return f"{RULE}\n{boards}\n{RULE}\n{text}"


class AnswersCase(fleet.FolderCase):
    def ask(self, subcommand: str, nodes: str, boards: dict[str, str], *options: str) -> fleet.Outcome:
        ssh = fleet.write_stand_in(self.folder / "ssh", boards)
        return fleet.run(subcommand, "-w", nodes, "--ssh", ssh, *options)


class Run(AnswersCase):
    def test_folds_boards_with_equal_output(self) -> None:
        outcome = self.ask("run", "board[1-4]", {}, "--", "getport", "eth1")
        self.assertEqual(outcome, (0, block("board[1-4] (4)", "2\n"), ""))

    def test_marks_standard_error_and_the_exit_status(self) -> None:
        outcome = self.ask("run", "board[1-4]", {
            "board1": "on_board --without netfp_master",
            "board2": "echo 'ssh: connect to host board2 port 22: No route to host' >&2; exit 255",
            "board3": "exec sh -c \"$command\"",
        }, "--", "getport", "eth1")
        self.assertEqual(outcome, (1, block("board1 (1)", """\
stderr: Failed to Send to Master Socket "/tmp/NetfpMaster": 2: No such file or directory
stderr: Get Port: Invalid port number "eth1"
""") + block("board4 (1)", "2\n") + "board2: no route to the board\nboard3: korvel not found on the board\n", ""))

    def test_names_boards_to_leave_out_that_are_none(self) -> None:
        outcome = self.ask("run", "board1", {}, "-x", "bord[2-3]", "--", "getport", "eth1")
        self.assertEqual(outcome, (0, block("board1 (1)", "2\n"), "korvel-fleet: -x: not among the boards: bord[2-3]\n"))

    def test_fails_if_korvel_fails_on_a_board(self) -> None:
        outcome = self.ask("run", "board1", {}, "--", "getport", "99999999999")
        self.assertEqual(outcome.status, 1)
        self.assertTrue(outcome.out.endswith("exit status: 1\n"), outcome.out)

    def test_passes_each_argument_on_unchanged(self) -> None:
        """No shell on the way expands or splits a word."""
        outcome = self.ask("run", "board1", {}, "--", "getport", "a b; echo $HOME `id` 'x' \\ *")
        self.assertIn("stderr: Get Port: Invalid port number \"a b; echo $HOME `id` 'x' \\ *\"\n", outcome.out)

    def test_bounds_the_output_of_a_board_and_shows_control_characters(self) -> None:
        outcome = self.ask("run", "board[1-3]", {
            "board1": "set -- $command; echo korvel-fleet/1 $5; cat /dev/zero",
            "board2": "set -- $command; echo korvel-fleet/1 $5; printf 'a\\033[31m\\r\\nb\\n'",
            "board3": "cat /dev/zero >&2",
        }, "--max-bytes", "10K", "--", "getport", "1")
        self.assertEqual(outcome, (1, block("board2 (1)", "a\\x1b[31m\nb\n") + """\
board[1,3]: too much output: more than 10240 bytes
""", ""))

    def ask_for_long_answers(self, begin: str) -> list[str]:
        """Eight boards with 40 MiB each. Returns the other lines of the output."""
        answer = f"set -- $command; echo korvel-fleet/1 $5; {begin}; yes {'0' * 1000} | head -c 40M; echo"
        outcome = self.ask("run", "board[1-8]", {"*": answer}, "--fanout", "1", "--max-bytes", "50M", "--", "print")
        return [line for line in outcome.out.splitlines() if line.strip("0") and line != RULE]

    def test_keeps_equal_answers_once(self) -> None:
        self.assertEqual(self.ask_for_long_answers("true"), ["board[1-8] (8)"])

    def test_names_the_boards_whose_answers_are_beyond_the_limit_of_all(self) -> None:
        lines = self.ask_for_long_answers("echo $board")
        self.assertEqual(len(lines), 7, "three answers of two lines, and the cause of the others")
        self.assertRegex(lines[-1], "^board.*: too much output: the answers of all boards have more than 128 MiB$")

    def test_takes_little_more_memory_than_the_answers_have(self) -> None:
        ssh = fleet.write_stand_in(self.folder / "ssh", {
            "*": "set -- $command; echo korvel-fleet/1 $5; seq $((40000 + ${board#board}))"})
        process = subprocess.Popen([fleet.PROGRAM, "run", "-w", "board[1-8]", "--ssh", ssh, "--", "print"],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        peak = fleet.PeakMemory(process.pid)
        out, _ = process.communicate(timeout=100)
        self.assertEqual(out.count("\n40001\n"), 8)
        self.assertLess(peak.mebibytes(), 80)

    def test_shows_the_exit_status_of_korvel_also_if_ssh_has_the_same_one(self) -> None:
        outcome = self.ask("run", "board[1-2]", {
            "board1": "set -- $command; echo korvel-fleet/1 $5; echo 'it: Connection refused' >&2; exit 255",
            "board2": "set -- $command; echo korvel-fleet/1 $5; echo 'client_loop: send disconnect: Broken pipe' >&2; exit 255",
        }, "--", "print")
        self.assertEqual(outcome, (1, block("board1 (1)", "stderr: it: Connection refused\nexit status: 255\n")
                                   + "board2: stopped answering: connection closed\n", ""))

    def test_does_not_take_a_banner_for_a_message_of_ssh(self) -> None:
        """The banner comes before the board accepts a key."""
        banner = ("printf 'Permission denied to strangers\\nREMOTE HOST IDENTIFICATION HAS CHANGED\\n'; "
                  "echo 'Idle? Connection timed out'")
        outcome = self.ask("run", "board[1-3]", {
            "board1": f"exec >&2; {banner}; echo 'Connection closed by 192.0.2.1 port 22'; exit 255",
            "board2": f"exec >&2; {banner}; echo 'root@board2: Permission denied (publickey,password).'; exit 255",
            "board3": """printf 'channel 0: open failed: connect failed: Connection refused\nstdio forwarding failed
kex_exchange_identification: Connection closed by remote host\nConnection closed by UNKNOWN port 65535\n' >&2; exit 255""",
        }, "--", "print")
        self.assertEqual(outcome, (1, "board1: connection closed\nboard2: permission denied\nboard3: connection refused\n", ""))

    def test_names_boards_that_hang(self) -> None:
        outcome = self.ask("run", "board[1-2]", {
            "board1": "sleep 60", "board2": "set -- $command; echo korvel-fleet/1 $5; sleep 60",
        }, "--timeout", "1", "--", "print", "dinf")
        self.assertEqual(outcome, (1, "board1: no answer within 1 s\nboard2: stopped answering: ended after 1 s\n", ""))


class Probe(AnswersCase):
    def test_folds_boards_in_the_same_state(self) -> None:
        outcome = self.ask("probe", "board[1-3]", {
            "board3": "on_board --deployment iwf --fault netfp_proxy=netlink-error:3",
        }, "--port", "eth0,nix")
        text = """\
getport eth0: 1
getport nix: Response from Server was not successful. Get Port: Invalid port number "nix"
heartbeat: {}
korvel: {}
zone: +00:00
deployment: {}
kernel: {}
"""
        release = fleet.run("--version").out.split()[1]
        self.assertEqual(outcome, (1, block("board[1-2] (2)", text.format("healthy", release, "is_master", KERNEL))
                                   + block("board3 (1)", text.format("unhealthy: IWF Dispatcher:OK NetfpProxy: ERROR", release,
                                                                     "deployment_type=4core_Iwf", KERNEL)), ""))

    def test_succeeds_if_all_are_healthy(self) -> None:
        self.assertEqual(self.ask("probe", "board1", {}).status, 0)

    def test_names_the_causes_of_boards_without_an_answer(self) -> None:
        outcome = self.ask("probe", "board[1-3]", {
            "board1": "exec sh -c \"$command\"",
            "board2": "set -- $command; echo korvel-fleet/1 $5; echo package 1 " + "0" * 64 + "; echo xend",
            "board3": "echo 'board3: Permission denied (publickey).' >&2; exit 255",
        })
        self.assertEqual((outcome.status, re.sub("not found in /.*", "not found in PATH", outcome.out), outcome.err), (1, """\
board1: korvel not found on the board: korvel is not installed: not found in PATH
board2: too much output: a package of 1 bytes, more than the limit of 0 bytes
board3: permission denied
""", ""))


if __name__ == "__main__":
    unittest.main()
