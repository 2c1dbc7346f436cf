# SPDX-License-Identifier: Apache-2.0
"""The files beside a root that identify its machine."""
import os
import platform

NAME = "etc/hostname"
MACHINE = "proc/sys/kernel/arch"


def name(root):
    """The host's name: this machine's, or that beside a recorded root; empty if unknown."""
    beside = os.path.dirname(os.path.realpath(root))
    if beside == "/":
        return platform.node()
    try:
        with open(os.path.join(beside, NAME), encoding="utf-8", errors="replace") as file:
            return file.read(1024).strip()
    except OSError:
        return ""


def files(root, with_name):
    """Contents by path, of this machine or from beside a recorded root."""
    beside = os.path.dirname(os.path.realpath(root))
    found = {}
    for path in (NAME, MACHINE) if with_name else (MACHINE,):
        try:
            with open(os.path.join(beside, path), "rb") as file:
                found[path] = file.read(1024)
        except OSError:
            pass
    if beside == "/" and MACHINE not in found:  # older kernels lack the file
        found[MACHINE] = platform.machine().encode() + b"\n"
    return found
