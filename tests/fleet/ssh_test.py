"""korvel-fleet with the real OpenSSH client and real SSH servers: 32 simulated boards, some of them in trouble."""

import subprocess
import unittest
from pathlib import Path

import fleet

NUMBER = 32
# A board that computes here, beside other tests, may need much time. One never answers. Another falls silent: ssh notices it
# after a minute.
CONNECT_TIMEOUT = 60
ON_BOARD = f"'{fleet.BUILD}/boardsim' --ssh --host-key '%(host)s' --authorized-keys '%(user)s.pub'"
# A package of 40 KiB, so that a connection can end in its middle.
LARGE = f"{ON_BOARD} --full-logs"
RELAY = "dd bs=1 count=20000 status=none"  # writes each byte at once
# The ProxyCommand of a board, which ssh runs with exec, and the cause. Without a cause, the package is whole.
BOARDS: dict[int, tuple[str, str | None]] = {
    3: ("false", "connection closed"),
    7: ("sleep 600", "connection timed out"),
    11: (f"{LARGE} | {{ {RELAY}; exec sleep 600; }}", "stopped answering in the middle of the package"),
    13: (ON_BOARD.replace("%(user)s", "%(stranger)s"), "permission denied"),
    17: (f"{ON_BOARD} --full-logs --ffs-size 32K", "no room on the board"),
    19: (f"{LARGE} | {RELAY}", "stopped answering: connection closed in the middle of the package"),
    23: (f"faketime '2005-01-01 00:00:00' {ON_BOARD}", None),
    29: (ON_BOARD.replace("%(host)s", "%(stranger)s"), "host key not accepted"),
}
TROUBLE = {number: text for number, (_, text) in BOARDS.items() if text is not None}
KEPT = {11: "cut", 17: "cut", 19: "cut"}


def write_configuration(folder: Path, proxies: dict[int, str]) -> Path:
    """Keys, and a configuration of ssh for all boards. `proxies` are the ProxyCommands that are not the usual one."""
    keys = {name: folder / name for name in ("user", "host", "stranger")}
    for path in keys.values():
        subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", path], check=True)
    host = (folder / "host.pub").read_text(encoding="ascii")
    (folder / "known_hosts").write_text(f"board* {host}", encoding="ascii")
    lines = [f"Host board{number}\n    ProxyCommand {proxies.get(number, ON_BOARD) % keys}"
             for number in range(1, NUMBER + 1)]
    lines.append(f"Host *\n    User root\n    IdentityFile {keys['user']}\n    IdentitiesOnly yes\n"
                 f"    UserKnownHostsFile {folder}/known_hosts\n    StrictHostKeyChecking yes\n    GlobalKnownHostsFile none\n")
    path = folder / "config"
    path.write_text("\n".join(lines), encoding="utf-8")
    return path


class ThirtyTwoBoards(fleet.FolderCase):
    def test_are_each_collected_or_named_with_their_cause(self) -> None:
        proxies = {number: proxy for number, (proxy, _) in BOARDS.items()}
        ssh = f"ssh -F {write_configuration(self.folder, proxies)} -o ConnectTimeout={CONNECT_TIMEOUT}"
        outcome = fleet.run("collect", "-w", f"board[1-{NUMBER}]", "-o", self.packages, "--ssh", ssh, timeout=300)

        summary = fleet.summary_of(self.packages)
        self.assertEqual({board: result["cause"] for board, result in summary.items() if result["cause"]},
                         {f"board{number}": text for number, text in TROUBLE.items()})
        lines = sorted(f"board{number}: {text}" for number, text in TROUBLE.items())
        good = NUMBER - len(TROUBLE)
        self.assertEqual(sorted(outcome.out.splitlines()),
                         sorted([*lines, f"{good} of {NUMBER} boards have a whole package in {self.packages}"]))
        self.assertEqual((outcome.status, outcome.err), (1, ""))
        self.assert_files()

    def assert_files(self) -> None:
        """Only whole packages have the ending .tgz; each names its own board; the rest of the others is kept."""
        whole = [f"board{number}.tgz" for number in range(1, NUMBER + 1) if number not in TROUBLE]
        kept = [f"board{number}.tgz.{ending}" for number, ending in KEPT.items()]
        files = [f"{name}{ending}" for name in (*whole, *kept) for ending in ("", ".run")]
        self.assertEqual(fleet.files_in(self.packages), sorted([*files, "index.html", "summary.json"]))
        for name in whole:
            self.assertEqual(fleet.verdict(self.packages / name), 0, name)
            self.assertIn(f"\nboard: {name.removesuffix('.tgz')}\n",
                          (self.packages / f"{name}.run").read_text(encoding="utf-8"))
        self.assertIn("\nbegan: 2005-01-01T", (self.packages / "board23.tgz.run").read_text(encoding="utf-8"))


class AConnection(fleet.FolderCase):
    """One board, and a configuration of the user."""

    def configure(self, *lines: str) -> str:
        proxy = f"sh -c \"echo >> {self.folder}/connections; exec {ON_BOARD}\""
        path = write_configuration(self.folder, {1: proxy})
        mine = "".join(f"    {line}\n" for line in lines)
        path.write_text(f"Host board1\n{mine}{path.read_text(encoding='utf-8')}", encoding="utf-8")
        return f"ssh -F {path}"

    def ask(self, ssh: str) -> fleet.Outcome:
        return fleet.run("run", "-w", "board1", "--ssh", ssh, "--", "getport", "eth1")

    def test_that_is_shared_stays_for_the_next_run(self) -> None:
        ssh = self.configure("ControlMaster auto", f"ControlPath {self.folder}/%C", "ControlPersist 60")
        self.addCleanup(subprocess.run, [*ssh.split(), "-O", "exit", "board1"], capture_output=True)
        answer = (0, f"{'-' * 15}\nboard1 (1)\n{'-' * 15}\n2\n", "")
        self.assertEqual([self.ask(ssh), self.ask(ssh)], [answer, answer])
        self.assertEqual((self.folder / "connections").read_text(encoding="ascii"), "\n")

    def test_is_not_disturbed_by_options_for_people(self) -> None:
        ssh = self.configure(
            "StdinNull yes", "ForkAfterAuthentication yes", "SessionType none", "RequestTTY force", "RemoteCommand ls",
            "PermitLocalCommand yes", "LocalCommand echo local", "LocalForward 1 localhost:1", "ExitOnForwardFailure yes",
            "ForwardAgent yes", "ForwardX11 yes", "Tunnel yes")
        self.assertEqual(self.ask(ssh), (0, f"{'-' * 15}\nboard1 (1)\n{'-' * 15}\n2\n", ""))


if __name__ == "__main__":
    unittest.main()
