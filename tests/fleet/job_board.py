"""Jobs of korvel-fleet on a simulated board, in each shell that boards have."""

import shutil
import subprocess
import unittest

import fleet

JOB = "/opt/korvel/share/korvel-fleet/job.sh"  # the build tree's path on the board
FUNCTIONS = f"""
cd /ffs/run/logs
sed 's/^collection_grace=20 /collection_grace=2 /' {JOB} > /tmp/job
applets=
if [ "$SHELL_OF_JOB" = busybox ]; then
    applets=/tmp/applets:
    mkdir /tmp/applets; busybox --install -s /tmp/applets
    ln -sf /bin/tar /bin/ps /tmp/applets  # korvel needs those of the board
    SHELL_OF_JOB='busybox sh'
fi
job() {{ PATH=$applets$PATH $SHELL_OF_JOB -s -- "$@" < /tmp/job; }}
result() {{ echo "status $1"; tail -c 40 /tmp/stream | grep -ao 'end$\\|failed .*$'; }}
collect() {{
    job collect TOKEN lab-17 "$1" 10000000 > /tmp/stream
    result "$?"
}}
# start KEYWORD: a job in the background, as $job, in a process group of its own.
start() {{
    PATH=$applets$PATH setsid $SHELL_OF_JOB -s -- collect TOKEN lab-17 "$1" 10000000 < /tmp/job > /tmp/stream &
    job=$!
}}
# replace_korvel TEXT: a program in place of korvel, which can run the real one. It becomes the real one for supervision,
# because the job looks at this process.
replace_korvel() {{
    mkdir -p /tmp/bin
    {{
        echo '#!/bin/sh'
        echo 'real() {{ [ "$1" != supervision ] || exec /opt/korvel/bin/korvel "$@"; /opt/korvel/bin/korvel "$@"; }}'
        printf '%s\\n' "$1"
    }} > /tmp/bin/korvel
    chmod +x /tmp/bin/korvel
    PATH=/tmp/bin:$PATH
}}
until_exists() {{ until [ -e "$1" ]; do sleep 0.05; done; }}
files() {{ find /ffs/run /tmp/korvel /tmp/korvel-fleet-* 2> /dev/null | sort; }}
contents() {{ find /ffs/run /tmp/korvel -type f | sort | xargs md5sum; }}
remember() {{ files > /tmp/before; contents > /tmp/before.md5; }}
compare() {{ files | diff /tmp/before - && contents | diff /tmp/before.md5 -; }}
"""


class BoardCase(unittest.TestCase):
    maxDiff = None
    shell = "sh"

    def setUp(self) -> None:
        if shutil.which(self.shell) is None:
            self.skipTest(f"{self.shell} is not installed")

    def run_on_board(self, script: str, *options: str) -> tuple[int, str, str]:
        """Runs shell commands on a simulated board."""
        done = subprocess.run([fleet.BUILD / "boardsim", *options, "--", "sh", "-c",
                               f"SHELL_OF_JOB={self.shell}\n{FUNCTIONS}\n{script}"],
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, errors="replace", timeout=100)
        return done.returncode, done.stdout, done.stderr
