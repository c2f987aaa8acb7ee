"""boardsim --ssh: the real OpenSSH client reaches a simulated board through its ProxyCommand."""

import hashlib
import os
import random
import shlex
import shutil
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path
from typing import NamedTuple

BUILD = Path(os.environ["KORVEL_BUILD"])
BOARDSIM = str(BUILD / "boardsim")
LONGEST_WAIT = 100  # seconds; boards end at once, but dropbear alone waits 300 seconds for a login
BLOB = random.Random(1).randbytes(1 << 20)
NOBODY = "65534"


class Outcome(NamedTuple):
    status: int
    out: str
    err: str


def run(command: list[str], data: bytes = b"", environment: dict[str, str] | None = None) -> Outcome:
    done = subprocess.run(command, input=data, capture_output=True, timeout=LONGEST_WAIT, check=False,
                          env=os.environ | (environment or {}))
    return Outcome(done.returncode, done.stdout.decode(), done.stderr.decode())


def new_key(path: Path, passphrase: str = "") -> Path:
    subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", passphrase, "-C", "test", "-f", path], check=True)
    return path


class Keys:
    """Key pairs in a temporary folder. A public key is in the file with the ending .pub."""

    def __init__(self) -> None:
        self.holder = tempfile.TemporaryDirectory()
        self.folder = Path(self.holder.name)
        self.user = new_key(self.folder / "user")
        self.stranger = new_key(self.folder / "stranger")
        self.board = new_key(self.folder / "board")
        self.locked = new_key(self.folder / "locked", "secret")
        self.public = self.user.with_suffix(".pub")


class SshCase(unittest.TestCase):
    maxDiff = None
    keys: Keys

    @classmethod
    def setUpClass(cls) -> None:
        cls.keys = Keys()
        cls.addClassCleanup(cls.keys.holder.cleanup)

    def proxy(self, *options: str) -> list[str]:
        return [BOARDSIM, *options, "--ssh", "--authorized-keys", str(self.keys.public)]

    def client(self, proxy: list[str] | None = None, key: Path | None = None) -> list[str]:
        """The options of ssh and scp: nothing of the user's own configuration."""
        settings = ["BatchMode=yes", "IdentitiesOnly=yes", "LogLevel=ERROR", "StrictHostKeyChecking=no",
                    "UserKnownHostsFile=/dev/null", f"ProxyCommand={shlex.join(proxy or self.proxy())}"]
        return ["-F", "none", "-i", str(key or self.keys.user), *(word for each in settings for word in ("-o", each))]

    def ssh(self, *options: str) -> list[str]:
        """The command line of ssh, up to the command on a board with these options."""
        return ["ssh", *self.client(self.proxy(*options)), "root@board1"]


class SessionTest(SshCase):
    def test_brings_output_errors_and_exit_status_of_a_command(self) -> None:
        self.assertEqual(run([*self.ssh(), "korvel getport eth1; echo complaint >&2; exit 5"]),
                         Outcome(5, "2\n", "complaint\n"))

    def test_gives_a_command_the_surroundings_of_any_command_on_a_board(self) -> None:
        show = "id; pwd; echo $PATH:$MANPATH:$HOME:$WORD"
        environment = {"WORD": "passed"}
        self.assertEqual(run([*self.ssh(), show], environment=environment),
                         run([BOARDSIM, "--", "sh", "-c", show], environment=environment))

    def test_passes_every_byte_unchanged_in_both_directions(self) -> None:
        echoed = subprocess.run([*self.ssh("--bare"), "cat"], input=BLOB, capture_output=True, check=True)
        self.assertTrue(echoed.stdout == BLOB)

    def test_brings_a_package_whole(self) -> None:
        made = subprocess.run([*self.ssh(), "korvel pkg; cat /ffs/run/logs/*; sha256sum < /ffs/run/logs/*.tgz >&2"],
                              capture_output=True, check=True)
        self.assertEqual(made.stderr.decode(), f"{hashlib.sha256(made.stdout).hexdigest()}  -\n")

    def test_gives_a_terminal_to_a_session_that_asks_for_one(self) -> None:
        self.assertEqual(run([*self.ssh("--bare"), "-tt", "tty; test -w /dev/tty && echo writable; exit 4"]),
                         Outcome(4, "/dev/pts/0\r\nwritable\r\n", ""))

    def test_runs_a_shell_without_a_command(self) -> None:
        self.assertEqual(run(self.ssh(), b"korvel getport eth1\nexit 6\n"), Outcome(6, "2\n", ""))

    def test_is_in_the_system_log_of_the_board(self) -> None:
        outcome = run([*self.ssh(), "grep -o 'Pubkey auth succeeded for .root.' /run/boardsim/system.log"])
        self.assertEqual(outcome, Outcome(0, "Pubkey auth succeeded for 'root'\n", ""))

    def test_shares_the_board_of_its_connection_with_other_sessions_and_scp(self) -> None:
        control = ["-o", f"ControlPath={self.keys.folder}/control"]
        file = self.keys.folder / "file"
        file.write_bytes(BLOB)
        held = subprocess.Popen(["ssh", *self.client(), "-M", *control, "root@board1", "echo up; read word"],
                                stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(held.stdout.readline(), b"up\n")
        # -O: the board has no SFTP server
        sent = run(["scp", "-O", *self.client(), *control, str(file), "root@board1:/tmp/copy"])
        there = run(["ssh", *self.client(), *control, "root@board1", "sha256sum < /tmp/copy"])
        fetched = run(["scp", "-O", *self.client(), *control, "root@board1:/tmp/copy", f"{file}.back"])
        held.communicate(b"word\n", timeout=LONGEST_WAIT)
        self.assertEqual([sent, there, fetched],
                         [Outcome(0, "", ""), Outcome(0, f"{hashlib.sha256(BLOB).hexdigest()}  -\n", ""),
                          Outcome(0, "", "")])
        self.assertTrue(Path(f"{file}.back").read_bytes() == BLOB)


class BoardTest(SshCase):
    def test_has_its_options(self) -> None:
        outcome = run([*self.ssh("--deployment", "iwf", "--fault", "netfp_master=error:-9"),
                       "ls /rom/config; korvel getport eth1; cat /run/boardsim/scenario.toml | grep fault"])
        self.assertEqual(outcome, Outcome(0, 'deployment_type\nfault = [ "netfp_master=error:-9" ]\n',
                                          "Response from Server was not successful.\n"
                                          'Get Port: Invalid port number "eth1"\n'))

    def test_is_another_one_in_each_connection(self) -> None:
        changed = subprocess.Popen([*self.ssh(), "korvel portswap eth1 eth2; korvel getport eth1; read word"],
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.assertEqual(changed.stdout.readline(), b"3\n")
        self.assertEqual(run([*self.ssh(), "korvel getport eth1"]), Outcome(0, "2\n", ""))
        changed.communicate(b"word\n", timeout=LONGEST_WAIT)

    def test_needs_no_privilege(self) -> None:
        if os.geteuid() != 0:
            self.skipTest("this user has none: all other tests show it")
        os.chmod(self.keys.folder, 0o755)
        with tempfile.TemporaryDirectory() as name:  # others may not be able to read the folder of the build
            os.chmod(name, 0o755)
            (Path(name) / "bin").mkdir()
            for program in ("boardsim", "korvel"):
                shutil.copy(BUILD / "bin" / program, Path(name) / "bin")
            shutil.copytree(BUILD / "lib", Path(name) / "lib")
            proxy = ["setpriv", "--reuid", NOBODY, "--regid", NOBODY, "--clear-groups",
                     f"{name}/bin/boardsim", *self.proxy()[1:]]
            command = ["ssh", "-tt", *self.client(proxy), "root@board1", "tty; id -u; korvel getport eth1; exit 5"]
            self.assertEqual(run(command), Outcome(5, "/dev/pts/0\r\n0\r\n2\r\n", ""))


class KeyTest(SshCase):
    def test_of_a_stranger_is_refused(self) -> None:
        command = ["ssh", *self.client(key=self.keys.stranger), "root@board1", "true"]
        self.assertEqual(run(command), Outcome(255, "", "root@board1: Permission denied (publickey).\r\n"))

    def test_opens_the_board_to_root_only(self) -> None:
        command = ["ssh", *self.client(), "nobody@board1", "true"]
        self.assertEqual(run(command), Outcome(255, "", "nobody@board1: Permission denied (publickey).\r\n"))

    def test_of_the_board_is_what_its_client_sees(self) -> None:
        known = self.keys.folder / "known_hosts"
        known.write_text("board1 " + self.keys.board.with_suffix(".pub").read_text())
        strict = ["-o", "StrictHostKeyChecking=yes", "-o", f"UserKnownHostsFile={known}"]
        self.assertEqual(run(["ssh", *strict, *self.client(self.proxy("--host-key", str(self.keys.board))),
                              "root@board1", "echo known"]), Outcome(0, "known\n", ""))
        other = run(["ssh", *strict, *self.client(self.proxy()), "root@board1", "echo known"])
        self.assertEqual((other.status, other.out), (255, ""))

    def test_of_the_board_must_be_one_of_ssh_keygen_without_a_passphrase(self) -> None:
        for file in (self.keys.public, self.keys.locked):
            with self.subTest(file):
                self.assertEqual(
                    run([*self.proxy(), "--host-key", str(file)]),
                    Outcome(2, "", "boardsim: --host-key: not a private key of ssh-keygen, or one with a passphrase\n"))


class EndTest(SshCase):
    """Every process of a board has the standard error of boardsim: a pipe ends when the last one has ended."""

    def start(self, command: list[str]) -> subprocess.Popen[bytes]:
        process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.addCleanup(process.kill)
        return process

    def test_of_a_command_ends_what_it_left_running(self) -> None:
        session = self.start([*self.ssh(), "sh -c 'trap \"\" HUP TERM; sleep 1000; sleep 1000' > /dev/null 2>&1 &"])
        self.assertEqual(session.communicate(timeout=LONGEST_WAIT), (b"", b""))
        self.assertEqual(session.returncode, 0)

    def test_of_a_killed_client_ends_the_board(self) -> None:
        for waiting in ("echo up; sleep 1000", "echo up; cat > /dev/null"):
            with self.subTest(waiting):
                session = self.start([*self.ssh(), waiting])
                self.assertEqual(session.stdout.readline(), b"up\n")
                session.send_signal(signal.SIGKILL)
                self.assertEqual(session.communicate(timeout=LONGEST_WAIT), (b"", b""))

    def test_of_the_streams_ends_a_board_that_nobody_logged_in_to(self) -> None:
        board = self.start(self.proxy())
        out, err = board.communicate(timeout=LONGEST_WAIT)
        self.assertTrue(out.startswith(b"SSH-2.0-dropbear"), out)
        self.assertEqual((board.returncode, err), (0, b""))

    def test_comes_when_nobody_logs_in_within_five_minutes(self) -> None:
        library = next(Path("/usr/lib").glob("*/faketime/libfaketime.so.1"))
        fast = {"LD_PRELOAD": str(library), "FAKETIME": "+0 x400", "ASAN_OPTIONS": "verify_asan_link_order=0"}
        board = subprocess.Popen(self.proxy("--bare"), stdin=subprocess.PIPE, stdout=subprocess.DEVNULL,
                                 env=os.environ | fast)
        self.addCleanup(board.communicate)
        self.addCleanup(board.kill)
        self.assertEqual(board.wait(timeout=LONGEST_WAIT), 0)


class RefusalTest(SshCase):
    def test_names_what_is_wrong_with_the_command_line(self) -> None:
        public = str(self.keys.public)
        for words, reason in ((["--ssh"], "--ssh needs --authorized-keys"),
                              (["--ssh", "--authorized-keys", public, "true"], "--ssh takes no command: true"),
                              (["--ssh", "--authorized-keys"], "missing value: --authorized-keys"),
                              (["--authorized-keys", public], "--authorized-keys needs --ssh"),
                              (["--host-key", public], "--host-key needs --ssh"),
                              (["--ssh", "--authorized-keys", "/no/file"],
                               "cannot read /no/file: No such file or directory")):
            with self.subTest(reason):
                self.assertEqual(run([BOARDSIM, *words]), Outcome(2, "", f"boardsim: {reason}\n"))

    def test_names_the_remedy_if_dropbear_is_missing(self) -> None:
        hide = 'mount -t tmpfs none /usr/sbin && exec "$@"'  # where dropbear is
        command = ["unshare", "--user", "--map-root-user", "--mount", "sh", "-c", hide, "sh", *self.proxy("--bare")]
        self.assertEqual(run(command), Outcome(
            3, "", "boardsim: no SSH server: dropbear cannot be run: No such file or directory\n"
                   "boardsim: install dropbear (Debian, Ubuntu: apt-get install dropbear-bin)\n"))


if __name__ == "__main__":
    unittest.main()
