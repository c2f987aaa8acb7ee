"""The queries and statements of docs/packages-at-scale.md."""

import re
from pathlib import Path

PAGE = (Path(__file__).parents[3] / "docs/packages-at-scale.md").read_text()


def blocks(language: str) -> list[str]:
    return re.findall(rf"^```{language}\n(.*?)^```$", PAGE, re.M | re.S)


def statements(block: str) -> list[str]:
    """Those of a block without a semicolon in a text."""
    return [statement for statement in block.split(";") if statement.strip()]


QUERIES = {block.splitlines()[0].removeprefix("-- "): block for block in blocks("sql")}  # by their questions
LOAD_CSV, WRITE_PARQUET, READ_PARQUET, WRITE_VALUES = map(statements, blocks("duckdb"))
