"""Pages of korvel-report in a real browser, without a network.

Needs Chromium, chromedriver and selenium, which scripts/setup.sh installs for the purpose "browser". Without them, a test
that imports this module ends with the exit status 77: ctest reports a skipped test.
"""

import io
import os
import shutil
import subprocess
import sys
import tarfile
import time
import unittest
from collections.abc import Mapping
from pathlib import Path
from tempfile import TemporaryDirectory
from typing import Any, NoReturn

SKIPPED = 77


def skip(reason: str) -> NoReturn:
    print(f"skipped: {reason}", file=sys.stderr)
    sys.exit(SKIPPED)


if not shutil.which("chromedriver"):
    skip("chromedriver is not installed: scripts/setup.sh browser installs it")
try:
    from selenium import webdriver
except ModuleNotFoundError:
    # Debian installs selenium only for its own interpreter.
    DEBIANS_PYTHON = "/usr/bin/python3"
    if os.environ.get("KORVEL_BROWSER_PYTHON") == DEBIANS_PYTHON or not Path(DEBIANS_PYTHON).exists():
        skip("selenium is not installed: scripts/setup.sh browser installs it")
    os.environ["KORVEL_BROWSER_PYTHON"] = DEBIANS_PYTHON
    os.execv(DEBIANS_PYTHON, [DEBIANS_PYTHON, *sys.argv])
from selenium.webdriver.chrome.options import Options
from selenium.webdriver.chrome.service import Service

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])
PACKAGES = SOURCE / "tests/report/data"  # packages that korvel made
MADE = 1795315600.0  # 22 November 2026
MOST_SECONDS = 20
WIDTHS = (360, 1600)
SCHEMES = ("light", "dark")

Members = Mapping[str, bytes]


def members_of(package: Path) -> dict[str, bytes]:
    with tarfile.open(package) as archive:
        return {member.name: archive.extractfile(member).read() for member in archive if member.isfile()}


def write_package(file: Path, members: Members, made: float = MADE, owner: str = "root") -> Path:
    """Writes a package whose members have the time `made` and the owner `owner`."""
    with tarfile.open(file, "w:gz", format=tarfile.PAX_FORMAT) as archive:
        for name, content in members.items():
            header = tarfile.TarInfo(name)
            header.size = len(content)
            header.mtime = int(made)
            header.uname = header.gname = owner
            archive.addfile(header, io.BytesIO(content))
    return file


def run_program(*words: str | Path) -> None:
    subprocess.run([BUILD / "korvel-report", *words], check=True, timeout=60, stdout=subprocess.DEVNULL)


def make_page(page: Path, *arguments: str | Path) -> Path:
    run_program("html", "-o", page, *arguments)
    return page


class Browser:
    """Chromium without a window. Records requests and messages of the console."""

    def __init__(self) -> None:
        options = Options()
        # The sandbox of Chromium needs an ordinary user, and small shared memory is usual in containers.
        for argument in ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--disable-gpu"):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        self.driver = webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=options)
        self.driver.set_script_timeout(90)

    def close(self) -> None:
        self.driver.quit()

    def command(self, name: str, **parameters: Any) -> Any:
        return self.driver.execute_cdp_cmd(name, parameters)

    def script(self, text: str, *arguments: Any) -> Any:
        return self.driver.execute_script(text, *arguments)

    def show(self, page: Path, width: int = 1600, height: int = 1000, scheme: str = "light",
             javascript: bool = True) -> None:
        """Opens a page. What an earlier page logged is gone."""
        self.use_size(width, height)
        self.command("Emulation.setScrollbarsHidden", hidden=True)
        self.use_scheme(scheme)
        self.command("Emulation.setScriptExecutionDisabled", value=not javascript)
        self.driver.get("about:blank")
        self.console()
        self.driver.get_log("performance")
        self.driver.get(page.as_uri())

    def use_size(self, width: int, height: int = 1000) -> None:
        self.command("Emulation.setDeviceMetricsOverride", width=width, height=height, deviceScaleFactor=1, mobile=False)

    def use_scheme(self, scheme: str) -> None:
        self.command("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])

    def open_everything(self) -> None:
        """Opens what is folded, and waits until the page has drawn what it draws late."""
        self.script("for (const fold of document.querySelectorAll('details')) fold.open = true;")
        for late in self.driver.find_elements("css selector", ".timeline, .plot"):
            self.script("arguments[0].scrollIntoView({behavior: 'instant'})", late)
            self.next_frame()
        self.wait_until("return [...document.querySelectorAll('.entries')].every((box) => box.childElementCount > 0)")
        self.wait_until("return [...document.querySelectorAll('.plot')].every((plot) => plot.querySelector('canvas'))")

    def next_frame(self) -> None:
        self.driver.execute_async_script("requestAnimationFrame(() => requestAnimationFrame(arguments[0]))")

    def wait_until(self, condition: str) -> None:
        """Waits until a script returns true. Fails after a time that no machine needs."""
        deadline = time.monotonic() + MOST_SECONDS
        while not self.script(condition):
            if time.monotonic() > deadline:
                raise AssertionError(f"never true: {condition}")
            time.sleep(0.05)

    def console(self) -> list[str]:
        return [entry["message"] for entry in self.driver.get_log("browser")]

    def events(self, name: str) -> list[str]:
        """The events of a kind since the page was opened, as JSON."""
        return [entry["message"] for entry in self.driver.get_log("performance") if f'"method":"{name}"' in entry["message"]]


class PageTest(unittest.TestCase):
    """Each class of tests has a browser and a folder."""

    @classmethod
    def setUpClass(cls) -> None:
        folder = TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.folder = Path(folder.name)
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)
