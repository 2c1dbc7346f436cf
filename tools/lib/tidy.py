"""Runs clang-tidy on sources, except where the same content was found clean before.

    python3 tools/lib/tidy.py BUILD_FOLDER SOURCE...

A verdict holds for a source, all project headers that it includes, how it is compiled, the checks
and the installed packages. Clean verdicts are kept in the user's cache folder for a month.
"""
import concurrent.futures
import hashlib
import json
import os
import re
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
VERDICTS = Path(os.environ.get("XDG_CACHE_HOME") or Path.home() / ".cache") / "vandrel/tidy"
MONTH = 30 * 24 * 3600
INCLUDE = re.compile(rb'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)


def output(*command):
    return subprocess.run(command, capture_output=True, check=True).stdout


class Fingerprints:
    """Of sources, by what a verdict depends on."""

    def __init__(self, build):
        self._common = [output("clang-tidy", "--version"), (ROOT / ".clang-tidy").read_bytes()]
        self._common.append(output("dpkg-query", "-W", "libc6-dev", "libstdc++*dev", "qt6-*-dev",
                                   "libgtest-dev", "libicu-dev"))
        commands = json.loads((build / "compile_commands.json").read_text())
        self._commands = {
            Path(entry["file"]): entry["command"].replace(str(ROOT), "") for entry in commands
        }
        self._files = {}

    def of(self, source):
        digest = hashlib.sha256()
        for part in self._common + [self._commands.get(source, "").encode()]:
            digest.update(part + b"\0")
        for path in sorted(self._closure(source)):
            digest.update(str(path.relative_to(ROOT)).encode() + b"\0" + self._file(path)[0] + b"\0")
        return digest.hexdigest()

    def _closure(self, source):
        found, waiting = set(), [source]
        while waiting:
            path = waiting.pop()
            if path not in found:
                found.add(path)
                waiting += self._file(path)[1]
        return found

    def _file(self, path):
        """Its content and the project's files that it includes."""
        if path not in self._files:
            content = path.read_bytes()
            candidates = [
                folder / os.fsdecode(name)
                for name in INCLUDE.findall(content)
                for folder in (ROOT, path.parent)
            ]
            self._files[path] = (content, [c.resolve() for c in candidates if c.is_file()])
        return self._files[path]


def complaints(build, source):
    """None when there are none."""
    command = ["clang-tidy", "-quiet", "-p", str(build), "-extra-arg=-Wno-unknown-warning-option"]
    result = subprocess.run(
        command + [str(source)], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False
    )
    return result.stdout.decode(errors="replace") if result.returncode else None


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
    failed = False
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for source, found in zip(pending, pool.map(lambda s: complaints(build, s), pending)):
            if found is None:
                verdicts[source].touch()
            else:
                failed = True
                print(found, end="", flush=True)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
