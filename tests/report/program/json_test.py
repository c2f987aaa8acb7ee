"""korvel-report json, on packages that korvel makes and on odd ones."""

import hashlib
import json
import re
import tempfile
import unittest
from pathlib import Path
from typing import Any

import jsonschema
from board_packages import BOARDS, run_all
from expected_json import by_name, differences, expected, text_of
from odd_packages import odd_packages
from odd_packages import package as packed
from plain_reading import Member, entries_of, invalid_bytes, members_of, values_of
from program import SOURCE, report, write

SCHEMA = SOURCE / "report/render/data/schema/korvel-report.schema.json"
LONG = 40  # items of a list

# Expected in full, and as differences from the package of the healthy board.
HEALTHY = "both/sup"
IN_FULL = (HEALTHY, "both/dinf", "both/dlog", "both/master", "both/proxy", "both/slog", "both_archive/archive")
AS_DIFFERENCES = ("iwf/sup", "both_kinds/sdown", "netfp_server=dying/sup", "sfn_dispatcher=silent/sup")

Json = dict[str, Any]


def only_once(pairs: list[tuple[str, Any]]) -> Json:
    """An object, if no key of it is there twice."""
    keys = [key for key, _ in pairs]
    assert len(set(keys)) == len(keys), keys
    return dict(pairs)


def no_constant(text: str) -> None:
    raise AssertionError(f"{text} is not JSON")


def parsed(output: bytes) -> Json:
    assert re.fullmatch(rb"[\n -~]+", output), "the output is not printable ASCII"
    return json.loads(output, object_pairs_hook=only_once, parse_constant=no_constant)


def shortened(value: Any) -> Any:
    """The same, with at most some items in each list: a schema takes a long time for the others."""
    if isinstance(value, dict):
        return {key: shortened(item) for key, item in value.items()}
    return [shortened(item) for item in value[:LONG]] if isinstance(value, list) else value


class JsonTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        folder = cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.made = [write(folder / package.name, package.content) for package in run_all(BOARDS)]
        cls.others = [*(write(folder / "odd" / f"{name}.tgz", content) for name, content in odd_packages()),
                      *sorted((SOURCE / "tests/report/data").glob("*.tgz"))]
        cls.with_sidecar = sidecars(folder / "sidecars", cls.made[0].read_bytes())
        cls.paths = [*cls.made, *cls.others, *cls.with_sidecar]
        cls.document = parsed(report("json", *cls.paths).out)
        cls.packages = dict(zip(cls.paths, cls.document["packages"], strict=True))

    def test_json_of_every_package_fits_the_schema(self) -> None:
        schema = json.loads(SCHEMA.read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)
        for problem in jsonschema.Draft202012Validator(schema).iter_errors(shortened(self.document)):
            self.fail(f"{problem.json_path}: {problem.message}")

    def test_the_schema_allows_neither_more_keys_nor_fewer(self) -> None:
        schema = jsonschema.Draft202012Validator(json.loads(SCHEMA.read_text(encoding="utf-8")))
        package = shortened(self.package(HEALTHY))
        entries = [entry for log in package["logs"] for entry in log["entries"]]
        for item in (package, package["parts"][0], package["findings"][0], package["values"][0], package["logs"][0],
                     entries[0], package["sidecar"]):
            key, value = item.popitem()
            self.assertFalse(schema.is_valid(self.document | {"packages": [package]}), key)
            item[key] = value
            item["more"] = None
            self.assertFalse(schema.is_valid(self.document | {"packages": [package]}), key)
            del item["more"]
        self.assertTrue(schema.is_valid(self.document | {"packages": [package]}))

    def test_json_names_the_packages_in_the_order_of_the_command_line(self) -> None:
        sources = [package["source"] for package in self.document["packages"]]
        self.assertEqual(sources, [str(path) for path in self.paths])

    def test_json_holds_all_that_the_archive_holds(self) -> None:
        for path in self.made:
            with self.subTest(path=path):
                content = path.read_bytes()
                package = self.packages[path]
                self.assertEqual(package["size"], len(content))
                self.assertEqual(package["sha256"], hashlib.sha256(content).hexdigest())
                if "full_ffs" not in path.parts:  # cut
                    self.compare(package, members_of(content))

    def test_json_replaces_and_counts_bytes_that_are_not_utf_8(self) -> None:
        text = b"\xff\xc3 caf\xc3\xa9 \xed\xa0\x80 \xf4\x90\x80\x80 \xe2\x82"
        path = write(self.folder / "bytes.tgz", packed({
            "./mmi/iwf/HeapStats.log": b"%s\n%s  5\n" % (text, text),
            "./ti/syslib_sm_log.log": b"2026-11-22T02:46:40.000000Z 0 %s: %s\n" % (text, text),
            "./linux/%s.log" % text.decode(errors="surrogateescape"): text}))
        package, = parsed(report("json", path).out)["packages"]

        shown = "\ufffd\ufffd caf\xe9 \ufffd\ufffd\ufffd \ufffd\ufffd\ufffd\ufffd \ufffd\ufffd"
        parts = {part["name"]: (part["lines"], part["invalid_bytes"]) for part in package["parts"] if part["member"]}
        self.assertEqual(parts, {"mmi/iwf/HeapStats": ([shown, f"{shown}  5"], 22),
                                 "ti/syslib_sm_log": (None, 22), f"linux/{shown}": ([shown], 11)})
        self.assertEqual([(value["title"], value["name"]) for value in package["values"]], [(shown, shown)])
        self.assertEqual([(entry["tag"], entry["text"]) for entry in package["logs"][0]["entries"]], [(shown, shown)])

    def compare(self, package: Json, members: list[Member]) -> None:
        parts = [part for part in package["parts"] if part["member"] is not None]
        self.assertEqual([part["member"] for part in parts], [member.name for member in members])
        for part, member in zip(parts, members, strict=True):
            self.compare_part(part, member)
        tables = [member for member in members if member.is_table]
        self.assertEqual([(value["part"], value["title"], value["name"], value["occurrence"], value["value"])
                          for value in package["values"]],
                         [value for member in tables for value in values_of(member)])
        logs = [(log["part"], [tuple(entry.values()) for entry in log["entries"]]) for log in package["logs"]]
        self.assertEqual(logs, [(member.part, entries_of(member)) for member in members if member.is_log])
        inner = [member for member in members if member.is_package]
        self.assertEqual([nested["source"] for nested in package["nested"]], [member.name for member in inner])
        for nested, member in zip(package["nested"], inner, strict=True):
            self.compare(nested, members_of(member.content))

    def compare_part(self, part: Json, member: Member) -> None:
        self.assertEqual(part["name"], member.part)
        self.assertEqual(part["size"], len(member.content))
        self.assertEqual((part["log"], part["package"]), (member.is_log, member.is_package))
        if not member.is_package:
            self.assertEqual(part["text_size"], len(member.data))
            self.assertEqual(part["invalid_bytes"], invalid_bytes(member.data))
            self.assertEqual(part["lines"], None if member.is_log else member.lines)

    def test_json_is_as_expected_in_full(self) -> None:
        for name in IN_FULL:
            with self.subTest(name=name):
                text = text_of(self.package(name))
                self.assertEqual(text, expected(f"{name.replace('/', '-')}.json", text))

    def test_json_of_other_boards_differs_from_that_of_a_healthy_board_as_expected(self) -> None:
        healthy = by_name(self.package(HEALTHY))
        lines = []
        for name in AS_DIFFERENCES:
            lines += [f"=== {name}", *differences(healthy, by_name(self.package(name)))]
        text = "\n".join(lines) + "\n"
        self.assertEqual(text, expected("differences.txt", text))

    def package(self, name: str) -> Json:
        return next(package for path, package in self.packages.items() if f"/{name}/" in str(path))

    def test_json_has_the_sidecar(self) -> None:
        self.assertEqual([self.packages[path]["sidecar"] for path in self.with_sidecar], [
            {"state": "used", "error": None, "contents": {
                "keys": {"format": "1", "sha256": self.packages[self.made[0]]["sha256"], "zone": "UTC"},
                "probes": [{"name": "sfn", "result": "silent"}], "standard_error": "korvel: \ufffd\x1b[31m\n"}},
            {"state": "foreign", "error": "its checksum is not the package's", "contents": None},
            {"state": "unreadable", "error": "a line that is not `key: value`", "contents": None},
        ])


def sidecars(folder: Path, content: bytes) -> list[Path]:
    """A package with its sidecar, with one of another package, and with a file that is none."""
    checksum = hashlib.sha256(content).hexdigest()
    texts = {
        "used": b"format: 1\nsha256: %s\nzone: UTC\nprobe: sfn: silent\n\nkorvel: \xff\x1b[31m\n" % checksum.encode(),
        "foreign": f"format: 1\nsha256: {'0' * 64}\n\n".encode(),
        "unreadable": b"hello\n",
    }
    for name, text in texts.items():
        write(folder / f"{name}.tgz.run", text)
    return [write(folder / f"{name}.tgz", content) for name in texts]


if __name__ == "__main__":
    unittest.main()
