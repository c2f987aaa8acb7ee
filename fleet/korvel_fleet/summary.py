"""summary.json: the results of a folder, read back by --resume and status."""

import json
from collections.abc import Iterator
from dataclasses import fields
from pathlib import Path
from typing import Any

from korvel_fleet import VERSION
from korvel_fleet.clock import now
from korvel_fleet.errors import Trouble
from korvel_fleet.results import BoardResult, folded_causes

NAME = "summary.json"
SCHEMA = "urn:korvel-fleet:summary:1"
_FIELDS = {field.name for field in fields(BoardResult)}


def _text(value: Any) -> str:
    return json.dumps(value, ensure_ascii=False, separators=(",", ":"))


def summary_lines(results: list[BoardResult], keyword: str) -> Iterator[str]:
    """The document, one board a line, so that a large fleet takes little memory."""
    states: dict[str, int] = {}
    for result in results:
        states[result.state] = states.get(result.state, 0) + 1
    causes = [{"cause": cause, "boards": str(boards), "number": len(boards)}
              for boards, cause in folded_causes(results)]
    head = {"schema": SCHEMA, "tool": {"name": "korvel-fleet", "version": VERSION}, "written": now(),
            "package": keyword, "states": states}
    yield _text(head)[:-1] + ',\n"causes":' + _text(causes) + ',\n"boards":[\n'
    for number, result in enumerate(results):
        yield (",\n" if number else "") + _text(result.as_json())
    yield "\n]}\n"


def _result_or_object(value: dict[str, Any]) -> BoardResult | dict[str, Any]:
    """Makes results while the document is read, so that a large fleet takes little memory."""
    if "board" not in value:
        return value
    return BoardResult(**{key: content for key, content in value.items() if key in _FIELDS})


def read_summary(folder: Path) -> tuple[dict[str, Any], list[BoardResult]] | None:
    """The document without its boards, and the boards. None if there is none."""
    path = folder / NAME
    try:
        document = json.loads(path.read_text(encoding="utf-8"), object_hook=_result_or_object)
        boards = document.pop("boards")
        if document["schema"] != SCHEMA or not all(isinstance(board, BoardResult) for board in boards):
            raise ValueError
        return document, boards
    except FileNotFoundError:
        return None
    except OSError as error:
        raise Trouble(f"cannot read {path}: {error.strerror}") from error
    except (ValueError, KeyError, TypeError, AttributeError) as error:
        raise Trouble(f"{path} is not a summary of korvel-fleet") from error
