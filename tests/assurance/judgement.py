"""Says what a fault led to: an outcome that is right, or a defect."""

import re
from typing import Any

Run = dict[str, Any]  # see on_board.py

SAME = "as without"
REPORTED = "reported"
DOCUMENTED = "silent, as documented"
OPEN = "open, as documented"
MUTE = "standard error failed as well"
SILENT_DEFECT = "SILENT"
RIGHT = (SAME, REPORTED, DOCUMENTED, OPEN, MUTE)

TERMINATED = re.compile(r"terminate called|AddressSanitizer|runtime error:|LeakSanitizer|stack smashing|buffer overflow")
ASSERTION = re.compile(r'^\w+: Assertion ".*" failed\.$', re.M)  # korvel ends with a message and SIGABRT

# What korvel does without a word, by the functions that call. The section DIAGNOSTICS of korvel(1) lists these.
SILENT = (
    ("isolated CPUs are unknown", r"getIsolatedCpuMask|readKernelCommandLine"),
    ("a dump stays in /tmp", r"TiLogCollector::collectDump"),
    ("a stand-in for a library of the board", r"libnetfpsmlog|libWENVASK"),
)

def judge(call: str, run: Run, usual: Run) -> str:
    if run["hung"]:
        return "HUNG"
    if TERMINATED.search(run["err"]) or (run["status"] < 0 and not run["stopped"] and not ASSERTION.search(run["err"])):
        return f"CRASHED: status {run['status']}"
    if run["left"]:
        return f"LEFT PROCESSES: {run['left']}"
    has_other_status = run["status"] != usual["status"] and not run["stopped"]
    reported = has_other_status or run["err"] != usual["err"] or new_errors(run["log"], usual["log"])
    if run["damaged"]:
        return "REPORTED, BUT DAMAGED" if reported else "DAMAGED: " + run["damaged"][0]
    if reported:
        return REPORTED
    if all(run[key] == usual[key] for key in ("status", "out", "files")):
        return SAME
    if call in ("write", "writev"):
        return MUTE
    return f"{SILENT_DEFECT}: {difference(run, usual)}"


def excuse(stacks: str) -> str | None:
    """Why a call with these stacks may fail without a word."""
    return next((reason for reason, functions in SILENT if re.search(functions, stacks)), None)


def new_errors(log: str, usual: str) -> bool:
    def texts(lines: str) -> set[str]:
        return {re.sub(r"\d+", "#", line) for line in lines.splitlines()}
    return bool(texts(log) - texts(usual))


def difference(run: Run, usual: Run) -> str:
    names = {name for name in run["files"].keys() | usual["files"].keys() if run["files"].get(name) != usual["files"].get(name)}
    return ", ".join(sorted(names)[:4]) or ("it does not end" if run["stopped"] else "standard output")
