"""Links, names and numbers in the documents match the repository."""

import functools
import html
import os
import re
import unittest
from collections.abc import Iterable
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
PAGES = sorted([*SOURCE.glob("*.md"), *SOURCE.glob("docs/**/*.md")])
READERS = ("support engineer", "integrator", "contributor")


def files(pattern: str) -> list[Path]:
    """The files of the source tree that match. At least one must: a loop over none would check nothing."""
    found = sorted(SOURCE.glob(pattern))
    if not found:
        raise AssertionError(f"no file matches {pattern}")
    return found


def text_of(path: str) -> str:
    return (SOURCE / path).read_text(encoding="utf-8")


def anchor(heading: str) -> str:
    """The fragment that links to a heading."""
    words = re.sub(r"[^\w\s-]", "", heading.strip().lower())
    return re.sub(r"\s", "-", words)


def anchors_of(page: Path) -> set[str]:
    return {anchor(line.lstrip("#")) for line in page.read_text(encoding="utf-8").splitlines()
            if line.startswith("#")}


def matches_any(patterns: Iterable[str], *texts: str) -> bool:
    return any(re.fullmatch(pattern, text) for pattern in patterns for text in texts)


class LinksTest(unittest.TestCase):
    def test_lead_to_existing_files_and_headings(self) -> None:
        for page in PAGES:
            for target in re.findall(r"\]\(([^)\s]+)\)", page.read_text(encoding="utf-8")):
                if not target.startswith("https://"):
                    with self.subTest(page=page.name, target=target):
                        self.follow(page, target)

    def follow(self, page: Path, target: str) -> None:
        path, _, heading = target.partition("#")
        linked = page.parent / path if path else page
        self.assertTrue(linked.exists())
        if heading:
            self.assertIn(heading, anchors_of(linked))

    def test_in_the_readme_reach_every_page(self) -> None:
        readme = text_of("README.md")
        for page in PAGES:
            name = str(page.relative_to(SOURCE))
            if name != "README.md":
                self.assertTrue(f"]({name})" in readme, name)


class ConsoleBlockTest(unittest.TestCase):
    def test_is_fenced_as_console(self) -> None:
        for page in PAGES:
            fences = re.findall(r"^```(\w*)\n(.*?)^```$", page.read_text(encoding="utf-8"), re.M | re.S)
            for language, content in fences:
                if content.startswith(("$ ", "board# ")):
                    with self.subTest(page=page.name, content=content):
                        self.assertEqual(language, "console")

    def test_is_run_for_every_page_that_has_one(self) -> None:
        tested = text_of("tests/docs/CMakeLists.txt")
        for page in [*PAGES, *files("man/*.[1-8]")]:
            if re.search(r"^(\$|board#) ", page.read_text(encoding="utf-8"), re.M):
                self.assertTrue(str(page.relative_to(SOURCE)) in tested, page.name)


class TestNamesTest(unittest.TestCase):
    def test_on_pages_refer_to_existing_tests(self) -> None:
        """A page names tests as `Suite.Name` or `.Name`."""
        code = "\n".join(path.read_text(encoding="utf-8") for path in files("tests/**/*.cpp"))
        tests = re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", code, re.M)
        known = {f"{suite}.{name}" for suite, name in tests} | {f".{name}" for _, name in tests}
        for page in PAGES:
            named = set(re.findall(r"`(\w*\.[A-Z][a-z]+[A-Z]\w+)`", page.read_text(encoding="utf-8")))
            self.assertEqual(named - known, set(), page.name)


@functools.cache
def known_tests() -> set[tuple[str, str]]:
    """Suites and names."""
    in_cpp = "\n".join(path.read_text(encoding="utf-8") for path in files("tests/**/*.cpp"))
    found = set(re.findall(r"^TEST(?:_F|_P)?\(\s*(\w+),\s*(\w+)\)", in_cpp, re.M))
    for path in files("tests/**/*_test.py"):
        for suite, body in re.findall(r"^class (\w+)(.*?)(?=^\S|\Z)", path.read_text(encoding="utf-8"), re.M | re.S):
            found |= {(suite, test) for test in re.findall(r"^    def (test_\w+)", body, re.M)}
    return found


class AttacksTest(unittest.TestCase):
    """Each row of the tables of attacks on the page about security names the tests that fail without the protection."""

    def test_are_each_tried_by_existing_tests(self) -> None:
        suite = ""
        for row in self.rows():
            names = re.findall(r"`([\w.]+)`", row.split(" | ")[-1])
            with self.subTest(row=row):
                self.assertNotEqual(names, [])
            for name in names:
                suite, test = name.split(".")[0] or suite, name.split(".")[-1]
                with self.subTest(suite=suite, test=test):
                    self.assertIn((suite, test), known_tests())

    def rows(self) -> list[str]:
        page = text_of("docs/security.md")
        found = [row for section in re.findall(r"^## Attacks .*?(?=^## )", page, re.M | re.S)
                 for row in re.findall(r"^\| (?!Attack \|)(.*) \|$", section, re.M)]
        self.assertGreater(len(found), 30)
        return found


class ScriptMessagesTest(unittest.TestCase):
    """The page quotes a message as `SCRIPT: TEXT`. A word in capitals stands for a variable of the script."""

    def test_are_quoted_as_the_scripts_print_them(self) -> None:
        shared = "systemd/libexec/collection.sh"  # CMake puts it into make-package
        for path in files("systemd/libexec/*"):
            if path == SOURCE / shared:
                continue
            script = path.read_text(encoding="utf-8") + text_of(shared)
            constants = dict(re.findall(r"^(\w+)=(/\S+)$", script, re.M))
            printed = re.findall(rf'^\s*(?:say|echo) "(?:{path.name}: )?(.+?)"', script, re.M)
            patterns = {re.sub(r"\\\$(\w+)", lambda name: constants.get(name[1], "[A-Z]+"), re.escape(message))
                        for message in printed}
            quoted = set(re.findall(rf"`{path.name}: ([^`]+)`", text_of("docs/services.md")))
            with self.subTest(script=path.name):
                self.assertNotEqual(printed, [])
                self.assertEqual({text for text in quoted if not matches_any(patterns, text)}, set(), "not printed")
                self.assertEqual({one for one in patterns if not matches_any([one], *quoted)}, set(), "not quoted")


class PicturesTest(unittest.TestCase):
    def test_show_every_label_of_their_dot_files(self) -> None:
        for source in files("docs/pictures/*.dot"):
            with self.subTest(picture=source.stem):
                drawn = html.unescape(source.with_suffix(".svg").read_text(encoding="utf-8"))
                labels = re.findall(r'label="([^"]+)"', source.read_text(encoding="utf-8"))
                lines = {line for label in labels for line in label.split(r"\n")}
                self.assertEqual({line for line in lines if f">{line}<" not in drawn.replace("\xa0", " ")}, set())


class ReleaseTest(unittest.TestCase):
    def test_has_the_same_number_in_every_file(self) -> None:
        found = {
            "CMakeLists.txt": re.search(r"project\(korvel VERSION (\d+\.\d+\.\d+) ", text_of("CMakeLists.txt")),
            "CHANGELOG.md": re.search(r"^## (\d+\.\d+\.\d+) ", text_of("CHANGELOG.md"), re.M),
            "debian/changelog": re.match(r"korvel \((\d+\.\d+\.\d+)\)", text_of("debian/changelog")),
        }
        self.assertEqual({name: match and match[1] for name, match in found.items()},
                         dict.fromkeys(found, found["CMakeLists.txt"][1]))
        self.assertTrue((SOURCE / f"docs/porting/korvel_{found['CMakeLists.txt'][1]}.bb").exists())


class ReadmeTest(unittest.TestCase):
    def test_fits_two_screens(self) -> None:
        self.assertLessEqual(len(text_of("README.md").splitlines()), 90)

    def test_begins_with_purpose_readers_and_two_commands(self) -> None:
        first_screen = "\n".join(text_of("README.md").splitlines()[:24])
        for words in ("command-line control and diagnostics tool", "operators", "scripts/demo.sh", "scripts/test.sh"):
            self.assertTrue(words in first_screen, words)

    def test_addresses_each_kind_of_reader(self) -> None:
        for reader in READERS:
            self.assertTrue(reader in text_of("README.md"), reader)


class FuzzTargetsTest(unittest.TestCase):
    def test_have_seeds_and_a_row(self) -> None:
        built = {name for path in files("tests/**/fuzz/CMakeLists.txt")
                 for name in re.findall(r"^korvel_fuzz_target\((\w+)", path.read_text(encoding="utf-8"), re.M)}
        section = text_of("docs/testing.md").partition("## Fuzz targets\n")[2].partition("\n## ")[0]
        rows = "\n".join(re.findall(r"^\| (`.*?) \|", section, re.M))

        self.assertEqual({path.name for path in files("tests/**/fuzz/corpus/*")}, built)
        self.assertEqual(set(re.findall(r"`(\w+)`", rows)), built)


class ScriptsTest(unittest.TestCase):
    def test_are_each_named_on_a_page(self) -> None:
        pages = "\n".join(page.read_text(encoding="utf-8") for page in PAGES)
        for script in files("scripts/*.sh"):
            self.assertTrue(f"scripts/{script.name}" in pages, script.name)


if __name__ == "__main__":
    unittest.main()
