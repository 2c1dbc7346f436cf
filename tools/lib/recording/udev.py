# SPDX-License-Identifier: Apache-2.0
"""The udev database's records of recorded devices."""
import os

from .reading import ReadError


def record_names(recorder):
    """The file names of the recorded folders in the database."""
    for folder in recorder.folders:
        subsystem = recorder.subsystem(folder)
        if f"{folder}/uevent" not in recorder.files or subsystem is None:
            continue
        yield f"+{subsystem}:{os.path.basename(folder)}"
        number = recorder.files.get(f"{folder}/dev", b"").decode("latin-1").strip()
        if number:
            yield ("b" if subsystem == "block" else "c") + number
        index = recorder.files.get(f"{folder}/ifindex", b"").decode("latin-1").strip()
        if subsystem == "net" and index:
            yield "n" + index


def records(recorder, reader):
    """Contents by name, from /run/udev/data or from beside a recorded root."""
    data = os.path.join(os.path.dirname(recorder.root), "run/udev/data")
    found = {}
    for name in record_names(recorder):
        path = os.path.join(data, name)
        if "/" in name or not os.path.isfile(path):
            continue
        try:
            found[name] = reader.read(path, os.path.getsize(path))
        except ReadError as error:
            recorder.skipped[f"udev {name}"] = str(error)
    return found
