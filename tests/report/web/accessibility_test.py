"""The page of korvel-report has no accessibility violation that axe-core finds.

axe-core comes from npm: Debian does not have it. The first run installs it into the build directory. If npm or the network
is missing, the exit status is 77: ctest reports a skipped test.
"""

import hashlib
import subprocess
import unittest

from browser import BUILD, WIDTHS, PageTest, skip
from sample_pages import page_of_neighbours, trend_page, troubled_page

VERSION = "4.10.3"
SHA256 = "880970c081707360e64f34cea25ff91892f5bc95675b0776925b9709dd8a68bb"
FOLDER = BUILD / "axe-core"
FILE = FOLDER / "node_modules/axe-core/axe.min.js"

# Only the rules for colours depend on the colour scheme, and they take most of the time.
RULES = {"light": None, "dark": ["color-contrast"]}
RUN = """
    const [rules, done] = arguments;
    axe.run(document, {resultTypes: ['violations'], ...(rules ? {runOnly: rules} : {})}).then(({violations}) => done(
        violations.flatMap(({id, nodes}) => nodes.map(({html}) => `${id}: ${html}`))));
"""


def install() -> None:
    FOLDER.mkdir(exist_ok=True)
    try:
        subprocess.run(["npm", "install", "--no-audit", "--no-fund", "--no-save", "--ignore-scripts", "--fetch-retries=0",
                        "--prefix", FOLDER, f"axe-core@{VERSION}"], check=True, timeout=60, stdout=subprocess.DEVNULL)
    except (OSError, subprocess.SubprocessError) as error:
        skip(f"axe-core {VERSION} cannot be installed: {error}")


def axe() -> str:
    content = FILE.read_bytes()
    if hashlib.sha256(content).hexdigest() != SHA256:
        raise ValueError(f"{FILE} is not axe-core {VERSION}")
    return content.decode()


class AccessibilityTest(PageTest):
    def test_has_no_violation_in_light_and_dark_at_any_width(self) -> None:
        script = axe()
        for page in (troubled_page(self.folder), page_of_neighbours(self.folder), trend_page(self.folder)):
            for width in WIDTHS:
                self.browser.show(page, width)
                self.browser.open_everything()
                self.browser.script(script)
                for scheme, rules in RULES.items():
                    with self.subTest(page=page.name, width=width, scheme=scheme):
                        self.browser.use_scheme(scheme)
                        self.assertEqual(self.browser.driver.execute_async_script(RUN, rules), [])


if __name__ == "__main__":
    if not FILE.exists():
        install()
    unittest.main()
