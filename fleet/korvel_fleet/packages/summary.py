"""summary.json: the results of a folder, read back by --resume and status."""

import json
import sys
from collections.abc import Callable, Iterator
from dataclasses import dataclass, field, fields, replace
from datetime import datetime
from pathlib import Path
from typing import Any

from korvel_fleet import VERSION
from korvel_fleet.boards.names import is_name
from korvel_fleet.common.clock import now
from korvel_fleet.common.errors import Trouble
from korvel_fleet.common.texts import visible
from korvel_fleet.packages.folder import checksum_of, recorded
from korvel_fleet.packages.results import BoardResult, folded_causes

NAME = "summary.json"
SCHEMA = "urn:korvel-fleet:summary:1"
MAX_BYTES = 256 * 1024 * 1024
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


class Damaged(Trouble):
    """The file is there, but is no summary."""


@dataclass(frozen=True)
class Summary:
    """What is read back of the document."""

    kind: str | None = None  # of the packages
    results: list[BoardResult] = field(default_factory=list)
    is_damaged: bool = False


def _is_text(value: Any) -> bool:
    return isinstance(value, str)


def _is_number(value: Any) -> bool:
    return type(value) is int and 0 <= value < 1 << 63


def _is_time(value: Any) -> bool:
    return _is_text(value) and datetime.fromisoformat(value).tzinfo is not None


def _is_table(is_value: Callable[[Any], bool]) -> Callable[[Any], bool]:
    return lambda value: isinstance(value, dict) and all(map(_is_text, value)) and all(map(is_value, value.values()))


def _is_list_of_texts(value: Any) -> bool:
    return isinstance(value, list) and all(map(_is_text, value))


def _or_none(is_value: Callable[[Any], bool]) -> Callable[[Any], bool]:
    return lambda value: value is None or is_value(value)


# What the fields of a result may hold: the file could be damaged, or be made by somebody else.
_CHECKS: dict[str, Callable[[Any], bool]] = {
    "board": lambda value: _is_text(value) and is_name(value), "state": _is_text, "size": _or_none(_is_number),
    "began": _or_none(_is_time), "ended": _or_none(_is_time),
    "finding_texts": _is_list_of_texts, "findings": _is_table(_is_number), "probes": _is_table(_is_text),
}
_check_text = _or_none(_is_text)


def _safe(value: Any) -> Any:
    """A value of a result, with safe texts."""
    if isinstance(value, dict):
        return {visible(key): _safe(content) for key, content in value.items()}
    if isinstance(value, list):
        return tuple(sys.intern(_safe(content)) for content in value)
    return visible(value) if isinstance(value, str) else value


def _result_or_object(value: dict[str, Any]) -> BoardResult | dict[str, Any]:
    """Makes results while the document is read, so that a large fleet takes little memory."""
    if "board" not in value:
        return value
    known = {key: content for key, content in value.items() if key in _FIELDS}
    if not all(_CHECKS.get(key, _check_text)(content) for key, content in known.items()):
        raise ValueError(f"wrong values of a board: {value}")
    return BoardResult(**{key: _safe(content) for key, content in known.items()})


def _parse(text: str) -> Summary:
    document = json.loads(text, object_hook=_result_or_object)
    boards = document["boards"]
    names = {board.board for board in boards}
    if document["schema"] != SCHEMA or not isinstance(boards, list) or len(names) != len(boards):
        raise ValueError("another document")
    if not _is_text(document["package"]):
        raise ValueError("without a kind")
    return Summary(document["package"], boards)


def read_summary(folder: Path) -> Summary | None:
    """The summary of a folder. None if there is none."""
    path = folder / NAME
    try:
        with path.open("rb") as file:
            data = file.read(MAX_BYTES + 1)
        if len(data) > MAX_BYTES:
            raise Damaged(f"{path} is too large for a summary of korvel-fleet")
        return _parse(data.decode())
    except FileNotFoundError:
        return None
    except OSError as error:
        raise Trouble(f"cannot read {path}: {error.strerror}") from error
    except (ValueError, KeyError, TypeError, AttributeError, RecursionError) as error:
        raise Damaged(f"{path} is not a summary of korvel-fleet") from error


def verified(result: BoardResult, folder: Path) -> BoardResult:
    """The result. If it is of a package that was whole, the package is looked at again."""
    package = folder / f"{result.board}.tgz"
    if result.file != package.name:
        return result
    checksum = checksum_of(package)
    if checksum is None or recorded(package).get("sha256") != result.sha256:
        return replace(result, state="missing", cause="the package is no longer there")
    if checksum != result.sha256:
        return replace(result, state="altered", cause="the package was changed after it was collected")
    return replace(result, state="whole", cause=None)
