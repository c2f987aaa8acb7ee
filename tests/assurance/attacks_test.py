"""The search for attacks by another user finds what it is for, and korvel withstands some attacks of each kind."""

import itertools
import unittest
from typing import Any

import attacks
import judgement
import plants
import touched
from attacks import Attack
from scenarios import Scenario
from touched import Touch

COLLECTION = Scenario("pkg dlog netfp")
USUAL: dict[str, Any] = {"status": 0, "stopped": False, "hung": False, "out": "digest", "err": "", "log": "", "files": {},
                         "damaged": [], "left": [], "harms": []}


def outcome(path: str, *harms: tuple[str, list[str]], **changes: Any) -> str:
    run = USUAL | {"harms": [{"what": what, "path": "/tmp/vault/secret", "by": by} for what, by in harms]} | changes
    return attacks.judge(COLLECTION, Attack(path, "file"), [run], USUAL)


class JudgementOfAttacks(unittest.TestCase):
    def test_names_the_harm_and_the_programs_that_could_do_it(self) -> None:
        self.assertEqual(outcome("/tmp/korvelpids.tmp", ("changed", ["sh"])), "CHANGED: /tmp/vault/secret by sh")
        self.assertEqual(outcome("/tmp/korvel/ti", ("read", [])), "READ: /tmp/vault/secret by nobody")

    def test_leaves_open_what_commands_do_in_a_work_folder_of_another_user(self) -> None:
        self.assertEqual(outcome("/tmp/korvel/archive", ("changed", ["cp", "gzip"])), judgement.OPEN)
        self.assertEqual(outcome("/tmp/korvel", ("changed", ["cp", "korvel"])), "CHANGED: /tmp/vault/secret by cp, korvel")
        self.assertEqual(outcome("/tmp/netfp_proxy.log", ("changed", ["cp"])), "CHANGED: /tmp/vault/secret by cp")

    def test_leaves_open_states_of_another_user_but_no_secrets(self) -> None:
        self.assertEqual(outcome("/tmp/fuse/iwf", ("taken", ["korvel"])), judgement.OPEN)
        self.assertEqual(outcome("/tmp/fuse/iwf", ("shown", ["korvel"])), "SHOWN: /tmp/vault/secret by korvel")

    def test_leaves_open_where_a_request_to_an_absent_master_is_led(self) -> None:
        self.assertEqual(outcome("/tmp/NetfpMaster", ("received", ["korvel"])), judgement.OPEN)
        self.assertEqual(outcome("/tmp/korvelpids.tmp", ("received", ["korvel"])), "RECEIVED: /tmp/vault/secret by korvel")

    def test_leaves_open_a_command_that_does_not_end_but_not_korvel(self) -> None:
        self.assertEqual(outcome("/tmp/korvel/ti", hung=True, left=["korvel archive", "/bin/cp a b"]), judgement.OPEN)
        self.assertEqual(outcome("/tmp/korvel/ti", hung=True, left=["korvel archive"]), "HUNG")

    def test_names_what_differs_without_a_word(self) -> None:
        self.assertEqual(outcome("/tmp/korvelpids.tmp", out="other"), "SILENT: standard output")
        self.assertEqual(outcome("/tmp/korvelpids.tmp", out="other", err="Error\n"), judgement.REPORTED)


class Touches(unittest.TestCase):
    def of(self, *lines: str) -> list[Touch]:
        return list(touched.touches("\n".join(lines), "/root"))

    def test_have_the_real_path_if_an_open_folder_was_used(self) -> None:
        self.assertEqual(self.of('7<korvel> openat(3</tmp/vault>, "a", O_WRONLY|O_CREAT, 0666) = 4</tmp/vault/a>'),
                         [Touch("korvel", "/tmp/vault/a", "/tmp/vault/a", touched.CHANGES, succeeded=True)])

    def test_follow_the_working_directory_of_each_process(self) -> None:
        self.assertEqual(self.of('7<mkdir> chdir("/tmp") = 0', '7<mkdir> mkdir("a", 0777) = -1 EEXIST (File exists)',
                                 '8<rm> unlinkat(AT_FDCWD</root>, "b", 0) = 0')[1:],
                         [Touch("mkdir", "/tmp/a", "", touched.CHANGES, succeeded=False),
                          Touch("rm", "/root/b", "", touched.CHANGES, succeeded=True)])

    def test_join_calls_that_others_interrupted(self) -> None:
        self.assertEqual(self.of('7<sh> openat(AT_FDCWD</root>, "/tmp/a", O_RDONLY <unfinished ...>',
                                 '8<korvel> bind(3, {sa_family=AF_UNIX, sun_path="/tmp/Korvel"}, 110) = 0',
                                 '7<sh> <... openat resumed>) = 3</tmp/b>'),
                         [Touch("korvel", "/tmp/Korvel", "", touched.CHANGES, succeeded=True),
                          Touch("sh", "/tmp/a", "/tmp/b", touched.READS, succeeded=True)])


class OnABoard(unittest.TestCase):
    def test_secrets_in_a_package_are_found(self) -> None:
        attack = Attack("/tmp/korvel", "link to a full folder")
        usual, _ = attacks.on_board(COLLECTION, [])
        [run] = attacks.on_board(COLLECTION, [attack.options()])
        shown = [harm for harm in run["harms"] if harm["what"] == "shown"]
        self.assertTrue(any("tar" in harm["by"] and harm["path"].endswith(".tgz") for harm in shown), run["harms"])
        self.assertEqual(attacks.judge(COLLECTION, attack, [run], usual), judgement.OPEN)

    def test_korvel_withstands_some_attacks_of_each_kind(self) -> None:
        usual, paths = attacks.on_board(COLLECTION, [])
        places = itertools.cycle(path for path in paths if path != "/tmp/fuse")
        tried = [Attack(next(places), kind) for kind in plants.KINDS]
        tried += [attack for attack in attacks.faults_of(COLLECTION, ["/tmp/korvelpids.tmp"]) if attack.other]
        for attack, run in zip(tried, attacks.on_board(COLLECTION, [attack.options() for attack in tried])):
            with self.subTest(attack=str(attack)):
                self.assertIn(attacks.judge(COLLECTION, attack, [run], usual), judgement.RIGHT)


if __name__ == "__main__":
    unittest.main()
