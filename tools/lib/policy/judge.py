# SPDX-License-Identifier: Apache-2.0
"""Checks by the program's rules which files of a sysfs tree may be opened, and how."""
import os
from dataclasses import replace
from pathlib import Path

from recording import rules
from recording.recorder import Recorder

WRITING = frozenset({"O_WRONLY", "O_RDWR", "O_CREAT", "O_TRUNC", "O_APPEND", "O_TMPFILE"})
NO_READING = frozenset({"O_DIRECTORY", "O_PATH"})
_INTERFACE_UP = 1


class _NoReader:
    """For walking a tree without reading attributes."""

    def read(self, _path, _size):
        return b""


class Judge:
    """Checks accesses to one tree, and collects the attributes that were opened."""

    def __init__(self, root):
        self._walk = Recorder(root, _NoReader())
        self._walk.record_all()
        self.root = Path(self._walk.root)
        self.attributes = set()

    def path_in_tree(self, path):
        """Relative to the root; none outside."""
        inside = os.path.commonpath([self.root, path]) == str(self.root)
        return os.path.relpath(path, self.root) if inside else None

    def complaint(self, opening):
        """The fault of an access, or none."""
        path = self.path_in_tree(opening.path)
        if path is None:
            return None
        if opening.flags & WRITING:
            return f"{opening.path}: opened for writing ({'|'.join(sorted(opening.flags))})"
        if opening.flags & NO_READING or os.path.isdir(opening.path):
            return None
        self.attributes.add(path)
        return self._complaint_of_reading(opening.path, *os.path.split(path))

    def _complaint_of_reading(self, path, folder, name):
        place = self._place(folder)
        if any(rules.is_passed_over(place.kind, part) for part in place.directory.split("/")):
            return f"{path}: opened, but its folder must not be entered"
        rule = rules.rule_for(place, name)
        if rule is None:
            return None
        when = "must never be read" if rule.kind == "never" else "may only be read on request"
        return f"{path}: opened, but {when}: {rule.reason}"

    def _place(self, folder):
        place = self._walk.place(folder)
        if place.subsystem == "net":
            flags = int(self._text(place, "flags") or "0", 0)
            return replace(place, is_down=not flags & _INTERFACE_UP)
        status = self._text(place, "power/runtime_status") if place.subsystem == "pci" else None
        return replace(place, is_suspended=status == "suspended")

    def _text(self, place, name):
        try:
            return (self.root / place.path / name).read_text(encoding="ascii").strip()
        except (OSError, ValueError):
            return None
