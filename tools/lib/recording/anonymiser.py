# SPDX-License-Identifier: Apache-2.0
"""Replaces serial numbers, unique identifiers and hardware addresses consistently."""
import hashlib
import hmac
import re
import secrets

ATTRIBUTES = re.compile(
    r"(.*[_-])?(serial|serial[_-]?(no|number)|uuid|wwid|wwn|nguid|eui|guid|unique_id|uniq|asset_tag"
    r"|port_name|node_name|sas_address|initiatorname|hostid|hostnqn|subsysnqn)",
    re.IGNORECASE,
)
KEYS = re.compile(rb"^(?:E:)?\w*(?:SERIAL|UUID|WWN|WWID|GUID|UNIQ)\w*=(.+)$", re.MULTILINE)
# These hold more than serial numbers.
BLOBS = re.compile(
    r"(.*/)?(edid|vpd_pg.*|firmware/acpi/tables/.*|firmware/dmi/.*|firmware/efi/(vars|esrt)/.*)"
)
RAW_ADDRESSES = re.compile(r"(local-)?mac-address")
MAC = re.compile(rb"(?<![0-9A-Fa-f:])(?:[0-9A-Fa-f]{2}:){5}[0-9A-Fa-f]{2}(?![0-9A-Fa-f:])")
SHORTEST = 4


class Anonymiser:
    """First learns from all files, then replaces what it learned."""

    def __init__(self, names, key=None):
        """names: folder names, which are kept even if a serial number is equal."""
        self._key = key or secrets.token_bytes(16)
        self._names = {name.encode() for name in names}
        self._replacements = {}
        self._pattern = None

    def learn(self, path, content):
        name = path.rsplit("/", 1)[-1]
        if ATTRIBUTES.fullmatch(name):
            self._add(content.strip(b"\n\0 "))
        for value in KEYS.findall(content):
            self._add(value.strip(b'" '))
        for address in MAC.findall(content):
            self._add_address(address)

    def is_left_out(self, path):
        return BLOBS.fullmatch(path) is not None

    def apply_to(self, path, content):
        if RAW_ADDRESSES.fullmatch(path.rsplit("/", 1)[-1]) and len(content) == 6:
            return b"\x02\0\0" + self._digest(content)[:3]
        return self.apply(content)

    def apply(self, content):
        if not self._replacements:
            return content
        if self._pattern is None:
            longest_first = sorted(self._replacements, key=len, reverse=True)
            self._pattern = re.compile(b"|".join(map(re.escape, longest_first)))
        return self._pattern.sub(lambda match: self._replacements[match[0]], content)

    def _digest(self, value):
        return hmac.digest(self._key, value, hashlib.sha256)

    def _add(self, value):
        telling = value.strip(b"0fF.-: ")
        if len(value) >= SHORTEST and telling and value not in self._names:
            self._replacements.setdefault(value, self._disguise(value))

    def _add_address(self, address):
        plain = address.replace(b":", b"")
        if plain.lower() in (b"0" * 12, b"f" * 12):
            return
        disguised = b"020000" + self._digest(address.lower())[:3].hex().encode()
        pairs = [disguised[i : i + 2] for i in range(0, 12, 2)]
        self._replacements[address] = b":".join(pairs)
        self._replacements[plain] = disguised

    def _disguise(self, value):
        """Same length, digits for digits, letters for letters."""
        is_hex = re.fullmatch(rb"[0-9a-f-]+|[0-9A-F-]+", value) is not None
        letters = 6 if is_hex else 26
        stream = b""
        while len(stream) < len(value):
            stream += self._digest(value + len(stream).to_bytes(4, "big"))
        out = bytearray(value)
        for index, byte in enumerate(value):
            character = bytes([byte])
            if character.isdigit():
                out[index] = ord("0") + stream[index] % 10
            elif character.isalpha():
                base = ord("a") if character.islower() else ord("A")
                out[index] = base + stream[index] % letters
        return bytes(out)
