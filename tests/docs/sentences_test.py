"""Pages have no long sentences. Neither pages nor comments have hard phrases."""

import os
import unittest
from pathlib import Path
from tempfile import TemporaryDirectory

from sentences import (MOST_WORDS, commented_files_in, comments_of, pages_in, passages_of, problems_of_comments,
                       problems_of_page, sentences_of)

SOURCE = Path(os.environ["KORVEL_SOURCE"])


class FileTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def file(self, name: str, content: str) -> Path:
        file = self.folder / name
        file.write_text(content, encoding="utf-8")
        return file


class PagesTest(unittest.TestCase):
    def test_have_no_long_sentences_and_no_hard_phrases(self) -> None:
        pages = list(pages_in(SOURCE))
        self.assertTrue(pages)
        for page in pages:
            name = str(page.relative_to(SOURCE))
            with self.subTest(page=name):
                self.assertFalse(found := problems_of_page(page, name), "\n" + "\n".join(found))


class CommentsTest(unittest.TestCase):
    def test_have_no_hard_phrases(self) -> None:
        files = list(commented_files_in(SOURCE))
        self.assertTrue(files)
        found = [problem for file in files for problem in problems_of_comments(file, str(file.relative_to(SOURCE)))]
        self.assertFalse(found, "\n" + "\n".join(found))


class LongSentenceTest(FileTest):
    def test_is_reported_with_its_line_and_its_number_of_words(self) -> None:
        text = "word " * MOST_WORDS + "end."
        page = self.file("page.md", f"# Title\n\nA short one. {text}\n")

        self.assertEqual(problems_of_page(page, "page.md"), [f"page.md:3: 31 words: {text}"])

    def test_has_more_than_thirty_words(self) -> None:
        page = self.file("page.md", "word " * (MOST_WORDS - 1) + "end.\n")

        self.assertEqual(problems_of_page(page, "page.md"), [])


class SentenceTest(FileTest):
    def sentences(self, name: str, content: str) -> list[str]:
        return [sentence.text for passage in passages_of(self.file(name, content))
                for sentence in sentences_of(passage)]

    def test_ends_with_a_full_stop_a_question_or_an_exclamation_mark(self) -> None:
        self.assertEqual(self.sentences("page.md", "Why? (Because.) Look! korvel waits."),
                         ["Why?", "(Because.)", "Look!", "korvel waits."])

    def test_continues_after_an_abbreviation_a_decimal_and_a_file_name(self) -> None:
        for text in ("A word (e.g. this one) goes on.", "It takes 1.5 s, i.e. long.",
                     "See main.cpp for 10.0.0.1 here."):
            with self.subTest(text):
                self.assertEqual(self.sentences("page.md", text), [text])

    def test_can_span_several_lines(self) -> None:
        self.assertEqual(self.sentences("page.md", "One\ntwo\nthree.\nFour."), ["One two three.", "Four."])

    def test_ends_with_its_list_item_table_cell_heading_or_paragraph(self) -> None:
        page = "# Title\nFirst:\n\n- one\n  and more\n- two\n\n1. three\n\n| A | B |\n|---|---|\n| c | d |\n\nLast"

        self.assertEqual(self.sentences("page.md", page),
                         ["Title", "First:", "one and more", "two", "three", "A", "B", "c", "d", "Last"])

    def test_counts_code_as_one_word_and_a_link_by_its_text(self) -> None:
        self.assertEqual(self.sentences("page.md", "Run `a b\nc`, see [this page](a/b.md#c) and **that**."),
                         ["Run `code`, see this page and that."])

    def test_is_not_found_in_a_code_block(self) -> None:
        self.assertEqual(self.sentences("page.md", "One.\n\n    code here\n\n```console\n$ code\n```\n\nTwo."),
                         ["One.", "Two."])

    def test_of_a_manual_page_counts_macro_arguments_as_words(self) -> None:
        page = '.Dt KORVEL 1\n.Sh NAMES\n.Nm\nreads\n.Pa /tmp/a ,\nsee\n.Xr tar 1 .\n.Ql a b\n.Pq "it \\- is" Ar c .\n'

        self.assertEqual(self.sentences("page.1", page),
                         ["NAMES", "korvel reads /tmp/a, see tar(1).", "`code` it - is c."])

    def test_of_a_manual_page_ends_with_its_item_paragraph_or_section(self) -> None:
        page = ".Sh A\none\n.Pp\ntwo\n.Bl -tag\n.It Fl c Ar path\nthree\n.It a Ta b\n.El\nfour\n.Ss B\nfive\n"

        self.assertEqual(self.sentences("page.1", page),
                         ["A", "one", "two", "c path", "three", "a", "b", "four", "B", "five"])

    def test_of_a_manual_page_is_not_found_in_a_display_or_the_synopsis(self) -> None:
        page = '.\\" comment\n.Sh SYNOPSIS\n.Nm\n.Sh B\none\n.Bd -literal\n$ code\n.Ed\n.Dl code\ntwo\n'

        self.assertEqual(self.sentences("page.1", page), ["B", "one", "two"])


class PhraseTest(FileTest):
    def test_is_found_across_lines_and_reported_with_a_better_wording(self) -> None:
        page = self.file("page.md", "One. The log says\nof it. Two.\n")

        self.assertEqual(problems_of_page(page, "page.md"),
                         ['page.md:1: "says of" (better: reports, describes): The log says of it.'])

    def test_is_not_found_in_words_with_another_meaning(self) -> None:
        page = self.file("page.md", "Faults are told apart by their names. A stand-in stands in for a library.\n")

        self.assertEqual(problems_of_page(page, "page.md"), [])

    def test_is_found_in_comments_and_not_in_code(self) -> None:
        text = "is told"
        for name, content in {"a.cpp": f'say("{text}"); /// It {text}\n', "a.sh": f'say "{text}"  # It {text}\n',
                              "a.py": f'"""It {text}"""\nsay("{text}")\n'}.items():
            with self.subTest(name):
                self.assertEqual(problems_of_comments(self.file(name, content), name),
                                 [f'{name}:1: "{text}" (better: receives, reads, is given): It {text}'])

    def test_can_continue_on_the_next_line_of_a_comment(self) -> None:
        file = self.file("a.cpp", "// It is\n// told.\nint a;\n// told\n")

        self.assertEqual(len(problems_of_comments(file, "a.cpp")), 1)
        self.assertEqual(len(list(comments_of(file))), 2)


if __name__ == "__main__":
    unittest.main()
