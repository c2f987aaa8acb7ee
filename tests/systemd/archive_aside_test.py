"""The script archive-aside, which renames the archive of an earlier run. Each test runs it in a bare sandbox."""

import unittest

import board

# The runs' files contain different words, so that a test can identify a run.
ARCHIVE = """
archive() {  # FOLDER WORD: makes the files of a run
    mkdir -p "/tmp/korvel/$1/dispatcher" "/tmp/korvel/$1/syslib"
    echo "$2" > "/tmp/korvel/$1/dispatcher/runtime.log"
    : > "/tmp/korvel/$1/syslib/runtime.log"
}
show() { cd /tmp/korvel && grep -r . | sort; }
"""
ASIDE = f"{board.HELPERS}/archive-aside\n"


def run(script: str, *options: str) -> board.Outcome:
    return board.run(ARCHIVE + script, "--bare", *options)


class ArchiveAside(unittest.TestCase):
    maxDiff = None

    def test_gives_the_last_run_the_number_one(self) -> None:
        outcome = run(f"archive archive last; {ASIDE} show; ls")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\narchive.1\n", ""))

    def test_renumbers_each_run_and_deletes_the_oldest(self) -> None:
        outcome = run(f"""
            archive archive last; archive archive.1 second; archive archive.2 third; archive archive.3 oldest
            {ASIDE} show""")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\n"
                                      "archive.2/dispatcher/runtime.log:second\n"
                                      "archive.3/dispatcher/runtime.log:third\n", ""))

    def test_deletes_no_run_while_a_number_is_free(self) -> None:
        outcome = run(f"archive archive last; archive archive.1 second; archive archive.3 oldest; {ASIDE} show")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\n"
                                      "archive.2/dispatcher/runtime.log:second\n"
                                      "archive.3/dispatcher/runtime.log:oldest\n", ""))

    def test_completes_an_interrupted_renumbering(self) -> None:
        outcome = run(f"archive archive last; archive archive.2 second; {ASIDE} show")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\n"
                                      "archive.2/dispatcher/runtime.log:second\n", ""))

    def test_gives_no_number_to_a_run_without_log_entries(self) -> None:
        outcome = run(f"archive archive.1 second; mkdir -p /tmp/korvel/archive/syslib;"
                      f": > /tmp/korvel/archive/syslib/runtime.log; {ASIDE} show; ls")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:second\narchive\narchive.1\n", ""))

    def test_does_nothing_before_the_first_run(self) -> None:
        self.assertEqual(run(f"{ASIDE} ls -A /tmp"), (0, "", ""))

    def test_does_not_move_a_folder_that_is_a_link(self) -> None:
        for link in ("/tmp/korvel", "/tmp/korvel/archive"):
            with self.subTest(link):
                outcome = run(f"""
                    archive archive last; mv {link} /tmp/elsewhere; ln -s /tmp/elsewhere {link}
                    {ASIDE} echo $?; find /tmp/korvel/. /tmp/elsewhere/. -name 'archive.*'""")
                message = f"archive-aside: {link} is a link, or not a directory of this user: nothing was moved\n"
                self.assertEqual(outcome, (0, "1\n", message))

    def test_does_not_follow_a_link_in_place_of_a_numbered_run(self) -> None:
        outcome = run(f"""
            archive archive last; archive archive.1 second; mkdir /tmp/elsewhere; echo theirs > /tmp/elsewhere/file
            ln -s /tmp/elsewhere /tmp/korvel/archive.2; ln -s /tmp/elsewhere /tmp/korvel/archive.3
            {ASIDE} show; readlink archive.3; cat /tmp/elsewhere/*""")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\n"
                                      "archive.2/dispatcher/runtime.log:second\n"
                                      "/tmp/elsewhere\ntheirs\n", ""))

    def test_works_on_a_full_disk(self) -> None:
        outcome = run(f"""
            archive archive last; archive archive.1 second
            cat /dev/zero > /tmp/filler 2> /dev/null; ! echo more > /tmp/more 2> /dev/null || echo there was room
            {ASIDE} show""", "--tmp-size", "1M")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\n"
                                      "archive.2/dispatcher/runtime.log:second\n", ""))


if __name__ == "__main__":
    unittest.main()
