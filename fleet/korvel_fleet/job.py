"""The file of the job."""

from pathlib import Path

# Beside the folder of this module. Not resolved: in the build tree, the modules are links, and the job is not.
JOB = str(Path(__file__).parent.parent / "job.sh")
