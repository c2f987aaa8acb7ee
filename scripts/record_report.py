#!/usr/bin/env python3
"""Makes docs/pictures/report-*.png: the page of korvel-report about a simulated board in trouble.

Needs a build in build/ with -DKORVEL_REPORT=ON, the packages of `scripts/setup.sh browser`, and Debian's package pngquant.
KORVEL_BUILD names another build.
"""

import base64
import os
import subprocess
import sys
from pathlib import Path
from tempfile import TemporaryDirectory

SOURCE = Path(__file__).resolve().parent.parent
os.environ.setdefault("KORVEL_SOURCE", str(SOURCE))
os.environ.setdefault("KORVEL_BUILD", str(SOURCE / "build"))
sys.path.append(str(SOURCE / "tests/report/web"))

from browser import BUILD, Browser, make_page  # noqa: E402

# The heap of this board runs out, and netfp_proxy dies while it writes its dump.
BOARD = ("--traffic", "leak:62", "--fault", "netfp_proxy=dying")
COMMANDS = """
sleep 10
sh /opt/korvel/libexec/korvel/make-package korvel pkg-sup
cd /ffs/run/logs && tar -cf - *
"""

# The name of a picture, its colour scheme, its size in pixels, and the element at its top.
PICTURES = (
    ("report-light", "light", (1280, 1000), "body"),
    ("report-dark", "dark", (1280, 1100), "#timeline"),
    ("report-narrow", "light", (360, 780), "body"),
)
COLOURS = "64"


def make_package(folder: Path) -> Path:
    """Makes a package as the board's services do, with the record of the run beside it."""
    run = subprocess.run([BUILD / "boardsim", *BOARD, "--", "sh", "-c", COMMANDS], stdout=subprocess.PIPE,
                         stderr=subprocess.DEVNULL, check=True)
    subprocess.run(["tar", "-xf", "-"], input=run.stdout, cwd=folder, check=True)
    return folder / "netfp_logs_sup.tgz"


def picture_of(browser: Browser, page: Path, scheme: str, size: tuple[int, int], top: str) -> bytes:
    browser.show(page, *size, scheme)
    browser.open_everything()
    browser.script("for (const fold of document.querySelectorAll('details')) fold.open = false;"
                   "const top = document.querySelector(arguments[0]).getBoundingClientRect().top + window.scrollY;"
                   "window.scrollTo({top: top - 12, behavior: 'instant'})", top)
    browser.next_frame()
    return base64.b64decode(browser.command("Page.captureScreenshot")["data"])


def main() -> None:
    with TemporaryDirectory() as name:
        folder = Path(name)
        page = make_page(folder / "page.html", "--board", "board-7", make_package(folder))
        browser = Browser()
        for picture, *view in PICTURES:
            small = subprocess.run(["pngquant", "--nofs", "--strip", COLOURS, "-"], input=picture_of(browser, page, *view),
                                   stdout=subprocess.PIPE, check=True)
            (SOURCE / f"docs/pictures/{picture}.png").write_bytes(small.stdout)
        browser.close()


if __name__ == "__main__":
    main()
