"""Configures the project in temporary build trees and reads which files the build makes and how it links them."""

import os
import re
import subprocess
from pathlib import Path

SOURCE = Path(os.environ["KORVEL_SOURCE"])
BUILD = Path(os.environ["KORVEL_BUILD"])


def run(*words: str | Path, **environment: str) -> str:
    """Runs a command and returns its standard output. Fails unless the command exits 0."""
    outcome = subprocess.run(
        words, env=os.environ | environment, stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False
    )
    if outcome.returncode != 0:
        raise AssertionError(f"{words}: {outcome.returncode}\n{outcome.stdout}{outcome.stderr}")
    return outcome.stdout


def configure(build: Path, source: Path = SOURCE, **options: str | Path) -> None:
    """Configures a tree, or configures it again, with the options that build fastest."""
    quick = {"CMAKE_BUILD_TYPE": "Debug", "CMAKE_CXX_FLAGS_DEBUG": "", "CMAKE_UNITY_BUILD": "ON",
             "CMAKE_UNITY_BUILD_BATCH_SIZE": "0", "KORVEL_REPORT": "OFF"}
    settings = [f"-D{name}={value}" for name, value in (quick | options).items()]
    run("cmake", "-G", "Ninja", "-S", source, "-B", build, *settings)


def outputs(build: Path) -> list[str]:
    """The files that the tree builds, as paths relative to the tree."""
    listing = run("ninja", "-C", build, "-t", "targets", "all")
    return re.findall(r"^(?!/)(.+?): (?!phony)", listing, re.MULTILINE)


def link_command(build: Path, output: str) -> str:
    """The command line that links a file of the tree."""
    return run("ninja", "-C", build, "-t", "commands", "-s", output)
