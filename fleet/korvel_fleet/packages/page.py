"""index.html: one row a board. No script, nothing is loaded; every text is escaped."""

import base64
import hashlib
from collections.abc import Iterator
from html import escape
from urllib.parse import quote

from korvel_fleet.common.clock import now
from korvel_fleet.packages.results import SEVERITIES, BoardResult, folded_causes

STYLE = """
:root { color-scheme: light dark; --page: #fff; --text: #1a1a1a; --link: #0645ad; --line: #bbb; --soft: #f0f0f0; }
@media (prefers-color-scheme: dark) {
    :root { --page: #121212; --text: #e8e8e8; --link: #8ab4f8; --line: #555; --soft: #262626; }
}
body { background: var(--page); color: var(--text); font: 16px/1.45 system-ui, sans-serif; }
body { margin: 0 auto; max-width: 72rem; padding: 1rem; }
h1 { font-size: 1.4rem; margin: 0 0 .5rem; }
h2 { font-size: 1.1rem; margin: 1.5rem 0 .5rem; }
table { border-collapse: collapse; width: 100%; }
th, td { border-bottom: 1px solid var(--line); padding: .35rem .6rem .35rem 0; text-align: left; vertical-align: top; }
th { font-weight: 600; }
a { color: var(--link); }
ul, td.text { overflow-wrap: anywhere; }
td.number, th.number { text-align: right; font-variant-numeric: tabular-nums; }
tr.trouble { background: var(--soft); }
tr.trouble td.state { font-weight: 600; }
small { display: block; }
details ul { margin: .25rem 0; padding-left: 1.2rem; }
summary { cursor: pointer; white-space: nowrap; }
@media (max-width: 40rem) {
    thead { display: none; }
    tr { display: block; border-bottom: 1px solid var(--line); padding: .4rem .3rem; }
    td, td.number { border: 0; display: block; padding: .1rem 0; text-align: left; }
    td::before { content: attr(data-name) ": "; font-weight: 600; }
    td:empty { display: none; }
    td { overflow-wrap: anywhere; }
}
@media print { body { max-width: none; } }
"""
TITLES = ("Errors", "Warnings", "Notes")
MAX_TEXTS = 4 * 1024 * 1024  # bytes of findings in a page, so that it stays usable


def _policy() -> str:
    digest = base64.b64encode(hashlib.sha256(STYLE.encode()).digest()).decode()
    return f"default-src 'none'; style-src 'sha256-{digest}'; base-uri 'none'; form-action 'none'"


def _cell(name: str, content: str, kind: str = "") -> str:
    kind = f' class="{kind}"' if kind else ""
    return f'<td{kind} data-name="{name}">{content}</td>'


def _link(file: str, text: str) -> str:
    return f'<a href="{escape(quote(file))}">{escape(text)}</a>'


def _cause(result: BoardResult) -> str:
    cause, evidence = result.cause or "", result.evidence or ""
    return escape(cause) + (f"<small>{escape(evidence)}</small>" if evidence not in cause else "")


class _Findings:
    """The findings of each board, folded in, until the page has enough of them."""

    def __init__(self) -> None:
        self._left = MAX_TEXTS

    def cell(self, result: BoardResult) -> str:
        number = sum(result.findings.values())
        if not result.verdict or not number:
            return _cell("Findings", "")
        items = "".join(f"<li>{escape(text)}</li>" for text in result.finding_texts)
        more = number - len(result.finding_texts)
        if more > 0:
            items += f"<li>{more} more</li>"
        self._left -= len(items)
        if self._left < 0:
            return _cell("Findings", f"{number} findings")
        summary = f"<summary>{escape(result.verdict)}: {number} findings</summary>"
        return _cell("Findings", f"<details>{summary}<ul>{items}</ul></details>", "text")


def _row(result: BoardResult, texts: _Findings) -> str:
    numbers = [_cell(title, str(result.findings.get(severity, 0)) if result.verdict else "", "number")
               for severity, title in zip(SEVERITIES, TITLES)]
    trouble = "" if result.state == "whole" else ' class="trouble"'
    cells = [_cell("Board", escape(result.board)), _cell("State", escape(result.state), "state"),
             _cell("Cause", _cause(result), "text"), *numbers, texts.cell(result),
             _cell("Heartbeat", escape(result.probes.get("heartbeat", "")), "text"),
             _cell("Package", _link(result.file, result.file) if result.file else "", "text")]
    return f"<tr{trouble}>{''.join(cells)}</tr>\n"


def page_lines(results: list[BoardResult]) -> Iterator[str]:
    """The page, boards in trouble first."""
    whole = sum(result.state == "whole" for result in results)
    title = f"{whole} of {len(results)} boards have a whole package"
    yield ('<!DOCTYPE html>\n<html lang="en">\n<head>\n<meta charset="utf-8">\n'
           f'<meta http-equiv="Content-Security-Policy" content="{escape(_policy())}">\n'
           '<meta name="viewport" content="width=device-width, initial-scale=1">\n'
           f"<title>{title}</title>\n<style>{STYLE}</style>\n</head>\n<body>\n<main>\n<h1>{title}</h1>\n"
           f"<p>Written by korvel-fleet at {now()}.</p>\n")
    causes = folded_causes(results)
    if causes:
        yield "<h2>Causes</h2>\n<ul>\n"
        for boards, cause in causes:
            yield f"<li>{escape(str(boards))}: {escape(cause)}</li>\n"
        yield "</ul>\n"
    numbers = "".join(f'<th scope="col" class="number">{title}</th>' for title in TITLES)
    yield ('<h2>Boards</h2>\n<table>\n<thead><tr><th scope="col">Board</th><th scope="col">State</th>'
           f'<th scope="col">Cause</th>{numbers}<th scope="col">Findings</th><th scope="col">Heartbeat</th>'
           '<th scope="col">Package</th></tr></thead>\n<tbody>\n')
    texts = _Findings()
    for in_trouble in (True, False):
        for result in results:
            if (result.state != "whole") is in_trouble:
                yield _row(result, texts)
    yield ("</tbody>\n</table>\n<p><code>korvel-report show FILE</code> prints all findings of a package, and "
           "<code>korvel-report html FILE</code> makes a page of it.</p>\n"
           "</main>\n</body>\n</html>\n")
