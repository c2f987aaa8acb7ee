"""mandoc reports no problem in the manual pages."""

import subprocess
import unittest

import manual


class LintTest(unittest.TestCase):
    def test_mandoc_reports_nothing(self) -> None:
        pages = sorted(page for page in manual.PAGES.iterdir() if page.suffix in {".1", ".5"})
        self.assertEqual([page.name for page in pages],
                         ["boardsim.1", "fpdispatcher.conf.5", "korvel-fleet.1", "korvel-package.5", "korvel-report.1",
                          "korvel.1"])
        lint = subprocess.run(["mandoc", "-T", "lint", "-W", "warning", *pages],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.assertEqual((lint.returncode, lint.stdout), (0, ""))


if __name__ == "__main__":
    unittest.main()
