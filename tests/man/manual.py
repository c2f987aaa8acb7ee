"""Reads the manual pages: their source, the items in it, and their formatted text."""

import os
import re
import subprocess
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
PAGES = SOURCE / "man"


def source_of(page: str) -> str:
    return (PAGES / page).read_text()


def section(page: str, name: str) -> str:
    """The source of a section, up to the next one."""
    return re.search(rf"^\.Sh {name}\n(.*?)(?=^\.Sh |\Z)", source_of(page), re.M | re.S)[1]


def flattened(text: str) -> str:
    return " ".join(text.split())


def text_of(page: str) -> str:
    """The formatted page as one line."""
    width = "width=1000"  # wide enough to break almost no line
    shown = subprocess.run(["mandoc", "-T", "ascii", "-O", width, PAGES / page],
                           check=True, capture_output=True, text=True).stdout
    return flattened(re.sub(".\b", "", shown))  # bold and underlined text is overstruck


def item_heads(page: str, macro: str) -> set[str]:
    """The words that list items explain. An item may explain several: ".It Cm proxy , server"."""
    heads = re.findall(rf"^\.It {macro} (\S+(?: , \S+)*)", source_of(page), re.M)
    return {word for head in heads for word in head.split(" , ")}


def options_of(page: str) -> set[str]:
    return {f"-{name}" for name in item_heads(page, "Fl")}


def keywords_of_korvel() -> set[str]:
    synopsis = re.findall(r"^\.Cm (\S+)$", section("korvel.1", "SYNOPSIS"), re.M)
    return item_heads("korvel.1", "Cm") | set(synopsis)
