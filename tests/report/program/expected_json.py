"""The JSON of a package in a form that is the same in each run, to compare it with a file."""

import json
import os
import re
from collections import defaultdict
from collections.abc import Iterator
from pathlib import Path
from typing import Any

FOLDER = Path(__file__).parent / "expected"

Json = dict[str, Any]

SORTED_BY = {"parts": ("name",), "values": ("part",), "logs": ("part",), "entries": ("tag", "text"),
             "findings": ("rule", "part")}


def same_package(package: Json) -> Json:
    package = {key: same_value(key, value) for key, value in package.items()}
    nested = [same_package(inner) for inner in package["nested"]]
    source = re.sub(r"\d+", "N", Path(package["source"]).name)
    return package | {"source": source, "size": 0, "nested": nested}


def same_value(key: str, value: Any) -> Any:
    """The value of a key without times and process ids. Lists that depend on the order of the archive are sorted."""
    if key in ("time", "sha256") and value is not None:
        return key.upper()
    if key == "evidence":
        return [item | {"text": same_evidence(item["text"])} for item in value]
    if key == "entries":
        value = [entry for entry in value if not entry["text"].startswith("in service for")]
    if key == "parts":
        value = [same_part(part) for part in value]
    if isinstance(value, list):
        value = [same_object(item) for item in value]
        return sorted(value, key=lambda item: [str(item[name]) for name in SORTED_BY.get(key, ())])
    return same_object(value)


def same_evidence(text: str) -> str:
    """Without numbers, and without the state of a process: `ps` sometimes finds it running."""
    return re.sub(r"\? [RSD]\S* ", "? S ", re.sub(r"\s+", " ", re.sub(r"\d+", "N", text)))


def same_object(value: Any) -> Any:
    if isinstance(value, dict) and "verdict" not in value:
        return {key: same_value(key, item) for key, item in value.items()}
    return value


def same_part(part: Json) -> Json:
    """Without the size of a log, and without the texts of Linux."""
    linux = part["name"].startswith("linux/")
    if linux or part["log"]:
        part = part | {"size": 0, "text_size": 0}
    return part | {"lines": ["TEXT"]} if linux and part["lines"] else part


def text_of(package: Json) -> str:
    """One line for each part, value, entry, finding and piece of evidence."""
    text = json.dumps(same_package(package), separators=(",", ":"), ensure_ascii=True)
    return text.replace("[{", "[\n{").replace("},{", "},\n{") + "\n"


def differences(before: Any, after: Any, place: str = "") -> Iterator[str]:
    """A line for each place that differs."""
    if before == after:
        return
    if isinstance(before, dict) and isinstance(after, dict):
        for key in sorted(before.keys() | after.keys()):
            inner = f"{place}.{key}" if place else key
            if key not in after:
                yield f"{inner} is gone"
            elif key not in before:
                yield f"{inner} = {json.dumps(after[key])}"
            else:
                yield from differences(before[key], after[key], inner)
    else:
        yield f"{place}: {json.dumps(before)} -> {json.dumps(after)}"


def by_name(package: Json) -> Json:
    """The same package with objects in place of lists. Without the lines of texts, and without the texts of rules."""
    package = same_package(package)
    values: dict[str, Json] = defaultdict(dict)
    for value in package["values"]:
        values[f"[{value['part']}: {value['title']}]"][f"{value['name']} {value['occurrence']}"] = value["text"]
    parts = {f"[{part['name']}]": part | {"lines": None} for part in package["parts"]}
    logs = {f"[{log['part']}]": log["entries"] for log in package["logs"]}
    findings = {f"[{finding['rule']} {finding['part']}]": finding["count"] for finding in package["findings"]}
    return package | {"parts": parts, "values": values, "logs": logs, "findings": findings}


def expected(name: str, actual: str) -> str:
    """The contents of a file. With UPDATE_EXPECTED in the environment, the file gets the actual text first."""
    path = FOLDER / name
    if "UPDATE_EXPECTED" in os.environ:
        path.parent.mkdir(exist_ok=True)
        path.write_text(actual, encoding="utf-8")
    return path.read_text(encoding="utf-8")
