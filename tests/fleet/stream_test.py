"""The stream of a job, as korvel-fleet reads it: in pieces of any size, and from boards that must not be trusted."""

import hashlib
import sys
import unittest

import fleet

sys.path.append(str(fleet.BUILD / "share/korvel-fleet"))
from korvel_fleet.boards.stream import JobStream, Refused  # noqa: E402
from korvel_fleet.packages.verdicts import JsonLines  # noqa: E402

TOKEN = "0123456789abcdef"
FIRST = f"korvel-fleet/1 {TOKEN}\n".encode()
PACKAGE = bytes(range(256)) * 3
RUN = b"format: 1\n\n"
CHECKSUM = hashlib.sha256(PACKAGE).hexdigest().encode()
LIMIT = 1000
WHOLE = b"%srun %d\n%spackage %d %s\n%send\n" % (FIRST, len(RUN), RUN, len(PACKAGE), CHECKSUM, PACKAGE)
NOT_THE_JOB = "the board sent something else than the job's answer"


class Memory:
    def __init__(self) -> None:
        self.run = self.package = b""

    def write_run(self, data: bytes) -> None:
        self.run += data

    def write_package(self, data: bytes) -> None:
        self.package += data


def read(data: bytes, piece: int = 1 << 20) -> tuple[JobStream, Memory]:
    memory = Memory()
    stream = JobStream(TOKEN, LIMIT, memory)
    for start in range(0, len(data), piece):
        stream.feed(data[start:start + piece])
    return stream, memory


class AStream(unittest.TestCase):
    def assert_refused(self, message: str, data: bytes) -> None:
        with self.subTest(message), self.assertRaises(Refused) as caught:
            read(data)
        self.assertEqual(str(caught.exception), message)

    def test_is_read_in_pieces_of_any_size(self) -> None:
        for piece in (1, 2, 7, 100, 1 << 20):
            stream, memory = read(b"a shell's greeting\n" + WHOLE, piece)
            self.assertEqual((memory.run, memory.package), (RUN, PACKAGE))
            self.assertEqual((stream.began, stream.complete, stream.failure, stream.sha256),
                             (True, True, None, CHECKSUM.decode()))

    def test_that_is_cut_anywhere_is_never_complete(self) -> None:
        for end in range(len(WHOLE)):
            self.assertFalse(read(WHOLE[:end])[0].complete)

    def test_with_another_token_does_not_begin(self) -> None:
        self.assertFalse(read(WHOLE.replace(b"0123", b"0124"))[0].began)

    def test_names_the_cause_of_a_failure(self) -> None:
        stream, _ = read(FIRST + b"failed no-korvel\n")
        self.assertEqual((stream.complete, stream.failure, stream.sha256), (True, "no-korvel", None))

    def test_beyond_a_limit_is_refused(self) -> None:
        self.assert_refused("too much output: more than 64 KiB before the job's first line", b"x" * 70000)
        self.assert_refused("too much output: a package of 1001 bytes, more than the limit of 1000 bytes",
                            FIRST + b"package 1001 " + CHECKSUM + b"\n")
        self.assert_refused("too much output: a run file of 1048577 bytes, more than the limit of 1048576 bytes",
                            FIRST + b"run 1048577\n")
        self.assert_refused("the board sent more after the end of the job's answer", WHOLE + b"more")
        self.assert_refused(NOT_THE_JOB, FIRST + b"x" * 1000)

    def test_with_another_line_is_refused(self) -> None:
        for line in (b"", b"run", b"run -1", b"run 1 ", b"package 1", b"failed No", b"END", b"run 9999999999999"):
            self.assert_refused(NOT_THE_JOB, FIRST + line + b"\n")

    def test_with_a_second_package_or_run_file_is_refused(self) -> None:
        self.assert_refused(NOT_THE_JOB, WHOLE.removesuffix(b"end\n") + b"package 1 " + CHECKSUM + b"\n")
        self.assert_refused(NOT_THE_JOB, FIRST + b"run 1\nxrun 1\n")

    def test_with_another_package_than_announced_is_refused(self) -> None:
        self.assert_refused("the package changed on its way: its checksum differs",
                            WHOLE.replace(bytes(range(256)), bytes(256), 1))
        self.assert_refused("the package changed on its way: its checksum differs",
                            FIRST + b"package 0 " + CHECKSUM + b"\nend\n")

    def test_with_an_empty_package_has_its_checksum(self) -> None:
        empty = hashlib.sha256(b"").hexdigest()
        stream, memory = read(FIRST + f"run 0\npackage 0 {empty}\nend\n".encode())
        self.assertEqual((stream.complete, stream.sha256, memory.package), (True, empty, b""))


class VerdictsOfKorvelReport(unittest.TestCase):
    def test_are_not_taken_from_packages_inside_packages(self) -> None:
        """A board could name a package inside its own as the file of another board."""
        outer = (b'{"source":"one","sha256":"1","size":1,"board":"a","time":null,"verdict":"incomplete","cause":null,'
                 b'"reason":null,"sidecar":{"state":"used","contents":null},\n"parts":[\n'
                 b'{"name":"ti/x","expected":true,"state":"missing","cause":"gone","evidence":[]}\n],\n"findings":[\n'
                 b'{"rule":"r","severity":"error"}\n],\n"values":[],\n"nested":[\n%s]}\n]}\n')
        inner = outer.replace(b'"one"', b'"two"').replace(b'"incomplete"', b'"whole"')
        lines = JsonLines()
        lines.feed(b'{"schema":"s","packages":[\n' + outer % (inner % b"" + b",\n"))
        self.assertEqual([(verdict.verdict, verdict.cause, verdict.findings) for verdict in lines.verdicts],
                         [("incomplete", "ti/x missing: gone", {"error": 1})])


if __name__ == "__main__":
    unittest.main()
