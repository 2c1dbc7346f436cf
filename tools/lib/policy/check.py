# SPDX-License-Identifier: Apache-2.0
"""Traces which files a capture opens: see tools/check-policy."""
import argparse
import functools
import os
import sys
import tempfile
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
sys.dont_write_bytecode = True

from policy import trace  # noqa: E402
from policy.judge import Judge  # noqa: E402
from policy.made import MadeTree  # noqa: E402

PROJECT = Path(__file__).resolve().parents[3]
LIVE = Path("/sys")
SKIPPED = 77
# Complete, and incomplete because a device did not answer.
CAPTURED = (0, 3)


def arguments():
    parser = argparse.ArgumentParser(prog="check-policy", description=__doc__)
    parser.add_argument("trees", metavar="TREE", nargs="*", type=Path)
    parser.add_argument("--trees", dest="folders", metavar="FOLDER", action="append", type=Path)
    parser.add_argument("--program", type=Path, default=PROJECT / "build/dev/app/vandrel")
    parser.add_argument("--self-test", action="store_true")
    return parser.parse_intermixed_args()


def root_of(folder):
    """The sysfs tree that the folder is or contains, or none."""
    return next((root for root in (folder, folder / "sys") if (root / "devices").is_dir()), None)


def trees(options):
    """The requested roots, or those of the fixtures."""
    for folder in options.trees:
        yield root_of(folder) or sys.exit(f"{folder}: not a sysfs tree")
    folders = options.folders or ([] if options.trees else [PROJECT / "tests/fixtures"])
    for folder in folders:
        found = [root for path in sorted(folder.iterdir()) if (root := root_of(path))]
        yield from found or sys.exit(f"{folder}: contains no sysfs tree")


def capture(program, root):
    """The accesses of a capture of the tree."""
    with tempfile.TemporaryDirectory() as home:
        status, openings = trace.run(
            [program, "--sysfs", root, "--capture", f"{home}/snapshot"],
            env={**os.environ, "XDG_CONFIG_HOME": home, "LANG": "C.UTF-8"},
        )
    if status not in CAPTURED:
        sys.exit(f"{root}: the capture failed with status {status}")
    return openings


@functools.cache
def live_judge():
    return Judge(LIVE)


def check(program, root, harmless=()):
    """The faults of a capture of the tree. It must have read the harmless attributes."""
    openings = capture(program, root)
    judge = Judge(root)
    judges = (judge,) if judge.root == LIVE else (judge, live_judge())
    found = {its.complaint(opening) for its in judges for opening in openings} - {None}
    read = judge.attributes
    found |= {f"{root}/{path}: not read" for path in set(harmless) - read}
    if not read:
        found.add(f"{root}: no attribute was read")
    print(f"{root}: {len(read)} attributes read, {len(found)} complaints")
    return sorted(found)


def self_test():
    """Whether the check finds forbidden accesses."""
    tests = unittest.defaultTestLoader.discover(PROJECT / "tests/tools", "test_policy.py")
    return unittest.TextTestRunner(stream=sys.stdout).run(tests).wasSuccessful()


def main():
    options = arguments()
    if not trace.is_possible():
        print("skipped: tracing is not allowed")
        sys.exit(SKIPPED)
    if not self_test():
        sys.exit("the check does not find forbidden accesses")
    if options.self_test:
        return
    if not os.access(options.program, os.X_OK):
        sys.exit(f"{options.program}: missing; tools/test builds it")
    complaints = check(options.program, LIVE)
    for root in trees(options):
        complaints += check(options.program, root)
    with tempfile.TemporaryDirectory() as folder:
        made = MadeTree(folder)
        complaints += check(options.program, made.root, made.harmless)
    if complaints:
        sys.exit("\n".join(complaints))


if __name__ == "__main__":
    main()
