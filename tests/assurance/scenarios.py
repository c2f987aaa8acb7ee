"""What korvel does while something fails: each action, print, dump, kind of package, supervision, and the archive."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Scenario:
    words: str  # korvel's arguments
    board: tuple[str, ...] = ()  # boardsim's options
    seconds: float | None = None  # korvel does not end by itself, and gets TERM then


ACTIONS = (
    "getport eth1", "getport none", "mirrorport enable eth0 eth1", "mirrorport disable eth0 eth1", "loopbackport enable eth0",
    "loopbackport disable eth0", "portswap eth0 eth1", "addmulticastmac 01:00:5e:00:00:01 eth0", "resetqosstats",
    "addmulticastmac 01:00:5e:00:00:01 eth0 5", "-d all resetqosstats", "mem_dump 0xeb6b6100 32", "mem_dump 0xeb6b6100 100000",
    "desc_dump 0xeb6b6100", "desc_dump 0xeb6b6100 32", "add_interface eth0", "-v getport eth1", "--help", "unknown")
COLLECTIONS = (
    "print", "print netfp", "print dlog", "-d all print", "-d sfn print dstat", "dump", "dump netfp", "-d all dump dinf dstat",
    "pkg", "-d all pkg", "-v -d all print dump pkg", "pkg dlog", "pkg-trs", "pkg-sup", "pkg-pm", "pkg-sdown")

SCENARIOS = (
    *(Scenario(words) for words in ACTIONS + COLLECTIONS),
    Scenario("supervision", seconds=0.7),
    Scenario("supervision", ("--fault", "sfn_dispatcher=netlink-error:3"), seconds=2),
    Scenario("archive", ("--full-logs",), seconds=1.5),
)
