"""Finds long sentences in pages, and hard phrases in pages and comments.

To check files while writing them: python3 tests/docs/sentences.py FILE...

A passage is a paragraph, a list item, a table cell or a heading. No sentence crosses its end.
Inline code counts as one word, and a link counts by its text. The check skips code blocks, displays and the synopsis
of a manual page. The arguments of an mdoc macro count as words; the macros do not.
"""

import ast
import re
import sys
from collections.abc import Iterable, Iterator
from dataclasses import dataclass
from pathlib import Path

MOST_WORDS = 30

# Hard phrases, as regular expressions, each with a better wording.
PHRASES = {
    r"says? of|said of": "reports, describes",
    r"(is|are|was|were|be) told(?! apart)": "receives, reads, is given",
    r"(is|are) said": "reports, describes",
    r"has it that": "reports, describes",
    r"tells? of": "reports, shows",
    r"so it is with": "the same applies to",
    r"of what is not": "name the thing",
    r"but for": "except for",
    r"as it stands": "leave it out, or: unchanged",
    r"where (there|one) is": "if there is",
    r"(be|is|are) had": "is available, exists, can be created",
    r"(for|of) which": "a second sentence that names the thing again",
    r"that which|those which": "what, or name the thing",
    r"makes? sure of": "checks, ensures that",
    r"be (it|they)": "whether",
    r"what(so)?ever (it is|they are)": "any",
    r"for ever": "without limit, never ends",
    r"(left|leaves?|leaving) aside": "ignores",
    r"stands? (in(?! for)|at|there|before|after|behind)": "is in, is at",
    r"(is|are) to be": "must be, or an imperative",
    r"the (former|latter)": "name the thing again",
    r"whence|whereof|wherein|thereof|therein|lest|hitherto": "plain words",
}
HARD_PHRASE = re.compile(rf"\b({'|'.join(PHRASES)})\b", re.IGNORECASE)

COMMENTED_FOLDERS = ("src", "platform", "boardsim", "base", "tests", "scripts")
SLASH_COMMENT = re.compile(r"(?:^|\s)//+<?\s?(.*)")
HASH_COMMENT = re.compile(r"(?:^|\s)#(?!!)\s?(.*)")
COMMENT_OF_SUFFIX = {".cpp": SLASH_COMMENT, ".hpp": SLASH_COMMENT, ".h": SLASH_COMMENT,
                     ".sh": HASH_COMMENT, ".py": HASH_COMMENT, ".txt": HASH_COMMENT}

ABBREVIATIONS = {"e.g.", "i.e.", "cf.", "vs.", "approx.", "..."}
CODE = "`code`"

Passage = list[tuple[int, str]]


@dataclass(frozen=True)
class Sentence:
    line: int
    text: str

    @property
    def words(self) -> int:
        return sum(any(character.isalnum() for character in word) for word in self.text.split())


def problems_of_page(page: Path, name: str) -> list[str]:
    """A message for each long sentence and for each hard phrase."""
    found: list[str] = []
    for passage in passages_of(page):
        for sentence in sentences_of(passage):
            if sentence.words > MOST_WORDS:
                found.append(f"{name}:{sentence.line}: {sentence.words} words: {sentence.text}")
            found += phrases_of(sentence, name)
    return found


def problems_of_comments(file: Path, name: str) -> list[str]:
    return [problem for passage in comments_of(file) for sentence in sentences_of(passage)
            for problem in phrases_of(sentence, name)]


def phrases_of(sentence: Sentence, name: str) -> list[str]:
    return [f'{name}:{sentence.line}: "{phrase[0]}" (better: {instead_of(phrase[0])}): {sentence.text}'
            for phrase in HARD_PHRASE.finditer(sentence.text)]


def instead_of(phrase: str) -> str:
    return next(better for pattern, better in PHRASES.items() if re.fullmatch(pattern, phrase, re.IGNORECASE))


def sentences_of(passage: Passage) -> Iterator[Sentence]:
    words: list[str] = []
    first = 0
    for line, word in ((line, word) for line, text in passage for word in text.split()):
        first = first if words else line
        words.append(word)
        if ends_sentence(word):
            yield Sentence(first, " ".join(words))
            words = []
    if words:
        yield Sentence(first, " ".join(words))


def ends_sentence(word: str) -> bool:
    """A full stop inside a word does not end a sentence, for example in a number or a file name."""
    bare = word.lstrip("([\"'").lower()
    return bare not in ABBREVIATIONS and re.search(r"[.!?][)\]\"'*_]*$", word) is not None


def passages_of(page: Path) -> Iterator[Passage]:
    text = page.read_text(encoding="utf-8")
    return markdown_passages(text) if page.suffix == ".md" else mdoc_passages(text)


ITEM = re.compile(r"(\s*)([-*+]|\d+[.)])(\s+)")
RULER = re.compile(r"[\s|:=-]+$")


def markdown_passages(text: str) -> Iterator[Passage]:
    return joined(markdown_lines(plain_markdown(text)))


def plain_markdown(text: str) -> str:
    """Removes code blocks, code, tags and link targets. Every line keeps its number."""
    text = replaced(r"^ *(```|~~~).*?^ *\1[ \t]*$", "", text)
    text = replaced(r"<!--.*?-->", "", text)
    text = replaced(r"(`+)(?!`).+?(?<!`)\1(?!`)", CODE, text)
    text = replaced(r"<[a-z/][^<>]*>", "", text)
    text = re.sub(r"!?\[([^\]]*)\](\([^)]*\)|\[[^\]]*\])", r"\1", text)
    return re.sub(r"\*\*|__", "", text)


def replaced(pattern: str, replacement: str, text: str) -> str:
    """Like re.sub(), but moves the line breaks of each match in front of its replacement."""
    return re.sub(pattern, lambda found: "\n" * found[0].count("\n") + replacement, text, flags=re.M | re.S)


def markdown_lines(text: str) -> Iterator[tuple[int, str | None]]:
    """The lines of passages, with None between two passages."""
    code_indent = 4
    after_blank = True
    for number, line in enumerate(text.splitlines(), 1):
        line = line.removeprefix("> ")
        indent = len(line) - len(line.lstrip())
        item = ITEM.match(line)
        if not line.strip():
            after_blank = True
            yield number, None
            continue
        if not item and not indent:
            code_indent = 4
        if after_blank and indent >= code_indent:
            continue
        after_blank = False
        if item:
            code_indent = len(item[0]) + 4
            yield number, None
            yield number, line[item.end():]
        elif line.lstrip().startswith(("|", "#")):
            yield number, None
            for cell in re.split(r"(?<!\\)\|", line.lstrip().lstrip("#")):
                yield number, None if RULER.match(cell) else cell
                yield number, None
        elif not RULER.match(line):
            yield number, line


def joined(lines: Iterable[tuple[int, str | None]]) -> Iterator[Passage]:
    passage: Passage = []
    for number, line in lines:
        if line is not None:
            passage.append((number, line))
        elif passage:
            yield passage
            passage = []
    if passage:
        yield passage


# mdoc's escapes for plain characters. The backslash comes last, so that it is not replaced twice.
ESCAPES = {r"\&": "", r"\-": "-", r"\(dq": '"', r"\(aq": "'", r"\(ha": "^", r"\(ti": "~", r"\(ga": "`", r"\e": "\\"}
CALLABLE = {"Ap", "Aq", "Ar", "Bq", "Cm", "Dq", "Dv", "Em", "Er", "Ev", "Fl", "Ic", "Li", "Nm", "No", "Ns", "Op", "Pa",
            "Pq", "Ql", "Qq", "Sq", "Sx", "Sy", "Va", "Xr"}
BREAKS = {"Bl", "El", "It", "Nd", "Pp", "Sh", "Ss"}
SKIPPED = {"An", "Dd", "Dl", "Dt", "Os"}
CLOSING = set(".,:;)]?!")


def mdoc_passages(text: str) -> Iterator[Passage]:
    return joined(mdoc_lines(text))


def mdoc_lines(text: str) -> Iterator[tuple[int, str | None]]:
    skipping = ""
    title = "the page"
    for number, line in enumerate(text.splitlines(), 1):
        macro, _, rest = line[1:].partition(" ") if line.startswith(".") else ("", "", line)
        if macro == "Sh":
            skipping = rest if rest == "SYNOPSIS" else ""
        if macro == "Dt":
            title = rest.split()[0].lower()
        if macro == "Bd":
            skipping = "Bd"
        if macro in BREAKS | {"Bd"} | SKIPPED:
            yield number, None
        if not skipping and macro not in {"Bl", "Bd", r"\""} | SKIPPED:
            yield from mdoc_line(number, macro, rest, title)
        if macro in {"It", "Sh", "Ss"}:
            yield number, None
        if macro == "Ed" and skipping == "Bd":
            skipping = ""


def mdoc_line(number: int, macro: str, rest: str, title: str) -> Iterator[tuple[int, str | None]]:
    if not macro:
        yield number, unescaped(rest)
        return
    for cell in re.split(r" Ta ", f" {rest} "):
        yield number, macro_words(macro, arguments(cell), title)
        if macro == "It":
            yield number, None


def macro_words(macro: str, words: list[str], title: str) -> str:
    closing = ""
    while words and words[-1] in CLOSING:
        closing = words.pop() + closing
    if macro == "Nm" and not words:
        words = [title]
    if macro == "Xr":
        words = ["{}({})".format(*words[:2]), *words[2:]]
    if macro == "Ql":
        words = [CODE]
    return glued(word for word in words if word not in CALLABLE) + closing


def glued(words: Iterable[str]) -> str:
    return re.sub(r" ([.,:;)\]?!])(?= |$)", r"\1", " ".join(words))


def arguments(text: str) -> list[str]:
    return [unescaped(quoted or plain) for quoted, plain in re.findall(r'(?<!\S)"([^"]*)"|(\S+)', text)]


def unescaped(text: str) -> str:
    for escape, character in ESCAPES.items():
        text = text.replace(escape, character)
    return text


def comments_of(file: Path) -> Iterator[Passage]:
    """The comments of a source file. Consecutive comment lines are one passage."""
    pattern = COMMENT_OF_SUFFIX[file.suffix]
    lines = file.read_text(encoding="utf-8", errors="replace").splitlines()
    found = ((number, pattern.search(line)) for number, line in enumerate(lines, 1))
    yield from joined((number, comment[1] if comment else None) for number, comment in found)
    if file.suffix == ".py":
        yield from docstrings_of("\n".join(lines))


def docstrings_of(program: str) -> Iterator[Passage]:
    for node in ast.walk(ast.parse(program)):
        if isinstance(node, ast.Module | ast.ClassDef | ast.FunctionDef):
            if docstring := ast.get_docstring(node, clean=False):
                yield list(enumerate(docstring.splitlines(), node.body[0].lineno))


def pages_in(source: Path) -> list[Path]:
    return sorted([*source.glob("*.md"), *source.glob("docs/**/*.md"), *source.glob("man/*.[15]")])


def commented_files_in(source: Path) -> list[Path]:
    return sorted(file for folder in COMMENTED_FOLDERS for file in (source / folder).glob("**/*")
                  if file.suffix in COMMENT_OF_SUFFIX and (file.suffix != ".txt" or file.name == "CMakeLists.txt"))


def main(names: list[str]) -> int:
    found: list[str] = []
    for name in names:
        check = problems_of_comments if Path(name).suffix in COMMENT_OF_SUFFIX else problems_of_page
        found += check(Path(name), name)
    print("\n".join(found) if found else "no long sentences, no hard phrases")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
