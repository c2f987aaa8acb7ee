"""The script that moves an earlier archive aside, on a sandbox of its own with nothing but files in it."""

import unittest

import board

# Runs are told apart by a word in their files.
ARCHIVE = """
archive() {  # FOLDER WORD: what a run leaves
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

    def test_moves_each_run_one_number_up_and_lets_the_oldest_go(self) -> None:
        outcome = run(f"""
            archive archive last; archive archive.1 second; archive archive.2 third; archive archive.3 oldest
            {ASIDE} show""")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\n"
                                      "archive.2/dispatcher/runtime.log:second\n"
                                      "archive.3/dispatcher/runtime.log:third\n", ""))

    def test_lets_no_run_go_while_a_number_is_free(self) -> None:
        outcome = run(f"archive archive last; archive archive.1 second; archive archive.3 oldest; {ASIDE} show")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\n"
                                      "archive.2/dispatcher/runtime.log:second\n"
                                      "archive.3/dispatcher/runtime.log:oldest\n", ""))

    def test_goes_on_where_an_earlier_one_was_interrupted(self) -> None:
        outcome = run(f"archive archive last; archive archive.2 second; {ASIDE} show")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:last\n"
                                      "archive.2/dispatcher/runtime.log:second\n", ""))

    def test_gives_a_run_without_an_entry_no_number(self) -> None:
        outcome = run(f"archive archive.1 second; mkdir -p /tmp/korvel/archive/syslib;"
                      f": > /tmp/korvel/archive/syslib/runtime.log; {ASIDE} show; ls")
        self.assertEqual(outcome, (0, "archive.1/dispatcher/runtime.log:second\narchive\narchive.1\n", ""))

    def test_has_nothing_to_do_before_the_first_run(self) -> None:
        self.assertEqual(run(f"{ASIDE} ls -A /tmp"), (0, "", ""))

    def test_moves_no_folder_that_is_a_link(self) -> None:
        for link in ("/tmp/korvel", "/tmp/korvel/archive"):
            with self.subTest(link):
                outcome = run(f"""
                    archive archive last; mv {link} /tmp/elsewhere; ln -s /tmp/elsewhere {link}
                    {ASIDE} echo $?; find /tmp/korvel/. /tmp/elsewhere/. -name 'archive.*'""")
                message = f"archive-aside: {link} is a link, or not a directory of this user: nothing was moved\n"
                self.assertEqual(outcome, (0, "1\n", message))

    def test_follows_no_link_among_the_numbers(self) -> None:
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
