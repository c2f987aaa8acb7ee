"""Runs every console block of a page and compares the output with the page."""

import os
import sys
import tempfile
import unittest
from pathlib import Path

from console_blocks import Block, blocks_of, comparable, outputs_of

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])


class ConsoleBlocksTest(unittest.TestCase):
    maxDiff = None
    page: Path

    def test_show_the_actual_output(self) -> None:
        blocks = blocks_of(SOURCE / self.page)
        self.assertTrue(blocks, f"{self.page} has no console block")
        for block in blocks:
            with self.subTest(f"{self.page}:{block.line}"):
                self.compare(block)

    def compare(self, block: Block) -> None:
        with tempfile.TemporaryDirectory() as folder:
            outputs = outputs_of(block, SOURCE, BUILD, Path(folder))
        self.assertEqual(
            [(step.command, comparable(step.output)) for step in block.steps],
            [(step.command, comparable(output)) for step, output in zip(block.steps, outputs, strict=True)])


if __name__ == "__main__":
    ConsoleBlocksTest.page = Path(sys.argv.pop(1))
    unittest.main()
