"""The rooms of the code: includes and links between them follow the rules, and pages and pictures show them."""

import os
import re
import sys
import unittest
from collections import defaultdict
from collections.abc import Iterable, Mapping
from dataclasses import dataclass, field
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
FLOORS = ("base", "platform", "src", "boardsim", "report")
MOST_UNITS = 20
SHORTEST_DUPLICATE = 60  # characters of a body without blanks; shorter bodies are idioms

# `common` is a frame around rooms. The programs are the rooms main, and a command of the simulated board.
WITHOUT_FLOOR = {"common", "korvel", "boardsim", "devmem", "korvel-report"}

Graph = Mapping[str, Iterable[str]]


@dataclass
class Room:
    """A folder that is a library of its own, with the libraries that it links."""

    folder: str
    links: set[str] = field(default_factory=set)


def text_of(path: str | Path) -> str:
    return (SOURCE / path).read_text(encoding="utf-8")


def sources() -> list[Path]:
    return sorted(path for floor in FLOORS for path in (SOURCE / floor).rglob("*.[ch]pp"))


def libraries_in(words: str) -> set[str]:
    return set(re.findall(r"\bkorvel(?:::|_)(\w+)", words)) - {"flags"}


def rooms() -> dict[str, Room]:
    """The rooms of the product and of the simulated board, by library name."""
    found: dict[str, Room] = {}
    for path in sorted(SOURCE.glob("*/**/CMakeLists.txt")):
        folder = str(path.parent.relative_to(SOURCE))
        if not folder.startswith(FLOORS):
            continue
        content = text_of(path)
        for name, words in re.findall(r"^korvel_room\((\w+)(.*?)\)$", content, re.M | re.S):
            found[name] = Room(folder, libraries_in(words.partition("LINKS")[2]))
        for name in re.findall(r"^add_library\((?:korvel_)?(\w+) ", content, re.M):
            found.setdefault(name, Room(folder))
        for name, source in re.findall(r"^add_executable\(([\w-]+) (\S+)\)$", content, re.M):
            found[name] = Room(str((Path(folder) / source).parent))
        for name, words in re.findall(r"^target_link_libraries\((?:korvel_)?([\w-]+)(.*?)\)$", content, re.M | re.S):
            found[name].links |= libraries_in(words)
    # The headers of the board's libraries have a folder of their own, because a board may provide the libraries.
    found["smlog"] = found["vask"] = Room("platform/host", {"platform_include"})
    found["platform_include"] = Room("platform/include")
    found["host_board"] = Room("platform/host/include")
    for room in found.values():
        room.links &= set(found)
    return found


def reachable(start: str, graph: Graph) -> set[str]:
    """The nodes that can be reached from a node in at least one step."""
    reached: set[str] = set()
    waiting = list(graph.get(start, ()))
    while waiting:
        node = waiting.pop()
        if node not in reached:
            reached.add(node)
            waiting.extend(graph.get(node, ()))
    return reached


def included_by(path: Path) -> list[str]:
    return re.findall(r'^#include "([^"]+)"', path.read_text(encoding="utf-8"), re.M)


class RoomsTest(unittest.TestCase):
    maxDiff = None

    def setUp(self) -> None:
        self.rooms = rooms()
        self.links = {name: room.links for name, room in self.rooms.items()}

    def test_include_only_what_they_link(self) -> None:
        headers = defaultdict(set)
        for path in sources():
            headers[path.name].add(str(path.parent.relative_to(SOURCE)))
        visible = defaultdict(set)
        for name, room in self.rooms.items():
            visible[room.folder] |= {room.folder, *(self.rooms[link].folder for link in reachable(name, self.links)),
                                     *({"platform/include"} if room.folder.startswith("platform") else set())}
        for path in sources():
            folder = str(path.parent.relative_to(SOURCE))
            self.assertIn(folder, visible)
            outside = {name for name in included_by(path) if headers[name] and not headers[name] & visible[folder]}
            self.assertEqual(outside, set(), path)

    def test_have_no_circle_of_links(self) -> None:
        self.assertEqual({name for name in self.links if name in reachable(name, self.links)}, set())

    def test_have_no_circle_of_includes(self) -> None:
        units: dict[str, set[str]] = defaultdict(set)
        for path in sources():
            unit = unit_of(path)
            units[unit] |= {unit_of(path.parent / name) for name in included_by(path)
                            if (path.parent / name).exists()} - {unit}
        self.assertEqual({unit for unit in units if unit in reachable(unit, units)}, set())

    def test_have_at_most_twenty_units_in_a_folder(self) -> None:
        units = defaultdict(set)
        for path in sources():
            units[path.parent].add(path.stem)
        self.assertEqual({str(folder): len(names) for folder, names in units.items() if len(names) > MOST_UNITS}, {})

    def test_define_no_function_twice(self) -> None:
        places = defaultdict(set)
        for path in sources():
            for name, body in functions_of(path.read_text(encoding="utf-8")):
                places[body].add(f"{path.relative_to(SOURCE)}: {name}")
        self.assertEqual([sorted(found) for found in places.values() if len(found) > 1], [])


def unit_of(path: Path) -> str:
    """The folder and name of a file pair. A nested class belongs to the unit of its outer class."""
    outer = re.search(r"^class (\w+)::\w+ ", path.with_suffix(".hpp").read_text(encoding="utf-8"), re.M) \
        if path.with_suffix(".hpp").exists() else None
    return str(path.parent.relative_to(SOURCE) / (outer[1] if outer else path.stem))


def functions_of(code: str) -> list[tuple[str, str]]:
    """Names and bodies of the functions in clang-format's layout. Bodies have no blanks."""
    code = re.sub(r"//[^\n]*", "", code)
    found = re.findall(r"^( *)[^\n#{};]*?(\w+)\([^{};]*\)[^{};()]*\{\n(.*?)^\1\}$", code, re.M | re.S)
    bodies = [(name, re.sub(r"\s", "", body)) for _, name, body in found]
    return [(name, body) for name, body in bodies if len(body) >= SHORTEST_DUPLICATE]


class PicturesTest(unittest.TestCase):
    maxDiff = None

    def test_label_each_room_with_its_name(self) -> None:
        for picture in ("docs/pictures/rooms.dot", "docs/pictures/boardsim.dot", "docs/pictures/report.dot"):
            labels = dict(re.findall(r'^ +(\w+) \[label="([^"\\]*)', text_of(picture), re.M))
            for name in {name for arrow in arrows_of(picture) for name in arrow} - {"common"}:
                self.assertEqual(labels[name].removeprefix("platform/"), name)

    def test_show_how_the_rooms_of_the_program_link(self) -> None:
        self.assertEqual(arrows_of("docs/pictures/rooms.dot"), links_below(("src", "base"), prefix=""))

    def test_show_how_the_rooms_of_the_board_link(self) -> None:
        self.assertEqual(arrows_of("docs/pictures/boardsim.dot"), links_below(("boardsim",), prefix="boardsim_"))

    def test_show_how_the_rooms_of_the_reader_link(self) -> None:
        self.assertEqual(arrows_of("docs/pictures/report.dot"), links_below(("report",), prefix="report_"))


def arrows_of(picture: str) -> set[tuple[str, str]]:
    """The solid arrows. If an arrow ends at a cluster's frame, the cluster is its end."""
    arrows = set()
    for start, end, attributes in re.findall(r"^    (\w+) -> (\w+)( \[.*\])?$", text_of(picture), re.M):
        if "style=dashed" not in attributes:
            cluster = re.search(r"lhead=cluster_(\w+)", attributes)
            arrows.add((start, cluster[1] if cluster else end))
    return arrows


def links_below(floors: tuple[str, ...], prefix: str) -> set[tuple[str, str]]:
    """The links of these rooms, by the names in the pictures. `common` is only a frame there."""
    names = {"platform_include": "include", "smlog": "include", "vask": "include", "host_board": "host",
             "boardsim": "main"}
    arrows = set()
    for start, room in rooms().items():
        if room.folder.startswith(floors) and start not in {"common", "korvel", "devmem", "korvel-report"}:
            arrows |= {(names.get(start, start.removeprefix(prefix)), names.get(end, end.removeprefix(prefix)))
                       for end in room.links}
    return arrows


class ArchitectureTest(unittest.TestCase):
    maxDiff = None
    page = text_of("docs/architecture.md")

    def test_lists_every_room(self) -> None:
        listed = set(re.findall(r"^\| `([\w/]+)` \|", self.page, re.M))
        folders = {room.folder for room in rooms().values()} - {"src/common", "boardsim"}
        self.assertEqual(folders - listed, set())

    def test_puts_every_linked_room_on_a_lower_floor(self) -> None:
        links = {name: room.links for name, room in rooms().items()}
        for prefix, folder, lowest in (("", "src/", "base   platform/include"),
                                       ("boardsim_", "boardsim/", "text   model   process"),
                                       ("report_", "report/", "web   rules   text   archive")):
            floors = {prefix + name: floor for name, floor in self.floors_that_end_in(lowest).items()}
            on_floors = {name for name, room in rooms().items() if room.folder.startswith(folder)}
            self.assertEqual(on_floors - floors.keys() - WITHOUT_FLOOR, set())
            for start in floors.keys() & links.keys():
                for end in floors.keys() & reachable(start, links):
                    self.assertLess(floors[end], floors[start], f"{start} links {end}")

    def floors_that_end_in(self, lowest: str) -> dict[str, int]:
        """Each room's floor, counted from 0 at the bottom. `lowest` identifies the block of text by its last line."""
        block = next(block for block in re.findall(r"^```\n(.*?)^```$", self.page, re.M | re.S) if lowest in block)
        lines = [re.sub(r"\(.*\)", "", line) for line in block.splitlines()]
        return {name: number for number, line in enumerate(reversed(lines)) for name in line.split()}


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
