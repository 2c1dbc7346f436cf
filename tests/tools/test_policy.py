# SPDX-License-Identifier: Apache-2.0
"""Tests that the recorder and tools/check-policy follow the rules of the program."""
import json
import os
import sys
import tempfile
import unittest
from pathlib import Path

TESTS = Path(__file__).resolve().parents[1]
TOOLS = TESTS.parent / "tools"

sys.dont_write_bytecode = True
sys.path.insert(0, str(TOOLS / "lib"))
from policy import trace  # noqa: E402
from policy.judge import Judge  # noqa: E402
from policy.made import MadeTree  # noqa: E402
from recording import rules  # noqa: E402
from recording.recorder import Recorder  # noqa: E402


class PolicyTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name).resolve()
        self.root = self.folder / "sys"
        self.card = self.root / "devices/card"
        self.port = self.card / "net/eth0"
        for path, text in {
            self.card / "uevent": "",
            self.card / "config": "",
            self.card / "rom": "",
            self.card / "vendor": "",
            self.card / "trace/buffer": "",
            self.port / "uevent": "",
            self.port / "flags": "0x1003\n",
            self.port / "speed": "",
        }.items():
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        (self.root / "class/net").mkdir(parents=True)
        (self.port / "subsystem").symlink_to("../../../../class/net")
        (self.card / "link").symlink_to("rom")

    def complaints(self, *lines):
        """The complaints without their reasons, by file name."""
        judge = Judge(self.root)
        found = filter(None, map(judge.complaint, trace.parse(lines)))
        texts = (complaint.removeprefix(f"{self.root}/devices/card/") for complaint in found)
        return [":".join(text.split(":")[:2]) for text in texts]

    def test_finds_what_must_not_be_read_however_it_is_named(self):
        never = "rom: opened, but must never be read"
        card = f"5<{self.card}>"
        for line in (
            f'openat({card}, "rom", O_RDONLY|O_NOFOLLOW|O_CLOEXEC) = 7<{self.card}/rom>',
            f'openat({card}, "rom", O_RDONLY) = -1 EACCES (Permission denied)',
            f'openat({card}, "link", O_RDONLY) = ? ERESTARTSYS (To be restarted)',
            f'openat(AT_FDCWD<{self.card}/net>, "../r\\157m", O_RDONLY) = -1 EIO (Input/output error)',
            f'openat(AT_FDCWD</>, "{self.card}/rom", O_RDONLY) = 3<{self.card}/rom>',
            f'open("{self.card}/link", O_RDONLY) = 3<{self.card}/rom>',
            f'openat2({card}, "rom", {{flags=O_RDONLY, resolve=RESOLVE_BENEATH}}, 24) = 3<{self.card}/rom>',
        ):
            self.assertEqual(self.complaints(line), [never], line)
        self.assertEqual(
            self.complaints(
                f'openat({card}, "config", O_RDONLY) = 7<{self.card}/config>',
                f'openat({card}, "trace/buffer", O_RDONLY) = 7<{self.card}/trace/buffer>',
            ),
            [
                "config: opened, but may only be read on request",
                "trace/buffer: opened, but its folder must not be entered",
            ],
        )

    def test_finds_whatever_is_opened_for_writing(self):
        for line in (
            f'openat(5<{self.card}>, "vendor", O_WRONLY) = 7<{self.card}/vendor>',
            f'openat(5<{self.card}>, "vendor", O_RDWR|O_CLOEXEC) = -1 EACCES (Permission denied)',
            f'openat(5<{self.card}>, "vendor", O_RDONLY|O_TRUNC) = 7<{self.card}/vendor>',
            f'openat(AT_FDCWD</>, "{self.card}", O_RDWR|O_TMPFILE, 0600) = 7<{self.card}/#12>(deleted)',
            f'creat("{self.card}/vendor", 0644) = 7<{self.card}/vendor>',
        ):
            self.assertIn("opened for writing", "".join(self.complaints(line)), line)

    def test_lets_pass_what_reads_no_such_attribute(self):
        card = f"5<{self.card}>"
        passed = (
            f'openat({card}, "vendor", O_RDONLY) = 7<{self.card}/vendor>',
            f'openat({card}, "rom", O_RDONLY|O_PATH) = 7<{self.card}/rom>',
            f'openat({card}, "link", O_RDONLY|O_NOFOLLOW) = -1 ELOOP (Too many symbolic links)',
            f'openat({card}, "vpd", O_RDONLY) = -1 ENOENT (No such file or directory)',
            f'openat({card}, "trace", O_RDONLY|O_DIRECTORY) = 7<{self.card}/trace>',
            f'openat(AT_FDCWD</>, "{self.folder}/out", O_RDWR|O_CREAT) = 3<{self.folder}/out>',
            f'openat(5<{self.port}>, "speed", O_RDONLY) = 7<{self.port}/speed>',
            "+++ exited with 0 +++",
        )
        self.assertEqual(self.complaints(*passed), [])
        (self.port / "flags").write_text("0x1002\n")
        self.assertEqual(len(self.complaints(*passed)), 1)  # the speed, of a port that is down

    def test_decides_as_the_list_of_cases_says(self):
        """tests/model/AttributePolicyTest.cpp checks the program against the same list."""
        deciding = set()
        for case in json.loads((TESTS / "policy-cases.json").read_text(encoding="utf-8")):
            place = rules.Place(
                case.get("in", "device"),
                case.get("path", ""),
                case.get("directory", ""),
                case.get("subsystem", ""),
                case.get("driver", ""),
                case.get("down", False),
                case.get("suspended", False),
            )
            rule = rules.rule_for(place, case["name"])
            self.assertEqual(rule.kind if rule else "always", case["rule"], case)
            deciding.add(rule)
        undecided = [row for rule, row in rules.with_rows() if rule not in deciding]
        self.assertEqual(undecided, [], "rules without a case in policy-cases.json")

    def test_recorder_reads_nothing_that_the_program_does_not(self):
        made = MadeTree(self.folder / "made")
        read = []

        class Reader:
            def read(self, path, _size):
                read.append(os.path.relpath(path, made.root))
                return b""

        Recorder(made.root, Reader()).record_all()
        self.assertEqual(made.forbidden.intersection(read), set())
        self.assertEqual(made.harmless.difference(read), set())
        for subsystem, name in rules.BLANK:  # files that are recorded empty
            place = rules.Place("device", "devices/x", subsystem=subsystem)
            self.assertIsNotNone(rules.rule_for(place, name))

    def test_every_rule_has_files_in_the_made_tree(self):
        made = MadeTree(self.folder / "made")
        judge = Judge(made.root)

        def is_found(path):
            return judge.complaint(trace.Opening(str(made.root / path), frozenset())) is not None

        self.assertEqual([path for path in sorted(made.forbidden) if not is_found(path)], [])
        self.assertEqual([path for path in sorted(made.harmless) if is_found(path)], [])

    @unittest.skipUnless(trace.is_possible(), "no program can be traced here")
    def test_a_real_trace_shows_threads_and_odd_names(self):
        odd = 'a "<b>" \\\n\u00e4.rom'
        (self.card / odd).write_text("")
        script = (
            "import os, sys, threading\n"
            "card = os.open(sys.argv[1], os.O_RDONLY)\n"
            "def read(): os.open('rom', os.O_RDONLY, dir_fd=card)\n"
            "thread = threading.Thread(target=read); thread.start(); thread.join()\n"
            "os.chdir(sys.argv[1]); os.open(sys.argv[2], os.O_RDONLY)\n"
            "os.close(os.open('vendor', os.O_WRONLY))\n"
        )
        command = [sys.executable, "-B", "-I", "-c", script, self.card, odd]
        status, openings = trace.run(command)
        self.assertEqual(status, 0)
        opened = {os.path.relpath(its.path, self.card) for its in openings}
        self.assertLessEqual({"rom", odd, "vendor"}, opened)
        judge = Judge(self.root)
        self.assertEqual(len(set(filter(None, map(judge.complaint, openings)))), 2)


if __name__ == "__main__":
    unittest.main()
