# SPDX-License-Identifier: Apache-2.0
"""Runs clang-tidy on sources, and skips those that were clean before and have not changed.

    python3 tools/lib/tidy.py BUILD_FOLDER SOURCE...

A clean result is valid for a source, all project headers that it includes, its compile command, the
checks and the installed packages. Results are kept in the user's cache folder for a month.

Library headers take nearly all of the time, so sources with the same compile command are checked
together, as one. If that reports problems, each is checked alone, since two sources may only use
one name for two things.
"""
import concurrent.futures
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
VERDICTS = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "vandrel/tidy"
CHECKS = ROOT / ".clang-tidy"
MONTH = 30 * 24 * 3600
LARGEST_BATCH = 12
INCLUDE = re.compile(rb'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def output(*command):
    return subprocess.run(command, capture_output=True, check=True).stdout


class Fingerprints:
    """The keys of sources: everything that their result depends on."""

    def __init__(self, build):
        self._common = [output("clang-tidy", "--version"), CHECKS.read_bytes()]
        self._common.append(output("dpkg-query", "-W", "libc6-dev", "libstdc++*dev", "qt6-*-dev",
                                   "libgtest-dev", "libicu-dev"))
        commands = json.loads((build / "compile_commands.json").read_text())
        self._commands = {Path(entry["file"]): entry["command"] for entry in commands}
        self._files = {}

    def of(self, source):
        digest = hashlib.sha256()
        command = self._commands.get(source, "").replace(str(ROOT), "")
        for part in self._common + [command.encode()]:
            digest.update(part + b"\0")
        for path in sorted(self._closure(source)):
            digest.update(str(path.relative_to(ROOT)).encode() + b"\0" + self._file(path)[0] + b"\0")
        return digest.hexdigest()

    def flags(self, source):
        """The compile command without the source's name."""
        words = shlex.split(self._commands[source])
        first = next(i for i, word in enumerate(words) if re.match("-[DIfmOWgis]", word))
        return words[first:words.index("-o")]

    def _closure(self, source):
        found, waiting = set(), [source]
        while waiting:
            path = waiting.pop()
            if path not in found:
                found.add(path)
                waiting += self._file(path)[1]
        return found

    def _file(self, path):
        """The content of the source and of the project headers that it includes."""
        if path not in self._files:
            content = path.read_bytes()
            candidates = [
                folder / os.fsdecode(name)
                for name in INCLUDE.findall(content)
                for folder in (ROOT, path.parent)
            ]
            self._files[path] = (content, [c.resolve() for c in candidates if c.is_file()])
        return self._files[path]


def complaints(source, flags):
    """None if there is none."""
    command = ["clang-tidy", "-quiet", f"-config-file={CHECKS}"]
    command += ["-extra-arg=-Wno-unknown-warning-option", str(source), "--"]
    result = subprocess.run(
        command + flags, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False
    )
    return result.stdout.decode(errors="replace") if result.returncode else None


def batches(sources, flags):
    """Sources with the same compile command."""
    alike = {}
    for source in sources:
        shared = (flag for flag in flags[source] if not flag.endswith("_autogen/include"))
        alike.setdefault((source.parent, *shared), []).append(source)
    for group in alike.values():
        count = -(-len(group) // LARGEST_BATCH)
        yield from (group[i::count] for i in range(count))


def complaints_of_batch(batch, flags):
    if len(batch) > 1:
        with tempfile.NamedTemporaryFile("w", suffix=".cpp") as together:
            together.writelines(f'#include "{source}" // NOLINT\n' for source in batch)
            together.flush()
            if not complaints(together.name, flags[batch[0]] + ["-Wno-shadow"]):
                return dict.fromkeys(batch)
    return {source: complaints(source, flags[source]) for source in batch}


def forget_old_verdicts():
    for verdict in VERDICTS.iterdir():
        if verdict.stat().st_mtime < time.time() - MONTH:
            verdict.unlink(missing_ok=True)


def main():
    build, sources = Path(sys.argv[1]).resolve(), [Path(name).resolve() for name in sys.argv[2:]]
    VERDICTS.mkdir(parents=True, exist_ok=True)
    forget_old_verdicts()
    fingerprints = Fingerprints(build)
    verdicts = {source: VERDICTS / fingerprints.of(source) for source in sources}
    pending = [source for source in sources if not verdicts[source].exists()]
    for source in sources:
        if source not in pending:
            verdicts[source].touch()
    print(f"clang-tidy: {len(pending)} of {len(sources)} sources to check", file=sys.stderr)
    flags = {source: fingerprints.flags(source) for source in pending}
    failed = False
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for found in pool.map(lambda b: complaints_of_batch(b, flags), batches(pending, flags)):
            for source, complaint in found.items():
                if complaint is None:
                    verdicts[source].touch()
                else:
                    failed = True
                    print(complaint, end="", flush=True)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
