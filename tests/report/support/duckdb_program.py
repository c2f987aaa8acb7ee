"""Runs statements in DuckDB. The variable KORVEL_DUCKDB names the folder in which this command installed it:

    npm install @duckdb/node-api
"""

import json
import os
import subprocess
from collections.abc import Iterable
from pathlib import Path
from typing import NamedTuple

FOLDER = os.environ.get("KORVEL_DUCKDB", "")
INSTALLED = (Path(FOLDER) / "node_modules/@duckdb/node-api").is_dir() if FOLDER else False
WHY_NOT = "DuckDB is not installed: KORVEL_DUCKDB names no folder with node_modules/@duckdb/node-api"

SCRIPT = """
const { createRequire } = require("node:module");
const { DuckDBInstance } = createRequire(process.argv[1] + "/")("@duckdb/node-api");
const text = (key, value) => typeof value === "bigint" ? { integer: String(value) } : value;
(async () => {
    const instance = await DuckDBInstance.create(":memory:", { threads: "2", memory_limit: "1GB" });
    const connection = await instance.connect();
    for await (const line of require("node:readline").createInterface({ input: process.stdin })) {
        const start = performance.now();
        const answer = await connection.runAndReadAll(JSON.parse(line));
        const rows = answer.getRowsJS();
        console.log(JSON.stringify({ rows, seconds: (performance.now() - start) / 1000 }, text));
    }
})().catch(error => { console.error(error.message); process.exit(1); });
"""

Row = tuple[object, ...]


class Answer(NamedTuple):
    rows: list[Row]
    seconds: float


def value_of(value: object) -> object:
    return int(value["integer"]) if isinstance(value, dict) else value


def run(statements: Iterable[str], folder: Path) -> list[Answer]:
    """The answers of a new database to statements, which run one after the other in a folder."""
    lines = "".join(json.dumps(statement) + "\n" for statement in statements)
    ended = subprocess.run(["node", "-e", SCRIPT, FOLDER], cwd=folder, input=lines, capture_output=True, check=False,
                           encoding="utf-8")
    if ended.returncode != 0:
        raise RuntimeError(f"DuckDB failed: {ended.stderr}")
    answers = (json.loads(line) for line in ended.stdout.splitlines())
    return [Answer([tuple(map(value_of, row)) for row in answer["rows"]], answer["seconds"]) for answer in answers]
