"""Runs korvel-report on a hostile package, measures it, and examines what it prints and writes."""

import base64
import hashlib
import json
import os
import re
import sys
import tempfile
from collections.abc import Iterator, Sequence
from dataclasses import dataclass
from html.parser import HTMLParser
from pathlib import Path

from program import SOURCE

sys.path.append(str(SOURCE / "tests/report/support"))
import measured  # noqa: E402

COMMANDS = ("check", "show", "html", "json", "metrics", "diff", "clean")

# What no output may contain: control characters, characters that reorder text, bytes that are not UTF-8.
UNSAFE = re.compile("[\x00-\x08\x0b-\x1f\x7f-\x9f\u202a-\u202e\u2066-\u2069\udc80-\udcff]")
METRIC = re.compile(r'(# (HELP|TYPE) .*|\w+(\{(\w+="([^"\\]|\\[\\"n])*",?)*\})? \S+)')
TAGS = set("a b body button caption code dd details div dl dt em fieldset figcaption figure footer form h1 h2 h3 h4 h5 "
           "h6 head header html input label legend li main meta nav option output p path pre rect script section "
           "select span strong style summary svg table tbody td th thead title tr ul".split())
LOADING = {"style", "src", "srcset", "action", "formaction", "href"}


@dataclass
class Result:
    usage: measured.Usage
    out: str
    err: str
    problems: list[str]


def run(program: Sequence[str | Path], command: str, package: Path, ordinary: Path) -> Result:
    """Runs the program in an empty folder, which is also its home and its place for temporary files."""
    more = {"diff": [ordinary], "clean": ["-o", "clean.tgz"]}.get(command, [])
    with tempfile.TemporaryDirectory(prefix="korvel-report-") as folder, \
            tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        usage = measured.run([*program, command, package, *more], cwd=folder, stdout=out, stderr=err,
                             env=os.environ | {"TMPDIR": folder, "HOME": folder})
        files = {path.name for path in Path(folder).iterdir()}
        result = Result(usage, contents_of(out), contents_of(err), [])
    result.problems = [*problems_of_run(command, result, files), *CHECKS.get(command, problems_of_text)(result.out)]
    return result


def contents_of(file) -> str:
    file.seek(0)
    return file.read().decode(errors="surrogateescape")


def problems_of_run(command: str, result: Result, files: set[str]) -> Iterator[str]:
    if result.usage.status not in range(4):
        yield f"exit status {result.usage.status}: {result.err[-500:]}"
    expected = {"clean.tgz", "clean.tgz.map"} if command == "clean" and result.usage.status == 0 else set()
    if files != expected:
        yield f"files: {files}"
    if UNSAFE.search(result.err) or result.err.count("\n") > 20:
        yield f"standard error: {result.err[:500]!r}"


def problems_of_text(out: str) -> Iterator[str]:
    if found := UNSAFE.search(out):
        yield f"not safe on a terminal: {out[max(0, found.start() - 50):found.end() + 50]!r}"


def problems_of_json(out: str) -> Iterator[str]:
    yield from problems_of_text(out)
    try:
        json.loads(out)
    except ValueError as error:
        yield f"no JSON: {error}"


def problems_of_metrics(out: str) -> Iterator[str]:
    yield from problems_of_text(out)
    for line in out.splitlines():
        if not METRIC.fullmatch(line):
            yield f"no metric: {line!r}"


class Page(HTMLParser):
    """Finds what a page could load or run."""

    def __init__(self, page: str) -> None:
        super().__init__()
        self.problems: list[str] = []
        self.policy = ""
        self.text = ""
        self.hashed: list[str] = []  # checksums of the style and of the script
        self.inside: str | None = None
        self.feed(page)
        self.close()

    def handle_starttag(self, tag: str, attributes: list[tuple[str, str | None]]) -> None:
        if tag not in TAGS:
            self.problems.append(f"tag {tag}")
        given = dict(attributes)
        for name, value in attributes:
            harmless = name == "href" and value.startswith("#")
            if name.startswith("on") or name in LOADING and not harmless:
                self.problems.append(f"{tag} {name}={value!r}")
        if tag == "meta" and given.get("http-equiv") == "Content-Security-Policy":
            self.policy = given["content"]
        self.inside = tag if tag == "style" or tag == "script" and given.get("type") != "application/json" else None

    def handle_endtag(self, tag: str) -> None:
        self.inside = None

    def handle_data(self, data: str) -> None:
        if self.inside:
            checksum = hashlib.sha256(data.encode(errors="surrogateescape")).digest()
            self.hashed.append(f"{self.inside}-src 'sha256-{base64.b64encode(checksum).decode()}'")
        else:
            self.text += data


def problems_of_page(out: str) -> Iterator[str]:
    yield from problems_of_text(out)
    page = Page(out)
    yield from page.problems
    sources = [part.strip() for part in page.policy.split(";")]
    if sorted(sources) != sorted(["default-src 'none'", "base-uri 'none'", "form-action 'none'", *page.hashed]):
        yield f"policy: {page.policy}, but the page has {page.hashed}"


CHECKS = {"json": problems_of_json, "metrics": problems_of_metrics, "html": problems_of_page}
