# SPDX-License-Identifier: Apache-2.0
"""Which attributes are not read, and why. The rules are those of the program."""
import json
import re
from dataclasses import dataclass
from pathlib import Path

TABLE = Path(__file__).resolve().parents[3] / "resources/attributes/policy.json"
# Not recorded although the program reads them: large, and of no use in a recording.
FOLDERS = ("hw_counters", "counters", "sections", "notes")
# Not read by the program either, but devices are recognised by this file: recorded empty.
BLANK = {("power_supply", "uevent")}


@dataclass(frozen=True)
class Place:
    """The object of an attribute, and the folder below the object's."""

    kind: str  # device, bus, class, driver, module or firmware
    path: str  # of the object, from the root
    directory: str = ""
    subsystem: str = ""
    driver: str = ""
    # Of network interfaces and PCI devices. Unknown while recording: assumes down and suspended.
    is_down: bool = True
    is_suspended: bool = True


def _pattern(texts):
    def one(text):
        return re.escape(text).replace(r"\*", ".*").replace(r"\#", "[0-9]+")

    return re.compile("|".join(one(text) for text in texts), re.DOTALL)


class _Rule:
    def __init__(self, row):
        self.kind = row["rule"]  # never, or on request
        self.reason = row.get("reason", "is for writing only")
        self._only_down = row.get("when") == "interface down"
        self._only_suspended = row.get("when") == "suspended"
        self._names = _pattern(row["names"]) if "names" in row else None
        self._words = set(row.get("words", ()))
        self._except = _pattern(row["except"]) if "except" in row else None
        self._kinds = row.get("in")
        of_device = ("subsystem", "driver", "path")
        self._of_device = {key: _pattern(row[key]) for key in of_device if key in row}
        self._directory = _pattern(row["directory"]) if "directory" in row else None

    def fits(self, place, name):
        if self._kinds is not None and place.kind not in self._kinds:
            return False
        if self._only_down and not place.is_down:
            return False
        if self._only_suspended and not place.is_suspended:
            return False
        if self._of_device and place.kind != "device":
            return False
        if any(not p.fullmatch(getattr(place, key)) for key, p in self._of_device.items()):
            return False
        if self._directory and not self._directory.fullmatch(place.directory):
            return False
        if self._except and self._except.fullmatch(name):
            return False
        named = self._names and self._names.fullmatch(name)
        return bool(named or self._words.intersection(re.split("[_-]", name)))


ROWS = json.loads(TABLE.read_text())
_RULES = [_Rule(row) for row in ROWS["rules"]]
_NOT_ENTERED = [(row["in"], _pattern(row["names"])) for row in ROWS["directories"]]
_LEFT_OUT = _pattern(FOLDERS)


def with_rows():
    """Each rule with its row of the table."""
    return zip(_RULES, ROWS["rules"])


def is_passed_over(kind, name):
    """Whether the program does not enter a folder of this name, in an object of this kind."""
    return any(kind in kinds and names.fullmatch(name) for kinds, names in _NOT_ENTERED)


def is_skipped_folder(kind, name):
    return is_passed_over(kind, name) or _LEFT_OUT.fullmatch(name) is not None


def rule_for(place, name):
    """The first rule that applies, or none for an attribute that is always read."""
    return next((rule for rule in _RULES if rule.fits(place, name)), None)


def is_skipped(place, name):
    return rule_for(place, name) is not None


def is_blanked(place, name):
    return place.directory == "" and (place.subsystem, name) in BLANK
