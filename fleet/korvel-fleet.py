#!/usr/bin/python3
"""Starts korvel-fleet. Its modules are in ../share/korvel-fleet, so the installation can be moved as a whole."""

import _signal  # unlike signal, it is there at once: before this line, Ctrl-C prints a traceback

_signal.signal(_signal.SIGINT, _signal.SIG_DFL)

import sys  # noqa: E402
from pathlib import Path  # noqa: E402

sys.path.insert(0, str(Path(__file__).resolve().parent / "@modules@"))
try:
    import ClusterShell  # noqa: F401
except ImportError:
    print("korvel-fleet: ClusterShell is not installed; on Debian, it is the package clustershell", file=sys.stderr)
    sys.exit(3)

from korvel_fleet.cli import main  # noqa: E402

sys.exit(main())
