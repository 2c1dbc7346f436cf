# SPDX-License-Identifier: Apache-2.0
"""Replaces serial numbers, unique identifiers and addresses consistently."""
import hashlib
import hmac
import re
import secrets

from . import privacy

LINE = re.compile(rb"^(?:E:)?(\w+)=(.*)$", re.MULTILINE)
SHORTEST = 4  # to be replaced inside other texts
ANYWHERE = 8  # shorter ones are replaced only as whole words


class Anonymiser:
    """First learns from all files, then replaces what it learned."""

    def __init__(self, names, key=None):
        """names: folder names, which are kept even if a serial number is equal."""
        self._key = key or secrets.token_bytes(16)
        self._names = {name.encode() for name in names}
        self._replacements = {}
        self._public = set()
        self._pattern = None

    def learn(self, path, content, subsystem=None):
        name = path.rsplit("/", 1)[-1]
        if privacy.kind_of_key(name, subsystem) and not privacy.is_public_key(name, subsystem):
            self._add(content.strip(b"\n\0 "))
        for line in content.split(b"\n"):
            match = LINE.fullmatch(line)
            key = match[1].decode() if match else name
            if match and privacy.kind_of_key(key, subsystem):
                self._add(match[2].strip(b'" '))
            self._learn_text(line, key, subsystem)

    def learn_host(self, name):
        if name and not privacy.is_common_host(name):
            self._add(name.encode())

    def _learn_text(self, text, key, subsystem):
        is_public = privacy.is_public_key(key, subsystem)
        for kind, value in privacy.in_text(text, key):
            if is_public:
                self._public.add(value)
            elif kind == "mac":
                self._add_address(value)
            else:
                self._add(value, is_found_in_text=True)

    def is_left_out(self, path):
        return privacy.is_left_out(path)

    def apply_to(self, path, content):
        if privacy.kind_of_data(path.rsplit("/", 1)[-1]) == "mac" and len(content) == 6:
            return b"\x02\0\0" + self._digest(content)[:3]
        return self.apply(content)

    def apply(self, content):
        if self._pattern is None:
            self._pattern = self._pattern_of_all()
        return self._pattern.sub(lambda match: self._replacements[match[0]], content)

    def _pattern_of_all(self):
        def one(value):
            text = re.escape(value)
            is_word = len(value) < ANYWHERE
            return rb"(?<![0-9A-Za-z])" + text + rb"(?![0-9A-Za-z])" if is_word else text

        values = self._replacements.keys() - self._public
        longest_first = sorted(values, key=len, reverse=True)
        return re.compile(b"|".join(map(one, longest_first)) or rb"(?!)")

    def _digest(self, value):
        return hmac.digest(self._key, value, hashlib.sha256)

    def _add(self, value, is_found_in_text=False):
        if len(value) < SHORTEST or privacy.is_public_value(value.decode("latin-1")):
            return
        if is_found_in_text or value not in self._names:
            self._replacements.setdefault(value, self._disguise(value))

    def _add_address(self, address):
        plain = re.sub(b"[:-]", b"", address)
        if privacy.is_public_value(plain.decode()):
            return
        if len(plain) != 12:  # a longer one, as of InfiniBand
            self._add(address, is_found_in_text=True)
            return
        disguised = b"020000" + self._digest(plain.lower())[:3].hex().encode()
        pairs = [disguised[i : i + 2] for i in range(0, 12, 2)]
        for separator in (b":", b"-", b""):
            form = separator.join(plain[i : i + 2] for i in range(0, 12, 2))
            self._replacements[form] = separator.join(pairs)

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
