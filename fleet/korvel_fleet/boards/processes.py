"""Many processes at once, started and read by ClusterShell's engine.

ClusterShell's own workers read lines. A board also sends a package, so the workers here pass on bytes as they come, and
keep nothing of them.
"""

import ctypes
import functools
import os
import resource
import signal
import time
from collections.abc import Callable
from dataclasses import dataclass
from typing import Protocol

from ClusterShell.Engine.Engine import FANOUT_DEFAULT, FANOUT_UNLIMITED
from ClusterShell.Event import EventHandler
from ClusterShell.NodeSet import NodeSet
from ClusterShell.Task import Task, task_self
from ClusterShell.Worker.EngineClient import EngineClientEOF
from ClusterShell.Worker.Exec import ExecClient, ExecWorker
from ClusterShell.Worker.fastsubprocess import PIPE, Popen

# A process that closed its outputs is given this time to end.
SECONDS_TO_END = 5.0
END = "end"  # the stream that is readable once the process has ended
FILES = 5  # that are open for each process: standard output, standard error, END, a package and its run file
OTHER_FILES = 64
PR_SET_PDEATHSIG = 1
CHUNK = 1 << 16
SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)

_libc = ctypes.CDLL(None)


class Conversation(Protocol):
    """What is done with the output of one process."""

    def received(self, data: bytes) -> bool:
        """Takes standard output. False ends the process: nothing more is wanted of it."""

    def complained(self, data: bytes) -> bool:
        """Takes standard error. The result is as for received()."""

    def ended(self, status: int | None) -> None:
        """Takes the exit status, negative for a signal, and None after the timeout."""


@dataclass(frozen=True)
class Command:
    """A command line, and the file that is its standard input."""

    words: list[str]
    stdin: str = os.devnull


class Interrupted(Exception):
    """A signal asked korvel-fleet to end. All processes have ended."""

    def __init__(self, signal_number: int) -> None:
        super().__init__(signal.Signals(signal_number).name)
        self.signal_number = signal_number


def _prepare_child(parent: int) -> None:
    """In a new process: a session of its own, so that it can be ended with its children and asks no terminal for a
    password. The kernel ends it with korvel-fleet.
    """
    os.setsid()
    _libc.prctl(PR_SET_PDEATHSIG, signal.SIGKILL)
    if os.getppid() != parent:
        os._exit(1)
    signal.signal(signal.SIGPIPE, signal.SIG_DFL)  # Python ignores the signal


class _Child(ExecClient):
    """One process of the engine. Its end is an event like its output, so that nothing waits for it."""

    def _start(self) -> "_Child":
        self.conversation: Conversation | None = self.worker.begin(self.key)
        command = self.worker.command_of(self.key)
        stdin = os.open(command.stdin, os.O_RDONLY | os.O_CLOEXEC)
        try:
            self.popen = Popen(command.words, stdin=stdin, stdout=PIPE, stderr=PIPE,
                               preexec_fn=functools.partial(_prepare_child, os.getpid()))
        finally:
            os.close(stdin)
        self.streams.set_reader(self.worker.SNAME_STDOUT, self.popen.stdout)
        self.streams.set_reader(self.worker.SNAME_STDERR, self.popen.stderr)
        self.streams.set_reader(END, os.pidfd_open(self.popen.pid))
        return self

    def _outputs(self) -> list[str]:
        return [name for name in (self.worker.SNAME_STDOUT, self.worker.SNAME_STDERR) if name in self.streams]

    def _handle_read(self, sname: str) -> None:
        if sname == END:
            self._finish()
        elif not self._read_piece(sname):
            raise EngineClientEOF()

    def _read_piece(self, sname: str) -> bool:
        """False at the end."""
        data = os.read(self.streams[sname].fd, CHUNK)
        if not data:
            return False
        self._set_reading(sname)
        is_error = sname == self.worker.SNAME_STDERR
        take = self.conversation.complained if is_error else self.conversation.received
        if not take(data):
            self.abort()
        return True

    def _finish(self) -> None:
        """Reads what the process has left in its pipes. Its children may keep them open."""
        for sname in self._outputs():
            try:
                while self._engine and self._read_piece(sname):
                    pass
            except BlockingIOError:
                pass
        if self._engine:
            self._engine.remove(self)

    def _close_stream(self, sname: str) -> None:
        super()._close_stream(sname)
        if not self._outputs() and self._timercase.fire_date - time.time() > SECONDS_TO_END:
            self.set_nextfire(SECONDS_TO_END)

    def _fire(self) -> None:
        if self._engine:
            self._engine.remove(self, abort=True, did_timeout=bool(self._outputs()))

    def _close(self, abort: bool, timeout: bool) -> None:
        status = self._end(abort)
        self.streams.clear()
        self.invalidate()
        # The worker keeps this object until all of its processes have ended; what belongs to this one is dropped now.
        conversation, self.conversation, self.popen = self.conversation, None, None
        self.worker.ended(conversation, None if timeout else status)
        self.worker._check_fini()

    def _end(self, abort: bool) -> int:
        """Returns the exit status. After a normal end, children may live on: an ssh that shares its connection leaves
        one. Otherwise, they are ended. The process stays a zombie until its children got the signal, so its number
        cannot belong to others.
        """
        if abort or os.waitid(os.P_PID, self.popen.pid, os.WEXITED | os.WNOWAIT).si_code != os.CLD_EXITED:
            for kill in (os.killpg, os.kill):  # it has no group of its own until it called setsid()
                try:
                    kill(self.popen.pid, signal.SIGKILL)
                except ProcessLookupError:
                    pass
        return self.popen.wait()


class _Children(ExecWorker):
    """The processes of many boards."""

    SHELL_CLASS = _Child

    def __init__(self, names: NodeSet, begin: Callable[[str], Conversation], command_of: Callable[[str], Command],
                 timeout: float, ended: Callable[[Conversation, int | None], None]) -> None:
        self.begin = begin
        self.command_of = command_of
        self.ended = ended
        super().__init__(names, handler=None, timeout=timeout, command=" ", stderr=True)

    def _check_fini(self) -> None:
        """Drops everything after the last process: the engine counts workers, and so keeps some of them."""
        super()._check_fini()
        if self._close_count == len(self._clients):
            self._clients = []
            del self.begin, self.command_of, self.ended


class _Watch(EventHandler):
    """Looks now and then whether a signal came. A signal handler that raises an exception could do so anywhere, also
    where Python ignores exceptions.
    """

    SECONDS = 0.1

    def __init__(self) -> None:
        self.signal_number: int | None = None

    def note(self, number: int, _frame: object) -> None:
        self.signal_number = self.signal_number or number

    def ev_timer(self, _timer: object) -> None:
        if self.signal_number is not None:
            raise Interrupted(self.signal_number)


class _Later(EventHandler):
    """Calls a function once."""

    def __init__(self, act: Callable[[], None]) -> None:
        self._act = act

    def ev_timer(self, _timer: object) -> None:
        self._act()


def _possible(fanout: int) -> int:
    """The fan-out, or a lower one if fewer files may be open."""
    soft, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    needed = fanout * FILES + OTHER_FILES
    if needed > soft:
        soft = needed if hard == resource.RLIM_INFINITY else min(needed, hard)
        resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))
    return max(1, min(fanout, (soft - OTHER_FILES) // FILES))


class Processes:
    """Starts processes and reads their output, until all have ended."""

    def __init__(self, fanout: int) -> None:
        fanout = _possible(fanout)
        self._piece = max(256, 2 * fanout)
        self._task: Task = task_self()
        self._task.set_info("fanout", fanout)
        self._watch = _Watch()
        self._boards_left = 0
        self._answered: Callable[[], None] = lambda: None

    @property
    def boards_left(self) -> int:
        """How many of the boards have not answered to the end."""
        return self._boards_left

    def when_answered(self, act: Callable[[], None]) -> None:
        """Calls `act` when all boards have answered to the end."""
        self._answered = act

    def later(self, seconds: float, act: Callable[[], None]) -> None:
        """Calls `act`, unless all processes end before."""
        self._task.timer(seconds, _Later(act), autoclose=True)

    def add(self, name: str, conversation: Conversation, command: Command, timeout: float) -> None:
        """Adds a process that starts at once. May be called while run() runs."""
        self._schedule(_Children(NodeSet(name), lambda _: conversation, lambda _: command, timeout, self._end),
                       FANOUT_UNLIMITED)

    def add_boards(self, boards: NodeSet, begin: Callable[[str], Conversation], command_of: Callable[[str], Command],
                   timeout: float) -> None:
        """Adds a process for each board. At most `fanout` of them run at the same time. They are handed to ClusterShell
        in pieces, because each takes some kilobytes there from the start.
        """
        self._boards_left += len(boards)
        waiting = iter(range(0, len(boards), self._piece))
        left = 0

        def end(conversation: Conversation, status: int | None) -> None:
            nonlocal left
            left -= 1
            self._boards_left -= 1
            self._end(conversation, status)
            if not self._boards_left:
                self._answered()
            if left < self._piece // 2:
                add_piece()

        def add_piece() -> None:
            nonlocal left
            start = next(waiting, None)
            if start is not None and not self._is_stopped():
                piece = boards[start:start + self._piece]
                left += len(piece)
                self._schedule(_Children(piece, begin, command_of, timeout, end), FANOUT_DEFAULT)

        add_piece()

    def _schedule(self, worker: _Children, fanout: int | None) -> None:
        worker._fanout = fanout
        self._task.schedule(worker)

    def _is_stopped(self) -> bool:
        return self._watch.signal_number is not None

    def _end(self, conversation: Conversation, status: int | None) -> None:
        if not self._is_stopped():
            conversation.ended(status)

    def run(self) -> None:
        """Runs until all processes have ended. A signal ends them all at once, and raises Interrupted."""
        handlers = {number: signal.signal(number, self._watch.note) for number in SIGNALS}
        self._task.timer(_Watch.SECONDS, self._watch, interval=_Watch.SECONDS, autoclose=True)
        try:
            self._task.run()
        finally:
            for number, handler in handlers.items():
                signal.signal(number, handler)
        if self._is_stopped():  # the last process ended before the timer looked
            raise Interrupted(self._watch.signal_number)
