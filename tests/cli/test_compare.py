# SPDX-License-Identifier: Apache-2.0
"""Tests of vandrel-cli compare."""
import json
import os
import re
import shlex
import shutil
import subprocess
import tarfile
import tempfile
import unittest
from pathlib import Path

from program import (DIFFERENT, FAILED, PROGRAM, ROOT, SAME, SYNTHETIC, VIRTUAL_MACHINE,
                     WRONG_USAGE, run, run_command)

try:
    import jsonschema
except ImportError:
    jsonschema = None

# Trees recorded on other machines are not part of the project.
RECORDED = Path(os.environ.get("VANDREL_SYSFS_TREES") or ROOT.parent / "shared/sysfs",
                "d2-server-nvme-pmem-mic.tar.xz")
ETHERNET = "devices/pci0000:00/0000:00:1c.0/0000:01:00.0/net/eth0"
CPU = "devices/system/cpu"
ARRAY = "devices/virtual/block/array!c0d0/array!c0d0p1"


def make_trees(folder):
    """The synthetic machine as "after", and an earlier state as "before"."""
    for name in ("before", "after"):
        shutil.copytree(SYNTHETIC.parent, folder / name, symlinks=True)
    before = folder / "before/sys"
    (before / ETHERNET / "mtu").write_text("1500\n")
    (folder / "after/sys" / ETHERNET / "mtu").write_text("9000\n")
    (before / ETHERNET / "statistics/rx_bytes").write_text("17\n")
    shutil.copytree(before / CPU / "cpu1", before / CPU / "cpu2", symlinks=True)
    os.symlink("../../../devices/system/cpu/cpu2", before / "bus/cpu/devices/cpu2")
    # Which part of a cycle counts depends on the order in which it is read.
    for link in folder.glob("*/sys/devices/platform/pump-?/*:platform:pump-?"):
        link.unlink()
    shutil.rmtree(before / ARRAY)
    (before / "class/block/array!c0d0p1").unlink()


class TreesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        work = tempfile.TemporaryDirectory()
        cls.addClassCleanup(work.cleanup)
        cls.folder = Path(work.name)
        make_trees(cls.folder)

    def compare(self, *arguments, **options):
        return run_command([PROGRAM, "compare", *arguments, "--color", "never"],
                           cwd=self.folder, **options)

    def differences(self, *arguments):
        """Of each entry that differs: its kind, and its properties with both values."""
        result = self.compare(*arguments, "--format", "ndjson")
        self.assertEqual(result.stderr, b"")
        lines = [json.loads(line) for line in result.stdout.splitlines()]
        return {(line.get("after") or line["before"])["path"]:
                (line["kind"], {change["property"]: (change.get("before"), change.get("after"))
                                for change in line.get("properties", [])})
                for line in lines[1:]}


class Compare(TreesTest):
    def test_examples_print_what_is_written(self):
        text = (ROOT / "docs/cli.md").read_text(encoding="utf-8")
        time = re.compile(r"\d{4}-\d\d-\d\dT[\d:]*")
        examples = re.findall(r"^\$ vandrel-cli (compare .*)\n((?:(?!\$ |```).*\n)*)", text, re.M)
        self.assertGreater(len(examples), 1)
        for line, expected in examples:
            with self.subTest(line):
                result = self.compare(*shlex.split(line)[1:], stderr=subprocess.STDOUT)
                self.assertEqual(time.sub("", result.stdout.decode()), time.sub("", expected))

    def test_exit_codes_and_one_line_of_error(self):
        empty = self.folder / "empty.vandrel"
        empty.touch()
        cases = [
            (SAME, ["after/sys", "after/sys"]),
            (DIFFERENT, ["before/sys", "after/sys"]),
            (DIFFERENT, ["before/sys", "--sysfs", "after/sys"]),
            (SAME, ["before/sys", "after/sys", "--only", "moved,renamed"]),
            (DIFFERENT, ["after/sys", VIRTUAL_MACHINE]),
            (FAILED, ["missing", "after/sys"]),
            (FAILED, ["before/sys", empty]),
            (FAILED, ["missing/sys", "--sysfs", "after/sys"]),
            (WRONG_USAGE, []),
            (WRONG_USAGE, ["-", "-"]),
            (WRONG_USAGE, ["-", "--file", "-"]),
            (WRONG_USAGE, ["before/sys", "after/sys", "--sysfs", "after/sys"]),
            (WRONG_USAGE, ["before/sys", "after/sys", "--only", "aded"]),
            (WRONG_USAGE, ["before/sys", "after/sys", "--where", "vendor == ("]),
        ]
        for code, arguments in cases:
            with self.subTest(arguments):
                result = self.compare(*arguments)
                self.assertEqual(result.returncode, code, result.stderr)
                self.assertEqual(len(result.stderr.splitlines()), int(code > DIFFERENT))
                self.assertEqual(bool(result.stdout), code <= DIFFERENT)
        with open("/dev/full", "wb") as full:
            for form in ("text", "json", "html"):
                result = self.compare("before/sys", "after/sys", "--format", form, stdout=full)
                self.assertEqual((result.returncode, len(result.stderr.splitlines())), (FAILED, 1))

    def test_options_choose_what_differs(self):
        trees = ("before/sys", "after/sys")
        [eth0] = [path for path in self.differences(*trees) if path.endswith("/eth0")]
        self.assertEqual(self.differences(*trees, "--where", "name == 'eth0'").keys(), {eth0})
        self.assertNotIn(eth0, self.differences(*trees, "--ignore", "speed,mtu"))
        self.assertNotIn(eth0, self.differences(*trees, "--ignore", "speed", "--ignore", "mtu"))
        changes = self.differences(*trees, "--volatile", "--only", "changed")[eth0][1]
        self.assertIn("statistics/rx_bytes", changes)
        kinds = {kind for kind, _ in self.differences(*trees, "--only", "added,removed").values()}
        self.assertEqual(kinds, {"added", "removed"})
        self.assertIn(b"  + partition = ", self.compare(*trees, "--full").stdout)

    def test_snapshots_are_like_the_trees_they_are_of(self):
        for name in ("before", "after"):
            run("capture", self.folder / f"{name}.vandrel", tree=self.folder / name / "sys")
        of_trees = self.differences("before/sys", "after/sys")
        self.assertEqual(self.differences("before.vandrel", "after.vandrel"), of_trees)
        with open(self.folder / "before.vandrel", "rb") as file:
            result = self.compare("-", "after/sys", stdin=file)
        self.assertEqual(result.returncode, DIFFERENT)
        self.assertTrue(result.stdout.startswith(b"--- standard input, synthetic-one"))

    @unittest.skipUnless(jsonschema, "python3-jsonschema is not installed")
    def test_json_is_of_the_schema(self):
        schema = json.loads((ROOT / "docs/cli-schema.json").read_text(encoding="utf-8"))
        line = {"$ref": "#/$defs/compare", "$defs": schema["$defs"]}
        trees = ("before/sys", "after/sys")
        for options in ([], ["--stat"], ["--full", "--volatile"], ["--redact"]):
            document = self.compare(*trees, *options, "--format", "json").stdout
            jsonschema.Draft202012Validator(schema).validate(json.loads(document))
            for text in self.compare(*trees, *options, "--format", "ndjson").stdout.splitlines():
                jsonschema.Draft202012Validator(line).validate(json.loads(text))
        of_another = self.compare("after/sys", VIRTUAL_MACHINE, "--format", "json").stdout
        jsonschema.Draft202012Validator(schema).validate(json.loads(of_another))

    def test_without_serial_numbers(self):
        after = self.folder / "after/sys"
        serial = after / "devices/pci0000:00/0000:00:14.0/usb1/1-4/1-4.2/serial"
        old = serial.read_text()
        self.addCleanup(serial.write_text, old)
        serial.write_text("NEW-SERIAL-77\n")
        plain = self.compare("before/sys", "after/sys", "--full", "--volatile")
        secrets = (old.strip().encode(), b"NEW-SERIAL-77", b"synthetic-one")
        for secret in secrets:  # the test can fail
            self.assertIn(secret, plain.stdout)
        for form in ("text", "json", "html"):
            result = self.compare("before/sys", "after/sys", "--full", "--volatile", "--redact",
                                  "--format", form)
            self.assertEqual(result.returncode, DIFFERENT)
            for secret in secrets:
                self.assertNotIn(secret.lower(), result.stdout.lower())
        redacted = self.differences("before/sys", "after/sys", "--redact")
        self.assertEqual({path: (kind, set(properties)) for path, (kind, properties)
                          in self.differences("before/sys", "after/sys").items()},
                         {path: (kind, set(properties)) for path, (kind, properties)
                          in redacted.items()})


@unittest.skipUnless(RECORDED.is_file(), f"{RECORDED} is missing")
class RecordedTree(TreesTest):
    """A real machine against an edited copy."""

    def test_edits_come_back(self):
        with tarfile.open(RECORDED) as archive:
            archive.extractall(self.folder / "d2", filter="tar")
        edited = self.folder / "edited/sys"
        shutil.copytree(self.folder / "d2", edited.parent, symlinks=True, copy_function=os.link)

        def write(path, text):
            path.unlink()  # the other tree has the same file
            path.write_text(text)

        eth0, eth1 = sorted(edited.glob("devices/pci0000:00/0000:00:01.1/*/net/eth[01]"))
        write(eth0 / "mtu", "9000\n")
        (eth0 / "tx_queue_len").unlink()
        write(eth1 / "ifalias", "uplink\n")
        endpoint = next(edited.glob("devices/pci*/*/usb*/*/ep_81"))
        shutil.rmtree(endpoint)
        self.assertEqual(self.differences("d2/sys", "d2/sys"), {})
        found = self.differences("d2/sys", "edited/sys")
        by_name = {path.rsplit("/", 1)[1]: found[path] for path in found}
        self.assertEqual(by_name.keys(), {"eth0", "eth1", endpoint.name}, found)
        self.assertEqual(by_name["eth0"][1].keys(), {"mtu", "tx_queue_len"})
        self.assertEqual(by_name["eth0"][1]["mtu"][1]["$number"], 9000)
        self.assertIsNone(by_name["eth0"][1]["tx_queue_len"][1])
        self.assertEqual(by_name["eth1"][1].keys(), {"ifalias"})
        self.assertEqual(by_name[endpoint.name][0], "removed")


if __name__ == "__main__":
    unittest.main()
