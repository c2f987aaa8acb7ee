"""korvel-fleet collect --resume: what it takes from earlier runs into the same folder."""

import hashlib
import json
import unittest
from typing import Any

import fleet


class Resume(fleet.FolderCase):
    def collect(self, nodes: str, *options: str, **boards: str) -> fleet.Outcome:
        asked = f"echo $board >> {self.folder}/asked\n"
        cases = {**boards, "*": "on_board"}
        ssh = fleet.write_stand_in(self.folder / "ssh", {name: asked + text for name, text in cases.items()})
        (self.folder / "asked").unlink(missing_ok=True)
        return fleet.run("collect", "-w", nodes, "-o", self.packages, "--ssh", ssh, *options)

    def asked(self) -> list[str]:
        path = self.folder / "asked"
        return sorted(path.read_text(encoding="ascii").split()) if path.exists() else []

    def contents(self) -> dict[str, str]:
        return {path.name: fleet.checksum(path) for path in self.packages.iterdir()}

    def states(self) -> dict[str, str]:
        return {board: result["state"] for board, result in fleet.summary_of(self.packages).items()}

    def replace_package(self, name: str, data: bytes) -> None:
        """Puts other bytes in the place of a package, and makes its run file fit."""
        package, run_file = self.packages / name, self.packages / f"{name}.run"
        before, after = fleet.checksum(package), hashlib.sha256(data).hexdigest()
        package.write_bytes(data)
        run_file.write_text(run_file.read_text(encoding="utf-8").replace(before, after), encoding="utf-8")

    def edit_summary(self, **values: Any) -> None:
        path = self.packages / "summary.json"
        document = json.loads(path.read_text(encoding="utf-8"))
        document["boards"][0].update(values)
        path.write_text(json.dumps(document), encoding="utf-8")

    def assert_only_whole_packages(self) -> None:
        for package in self.packages.glob("*.tgz"):
            self.assertEqual(fleet.verdict(package), 0, package)


class PackagesWithoutASummary(Resume):
    """A run that was killed has published packages, and not yet written about them."""

    def test_are_named_by_status_and_taken_by_a_run_for_other_boards(self) -> None:
        self.collect("board[1-2]")
        path = self.packages / "summary.json"
        document = json.loads(path.read_text(encoding="utf-8"))
        del document["boards"][1]
        path.write_text(json.dumps(document), encoding="utf-8")
        self.assertEqual(fleet.run("status", self.packages).err,
                         f"korvel-fleet: {self.packages} also has packages of board2, of a run that was killed: collect "
                         "--resume looks at them\n")
        self.assertEqual(self.collect("board1", "--resume").status, 0)
        self.assertEqual(self.states(), {"board1": "whole", "board2": "whole"})
        self.assertEqual(self.asked(), [])


class KindOfAFolder(Resume):
    def test_is_that_of_its_summary(self) -> None:
        self.collect("board1", "--package", "pkg-trs")
        before = self.contents()
        for options in (["board1", "--resume"], ["board[1-2]", "--resume"], ["board2"]):
            self.assertEqual(self.collect(*options, "--package", "pkg-sup"), (
                3, "", f"korvel-fleet: {self.packages} has packages of the kind pkg-trs: "
                       "use --package pkg-trs or another directory\n"))
        self.assertEqual(self.contents(), before)
        self.assertEqual(self.asked(), [])

    def test_is_that_of_its_packages_after_a_run_that_was_killed(self) -> None:
        self.collect("board1", "--package", "pkg-trs")
        (self.packages / "summary.json").unlink()
        before = self.contents()
        for board in ("board1", "board2"):
            self.assertEqual(self.collect(board, "--resume"), (
                3, "", f"korvel-fleet: {self.packages}/board1.tgz was made by another command: korvel pkg-trs\n"))
        self.assertEqual(self.contents(), before)


class Packages(Resume):
    def test_of_boards_that_are_not_named_are_verified(self) -> None:
        self.collect("board[1-3]")
        (self.packages / "board1.tgz").unlink()
        (self.packages / "board2.tgz").write_bytes(b"other")
        self.collect("board4", "--resume")
        self.assertEqual(self.states(), {"board1": "missing", "board2": "altered", "board3": "whole", "board4": "whole"})

    def test_that_come_back_are_whole_again(self) -> None:
        self.collect("board[1-2]")
        package = self.packages / "board1.tgz"
        package.rename(self.folder / "elsewhere")
        self.collect("board2", "--resume")
        (self.folder / "elsewhere").rename(package)
        self.collect("board2", "--resume")
        self.assertEqual(self.states(), {"board1": "whole", "board2": "whole"})

    def test_that_are_not_whole_lose_their_name_and_are_asked_for_again(self) -> None:
        self.collect("board[1-2]")
        cut = (self.packages / "board1.tgz").read_bytes()[:500]
        self.replace_package("board1.tgz", cut)
        outcome = self.collect("board[1-2]", "--resume")
        self.assertEqual(outcome, (0, f"2 of 2 boards have a whole package in {self.packages}\n", ""))
        self.assertEqual(self.asked(), ["board1"])
        self.assertEqual((self.packages / "board1.tgz.altered").read_bytes(), cut)
        self.assert_only_whole_packages()

    def test_that_are_not_whole_lose_their_name_also_if_the_board_does_not_answer(self) -> None:
        self.collect("board1")
        self.replace_package("board1.tgz", b"no package")
        self.collect("board1", "--resume", board1="exit 255")
        self.assertEqual(fleet.files_in(self.packages),
                         ["board1.tgz.altered", "board1.tgz.altered.run", "index.html", "summary.json"])

    def test_that_arrived_before_the_run_was_killed_are_judged_and_taken(self) -> None:
        self.collect("board[1-2]")
        for board in ("board1", "board2"):
            (self.packages / f"{board}.tgz").rename(self.packages / f"{board}.tgz.part")
            (self.packages / f"{board}.tgz.run").rename(self.packages / f"{board}.tgz.part.run")
        self.replace_package("board2.tgz.part", b"no package")
        self.collect("board[1-2]", "--resume")
        self.assertEqual(self.asked(), ["board2"])
        self.assertEqual(self.states(), {"board1": "whole", "board2": "whole"})
        self.assertEqual((self.packages / "board2.tgz.cut").read_bytes(), b"no package")
        self.assert_only_whole_packages()

    def test_with_many_lines_of_probes_in_the_run_file_are_not_asked_for_again(self) -> None:
        self.collect("board1")
        run_file = self.packages / "board1.tgz.run"
        probes = "".join(f"probe: getport eth{number}: {'x' * 400}\n" for number in range(300))
        run_file.write_text(probes + run_file.read_text(encoding="utf-8"), encoding="utf-8")
        self.collect("board1", "--resume")
        self.assertEqual(self.asked(), [])


class ADamagedSummary(Resume):
    DAMAGES = ("", "null", "[]", '"x"', "[" * 100000, '{"schema": [], "boards": []}', '{"boards": "abc"}', "\0", "{")
    VALUES = ({"board": 1}, {"board": "../x"}, {"board": "board[2-3]"}, {"state": None}, {"state": {}}, {"cause": 5},
              {"evidence": []}, {"ended": "yesterday"}, {"ended": "2026-01-01T00:00:00"}, {"began": 1}, {"size": "1"},
              {"size": 1e999}, {"size": True}, {"size": -1}, {"findings": []}, {"findings": {"error": 10**400}},
              {"findings": {"error": "1"}}, {"findings": {"board": "x"}}, {"probes": "x"}, {"probes": {"a": 1}},
              {"finding_texts": "x"}, {"finding_texts": [1]},
              {"file": {"board": "x"}}, {"sha256": 1}, {"verdict": ["whole"]}, {"package_time": 1})

    def setUp(self) -> None:
        super().setUp()
        self.collect("board[1-2]")
        self.summary = self.packages / "summary.json"
        self.whole = self.summary.read_text(encoding="utf-8")

    def damage(self) -> list[str]:
        texts = list(self.DAMAGES)
        for values in self.VALUES:
            self.summary.write_text(self.whole, encoding="utf-8")
            self.edit_summary(**values)
            texts.append(self.summary.read_text(encoding="utf-8"))
        return texts

    def test_is_an_error_that_names_the_file(self) -> None:
        for text in self.damage():
            self.summary.write_text(text, encoding="utf-8")
            with self.subTest(text[:300]):
                self.assertEqual(fleet.run("status", self.packages),
                                 (3, "", f"korvel-fleet: {self.summary} is not a summary of korvel-fleet\n"))

    def test_that_is_huge_is_an_error(self) -> None:
        with self.summary.open("ab") as file:
            file.truncate(1 << 40)
        self.assertEqual(fleet.run("status", self.packages),
                         (3, "", f"korvel-fleet: {self.summary} is too large for a summary of korvel-fleet\n"))

    def test_is_made_again_from_the_packages(self) -> None:
        self.summary.write_text("{", encoding="utf-8")
        outcome = self.collect("board1", "--resume")
        self.assertEqual(outcome, (0, f"1 of 1 boards have a whole package in {self.packages}\n",
                                   f"korvel-fleet: {self.summary} is not a summary of korvel-fleet; reading the packages\n"))
        self.assertEqual(self.asked(), [])
        self.assertEqual(self.states(), {"board1": "whole", "board2": "whole"})
        self.assertEqual((self.packages / "summary.json.damaged").read_text(encoding="utf-8"), "{")

    def test_shows_control_characters(self) -> None:
        self.edit_summary(cause="a\x1b[31m\ud800", state="failed", file=None)
        outcome = fleet.run("status", self.packages)
        self.assertEqual((outcome.status, outcome.err), (1, ""))
        self.assertIn("\nboard1: a\\x1b[31m\\ud800\n", outcome.out)


if __name__ == "__main__":
    unittest.main()
