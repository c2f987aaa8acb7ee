"""What happens to boards, and what is then wrong in a package of them.

Each scenario knows the harms by what it does to the board, never by what korvel-report says.
"""

from collections.abc import Iterable
from dataclasses import dataclass

from board_package import PACKAGE_NAMES
from harms import (COMMANDS, DISPATCHERS, LEFT_OVER, NO_ANSWER, NO_SOURCE, NOT_RUNNING, PROCESSES, SILENT, STATE_FILES,
                   UNENDED, Harms, Truth, all_of, always, beyond_the_limit, dumps, harm, improper_replies, replies,
                   state_files, without_room)

KINDS = tuple(PACKAGE_NAMES)
LINUX_KINDS = KINDS[1:]


@dataclass(frozen=True)
class Scenario:
    name: str
    truth: Truth
    board: tuple[str, ...] = ()  # options of boardsim
    prepare: str = ":"  # commands before korvel makes the package
    arguments: str = ""  # of korvel, before the kind
    environment: str = ""  # a variable of korvel
    verdict: str | None = None  # by default whole without harms, else incomplete
    kinds: tuple[str, ...] = KINDS


# Faults of peers. A fault that a collection never meets harms nothing.

MMI_FAULTS: dict[str, tuple[str, str]] = {  # the states that fit, and the causes
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


def faulty(peer: str, fault: str, truth: Truth, *board: str) -> Scenario:
    return Scenario(f"{peer}={fault}", truth, ("--fault", f"{peer}={fault}", *board))


def mmi_faults() -> Iterable[Scenario]:
    for dispatcher in DISPATCHERS:
        peer = f"{dispatcher}_dispatcher"
        yield faulty(peer, "silent", always(all_of(replies(dispatcher), harm("empty", SILENT))))
        yield faulty(peer, "endless", beyond_the_limit(dispatcher), "--tmp-size", "128M")
        for fault, (states, cause) in MMI_FAULTS.items():
            yield faulty(peer, fault, improper_replies(dispatcher, cause, states))


def dump_faults() -> Iterable[Scenario]:
    for process in PROCESSES:
        prefix = "dump-" if process == "netfp_master" else ""
        for fault, found in DUMP_FAULTS.items():
            yield faulty(process, prefix + fault, always({f"ti/{process}": found} if found else {}))


def faults_of_other_requests() -> Iterable[Scenario]:
    for fault in REQUEST_FAULTS:
        yield faulty("netfp_master", fault, always({}))
    for peer in ("netfp_proxy", "iwf_dispatcher", "sfn_dispatcher"):
        for fault in NETLINK_FAULTS:
            yield faulty(peer, f"netlink-{fault}", always({}))


# Peers that do not run.

def gone_dispatcher(*dispatchers: str) -> Harms:
    return (all_of(state_files(*dispatchers), harm("missing", rf"{NO_SOURCE}|{NOT_RUNNING}")) |
            all_of(replies(*dispatchers), harm("empty", NO_ANSWER)))


def left_out(harms: Harms, *peers: str) -> Scenario:
    board = [word for peer in peers for word in ("--without", peer)]
    return Scenario("without " + ", ".join(peers), always(harms), tuple(board))


def missing_peers() -> Iterable[Scenario]:
    gone = harm("missing", NOT_RUNNING)
    for process in PROCESSES:
        yield left_out({f"ti/{process}": gone}, process)
    for dispatcher in DISPATCHERS:
        yield left_out(gone_dispatcher(dispatcher), f"{dispatcher}_dispatcher")
    yield left_out({}, "system_log")
    yield left_out(all_of(dumps(*PROCESSES), gone), *PROCESSES)
    yield left_out(gone_dispatcher(*DISPATCHERS) | {"fuse/HistoryLog": harm("missing", r"the log was empty")},
                   "iwf_dispatcher", "sfn_dispatcher")


def ended_peers() -> Iterable[Scenario]:
    for dispatcher in DISPATCHERS:
        peer = f"{dispatcher}_dispatcher"
        yield Scenario(f"{peer} was killed", always(all_of(replies(dispatcher), harm("empty", NO_ANSWER))),
                       prepare=kill(peer))
        yield Scenario(f"{peer} is stopped", always(all_of(replies(dispatcher), harm("empty", SILENT))),
                       prepare=f"kill -STOP $(pidof {peer})")
    for process in PROCESSES:
        yield Scenario(f"{process} was killed", always({f"ti/{process}": harm("missing", NOT_RUNNING)}),
                       prepare=kill(process))
        yield Scenario(f"{process} is stopped", always({f"ti/{process}": harm("missing", r"wrote no dump")}),
                       prepare=f"kill -STOP $(pidof {process})")


# Disks.

def disks() -> Iterable[Scenario]:
    for size in ("48K", "64K", "80K", "96K", "112K", "128K", "144K", "160K"):
        yield Scenario(f"/tmp of {size}", without_room, ("--tmp-size", size))
    for size in ("48K", "64K", "128K", "256K", "1M", "2M", "3M", "4M", "5M"):
        yield Scenario(f"/tmp of {size}, full logs", without_room, ("--tmp-size", size, "--full-logs"))
    for size in ("4K", "8K", "16K", "32K"):
        yield Scenario(f"/ffs of {size}, full logs", always({}), ("--ffs-size", size, "--full-logs"), verdict="cut")
    for size in ("64K", "1M"):
        yield Scenario(f"/ffs of {size}", always({}), ("--ffs-size", size))


# Two runs, one after the other. `touch` stands for the time between them.

PAUSES = {"10 minutes": 600, "30 seconds": 30, "8 seconds": 8}
OLDER_THAN_ITS_RUN = "perhaps-left-over"
OLD_FOLDER = "old-collector"


def kill(process: str) -> str:
    return f"kill -9 $(pidof {process}); while pidof {process} > /dev/null; do sleep 0.02; done"


def earlier_run(pause: str) -> str:
    return f"korvel dump 2> /dev/null; find /tmp/korvel -type f -exec touch -d '{pause} ago' {{}} +; "


def stale(seconds: int) -> tuple[str, str, str | None]:
    """Two minutes make a part stale. Before that, a finding may name it."""
    return "stale", LEFT_OVER, None if seconds > 120 else OLDER_THAN_ITS_RUN


def old_dumps() -> Iterable[Scenario]:
    for pause, seconds in PAUSES.items():
        for process in PROCESSES:
            truth = always({f"ti/{process}": harm(*stale(seconds))})
            yield Scenario(f"{process} died in the {pause} after a run", truth, prepare=earlier_run(pause) + kill(process))
            yield Scenario(f"{process} was stopped in the {pause} after a run", truth,
                           prepare=earlier_run(pause) + f"kill -STOP $(pidof {process})")
            dump = (f"kill -USR1 $(pidof {process}); sleep 0.3; touch -d '{pause} ago' /tmp/{process}.log; "
                    f"kill -STOP $(pidof {process})")
            yield Scenario(f"{process} is stopped, with a dump of {pause} ago in /tmp", truth, prepare=dump)
    for process in PROCESSES:
        yield Scenario(f"{process} died in two real seconds after a run",
                       always({f"ti/{process}": harm("stale", LEFT_OVER)}),
                       prepare="korvel dump 2> /dev/null; sleep 2; " + kill(process), kinds=LINUX_KINDS)
        yield Scenario(f"{process} died right after a run",
                       always({f"ti/{process}": harm("stale", LEFT_OVER, OLDER_THAN_ITS_RUN)}),
                       prepare="korvel dump 2> /dev/null; " + kill(process), kinds=LINUX_KINDS)


def old_state_files() -> Iterable[Scenario]:
    for pause, seconds in PAUSES.items():
        for dispatcher in DISPATCHERS:
            for file in STATE_FILES:
                path = f"/tmp/fuse/{dispatcher}/{file}"
                truth = always({f"fuse/{dispatcher}/{file}": harm(*stale(seconds))})
                yield Scenario(f"{path} was removed in the {pause} after a run", truth,
                               prepare=f"{earlier_run(pause)} rm {path}")
                yield Scenario(f"{path} was emptied in the {pause} after a run", truth,
                               prepare=f"{earlier_run(pause)} : > {path}")


def old_parts(asked: str, pause: str, seconds: int) -> Harms:
    """The parts that a run which asks for less than the run before it leaves old."""
    everything = {
        "fuse": [*state_files(*DISPATCHERS), "fuse/HistoryLog"],
        "mmi": replies(*DISPATCHERS),
        "ti": [*dumps(*PROCESSES), "ti/syslib_sm_log"],
    }
    renewed = {
        "-d iwf": {*state_files("iwf"), *replies("iwf"), "fuse/HistoryLog", *everything["ti"]},
        "-d sfn": {*state_files("sfn"), *replies("sfn"), "fuse/HistoryLog", *everything["ti"]},
        "dinf": {f"{place}" for dispatcher in DISPATCHERS
                 for place in (f"fuse/{dispatcher}/tracing_on", f"mmi/{dispatcher}/{COMMANDS[0]}")},
        "dlog": {"fuse/HistoryLog"},
        "proxy": {"ti/netfp_proxy"},
        "resmgr": {"ti/resmgr_server"},
        "slog": {"ti/syslib_sm_log"},
    }[asked]
    states, cause, finding = stale(seconds)
    harms = {}
    for names in everything.values():
        whole = not renewed.intersection(names)
        for name in names:
            if name not in renewed:
                harms[name] = harm(states, cause, OLD_FOLDER if whole else finding)
    return harms


def narrower_runs() -> Iterable[Scenario]:
    for pause, seconds in PAUSES.items():
        for asked in ("-d iwf", "-d sfn", "dinf", "dlog", "proxy", "resmgr", "slog"):
            yield Scenario(f"a run of '{asked}' {pause} after a whole one", always(old_parts(asked, pause, seconds)),
                           prepare=earlier_run(pause), arguments=asked)


# Other troubles, and none.

def healthy_boards() -> Iterable[Scenario]:
    yield Scenario("healthy", always({}))
    yield Scenario("healthy, full logs", always({}), ("--full-logs",))
    yield Scenario("healthy, only IWF", always({}), ("--deployment", "iwf"))
    yield Scenario("healthy, only SFN", always({}), ("--deployment", "sfn-antenna"))
    for profile in ("steady", "busy", "leak", "flood", "flapping"):
        yield Scenario(f"traffic {profile}", always({}), ("--traffic", f"{profile}:70"))
    yield Scenario("healthy, a second after a run", always({}),
                   prepare="korvel dump 2> /dev/null; find /tmp/korvel -type f -exec touch -d '1 second ago' {} +")
    yield Scenario("healthy, a minute after a run", always({}), prepare=earlier_run("1 minute"))
    yield Scenario("post-mortem package inside", always({}),
                   prepare="korvel pkg-pm 2> /dev/null; rm -rf /tmp/korvel", kinds=("pkg-trs", "pkg-sup"))
    yield Scenario("print in the same run", always({}), arguments="print")


def troubled_files() -> Iterable[Scenario]:
    dma = "/tmp/fuse/sfn/dmaStats"
    name = "fuse/sfn/dmaStats"
    yield Scenario("no bridge file", always({"fuse/iwf/fpBridgeStats": harm("missing", NO_SOURCE)}),
                   ("--deployment", "iwf"), "rm /tmp/fuse/iwf/fpBridgeStats")
    yield Scenario("a state file is missing", always({name: harm("missing", NO_SOURCE)}), prepare=f"rm {dma}")
    yield Scenario("a state file is empty", always({name: harm("missing", NO_SOURCE)}), prepare=f": > {dma}")
    yield Scenario("a FIFO in place of a state file", always({name: harm("missing", rf"{NO_SOURCE}|could not read")}),
                   prepare=f"rm {dma}; mkfifo {dma}")
    yield Scenario("a state file of 17 MiB", always({name: harm("cut", "16 MiB")}), ("--tmp-size", "128M"),
                   f"yes 'transfers started 1' | head -c 17M > {dma}")
    yield Scenario("a link in the work directory", always({name: harm("missing", "not followed")}),
                   prepare=f"mkdir -p /tmp/korvel/fuse/sfn; ln -s /etc/passwd /tmp/korvel/{name}.log; rm {dma}")
    yield Scenario("a piece of the archive is cut",
                   always({"archive/dispatcher/startup": harm("cut", "compression was interrupted")}),
                   prepare="mkdir -p /tmp/korvel/archive/dispatcher; gzip < /bin/ls | head -c 9000 "
                           "> /tmp/korvel/archive/dispatcher/startup.log.gz")


def troubled_commands() -> Iterable[Scenario]:
    yield Scenario("the port of MMI is in use", always(all_of(replies(*DISPATCHERS), harm("empty", rf"could not ask|{NO_ANSWER}"))),
                   prepare="python3 -c 'import socket, time; s = socket.socket(type=socket.SOCK_DGRAM); "
                           "s.bind((\"0.0.0.0\", 7778)); time.sleep(60)' & sleep 0.3")
    yield Scenario("no command for Linux logs", always({"linux": harm("missing", "fp_linux_log_collect")}),
                   environment="PATH=/usr/bin:/bin", kinds=LINUX_KINDS)
    yield Scenario("the post-mortem package is cut",
                   always({"netfp_logs_post_mortem": harm("cut", "post-mortem package is incomplete")}),
                   prepare="korvel pkg-pm 2> /dev/null; rm -rf /tmp/korvel; cd /ffs/run/logs; "
                           "head -c 1000 netfp_logs_post_mortem.tgz > x; mv x netfp_logs_post_mortem.tgz; cd",
                   kinds=("pkg-trs", "pkg-sup"))


def all_scenarios() -> list[Scenario]:
    groups = (healthy_boards, mmi_faults, dump_faults, faults_of_other_requests, missing_peers, ended_peers, disks,
              old_dumps, old_state_files, narrower_runs, troubled_files, troubled_commands)
    return [scenario for group in groups for scenario in group()]
