#!/usr/bin/env python3
"""Measures in Chromium how soon the pages of large packages are usable.

usage: page_bench.py KORVEL_REPORT
Prints a table. The exit status is 1 if a limit is exceeded.
"""

import os
import sys
from collections.abc import Iterator
from datetime import datetime, timedelta, timezone
from pathlib import Path
from statistics import median
from tempfile import TemporaryDirectory

if len(sys.argv) != 2:
    sys.exit(__doc__)
HERE = Path(__file__).resolve().parent
os.environ["KORVEL_SOURCE"] = str(HERE.parents[2])
os.environ["KORVEL_BUILD"] = str(Path(sys.argv[1]).absolute().parent)
sys.path.append(str(HERE.parent / "bench"))

import large_package  # noqa: E402
from browser import Browser, make_page, write_package  # noqa: E402

ROUNDS = 5
MIB = 1 << 20

# Runs in the page before anything of the page does. As soon as there is a filter, it types a text into it. The page is
# usable when the result is painted.
TYPE_AT_ONCE = """
document.addEventListener('DOMContentLoaded', () => {
    const timeline = document.querySelector('.timeline');
    if (!timeline)
        return;
    timeline.scrollIntoView({behavior: 'instant'});
    const field = timeline.querySelector('[name=text]');
    const output = timeline.querySelector('output');
    const type = () => {
        if (output.textContent === '')
            return requestAnimationFrame(type);
        const before = output.textContent;
        field.value = 'route';
        field.dispatchEvent(new Event('input', {bubbles: true}));
        const wait = () => requestAnimationFrame(() => setTimeout(() => {
            if (output.textContent === before)
                return wait();
            window.usable = performance.now();
        }));
        wait();
    };
    type();
});
"""
FIRST_PAINT = "return performance.getEntriesByName('first-contentful-paint')[0]?.startTime ?? 0"

# Each does something, and is done when the result is painted.
AFTER = """
    const done = arguments[0];
    const start = performance.now();
    %s
    const wait = () => requestAnimationFrame(() => setTimeout(() => (%s) ? done(performance.now() - start) : wait()));
    wait();
"""
FILTER = AFTER % ("""
    const field = document.querySelector('.timeline [name=text]');
    const output = document.querySelector('.timeline output');
    const before = output.textContent;
    field.value = 'session';
    field.dispatchEvent(new Event('input', {bubbles: true}));""", "output.textContent !== before")
SCROLL = AFTER % ("const box = document.querySelector('.entries'); box.scrollTop = box.scrollHeight / 3;", "true")

# The rows of the table: unit, and the limits of the two packages.
ROWS = {
    "size of the page": ("MiB", 2, 20),
    "first paint": ("ms", 1000, 1000),
    "a filter shows its result": ("ms", 1000, 1000),
    "another filter": ("ms", 500, 500),
    "scrolled over entries": ("ms", 200, 200),
}


def entries(count: int) -> Iterator[str]:
    """Entries of a log, one a millisecond, ten percent of them warnings and errors."""
    time = datetime(2026, 11, 22, tzinfo=timezone.utc)
    texts = ("route to 10.1.{}.0/24 learnt", "session {} ended", "{} descriptors free")
    for number in range(count):
        level = 0 if number % 100 == 0 else 1 if number % 10 == 0 else 3
        yield f"{time:%Y-%m-%dT%H:%M:%S.%fZ} {level} iwf_dispatcher: {texts[number % 3].format(number % 251)}\n"
        time += timedelta(milliseconds=1)


def measure(browser: Browser, page: Path) -> list[float]:
    """The row of numbers of one page, in the order of the table."""
    rounds = []
    for _ in range(ROUNDS):
        browser.show(page)
        browser.wait_until("return 'usable' in window")
        rounds.append([browser.script(FIRST_PAINT), browser.script("return window.usable"),
                       browser.driver.execute_async_script(FILTER), browser.driver.execute_async_script(SCROLL)])
    return [page.stat().st_size / MIB, *(median(times) for times in zip(*rounds))]


def pages(folder: Path) -> Iterator[Path]:
    large_package.write(str(folder / "large.tgz"))
    yield make_page(folder / "large.html", folder / "large.tgz")
    log = "".join(entries(1_000_000)).encode()
    yield make_page(folder / "million.html", write_package(folder / "million.tgz", {"./archive/dispatcher/runtime.log": log}))


def main() -> int:
    with TemporaryDirectory() as name:
        browser = Browser()
        try:
            browser.command("Page.addScriptToEvaluateOnNewDocument", source=TYPE_AT_ONCE)
            columns = [measure(browser, page) for page in pages(Path(name))]
        finally:
            browser.close()
    print(f"{'':<30} {'large package':>20} {'a million entries':>20}\n"
          f"{'':<30} {'measured':>10} {'limit':>9} {'measured':>10} {'limit':>9}")
    holds = True
    for (what, (unit, *limits)), *numbers in zip(ROWS.items(), *columns):
        exceeded = any(number > limit for number, limit in zip(numbers, limits))
        holds = holds and not exceeded
        cells = " ".join(f"{number:>10.{2 if unit == 'MiB' else 0}f} {limit:>9}" for number, limit in zip(numbers, limits))
        print(f"{f'{what}, {unit}':<30} {cells}{'  EXCEEDED' if exceeded else ''}")
    return 0 if holds else 1


if __name__ == "__main__":
    sys.exit(main())
