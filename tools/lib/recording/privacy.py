# SPDX-License-Identifier: Apache-2.0
"""What identifies a machine. The rules are those of the program."""
import json
import re
from pathlib import Path

TABLE = Path(__file__).resolve().parents[3] / "resources/privacy/rules.json"
RULES = json.loads(TABLE.read_text())
SAYS_NOTHING = '0fFxX.-: "'


def _pattern(row, key="match"):
    return re.compile(row[key], re.IGNORECASE)


def _bytes_pattern(row):
    return re.compile(row["match"].encode(), re.IGNORECASE)


_KEYS = [(_pattern(row), row.get("subsystem"), row["kind"]) for row in RULES["keys"]]
_PUBLIC_KEYS = [(_pattern(row), row.get("subsystem")) for row in RULES["public"]["keys"]]
_PUBLIC_VALUES = set(RULES["public"]["values"])
_TEXTS = [
    (
        row["contains"].encode(),
        _bytes_pattern(row),
        _pattern(row, "exceptKeys") if "exceptKeys" in row else None,
        row["kind"],
    )
    for row in RULES["texts"]
]
_DATA = [(_pattern(row), row["as"]) for row in RULES["data"]]
_FILES = re.compile("|".join(RULES["files"]))


def kind_of_key(key, subsystem):
    """The kind of private values with this key, or none."""
    for pattern, where, kind in _KEYS:
        if where in (None, subsystem) and pattern.fullmatch(key):
            return kind
    return None


def is_public_key(key, subsystem):
    return any(
        where in (None, subsystem) and pattern.fullmatch(key) for pattern, where in _PUBLIC_KEYS
    )


def is_public_value(value):
    return not value.strip(SAYS_NOTHING) or value.lower() in _PUBLIC_VALUES


def is_common_host(name):
    return name.lower() in RULES["commonHosts"]


def kind_of_data(key):
    """edid, mac, blank, or none."""
    return next((kind for pattern, kind in _DATA if pattern.fullmatch(key)), None)


def is_left_out(path):
    """Whether a recording leaves out the file: its private parts are not separate values."""
    return _FILES.fullmatch(path) is not None or kind_of_data(path.rsplit("/", 1)[-1]) in (
        "edid",
        "blank",
    )


def in_text(content, key):
    """The kinds and values of what is private in a text."""
    for contained, pattern, excepted, kind in _TEXTS:
        if contained not in content or (excepted and excepted.fullmatch(key)):
            continue
        for match in pattern.finditer(content):
            yield kind, match[match.lastindex or 0]
