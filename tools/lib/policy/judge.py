"""Judges by the program's table of attributes which files of a sysfs tree may be opened, and how."""
import os
from dataclasses import replace
from pathlib import Path

from recording import rules
from recording.recorder import Recorder

WRITING = frozenset({"O_WRONLY", "O_RDWR", "O_CREAT", "O_TRUNC", "O_APPEND", "O_TMPFILE"})
NO_READING = frozenset({"O_DIRECTORY", "O_PATH"})
_INTERFACE_UP = 1


class _NoReader:
    """For a walk through a tree that reads none of its attributes."""

    def read(self, _path, _size):
        return b""


class Judge:
    """Of one tree: counts the attributes that were opened in it."""

    def __init__(self, root):
        self._walk = Recorder(root, _NoReader())
        self._walk.record_all()
        self.root = Path(self._walk.root)
        self.attributes = set()

    def path_in_tree(self, path):
        """Relative to the root; none for what is elsewhere."""
        inside = os.path.commonpath([self.root, path]) == str(self.root)
        return os.path.relpath(path, self.root) if inside else None

    def complaint(self, opening):
        """What is wrong with it, or none."""
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
            return f"{path}: opened, but its folder is to be passed over"
        rule = rules.rule_for(place, name)
        if rule is None:
            return None
        when = "never to be read" if rule.kind == "never" else "to be read on request only"
        return f"{path}: opened, but is {when}: {rule.reason}"

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
