# SPDX-License-Identifier: Apache-2.0
"""Reads attributes, limited in time and size."""
import os
import queue
import threading

TEXT_LIMIT = 4096
BINARY_LIMIT = 64 * 1024
SECONDS = 2.0


class ReadError(Exception):
    """The reason why an attribute was not read."""


def read_limited(path, size):
    """The first bytes of a file with this stated size; text states a page."""
    limit = TEXT_LIMIT if size == TEXT_LIMIT else BINARY_LIMIT
    flags = os.O_RDONLY | os.O_NONBLOCK | os.O_NOFOLLOW | os.O_CLOEXEC
    descriptor = os.open(path, flags)
    try:
        if limit == TEXT_LIMIT:
            return os.read(descriptor, limit)
        content = b""
        while len(content) < limit:
            block = os.read(descriptor, min(4096, limit - len(content)))
            if not block:
                break
            content += block
        return content
    finally:
        os.close(descriptor)


class TimedReader:
    """Reads in a thread, which is abandoned when a read does not return."""

    def __init__(self, read=read_limited, seconds=SECONDS):
        self._read = read
        self._seconds = seconds
        self.has_left_threads = False
        self._start()

    def _start(self):
        self._requests, self._answers = queue.SimpleQueue(), queue.SimpleQueue()
        arguments = (self._requests, self._answers)
        threading.Thread(target=self._serve, args=arguments, daemon=True).start()

    def _serve(self, requests, answers):
        while True:
            path, size = requests.get()
            try:
                answers.put((self._read(path, size), None))
            except OSError as error:
                answers.put((None, error.strerror))

    def read(self, path, size):
        self._requests.put((path, size))
        try:
            content, reason = self._answers.get(timeout=self._seconds)
        except queue.Empty:
            self.has_left_threads = True
            self._start()
            raise ReadError(f"no answer within {self._seconds:g} seconds") from None
        if reason is not None:
            raise ReadError(reason)
        return content
