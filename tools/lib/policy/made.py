# SPDX-License-Identifier: Apache-2.0
"""Makes a sysfs tree with a file for every rule of the policy."""
import itertools
import os
from pathlib import Path

from recording import rules

_FOLDERS = {
    "bus": "bus/x{}",
    "class": "class/x{}",
    "device": "devices/x{}",
    "driver": "bus/made/drivers/x{}",
    "firmware": "firmware/devicetree/base/x{}",
    "module": "module/x{}",
}


def _instance(pattern):
    return pattern.replace("*", "x").replace("#", "1")


class MadeTree:
    """Each folder with a forbidden file has a harmless one, unless the rule forbids them all."""

    def __init__(self, folder):
        self.root = Path(folder, "sys")
        self.forbidden = set()  # paths relative to the root, as are these:
        self.harmless = set()
        self._count = itertools.count(1)
        for row in rules.ROWS["rules"]:
            for kind in row.get("in", ("device",)):
                self._add_rule(row, kind)
        for row in rules.ROWS["directories"]:
            for name in row["names"]:
                device = self._device(_FOLDERS["device"].format(next(self._count)), None, None)
                self._forbid(f"{device}/{_instance(name)}/file")

    def _add_rule(self, row, kind):
        """Adds an object per combination of the rule's conditions, with a file per name."""
        keys = ("subsystem", "driver", "path", "directory")
        words = [name for word in row.get("words", ()) for name in (word, f"x_{word}")]
        names = [*map(_instance, row.get("names", ())), *words]
        if not names:
            raise ValueError(f"a rule without names or words never applies: {row}")
        for ways in itertools.product(*(row.get(key, (None,)) for key in keys)):
            subsystem, driver, path, directory = (way and _instance(way) for way in ways)
            folder = _FOLDERS[kind].format(next(self._count))
            if kind == "device":
                # Patterns of paths begin with any text.
                folder = self._device(folder + (path or ""), subsystem, driver)
            inner = f"{folder}/{directory}" if directory else folder
            for name in names:
                self._forbid(f"{inner}/{name}")
            is_whole_folder = "*" in row.get("names", ())
            for place in {folder, inner} - ({inner} if is_whole_folder else set()):
                self._write(f"{place}/harmless")
                self.harmless.add(f"{place}/harmless")

    def _device(self, path, subsystem, driver):
        self._write(f"{path}/uevent")
        if subsystem:
            self._link(f"{path}/subsystem", f"bus/{subsystem}")
        if subsystem == "pci":
            self._write(f"{path}/power/runtime_status", b"suspended\n")
        if driver:
            self._link(f"{path}/driver", f"bus/{subsystem or 'made'}/drivers/{driver}")
        return path

    def _link(self, path, target):
        (self.root / target).mkdir(parents=True, exist_ok=True)
        (self.root / path).symlink_to(os.path.relpath(target, os.path.dirname(path)))

    def _forbid(self, path):
        self._write(path)
        self.forbidden.add(path)

    def _write(self, path, content=b"1\n"):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)
