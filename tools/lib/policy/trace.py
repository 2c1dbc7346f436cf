# SPDX-License-Identifier: Apache-2.0
"""Runs a program under strace and reports the files that it opens."""
import os
import re
import shutil
import subprocess
import tempfile
from dataclasses import dataclass
from pathlib import Path

# A question mark: not every machine has the call.
CALLS = "trace=?open,openat,openat2,?creat"
_PATH = r"(?:[^<>\\]|\\.)*"
_CALL = re.compile(
    r"(?P<call>open|openat|openat2|creat)\("
    rf"(?:(?:AT_FDCWD|\d+)<(?P<folder>{_PATH})>, )?"
    r'"(?P<path>(?:[^"\\]|\\.)*)"(?P<rest>.*)\)\s+= '
    rf"(?P<result>\?|-?\d+)(?:<(?P<opened>{_PATH})>)?(?:\(deleted\))?(?: (?P<error>E[A-Z0-9]+))?"
)
_CREATION = frozenset({"O_WRONLY", "O_CREAT", "O_TRUNC"})
# Nothing there, or a link that was not followed.
_NOTHING_THERE = ("ENOENT", "ENOTDIR", "ELOOP")


@dataclass(frozen=True)
class Opening:
    """An attempt to open a file, by its path without links."""

    path: str
    flags: frozenset


def _plain(text):
    return os.fsdecode(text.encode("ascii").decode("unicode_escape").encode("latin-1"))


def _asked_for(call, flags):
    path = os.path.join(_plain(call["folder"] or ""), _plain(call["path"]))
    folder, name = os.path.split(path)
    if "O_NOFOLLOW" in flags:
        return os.path.join(os.path.realpath(folder), name)
    return os.path.realpath(path)


def parse(lines):
    """The openings in the output of strace -y for one thread."""
    for line in lines:
        call = _CALL.match(line)
        if not call or call["error"] in _NOTHING_THERE:
            continue
        flags = frozenset(re.findall(r"\bO_[A-Z]+", call["rest"]))
        if call["call"] == "creat":
            flags = _CREATION
        opened = call["opened"]
        yield Opening(_asked_for(call, flags) if opened is None else _plain(opened), flags)


def is_possible():
    """Whether tracing is allowed."""
    if not shutil.which("strace"):
        return False
    with tempfile.NamedTemporaryFile() as output:
        command = ["strace", "-f", "-o", output.name, "true"]
        return subprocess.run(command, capture_output=True, check=False).returncode == 0


def run(command, seconds=300, **options):
    """The command's exit status and the openings of all its threads and processes."""
    with tempfile.TemporaryDirectory() as folder:
        strace = ["strace", "-ff", "--seccomp-bpf", "-qq", "-y", "-e", CALLS, "-e", "signal=none"]
        result = subprocess.run(
            [*strace, "-o", f"{folder}/trace", *map(str, command)],
            stdout=subprocess.DEVNULL,
            timeout=seconds,
            check=False,
            **options,
        )
        openings = []
        for file in Path(folder).iterdir():
            with file.open(encoding="ascii") as lines:
                openings += parse(lines)
        return result.returncode, openings
