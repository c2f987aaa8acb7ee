"""Makes a wait of korvel reach its limit. This program runs on the simulated board:

    python3 on_board.py SCENARIO [ARGUMENT...]

It calls the function SCENARIO with the arguments and prints the result as JSON. The last arguments are korvel's
command line. The board has no files of the host, so python3 reads this program from standard input.
"""

import fcntl
import json
import os
import re
import signal
import socket
import struct
import subprocess
import sys
import threading
import time
from datetime import datetime
from pathlib import Path
from typing import NamedTuple

INTERVAL = 0.02  # seconds between datagrams that prolong a wait
NETLINK_USERSOCK = 2
PROXY_PORT = 110
PROXY_HEARTBEAT_RESPONSE = 18


class Observation(NamedTuple):
    seconds: float
    status: int
    text: str  # standard output and standard error together


def run(*words: str, path: str = "") -> Observation:
    """Runs korvel. `path` is put in front of the search path."""
    begin = time.monotonic()
    environment = {**os.environ, "PATH": path + os.environ["PATH"]}
    done = subprocess.run(["korvel", *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, env=environment, check=False)
    return Observation(time.monotonic() - begin, done.returncode, done.stdout)


def with_trickling_dispatcher(port: str, *words: str) -> Observation:
    """Adds a dispatcher that sends datagrams without end after the first request."""
    dispatcher = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
    dispatcher.bind(("127.0.0.1", int(port)))
    _trickle(dispatcher, b"tick\n")
    return run(*words)


def with_foreign_heartbeats(*words: str) -> Observation:
    """Adds a netfp_proxy that repeatedly sends heartbeat answers with a wrong sequence number."""
    proxy = socket.socket(socket.AF_NETLINK, socket.SOCK_DGRAM, NETLINK_USERSOCK)
    proxy.bind((PROXY_PORT, 0))
    payload = struct.pack("=II", PROXY_HEARTBEAT_RESPONSE, 0)
    _trickle(proxy, struct.pack("=IHHII", 16 + len(payload), 1, 0, 7, PROXY_PORT) + payload)
    return run(*words)


def with_stopped_reader(process: str, path: str, *words: str) -> Observation:
    """Stops a process and fills the queue of its socket."""
    os.kill(int(subprocess.check_output(["pidof", process])), signal.SIGSTOP)
    _fill(path)
    return run(*words)


def with_full_pipe(seconds: str, *words: str) -> Observation:
    """Reads no output of korvel for this time. korvel must still run at the end of it."""
    begin = time.monotonic()
    reader, writer = os.pipe()
    fcntl.fcntl(writer, fcntl.F_SETFL, os.O_NONBLOCK)
    filling = _fill_pipe(writer)
    fcntl.fcntl(writer, fcntl.F_SETFL, 0)
    with subprocess.Popen(["korvel", *words], stdin=subprocess.DEVNULL, stdout=writer, stderr=writer) as korvel:
        os.close(writer)
        time.sleep(float(seconds))
        waited = time.monotonic() - begin if korvel.poll() is None else 0.0
        with open(reader, "rb") as output:
            text = output.read()[filling:].decode()
        return Observation(waited, korvel.wait(), text)


def with_slow_command(name: str, seconds: str, *words: str) -> Observation:
    """Delays a command of the board by this time."""
    command = Path("/tmp/commands", name)
    command.parent.mkdir()
    command.write_text(f'#!/bin/sh\nsleep {seconds}\nexec /bin/{name} "$@"\n', encoding="ascii")
    command.chmod(0o755)
    return run(*words, path="/tmp/commands:")


def with_stuck_folder(folder: str, operation: str, *words: str) -> Observation:
    """Mounts a file system that never answers one kind of request."""
    with subprocess.Popen(["/opt/korvel/tests/stuck_fs", folder, operation], stdout=subprocess.PIPE) as server:
        assert server.stdout is not None
        assert server.stdout.readline() == b"ready\n"
        observation = run(*words)
        server.kill()
    return observation


def with_lock(folder: str, *words: str) -> Observation:
    """Holds the lock of a folder."""
    os.mkdir(folder)
    fcntl.flock(os.open(folder, os.O_RDONLY), fcntl.LOCK_EX)
    return run(*words)


def between_cycles(*words: str) -> Observation:
    """Measures the time between two heartbeats to netfp_proxy, by the time stamps of its log."""
    log = Path("/run/boardsim/log/netfp_proxy")

    def heartbeats() -> list[str]:
        return re.findall(r"^(\S+)Z <- ", log.read_text(encoding="ascii"), re.M) if log.exists() else []

    def seconds() -> float:
        first, second = (datetime.fromisoformat(stamp) for stamp in heartbeats()[:2])
        return (second - first).total_seconds()

    return _until(lambda: len(heartbeats()) > 1, seconds, *words)


def between_reads(*words: str) -> Observation:
    """Measures the time between the first two writes to an archived log, by its modification times."""
    archive = Path("/tmp/korvel/archive/dispatcher/runtime.log")
    stamps: dict[int, int] = {}  # modification time by size, in ns

    def written_twice() -> bool:
        if archive.exists() and (status := archive.stat()).st_size > 0:
            stamps.setdefault(status.st_size, status.st_mtime_ns)
        return len(stamps) > 1

    def seconds() -> float:
        first, second = stamps.values()
        return (second - first) / 1e9

    return _until(written_twice, seconds, *words)


def _until(condition, seconds, *words: str) -> Observation:
    """Runs korvel and terminates it when the condition is true."""
    with subprocess.Popen(["korvel", *words], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True) as korvel:
        while not condition():
            time.sleep(0.01)
        korvel.terminate()
        text = korvel.communicate()[0]
        return Observation(seconds(), korvel.returncode, text)


def _trickle(peer: socket.socket, datagram: bytes) -> None:
    def serve() -> None:
        _, client = peer.recvfrom(65536)
        while True:
            try:
                peer.sendto(datagram, client)
            except OSError:  # the client has ended, or its queue is full
                pass
            time.sleep(INTERVAL)

    threading.Thread(target=serve, daemon=True).start()


def _fill(path: str) -> None:
    """Fills the queue of a datagram socket."""
    sender = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
    sender.setblocking(False)
    try:
        while True:
            sender.sendto(b"x", path)
    except BlockingIOError:
        pass


def _fill_pipe(writer: int) -> int:
    """Fills a pipe. Returns its capacity in bytes."""
    size = 0
    for piece in (b"x" * 4096, b"x"):
        try:
            while True:
                size += os.write(writer, piece)
        except BlockingIOError:
            pass
    return size


if __name__ == "__main__":
    print(json.dumps(globals()[sys.argv[1]](*sys.argv[2:])), flush=True)
