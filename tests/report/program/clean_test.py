"""korvel-report clean and restore, on a package with a thousand secrets in all its layers."""

import gzip
import hashlib
import io
import ipaddress
import re
import stat
import tarfile
import tempfile
import unittest
from collections.abc import Iterator
from dataclasses import dataclass
from pathlib import Path

from planted_secrets import COUNT, Planter
from program import report, write

WORD = re.compile(r"[0-9A-Za-z_.:-]+")


@dataclass
class Member:
    path: str  # with the names of the packages around it
    info: tarfile.TarInfo
    header: bytes
    text: str | None  # None for a package

    def same_in_any_copy(self) -> tuple[object, ...]:
        """What cleaning leaves as it is."""
        return (self.info.mode, self.info.uid, self.info.gid, self.info.mtime, self.info.type,
                self.text is None or len(self.text))

    def whole(self) -> tuple[object, ...]:
        """Header and contents. The size of a compressed file depends on its compressor."""
        header = self.header
        if self.text is None or self.path.endswith(".gz"):
            header = header[:124] + header[136:148] + header[156:]
        return self.path, header, self.text


def members_of(package: bytes, place: str = "") -> Iterator[Member]:
    """The members of a package and of all packages in it, in their order."""
    tar = gzip.decompress(package)
    with tarfile.open(fileobj=io.BytesIO(tar)) as archive:
        for info in archive:
            content = archive.extractfile(info).read()
            header = tar[info.offset:info.offset_data]
            path = f"{place}{info.name}"
            if path.endswith(".tgz"):
                yield Member(path, info, header, None)
                yield from members_of(content, f"{path}: ")
            else:
                content = gzip.decompress(content) if path.endswith(".gz") else content
                yield Member(path, info, header, content.decode("ascii"))


def texts_of(members: list[Member]) -> list[str]:
    return [text for member in members
            for text in (member.info.name, member.info.uname, member.info.gname, member.text or "")]


def canonical(kind: str, spelling: str) -> str:
    """The same for all spellings of an original."""
    if kind == "mac":
        return re.sub("[^0-9a-f]", "", spelling.lower())
    if kind == "ipv4":
        return ".".join(str(int(octet)) for octet in spelling.rpartition(":")[2].split("."))
    return str(ipaddress.ip_address(spelling)) if kind == "ipv6" else spelling.lower()


class CleanTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        planter = Planter(seed=20261122)
        cls.package = planter.nested_package()
        cls.kinds = {spelling.lower(): secret.kind for secret in planter.secrets for spelling in secret.spellings}
        cls.keys = {spelling.lower(): secret.key for secret in planter.secrets for spelling in secret.spellings}
        checksum = hashlib.sha256(cls.package).hexdigest()
        cls.sidecar = f"format: 1\nboard: {planter.names[0]}\nsha256: {checksum}\n\n" + planter.text(5000).decode()
        write(cls.folder / "in.tgz", cls.package)
        write(cls.folder / "in.tgz.run", cls.sidecar.encode())
        cls.cleaned = report("clean", "in.tgz", "-o", "out.tgz", cwd=cls.folder)
        cls.before = list(members_of(cls.package))
        cls.after = list(members_of((cls.folder / "out.tgz").read_bytes()))
        cls.texts = list(zip([*texts_of(cls.before), cls.without_checksum(cls.sidecar)],
                             [*texts_of(cls.after), cls.without_checksum(cls.read("out.tgz.run"))], strict=True))

    @classmethod
    def read(cls, name: str) -> str:
        return (cls.folder / name).read_text("ascii")

    @staticmethod
    def without_checksum(sidecar: str) -> str:
        return re.sub(r"^sha256: .*\n", "", sidecar, flags=re.MULTILINE)

    def secrets_in(self, text: str) -> Iterator[re.Match[str]]:
        return (word for word in WORD.finditer(text) if word[0].lower() in self.keys)

    def test_succeeds_and_protects_the_map(self) -> None:
        self.assertEqual((self.cleaned.status, self.cleaned.err), (0, b""))
        self.assertEqual(stat.S_IMODE((self.folder / "out.tgz.map").stat().st_mode), 0o600)
        self.assertIn(f"sha256: {hashlib.sha256((self.folder / 'out.tgz').read_bytes()).hexdigest()}\n",
                      self.read("out.tgz.run"))

    def test_leaves_none_of_a_thousand_secrets(self) -> None:
        planted = {self.keys[word[0].lower()] for text, _ in self.texts for word in self.secrets_in(text)}
        self.assertEqual(len(planted), COUNT)
        left = "\n".join(text for _, text in self.texts).lower()
        self.assertEqual([spelling for spelling in self.keys if spelling in left], [])
        for word in set(WORD.findall(left)):  # also in a spelling that was not in the package
            for kind in ("ipv4", "ipv6", "mac"):
                try:
                    self.assertNotIn(canonical(kind, word), self.keys)
                except ValueError:
                    pass  # no address

    def test_changes_nothing_but_secrets_and_moves_no_column(self) -> None:
        for before, after in self.texts:
            self.assertEqual(len(after), len(before))
            place = 0
            for word in self.secrets_in(before):
                self.assertEqual(after[place:word.start()], before[place:word.start()])
                place = word.end()
                self.assertEqual(re.sub("[0-9A-Za-z]", "x", after[word.start():place]),
                                 re.sub("[0-9A-Za-z]", "x", word[0]))
            self.assertEqual(after[place:], before[place:])
        self.assertEqual([member.same_in_any_copy() for member in self.after],
                         [member.same_in_any_copy() for member in self.before])

    def test_gives_an_original_one_replacement_and_no_two_the_same(self) -> None:
        replacements: dict[str, str] = {}
        for before, after in self.texts:
            for word in self.secrets_in(before):
                key, kind = self.keys[word[0].lower()], self.kinds[word[0].lower()]
                replacement = canonical(kind, after[word.start():word.end()])
                self.assertEqual(replacements.setdefault(key, replacement), replacement, word[0])
        self.assertEqual(len(set(replacements.values())), COUNT)

    def test_restore_gives_all_members_back_byte_for_byte(self) -> None:
        outcome = report("restore", "out.tgz", "-o", "back.tgz", cwd=self.folder)
        self.assertEqual((outcome.status, outcome.err), (0, b""))
        restored = list(members_of((self.folder / "back.tgz").read_bytes()))
        self.assertEqual(len(restored), len(self.before))
        for one, other in zip(restored, self.before, strict=True):
            self.assertEqual(one.path, other.path)
            self.assertTrue(one.whole() == other.whole(), one.path)
        self.assertEqual(self.without_checksum(self.read("back.tgz.run")), self.without_checksum(self.sidecar))

    def test_restore_gives_the_originals_back_in_an_answer(self) -> None:
        before, after = self.texts[4 * [member.path for member in self.before].index("./linux/borders.log") + 3]
        write(self.folder / "answer", f"You wrote:\n> {after}\nI do not know.".encode())
        self.assertEqual(report("restore", "--map", "out.tgz.map", "answer", cwd=self.folder).out.decode(),
                         f"You wrote:\n> {before}\nI do not know.")


if __name__ == "__main__":
    unittest.main()
