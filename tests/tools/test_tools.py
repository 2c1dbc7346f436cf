# SPDX-License-Identifier: Apache-2.0
"""Tests of the project's tools, on the committed fixtures."""
import os
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
TOOLS = ROOT / "tools"
FIXTURES = ROOT / "tests/fixtures"
SYNTHETIC = FIXTURES / "synthetic/sys"

sys.dont_write_bytecode = True
sys.path.insert(0, str(TOOLS / "lib"))
from recording.anonymiser import Anonymiser  # noqa: E402
from recording.reading import ReadError, TimedReader  # noqa: E402


def run(tool, *arguments):
    command = [str(TOOLS / tool), *map(str, arguments)]
    return subprocess.run(command, capture_output=True, text=True, check=False)


def contents(folder):
    """Bytes of the files and targets of the links below a folder, by path."""
    found = {}
    for parent, folders, files in os.walk(folder):
        for path in (Path(parent, name) for name in folders + files):
            if path.is_symlink():
                found[str(path.relative_to(folder))] = os.readlink(path)
            elif path.is_file():
                found[str(path.relative_to(folder))] = path.read_bytes()
    return found


class TemporaryFolderTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)


class MakeFixture(TemporaryFolderTest):
    def test_committed_tree_is_what_its_description_says(self):
        result = run("make-fixture", "--check", f"{SYNTHETIC.parent}.txt", SYNTHETIC.parent)
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def test_completes_links_and_notices_a_difference(self):
        description = self.folder / "text"
        description.write_text(
            "[sys/devices/a]\nsubsystem -> sys/bus/x\ndriver -> sys/bus/x/drivers/d\n"
            "raw := \\x00\\\\\nline *3= ab\n"
        )
        out = self.folder / "tree"
        self.assertEqual(run("make-fixture", description, out).returncode, 0)
        self.assertEqual((out / "sys/devices/a/raw").read_bytes(), b"\0\\")
        self.assertEqual((out / "sys/devices/a/line").read_bytes(), b"ababab")
        for link in ("sys/bus/x/devices/a", "sys/bus/x/drivers/d/a"):
            self.assertTrue((out / link).samefile(out / "sys/devices/a"))
        (out / "sys/devices/a/raw").write_bytes(b"other")
        check = run("make-fixture", "--check", description, out)
        self.assertIn("sys/devices/a/raw", check.stderr)
        self.assertNotEqual(check.returncode, 0)

    def test_leaves_a_folder_alone_that_is_no_fixture(self):
        (self.folder / "text").write_text("[sys]\na = 1\n")
        (self.folder / "precious").mkdir()
        (self.folder / "precious/file").touch()
        result = run("make-fixture", self.folder / "text", self.folder / "precious")
        self.assertNotEqual(result.returncode, 0)
        self.assertTrue((self.folder / "precious/file").exists())


class RecordSysfs(TemporaryFolderTest):
    def record(self, *arguments):
        out = self.folder / "out"
        result = run("record-sysfs", out, *arguments, "--root", SYNTHETIC)
        self.assertEqual(result.returncode, 0, result.stderr)
        return contents(out)

    def test_records_all_but_what_must_not_be_read_or_followed(self):
        original = contents(SYNTHETIC.parent)
        recorded = self.record("--no-anonymise")
        missing = {path: original[path] for path in original.keys() - recorded.keys()}
        self.assertEqual(
            {Path(path).name for path in missing},
            {"config", "hot_add", "eeprom", "descriptors", "bConfigurationValue", "uevent"}
            | {"autosuspend_delay_ms", "temp1_input", "scaling_cur_freq"}
            | {"speed", "duplex", "carrier", "outside", "absolute"},
        )
        usb = "sys/devices/pci0000:00/0000:00:14.0/usb1"
        self.assertIn(f"{usb}/speed", recorded)
        differing = [path for path, content in recorded.items() if original.get(path) != content]
        self.assertEqual(differing, [])

    def test_replaces_what_identifies_alike_everywhere(self):
        recorded = self.record()
        self.assertNotIn("etc/hostname", recorded)
        self.assertEqual(recorded["proc/sys/kernel/arch"], b"x86_64\n")
        everything = b"".join(c for c in recorded.values() if isinstance(c, bytes))
        for secret in (b"DW000123", b"02:00:00:00:00:10", b"LVM-r3cRdTfqQpYm0u5vZ1"):
            self.assertNotIn(secret, everything)
        usb = "sys/devices/pci0000:00/0000:00:14.0/usb1"
        serial = recorded[f"{usb}/1-4/1-4.2/serial"].strip()
        self.assertRegex(serial, rb"^[A-Z]{2}[0-9]{6}$")
        hid = recorded[f"{usb}/1-4/1-4.2/1-4.2:1.0/0003:04D9:A0CD.0001/uevent"]
        self.assertIn(b"HID_UNIQ=" + serial, hid)
        # A serial number that is a device's name, and an address that is nobody's.
        self.assertEqual(recorded[f"{usb}/serial"], b"0000:00:14.0\n")
        self.assertEqual(recorded["sys/devices/virtual/net/lo/address"], b"00:00:00:00:00:00\n")
        bond = recorded["sys/devices/virtual/net/bond0/address"]
        self.assertEqual(recorded["sys/devices/virtual/net/bond0.7/address"], bond)

    def test_finds_what_identifies_by_the_rules_of_the_program(self):
        anonymiser = Anonymiser({"0000:00:14.0", "wmi0"}, key=b"key")
        files = {
            "nvme0/wwid": b"eui.0025385b71b0ab12\n",
            "block/name": b"disk/by-id/nvme-Fast_Disk_S4EWNX0N-part1\n",
            "net/ib0/address": b"80:00:02:08:fe:80:00:00:00:00:00:00:00:11:22:33:44:55:66:77\n",
            "wmi0/modalias": b"wmi:05901221-D566-11D1-B2F0-00A0C9062910\n",
            "session/traddr": b"192.168.7.9\n",
            "fw_version": b"11.22.33.44\n",
            "board_serial": b"To be filled by O.E.M.\n",
            "usb1/serial": b"0000:00:14.0\n",
            "short/serial": b"DW12\n",
        }
        for path, content in files.items():
            anonymiser.learn(path, content)
        anonymiser.learn_host("ada-pc")
        kept = {path for path, content in files.items() if anonymiser.apply(content) == content}
        self.assertEqual(
            kept, {"wmi0/modalias", "fw_version", "board_serial", "usb1/serial"}
        )
        link = anonymiser.apply(b"/by-id/nvme-eui.0025385b71b0ab12 ada-pc/DW12x/DW12")
        for secret in (b"0025385b71b0ab12", b"ada-pc", b"/DW12/"):
            self.assertNotIn(secret, link + b"/")
        self.assertIn(b"/DW12x/", link)
        self.assertTrue(anonymiser.is_left_out("devices/card0/edid"))
        self.assertTrue(anonymiser.is_left_out("firmware/dmi/tables/DMI"))

    def test_records_a_part_with_what_it_needs(self):
        recorded = self.record("--no-anonymise", "class/net/eth0")
        port = "sys/devices/pci0000:00/0000:00:1c.0/0000:01:00.0"
        for path in (
            f"{port}/net/eth0/operstate",
            f"{port}/uevent",
            "sys/bus/pci/devices/0000:01:00.0",
            "sys/bus/pci/drivers/lanport/module",
            "sys/module/lanport/refcnt",
            "run/udev/data/n2",
        ):
            self.assertIn(path, recorded)
        others = [path for path in recorded if "usb" in path or "block" in path]
        self.assertEqual(others, [])
        self.assertNotIn("sys/class/net/eth1", recorded)

    def test_refuses_places_it_must_not_write_to_and_roots_that_are_none(self):
        taken = self.folder / "taken"
        taken.mkdir()
        tree = self.folder / "tree/devices"
        tree.mkdir(parents=True)
        for out, root in (
            (taken, SYNTHETIC),
            (tree / "out", tree.parent),
            (self.folder / "out", self.folder / "nowhere"),
        ):
            result = run("record-sysfs", out, "--root", root)
            self.assertNotEqual(result.returncode, 0)
            self.assertEqual(result.stdout, "")
        self.assertEqual(list(taken.iterdir()) + list(tree.iterdir()), [])

    def test_a_read_that_hangs_is_left_behind(self):
        release = threading.Event()
        self.addCleanup(release.set)

        def read(path, size):
            if path == "hangs":
                release.wait()
            return b"fine"

        reader = TimedReader(read, seconds=0.1)
        started = time.monotonic()
        with self.assertRaises(ReadError):
            reader.read("hangs", 1)
        self.assertLess(time.monotonic() - started, 2)
        self.assertEqual(reader.read("answers", 1), b"fine")


class Packages(TemporaryFolderTest):
    def test_installs_only_what_is_missing(self):
        log = self.folder / "log"
        for name, script in {
            "dpkg-query": 'case "$*" in *xvfb) exit 1 ;; *xauth) printf config-files ;;'
            " *) printf installed ;; esac",
            "apt-get": f'printf "%s\\n" "$*" >>"{log}"',
            "sudo": 'exec "$@"',
        }.items():
            command = self.folder / name
            command.write_text(f"#!/bin/sh\n{script}\n")
            command.chmod(0o755)
        environment = {**os.environ, "PATH": f"{self.folder}:{os.environ['PATH']}"}
        script = f"set -euo pipefail; source {TOOLS}/lib/common.sh; need_packages build display"
        subprocess.run(["bash", "-c", script], env=environment, check=True)
        update, install = log.read_text().splitlines()
        self.assertTrue(update.endswith("update"))
        self.assertEqual(install.split("--no-install-recommends ")[1], "xauth xvfb")


if __name__ == "__main__":
    unittest.main()
