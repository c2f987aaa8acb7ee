"""What happens to boards, and what is then wrong in a package of them.

Each scenario knows the harms by what it does to the board, never by what korvel-report says.
"""

from collections.abc import Iterator
from dataclasses import dataclass

from board_package import PACKAGE_NAMES, Making
from harms import (COMMANDS, DISPATCHERS, LEFT_OVER, NO_ANSWER, NO_SOURCE, NOT_RUNNING, PROCESSES, SILENT, STATE_FILES,
                   UNENDED, Harms, Truth, all_of, beyond_the_limit, dumps, harm, improper_replies, replies, state_files,
                   without_room)

KINDS = tuple(PACKAGE_NAMES)
LINUX_KINDS = KINDS[1:]


@dataclass(frozen=True)
class Scenario:
    name: str
    truth: Truth
    making: Making
    verdict: str | None  # by default whole without harms, else incomplete
    kinds: tuple[str, ...]
    is_sample: bool  # whether the quick matrix has it


Scenarios = Iterator[Scenario]


def case(name: str, harms: Truth | Harms, *board: str, verdict: str | None = None, kinds: tuple[str, ...] = KINDS,
         is_sample: bool = True, **making: object) -> Scenario:
    """`board` are options of boardsim, `making` are other members of Making."""
    truth = harms if callable(harms) else lambda package: harms
    return Scenario(name, truth, Making(board, **making), verdict, kinds, is_sample)


# Faults of peers. A fault that a collection never meets harms nothing.

MMI_FAULTS = {  # the states that fit, and the cause
    "slow:100": ("cut stale", r"answers too slowly"),
    "slow:700": ("cut stale", r"answers too slowly"),
    "dying": ("cut", UNENDED),
    "unended": ("cut", r"did not end"),
    "binary": ("unreadable", r"not text"),
    "joined": ("cut", r"did not end"),
    "empty": ("cut", UNENDED),
    "stale": ("stale", r"answers too slowly"),
}

DUMP_FAULTS = {
    "silent": harm("missing", r"wrote no dump"),
    "slow:20": None,
    "slow:300": harm("cut", r"did not finish"),
    "slow:1200": harm("empty cut missing", r"did not finish|wrote no dump"),
    "dying": harm("cut", r"died while|did not finish"),
    "unended": harm("cut", r"did not finish"),
    "short": harm("empty", r"without content"),
}

REQUEST_FAULTS = ("silent", "slow:300", "error:-1", "stale", "truncated:8", "oversized", "dying", "refuse-rename:1",
                  "ignore-renames")
NETLINK_FAULTS = ("silent", "slow:300", "error:3", "stale", "sequence", "type", "port", "truncated:8", "oversized",
                  "dying")


def faulty(peer: str, fault: str, harms: Truth | Harms, *board: str) -> Scenario:
    return case(" ".join([f"{peer}={fault}", *board]), harms, "--fault", f"{peer}={fault}", *board)


def mmi_faults() -> Scenarios:
    for dispatcher in DISPATCHERS:
        peer = f"{dispatcher}_dispatcher"
        yield faulty(peer, "silent", all_of(replies(dispatcher), harm("empty", SILENT)))
        yield faulty(peer, "endless", beyond_the_limit(dispatcher), "--tmp-size", "128M")
        for fault, (states, cause) in MMI_FAULTS.items():
            yield faulty(peer, fault, improper_replies(dispatcher, cause, states))


# Without a healthy dispatcher, nothing in the package shows how a reply should end, but the messages of korvel do.
UNCOMPARABLE_FAULTS = ("dying", "unended", "joined", "empty")


def mmi_faults_of_all_dispatchers() -> Scenarios:
    for fault in ("silent", "binary", "slow:700", *UNCOMPARABLE_FAULTS):
        states, cause = MMI_FAULTS.get(fault, ("empty", SILENT))
        needs_sidecar = fault in UNCOMPARABLE_FAULTS
        iwf = improper_replies("iwf", cause, states, needs_sidecar)
        sfn = improper_replies("sfn", cause, states, needs_sidecar)
        yield faulty("iwf_dispatcher", fault, iwf, "--deployment", "iwf")
        yield faulty("sfn_dispatcher", fault, sfn, "--deployment", "sfn-antenna")
        yield faulty("iwf_dispatcher", fault, lambda package, iwf=iwf, sfn=sfn: iwf(package) | sfn(package),
                     "--fault", f"sfn_dispatcher={fault}")


def dump_faults() -> Scenarios:
    for process in PROCESSES:
        prefix = "dump-" if process == "netfp_master" else ""
        for fault, found in DUMP_FAULTS.items():
            yield faulty(process, prefix + fault, {f"ti/{process}": found} if found else {})


def faults_of_other_requests() -> Scenarios:
    for fault in REQUEST_FAULTS:
        yield faulty("netfp_master", fault, {})
    for peer in ("netfp_proxy", "iwf_dispatcher", "sfn_dispatcher"):
        for fault in NETLINK_FAULTS:
            yield faulty(peer, f"netlink-{fault}", {})


# Peers that do not run.

def gone_dispatchers(*dispatchers: str) -> Harms:
    return (all_of(state_files(*dispatchers), harm("missing", rf"{NO_SOURCE}|{NOT_RUNNING}")) |
            all_of(replies(*dispatchers), harm("empty", NO_ANSWER)))


def left_out(harms: Harms, *peers: str) -> Scenario:
    return case("without " + ", ".join(peers), harms, *(word for peer in peers for word in ("--without", peer)))


def missing_peers() -> Scenarios:
    gone = harm("missing", NOT_RUNNING)
    for process in PROCESSES:
        yield left_out({f"ti/{process}": gone}, process)
    for dispatcher in DISPATCHERS:
        yield left_out(gone_dispatchers(dispatcher), f"{dispatcher}_dispatcher")
    yield left_out({}, "system_log")
    yield left_out(all_of(dumps(*PROCESSES), gone), *PROCESSES)
    yield left_out(gone_dispatchers(*DISPATCHERS) | {"fuse/HistoryLog": harm("missing", r"the log was empty")},
                   "iwf_dispatcher", "sfn_dispatcher")


def kill(process: str) -> str:
    return f"kill -9 $(pidof {process}); while pidof {process} > /dev/null; do sleep 0.02; done"


def stop(process: str) -> str:
    return f"kill -STOP $(pidof {process})"


def ended_peers() -> Scenarios:
    for dispatcher in DISPATCHERS:
        peer = f"{dispatcher}_dispatcher"
        yield case(f"{peer} was killed", all_of(replies(dispatcher), harm("empty", NO_ANSWER)), prepare=kill(peer))
        yield case(f"{peer} is stopped", all_of(replies(dispatcher), harm("empty", SILENT)), prepare=stop(peer))
    for process in PROCESSES:
        yield case(f"{process} was killed", {f"ti/{process}": harm("missing", NOT_RUNNING)}, prepare=kill(process))
        yield case(f"{process} is stopped", {f"ti/{process}": harm("missing", r"wrote no dump")}, prepare=stop(process))


# Disks.

def disks() -> Scenarios:
    for size in ("48K", "64K", "80K", "96K", "112K", "128K", "144K", "160K"):
        yield case(f"/tmp of {size}", without_room, "--tmp-size", size)
    for size in ("48K", "256K", "1M", "3M", "5M"):
        yield case(f"/tmp of {size}, full logs", without_room, "--tmp-size", size, "--full-logs",
                   is_sample=size == "1M")
    for size in ("4K", "8K", "32K"):
        yield case(f"/ffs of {size}, full logs", {}, "--ffs-size", size, "--full-logs", verdict="cut",
                   is_sample=size == "8K")
    for size in ("64K", "1M"):
        yield case(f"/ffs of {size}", {}, "--ffs-size", size)


# Two runs, one after the other. `touch` stands for the time between them.

PAUSES = {"10 minutes": 600, "30 seconds": 30, "8 seconds": 8}  # with their seconds
OLDER_THAN_ITS_RUN = "perhaps-left-over"
OLD_FOLDER = "old-collector"


def earlier_run(pause: str) -> str:
    return f"korvel dump 2> /dev/null; find /tmp/korvel -type f -exec touch -d '{pause} ago' {{}} +; "


def finding_after(seconds: int) -> str | None:
    """Two minutes make a part stale. Before that, a finding may name it."""
    return None if seconds > 120 else OLDER_THAN_ITS_RUN


def pauses_after(row: int) -> Iterator[tuple[str, int, bool]]:
    """The pauses for a row of a table, with their seconds. One of them is for the quick matrix, in turn."""
    for index, (pause, seconds) in enumerate(PAUSES.items()):
        yield pause, seconds, index == row % len(PAUSES)


def old_dumps() -> Scenarios:
    for row, process in enumerate(PROCESSES):
        name = f"ti/{process}"
        for pause, seconds, is_sample in pauses_after(row):
            stale = {name: harm("stale", LEFT_OVER, finding_after(seconds))}
            yield case(f"{process} died in the {pause} after a run", stale, is_sample=is_sample,
                       prepare=earlier_run(pause) + kill(process))
            yield case(f"{process} was stopped in the {pause} after a run", stale, is_sample=is_sample,
                       prepare=earlier_run(pause) + stop(process))
            yield case(f"{process} is stopped, with a dump of {pause} ago in /tmp", stale, is_sample=is_sample,
                       prepare=f"kill -USR1 $(pidof {process}); sleep 0.3; touch -d '{pause} ago' /tmp/{process}.log; "
                               + stop(process))
        yield case(f"{process} died in two real seconds after a run", {name: harm("stale", LEFT_OVER)},
                   prepare="korvel dump 2> /dev/null; sleep 2; " + kill(process), kinds=LINUX_KINDS)
        yield case(f"{process} died right after a run", {name: harm("stale", LEFT_OVER, OLDER_THAN_ITS_RUN)},
                   prepare="korvel dump 2> /dev/null; " + kill(process), kinds=LINUX_KINDS)


def old_state_files() -> Scenarios:
    for row, name in enumerate(state_files(*DISPATCHERS)):
        path = f"/tmp/{name}"
        for pause, seconds, is_sample in pauses_after(row):
            stale = {name: harm("stale", LEFT_OVER, finding_after(seconds))}
            yield case(f"{path} was removed in the {pause} after a run", stale, is_sample=is_sample,
                       prepare=f"{earlier_run(pause)} rm {path}")
            yield case(f"{path} was emptied in the {pause} after a run", stale, is_sample=is_sample,
                       prepare=f"{earlier_run(pause)} : > {path}")


FOLDERS = {
    "fuse": {*state_files(*DISPATCHERS), "fuse/HistoryLog"},
    "mmi": {*replies(*DISPATCHERS)},
    "ti": {*dumps(*PROCESSES), "ti/syslib_sm_log"},
}

RENEWED = {  # by runs that ask for less than everything
    "-d iwf": {*state_files("iwf"), *replies("iwf"), "fuse/HistoryLog", *FOLDERS["ti"]},
    "-d sfn": {*state_files("sfn"), *replies("sfn"), "fuse/HistoryLog", *FOLDERS["ti"]},
    "dinf": {name for dispatcher in DISPATCHERS
             for name in (f"fuse/{dispatcher}/{STATE_FILES[0]}", f"mmi/{dispatcher}/{COMMANDS[0]}")},
    "dlog": {"fuse/HistoryLog"},
    "proxy": {"ti/netfp_proxy"},
    "resmgr": {"ti/resmgr_server"},
    "slog": {"ti/syslib_sm_log"},
}


def old_parts(asked: str, seconds: int) -> Harms:
    """What a narrower run leaves old. If it leaves a whole folder old, a finding names the folder."""
    harms = {}
    for names in FOLDERS.values():
        finding = finding_after(seconds) if names & RENEWED[asked] else OLD_FOLDER
        harms |= all_of(names - RENEWED[asked], harm("stale", LEFT_OVER, finding))
    return harms


def narrower_runs() -> Scenarios:
    for row, asked in enumerate(RENEWED):
        for pause, seconds, is_sample in pauses_after(row):
            yield case(f"a run of '{asked}' {pause} after a whole one", old_parts(asked, seconds), is_sample=is_sample,
                       prepare=earlier_run(pause), arguments=asked)


# The script of the systemd units moves the parts of an earlier run away.

def units() -> Scenarios:
    yield case("by a unit", {}, by_unit=True)
    yield case("by a unit, after a run", {}, prepare=earlier_run("10 minutes"), by_unit=True)
    yield case("by a unit, iwf_dispatcher=silent", all_of(replies("iwf"), harm("empty", SILENT)),
               "--fault", "iwf_dispatcher=silent", by_unit=True)
    yield case("by a unit, netfp_server died after a run", {"ti/netfp_server": harm("missing", NOT_RUNNING)},
               prepare=earlier_run("10 minutes") + kill("netfp_server"), by_unit=True)


# Other troubles, and none.

def healthy_boards() -> Scenarios:
    yield case("healthy", {})
    yield case("healthy, full logs", {}, "--full-logs")
    yield case("healthy, only IWF", {}, "--deployment", "iwf")
    yield case("healthy, only SFN", {}, "--deployment", "sfn-antenna")
    for profile in ("steady", "busy", "leak", "flood", "flapping"):
        yield case(f"traffic {profile}", {}, "--traffic", f"{profile}:70")
    yield case("healthy, right after a run", {}, prepare="korvel dump 2> /dev/null")
    yield case("healthy, a minute after a run", {}, prepare=earlier_run("1 minute"))
    yield case("post-mortem package inside", {}, prepare="korvel pkg-pm 2> /dev/null; rm -rf /tmp/korvel",
               kinds=("pkg-trs", "pkg-sup"))
    yield case("print in the same run", {}, arguments="print")


def troubled_files() -> Scenarios:
    name = "fuse/sfn/dmaStats"
    file = f"/tmp/{name}"
    missing = {name: harm("missing", NO_SOURCE)}
    yield case("no bridge file", {"fuse/iwf/fpBridgeStats": harm("missing", NO_SOURCE)}, "--deployment", "iwf",
               prepare="rm /tmp/fuse/iwf/fpBridgeStats")
    yield case("a state file is missing", missing, prepare=f"rm {file}")
    yield case("a state file is empty", missing, prepare=f": > {file}")
    yield case("a FIFO in place of a state file", {name: harm("missing", rf"{NO_SOURCE}|could not read")},
               prepare=f"rm {file}; mkfifo {file}")
    yield case("a state file of 17 MiB", {name: harm("cut", "16 MiB")}, "--tmp-size", "128M",
               prepare=f"yes 'transfers started 1' | head -c 17M > {file}")
    yield case("a link in the work directory", {name: harm("missing", "not followed")},
               prepare=f"mkdir -p /tmp/korvel/fuse/sfn; ln -s /etc/passwd /tmp/korvel/{name}.log; rm {file}")
    yield case("a piece of the archive is cut",
               {"archive/dispatcher/startup": harm("cut", "compression was interrupted")},
               prepare="mkdir -p /tmp/korvel/archive/dispatcher; gzip < /bin/ls | head -c 9000 "
                       "> /tmp/korvel/archive/dispatcher/startup.log.gz")


def troubled_commands() -> Scenarios:
    yield case("the port of MMI is in use", all_of(replies(*DISPATCHERS), harm("empty", rf"could not ask|{NO_ANSWER}")),
               prepare="python3 -c 'import socket, time; s = socket.socket(type=socket.SOCK_DGRAM); "
                       "s.bind((\"0.0.0.0\", 7778)); time.sleep(60)' < /dev/null & sleep 0.3")
    yield case("no command for Linux logs", {"linux": harm("missing", "fp_linux_log_collect")},
               environment="PATH=/usr/bin:/bin", kinds=LINUX_KINDS)
    yield case("the post-mortem package is cut",
               {"netfp_logs_post_mortem": harm("cut", "post-mortem package is incomplete")},
               prepare="korvel pkg-pm 2> /dev/null; rm -rf /tmp/korvel; cd /ffs/run/logs; "
                       "head -c 1000 netfp_logs_post_mortem.tgz > x; mv x netfp_logs_post_mortem.tgz; cd",
               kinds=("pkg-trs", "pkg-sup"))


GROUPS = (healthy_boards, mmi_faults, mmi_faults_of_all_dispatchers, dump_faults, faults_of_other_requests,
          missing_peers, ended_peers, disks, old_dumps, old_state_files, narrower_runs, units, troubled_files,
          troubled_commands)


def all_scenarios() -> list[Scenario]:
    return [scenario for group in GROUPS for scenario in group()]
