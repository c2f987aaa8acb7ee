"""The page of korvel-report asks for nothing, runs no text of a package, and works with and without JavaScript."""

import json
import unittest

from browser import WIDTHS, PageTest
from sample_pages import (HOSTILE, VISIBLE_ESCAPES, hostile_page, ordinary_page, page_of_a_long_log, page_of_neighbours,
                          trend_page)
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

# Where the page of a hostile package shows its texts.
PLACES = {
    "name of a part": ".parts tbody th",
    "text of a part": "details.text pre",
    "name of a value": ".values tbody th",
    "title of values": ".values caption",
    "log entry": ".log td:last-child",
    "probe": ".pairs dd",
    "complaint": "[aria-label^='Standard error'] pre",
    "name that is not followed": "[id$=irregular] tbody th",
}

# How many pixels of each plot have the colour of its line.
PIXELS_OF_LINES = """
    const colour = getComputedStyle(document.documentElement).getPropertyValue('--calm-fill').trim();
    const wanted = Number.parseInt(colour.slice(1), 16);
    return [...document.querySelectorAll('.plot canvas')].map((canvas) => {
        const bytes = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data;
        let count = 0;
        for (let place = 0; place < bytes.length; place += 4)
            count += bytes[place] * 65536 + bytes[place + 1] * 256 + bytes[place + 2] === wanted;
        return count;
    });
"""

ENTRY_AT = """
    const box = document.querySelector('.entries');
    box.scrollIntoView({behavior: 'instant'});
    const {left, top, height} = box.getBoundingClientRect();
    const below = box.querySelector('thead').offsetHeight + 2;
    const y = top + below + arguments[0] * (height - below);
    return document.elementFromPoint(left + 15, y)?.closest('tr')?.lastChild.innerText ?? null;
"""

FOCUSABLE = "a[href], summary, input, select, button, [tabindex='0']"


class PageInABrowserTest(PageTest):
    @classmethod
    def setUpClass(cls) -> None:
        super().setUpClass()
        cls.ordinary = ordinary_page(cls.folder)
        cls.neighbours = page_of_neighbours(cls.folder)
        cls.hostile = hostile_page(cls.folder)
        cls.trend = trend_page(cls.folder)
        cls.pages = (cls.ordinary, cls.neighbours, cls.hostile, cls.trend)

    def texts(self, selector: str) -> list[str]:
        """What a reader sees of the elements, also of those that are out of view."""
        return self.browser.script(
            "return [...document.querySelectorAll(arguments[0])].filter((element) => element.checkVisibility())"
            ".map((element) => element.innerText)", selector)

    def entry_in_view(self, place: float) -> str:
        """The entry of the timeline at a place of its box: 0 is below the heading, 1 is the bottom."""
        self.browser.next_frame()
        return self.browser.script(ENTRY_AT, place)

    def element(self, selector: str):
        return self.browser.driver.find_element(By.CSS_SELECTOR, selector)

    def requests(self) -> list[str]:
        return [json.loads(event)["message"]["params"]["request"]["url"]
                for event in self.browser.events("Network.requestWillBeSent")]

    def wait_for_count(self, text: str) -> None:
        self.browser.wait_until(f"return document.querySelector('.timeline output').textContent === '{text}'")

    def test_asks_for_nothing_but_itself_and_has_no_message_on_the_console(self) -> None:
        for page in self.pages:
            with self.subTest(page=page.name):
                self.browser.show(page)
                self.browser.open_everything()
                self.assertEqual(self.requests(), [page.as_uri()])
                self.assertEqual(self.browser.console(), [])

    def test_runs_no_text_of_a_package(self) -> None:
        for javascript in (True, False):
            with self.subTest(javascript=javascript):
                self.browser.show(self.hostile, javascript=javascript)
                if javascript:
                    self.browser.open_everything()
                self.assertIsNone(self.browser.script("return window.hit ?? null"))
                self.assertEqual(self.browser.events("Page.javascriptDialogOpening"), [])
                kinds = self.browser.script("return [...document.scripts].map((script) => script.type)")
                self.assertEqual(kinds, ["application/json", "application/json", ""])
                self.assertEqual(self.browser.script(
                    "return [...document.querySelectorAll('[href], [src], [srcdoc], iframe, object, embed, base, img')]"
                    ".map((element) => element.getAttribute('href') ?? element.outerHTML)"
                    ".filter((target) => !target.startsWith('#'))"), [])

    def test_shows_hostile_texts_as_they_are(self) -> None:
        self.browser.show(self.hostile, javascript=False)
        self.browser.script("for (const fold of document.querySelectorAll('details')) fold.open = true;")
        for place, selector in PLACES.items():
            shown = "\n".join(self.texts(selector))
            for text in HOSTILE:
                with self.subTest(place=place, text=text):
                    self.assertIn(text, shown)
        for place in ("log entry", "text of a part", "complaint"):
            with self.subTest(place=place):
                self.assertIn(VISIBLE_ESCAPES, "\n".join(self.texts(PLACES[place])))
        self.assertEqual(self.texts("h1"), [f"2 packages of {HOSTILE[1]}"])

    def test_shows_hostile_texts_in_the_timeline_and_in_plots(self) -> None:
        self.browser.show(self.hostile)
        self.browser.open_everything()
        entries = "\n".join(self.texts(".entries tr:not(.filler) td:last-child"))
        plots = "\n".join(self.texts(".plot figcaption"))
        for text in HOSTILE:
            with self.subTest(text):
                self.assertIn(f"{text} {text}", entries)
                self.assertIn(text, plots)

    def test_never_scrolls_sideways_as_a_whole(self) -> None:
        for page in self.pages:
            for width in WIDTHS:
                with self.subTest(page=page.name, width=width):
                    self.browser.show(page, width)
                    self.browser.open_everything()
                    self.assertEqual(self.browser.script(
                        "const {scrollWidth, clientWidth} = document.documentElement; return scrollWidth - clientWidth"), 0)

    def test_shows_everything_without_javascript(self) -> None:
        self.browser.show(self.ordinary, 360, javascript=False)
        self.assertEqual(self.texts(".verdict .badge"), ["whole"])
        self.assertEqual(self.texts("form, .entries, .chosen, .pointer"), [])
        self.assertEqual(self.texts("main h2"), ["Findings", "Parts", "Timeline", "Pools and heaps", "Values", "Freshness",
                                                 "The run", "Texts"])
        self.assertIn("fuse/HistoryLog", self.texts(".parts tbody th a"))
        self.assertIn("failed allocations", self.texts(".values tbody th"))
        self.assertEqual([text.split()[-2:] for text in self.texts(".excerpt tbody td:last-child")],
                         [["netfp_server", "started"], ["iwf_dispatcher", "started"], ["sfn_dispatcher", "started"]])

    def test_shows_the_verdict_and_the_first_finding_on_the_first_screen(self) -> None:
        for width, height in ((360, 780), (1600, 900)):
            with self.subTest(width=width):
                self.browser.show(self.ordinary, width, height)
                for selector in (".verdict", ".meaning"):
                    self.assertLess(self.browser.script(
                        "return document.querySelector(arguments[0]).getBoundingClientRect().bottom", selector), height)

    def test_can_be_used_with_the_keyboard_alone(self) -> None:
        self.browser.show(self.ordinary)
        self.browser.script(
            "window.visited = []; document.addEventListener('focusin', ({target}) => window.visited.push("
            "{target, seen: getComputedStyle(target).outlineStyle !== 'none'}))")
        count = self.browser.script(
            "return [...document.querySelectorAll(arguments[0])].filter((element) => element.checkVisibility()).length", FOCUSABLE)
        self.assertEqual(self.browser.script(
            "return [...document.querySelectorAll('.scroll, .entries, .chosen')].filter((element) => element.tabIndex !== 0)"
            ".map((element) => element.className)"), [])
        ActionChains(self.browser.driver, duration=0).send_keys(Keys.TAB * count).perform()
        self.assertEqual(self.browser.script(
            "return [...document.querySelectorAll(arguments[0])].filter((element) => element.checkVisibility())"
            ".filter((element, place) => window.visited[place]?.target !== element || !window.visited[place].seen)"
            ".map((element) => element.outerHTML.slice(0, 100))", FOCUSABLE), [])

    def test_filters_the_timeline_by_text_and_level(self) -> None:
        self.browser.show(self.ordinary)
        self.browser.open_everything()
        self.assertEqual(self.texts(".excerpt"), [])
        self.wait_for_count("3 of 3 entries")
        self.element(".timeline [name=text]").send_keys("sfn_dispatcher")
        self.wait_for_count("1 of 3 entries")
        self.assertEqual(self.texts(".entries [data-index] td:last-child"), ["sfn_dispatcher started"])
        for box in self.browser.driver.find_elements(By.NAME, "level"):
            box.send_keys(Keys.SPACE)
        self.wait_for_count("0 of 3 entries")
        self.element(".timeline [type=reset]").send_keys(Keys.ENTER)
        self.wait_for_count("3 of 3 entries")

    def test_shows_the_entries_in_view_wherever_one_scrolls_and_after_the_width_changes(self) -> None:
        self.browser.show(page_of_a_long_log(self.folder))
        self.browser.open_everything()
        self.assertEqual(self.entry_in_view(0.97), "iwf_dispatcher entry 999")
        self.browser.script("const box = document.querySelector('.entries'); box.scrollTop = box.scrollHeight / 2;")
        middle = self.entry_in_view(0)
        self.assertRegex(middle, "entry (49|50).$")
        for width in WIDTHS:
            self.browser.use_size(width)
            self.assertEqual(self.entry_in_view(0), middle)

    def test_shows_the_entry_that_the_arrow_keys_choose(self) -> None:
        self.browser.show(self.ordinary)
        self.browser.open_everything()
        box = self.element(".entries")
        box.send_keys(Keys.HOME)
        self.assertEqual(self.texts(".entries [aria-current] td:last-child"), ["netfp_server started"])
        box.send_keys(Keys.ARROW_DOWN)
        self.assertEqual(self.texts(".entries [aria-current] td:last-child"), ["iwf_dispatcher started"])
        self.assertIn("iwf_dispatcher", self.texts(".chosen .note")[0])
        self.assertEqual(self.texts(".chosen pre"), ["started"])

    def test_filters_values(self) -> None:
        self.browser.show(self.ordinary)
        self.element(".values [name=text]").send_keys("bytes free")
        self.assertEqual(self.texts(".values tbody th"), ["bytes free"])

    def test_plots_values_over_time(self) -> None:
        self.browser.show(self.neighbours)
        self.browser.open_everything()
        self.assertEqual(self.texts(".plot figcaption"), ["bytes in use mmi/HeapStats", "bytes free mmi/HeapStats"])
        self.assertEqual(self.texts(".plot .readout"), ["iwf: 950", "iwf: 50"])
        for pixels in self.browser.script(PIXELS_OF_LINES):
            self.assertGreater(pixels, 100)

    def test_plots_the_values_of_a_store_that_stand_out(self) -> None:
        self.browser.show(self.trend)
        self.browser.open_everything()
        self.assertEqual(self.texts("#outliers tbody th"), ["board-0"])
        self.assertEqual(self.texts(".plot figcaption"), [f"{HOSTILE[1]} mmi/iwf/HeapStats"])
        self.assertEqual(self.texts(".plot .readout"), ["board-0: 0usual now: 7"])
        self.assertEqual(self.browser.events("Page.javascriptDialogOpening"), [])

    def test_shows_what_differs_between_neighbours(self) -> None:
        self.browser.show(self.neighbours, javascript=False)
        self.assertEqual(self.texts("#differences tbody tr"), ["mmi/iwf/HeapStats\tbytes in use\t900\t950\t+50\t+5\t",
                                                               "mmi/iwf/HeapStats\tbytes free\t100\t50\t-50\t-5\tfell"])


if __name__ == "__main__":
    unittest.main()
