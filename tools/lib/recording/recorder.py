# SPDX-License-Identifier: Apache-2.0
"""Walks a sysfs root and collects folders, files and links. Follows no link."""
import glob
import os
import stat

from . import rules
from .reading import ReadError

WHOLE = ("block", "bus", "class", "devices", "firmware", "module")
# Links from a device to what must be recorded with it.
REFERENCES = ("subsystem", "driver", "module", "firmware_node", "of_node")
# Folders that are part of the bus, class or module above them.
INNER = ("devices", "drivers", "holders", "parameters")


class Recorder:
    """Paths are relative to the root. skipped: what was not read, with reasons."""

    def __init__(self, root, reader):
        self.root = os.path.realpath(root)
        self.folders, self.files, self.links, self.skipped = set(), {}, {}, {}
        self._reader = reader
        self._device = os.stat(self.root).st_dev
        self._subsystems = {}
        self._objects = set()
        self._shallow = set()

    def record_all(self):
        for top in WHOLE:
            if os.path.isdir(os.path.join(self.root, top)):
                self._walk(top)

    def record(self, selections):
        """Records the selected folders, what they refer to, and the folders that contain them."""
        for selection in selections:
            for folder in self._resolve(selection):
                self._walk(folder)
        while self._add_referenced():
            pass
        if os.path.isdir(os.path.join(self.root, "block")):
            self._add_shallow("block")
        self._drop_links_to_unrecorded()

    def subsystem(self, folder):
        """The subsystem of the device at or above the folder."""
        return self.place(folder).subsystem or None

    def place(self, folder):
        """The place of the attributes in the folder."""
        parts = folder.split("/")
        if parts[0] == "bus" and parts[2:3] == ["drivers"] and len(parts) > 3:
            return self._place("driver", parts, 4)
        if parts[0] in ("bus", "class", "module"):
            return self._place(parts[0], parts, 2)
        if parts[0] == "firmware":
            return self._place("firmware", parts, len(parts))
        depth = len(parts)
        while depth > 2 and not self._is_object("/".join(parts[:depth])):
            depth -= 1
        return self._place("device", parts, depth)

    def _is_object(self, folder):
        return folder in self._objects or folder in self._subsystems

    def _place(self, kind, parts, depth):
        path = "/".join(parts[:depth])
        return rules.Place(
            kind,
            path,
            "/".join(parts[depth:]),
            self._subsystems.get(path, ""),
            os.path.basename(self.links.get(f"{path}/driver", "")),
        )

    def _resolve(self, selection):
        found = glob.glob(os.path.join(self.root, selection.strip("/")))
        if not found:
            raise SystemExit(f"{selection}: not found under {self.root}")
        for path in found:
            folder = os.path.relpath(os.path.realpath(path), self.root)
            if not folder.startswith("..") and os.path.isdir(path):
                yield folder

    def _walk(self, top):
        waiting = [top]
        while waiting:
            waiting += self._read_folder(waiting.pop())

    def _read_folder(self, folder):
        """Records one folder; returns its subfolders."""
        if folder in self.folders and folder not in self._shallow:
            return []
        self._shallow.discard(folder)
        try:
            with os.scandir(os.path.join(self.root, folder)) as listing:
                entries = sorted(listing, key=lambda entry: entry.name)
        except OSError as error:
            self.skipped[folder] = error.strerror
            return []
        self.folders.add(folder)
        if any(entry.name == "uevent" for entry in entries):
            self._objects.add(folder)
        for entry in entries:
            if entry.is_symlink():
                self._add_link(f"{folder}/{entry.name}", os.readlink(entry.path))
        inner = []
        for entry in entries:
            path = f"{folder}/{entry.name}"
            if entry.is_symlink():
                continue
            if entry.is_file(follow_symlinks=False):
                self._add_file(path, entry)
            elif entry.is_dir(follow_symlinks=False) and self._is_entered(folder, entry):
                inner.append(path)
        return inner

    def _is_entered(self, folder, entry):
        inside = entry.stat(follow_symlinks=False).st_dev == self._device
        return inside and not rules.is_skipped_folder(self.place(folder).kind, entry.name)

    def _add_link(self, path, target):
        if os.path.isabs(target) or self._target(path, target).startswith(".."):
            self.skipped[path] = "leads out of the root"
            return
        self.links[path] = target
        if path.startswith(("block/", "bus/", "class/")):
            self._objects.add(self._target(path, target))  # also without a uevent file
        if os.path.basename(path) == "subsystem":
            self._subsystems[os.path.dirname(path)] = os.path.basename(target)

    def _target(self, path, target):
        return os.path.normpath(os.path.join(os.path.dirname(path), target))

    def _add_file(self, path, entry):
        status = entry.stat(follow_symlinks=False)
        place = self.place(os.path.dirname(path))
        if rules.is_blanked(place, entry.name):
            self.files[path] = b""
        elif not status.st_mode & (stat.S_IRUSR | stat.S_IRGRP | stat.S_IROTH):
            self.skipped[path] = "write-only"
        elif rules.is_skipped(place, entry.name):
            self.skipped[path] = "not to be read"
        else:
            try:
                self.files[path] = self._reader.read(entry.path, status.st_size)
            except ReadError as error:
                self.skipped[path] = str(error)

    def _add_referenced(self):
        """Adds referenced and containing folders; returns whether any are new."""
        before = len(self.folders)
        for path, target in list(self.links.items()):
            folder = os.path.dirname(path)
            if os.path.basename(path) in REFERENCES and folder in self.folders:
                referenced = self._target(path, target)
                if os.path.isdir(os.path.join(self.root, referenced)):
                    self._add_shallow(referenced)
        for folder in list(self.folders):
            while folder.count("/") > 1:
                folder = os.path.dirname(folder)
                self._add_shallow(folder)
        return len(self.folders) > before

    def _add_shallow(self, folder):
        if folder in self.folders:
            return
        inner = self._read_folder(folder)
        self._shallow.add(folder)
        if folder.split("/")[0] in ("bus", "class", "module"):
            for path in inner:
                if os.path.basename(path) in INNER:
                    self._add_shallow(path)

    def _drop_links_to_unrecorded(self):
        for path, target in list(self.links.items()):
            reached = self._target(path, target)
            if os.path.dirname(path) in self._shallow and reached not in self.folders:
                del self.links[path]
