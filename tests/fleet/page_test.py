"""The page of korvel-fleet in a browser: it asks for nothing, runs no text of a board, and has no accessibility violation
that axe-core finds.
"""

import os
import sys
import unittest
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
sys.path[:0] = [str(SOURCE / "tests/report/web"), str(SOURCE / "fleet")]

import accessibility_test
from browser import WIDTHS, PageTest
from korvel_fleet.packages.page import page_lines
from korvel_fleet.packages.results import BoardResult
from sample_pages import ESCAPES, HOSTILE, LONG_NAME


def whole(board: str) -> BoardResult:
    return BoardResult(board, "whole", verdict="healthy", file=f"{board}.tgz", probes={"heartbeat": "healthy"})


def in_trouble(board: str, text: str) -> BoardResult:
    """Each field that a board fills has the text."""
    return BoardResult(board, "incomplete", cause=text, evidence=f"{text}.", verdict="failed", file=f"{text}.tgz.incomplete",
                       findings={"error": 1, "warning": 2}, finding_texts=(text,), probes={"heartbeat": text})


class ThePage(PageTest):
    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        texts = (*HOSTILE, ESCAPES, LONG_NAME)
        results = [whole("board1"), *(in_trouble(f"board{place}", text) for place, text in enumerate(texts, 2))]
        cls.page = cls.folder / "index.html"
        cls.page.write_text("".join(page_lines(results)), encoding="utf-8")

    def test_loads_nothing_and_logs_nothing(self) -> None:
        self.browser.show(self.page)
        requests = [event for event in self.browser.events("Network.requestWillBeSent") if self.page.as_uri() not in event]
        self.assertEqual((requests, self.browser.console()), ([], []))

    def test_shows_the_texts_of_a_board_and_runs_none(self) -> None:
        self.browser.show(self.page)
        self.browser.open_everything()
        items = self.browser.driver.find_elements("css selector", "details li")
        shown = [item.text for item in items]
        self.assertEqual([text for text in HOSTILE if text not in shown], [])
        self.assertEqual(self.browser.script("return [window.hit, document.scripts.length, document.images.length]"), [None, 0, 0])
        links = self.browser.script("return [...document.links].map((link) => link.href)")
        self.assertEqual([link for link in links if not link.startswith(self.folder.as_uri())], [])

    def test_is_not_wider_than_the_screen(self) -> None:
        for width in WIDTHS:
            self.browser.show(self.page, width)
            self.browser.open_everything()
            self.assertLessEqual(self.browser.script("return document.documentElement.scrollWidth"), width)

    def test_has_no_accessibility_violation_in_light_and_dark_at_any_width(self) -> None:
        script = accessibility_test.axe()
        for width in WIDTHS:
            self.browser.show(self.page, width)
            self.browser.open_everything()
            self.browser.script(script)
            for scheme, rules in accessibility_test.RULES.items():
                with self.subTest(width=width, scheme=scheme):
                    self.browser.use_scheme(scheme)
                    found = self.browser.driver.execute_async_script(accessibility_test.RUN, rules)
                    self.assertEqual(found, [])


if __name__ == "__main__":
    if not accessibility_test.FILE.exists():
        accessibility_test.install()
    unittest.main()
