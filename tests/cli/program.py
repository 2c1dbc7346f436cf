# SPDX-License-Identifier: Apache-2.0
"""How tests run vandrel-cli.

VANDREL_CLI is the program, VANDREL_SOURCE_DIR the folder of the project.
"""
import atexit
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

PROGRAM = str(Path(os.environ["VANDREL_CLI"]).resolve())
ROOT = Path(os.environ["VANDREL_SOURCE_DIR"]).resolve()
SYNTHETIC = ROOT / "tests/fixtures/synthetic/sys"
VIRTUAL_MACHINE = ROOT / "tests/fixtures/virtio-vm/sys"
FOUND, NOTHING, FAILED, WRONG_USAGE = 0, 1, 2, 64
SAME, DIFFERENT = 0, 1

home = tempfile.TemporaryDirectory()
atexit.register(home.cleanup)
PASSED_ON = ("PATH", "LD_LIBRARY_PATH", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS")
ENVIRONMENT = {name: os.environ[name] for name in PASSED_ON if name in os.environ}
ENVIRONMENT |= {"LC_ALL": "C.UTF-8", "PAGER": "cat"}
ENVIRONMENT |= {"HOME": home.name, "XDG_RUNTIME_DIR": home.name}


def run_command(command, **options):
    options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE, "timeout": 60} | options
    return subprocess.run(command, env=ENVIRONMENT, check=False, **options)


def run(*arguments, tree=SYNTHETIC, **options):
    return run_command([PROGRAM, *arguments, "--sysfs", tree, "--color", "never"], **options)


def needs(program):
    return unittest.skipUnless(shutil.which(program), f"{program} is not installed")
