#!/usr/bin/env python3
"""Runs scripts/demo.sh and records its first sections as docs/pictures/demo.svg, a picture of a terminal."""

import subprocess
from html import escape
from pathlib import Path

SOURCE = Path(__file__).resolve().parent.parent
PICTURE = SOURCE / "docs/pictures/demo.svg"

HEADING = "== "
RECORDED_SECTIONS = 3

# In pixels. Fonts differ in the width of their characters: this is the width of the widest usual one.
CHARACTER = 8.43
LINE = 20
BLANK_LINE = 10
MARGIN = 20
TITLE_BAR = 38

# How a line begins, and its style. The first match counts.
STYLES = ((HEADING, "heading"), ("# ", "note"), ("$ ", "command"), ("board# ", "command"), ("", "output"))

FRAME = """\
<svg xmlns="http://www.w3.org/2000/svg" role="img" viewBox="0 0 {width} {height}" width="{width}" height="{height}">
<title>Korvel on a simulated board: the first sections of scripts/demo.sh</title>
<style>
text {{ font: 14px ui-monospace, SFMono-Regular, Menlo, Consolas, "DejaVu Sans Mono", "Liberation Mono", monospace;
       white-space: pre }}
.window {{ fill: #161b22; stroke: #444c56 }}
.rule {{ stroke: #30363d }}
.button {{ fill: #444c56 }}
.name {{ fill: #8b949e; text-anchor: middle }}
.heading {{ fill: #e3b341; font-weight: bold }}
.note {{ fill: #8ddb8c }}
.prompt {{ fill: #6cb6ff }}
.command {{ fill: #ffffff; font-weight: bold }}
.output {{ fill: #c9d1d9 }}
</style>
<rect class="window" x="0.5" y="0.5" width="{frame_width}" height="{frame_height}" rx="8"/>
<path class="rule" d="M1 {bar}.5H{frame_width}"/>
<g class="button"><circle cx="20" cy="19" r="6"/><circle cx="40" cy="19" r="6"/><circle cx="60" cy="19" r="6"/></g>
<text class="name" x="{middle}" y="24">scripts/demo.sh</text>
<g xml:space="preserve">
{lines}
</g>
</svg>
"""


def recorded_part(output: str) -> list[str]:
    """The lines of the first sections, without the blank lines around them."""
    sections = f"\n{output}".split(f"\n{HEADING}")[1:RECORDED_SECTIONS + 1]
    return "\n".join(HEADING + section for section in sections).strip().split("\n")


def text_element(line: str, y: int) -> str:
    start, style = next(row for row in STYLES if line.startswith(row[0]))
    text = escape(line, quote=False)
    if style == "command":
        text = f'<tspan class="prompt">{escape(start)}</tspan>{escape(line.removeprefix(start), quote=False)}'
    elif style == "heading":
        text = escape(line.removeprefix(start), quote=False)
    return f'<text class="{style}" x="{MARGIN}" y="{y}">{text}</text>'


def picture(lines: list[str]) -> str:
    elements = []
    y = TITLE_BAR + MARGIN - LINE // 2
    for line in lines:
        y += LINE if line else BLANK_LINE
        if line:
            elements.append(text_element(line, y))
    width = round(2 * MARGIN + CHARACTER * max(map(len, lines)))
    height = y + MARGIN
    return FRAME.format(width=width, height=height, frame_width=width - 1, frame_height=height - 1,
                        bar=TITLE_BAR, middle=width // 2, lines="\n".join(elements))


if __name__ == "__main__":
    demo = subprocess.run([SOURCE / "scripts/demo.sh"], stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=True)
    PICTURE.write_text(picture(recorded_part(demo.stdout)), encoding="utf-8")
