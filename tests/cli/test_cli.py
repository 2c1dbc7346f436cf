# SPDX-License-Identifier: Apache-2.0
"""Tests of vandrel-cli as its users run it, on the committed fixtures."""
import json
import os
import re
import shlex
import shutil
import socket
import subprocess
import tempfile
import threading
import time
import unicodedata
import unittest
from pathlib import Path

from program import (ENVIRONMENT, FAILED, FOUND, NOTHING, PROGRAM, ROOT, SYNTHETIC, VIRTUAL_MACHINE,
                     WRONG_USAGE, needs, run, run_command)

try:
    import jsonschema
except ImportError:
    jsonschema = None

COMPLETIONS = ROOT / "cli/completions"


class Document(unittest.TestCase):
    def test_examples_print_what_is_written(self):
        text = (ROOT / "docs/cli.md").read_text(encoding="utf-8")
        commands = set()
        for block in re.findall(r"^```console\n(.*?)^```$", text, re.M | re.S):
            for line, expected in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block, re.M):
                with self.subTest(line):
                    words = shlex.split(line)
                    if words[1] == "compare":
                        continue  # has trees of its own: see test_compare.py
                    commands.add(words[1])
                    result = run(*words[1:], stderr=subprocess.STDOUT)
                    self.assertEqual(result.stdout.decode(), expected)
        self.assertEqual({"planes", "tree", "show", "find", "paths", "driver", "module", "check"},
                         commands)
        listed = run("check", "--list", "--format", "ndjson").stdout
        page = run_command(["python3", ROOT / "tools/lib/checks.py"], input=listed).stdout
        self.assertEqual((ROOT / "docs/checks.md").read_bytes(), page)


@unittest.skipUnless(jsonschema, "python3-jsonschema is not installed")
class Json(unittest.TestCase):
    COMMANDS = {
        "planes": [["planes"]],
        "tree": [["tree", "--names"], ["tree", "DxBlock"], ["tree", "lo", "--depth", "0"]],
        "show": [["show", "sda", "oddities", "DxService:", "DxService:/"]],
        "find": [["find", "disk", "--print", "size,class,@class,queue/scheduler,state,device"],
                 ["find", "--where", "vendor == 0x1af4", "--plane", "DxBus", "--first"]],
        "count": [["find", "e", "--count"]],
        "paths": [["paths", "sda1", "bond0", "DxDriver"]],
        "driven": [["driver", "usb"], ["module", "usbcore"]],
        "finding": [["check"]],
        "check": [["check", "--list"]],
    }

    @classmethod
    def setUpClass(cls):
        cls.schema = json.loads((ROOT / "docs/cli-schema.json").read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(cls.schema)

    def check(self, value, name=None):
        schema = self.schema
        if name:
            schema = {"$ref": f"#/$defs/{name}", "$defs": self.schema["$defs"]}
        jsonschema.Draft202012Validator(schema).validate(value)

    def results(self, definition, arguments, tree):
        document = json.loads(run(*arguments, "--format", "json", tree=tree).stdout)
        self.check(document)
        self.assertEqual(document["command"], arguments[0])
        text = run(*arguments, "--format", "ndjson", tree=tree).stdout
        lines = [json.loads(line) for line in text.splitlines()]
        for line in lines:
            self.check(line, definition)
        return document["results"], lines

    def test_both_formats_are_of_the_schema_and_agree(self):
        for definition, commands in self.COMMANDS.items():
            for arguments in commands:
                with self.subTest(arguments):
                    results, lines = self.results(definition, arguments, SYNTHETIC)
                    self.assertTrue(results)
                    for result in results + lines:  # when it was read differs
                        result.pop("discovered", None)
                    self.assertEqual(results, lines)

    def test_entries_of_another_machine_are_of_the_schema(self):
        names = [row["id"] for row in self.results("tree", ["tree"], VIRTUAL_MACHINE)[0]]
        self.results("show", ["show", *names], VIRTUAL_MACHINE)
        self.assertEqual(self.results("find", ["find", "no such text"], VIRTUAL_MACHINE), ([], []))

    def test_single_values_and_captures(self):
        for key in ("vendor", "driver", "uevent"):
            value = run("show", "0000:01:00.0", "--property", key, "--format", "ndjson")
            self.check(json.loads(value.stdout), "propertyValue")
        with tempfile.TemporaryDirectory() as folder:
            arguments = ["capture", f"{folder}/machine.vandrel"]
            results, lines = self.results("capture", arguments, SYNTHETIC)
            self.assertEqual(results, lines)
            command = [PROGRAM, "planes", "--file", arguments[1]]
            self.assertEqual(run_command(command).stdout, run("planes").stdout)
            os.truncate(arguments[1], 1000)
            damaged = run_command(command)
            self.assertEqual((damaged.returncode, damaged.stdout), (FAILED, b""))
            self.assertEqual(len(damaged.stderr.splitlines()), 1, damaged.stderr)
        piped = run("capture", "-", "--format", "json").stdout
        command[-1] = "-"
        self.assertEqual(run_command(command, input=piped).stdout, run("planes").stdout)


def send_to_loopback(seconds):
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            sender.sendto(bytes(1000), ("127.0.0.1", 9))
            time.sleep(0.02)


class Values(unittest.TestCase):
    def lines(self, *arguments, tree):
        result = run(*arguments, "--format", "ndjson", "--interval", "0.2", "--for", "1.5",
                     tree=tree)
        self.assertEqual(result.returncode, FOUND, result.stderr)
        return [json.loads(line) for line in result.stdout.splitlines()]

    def test_number_is_followed_until_it_is_one_no_longer(self):
        with tempfile.TemporaryDirectory() as folder:
            tree = Path(folder) / "sys"
            shutil.copytree(SYNTHETIC, tree, symlinks=True)
            [path] = tree.glob("devices/**/eth0")
            mtu = path / "mtu"
            mtu.write_text("1500\n", encoding="ascii")
            command = [PROGRAM, "plot", "eth0", "mtu", "--interval", "0.2", "--sysfs", tree]
            with subprocess.Popen(command, env=ENVIRONMENT, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE) as plot:
                self.assertIn(b"1.465 KiB", plot.stdout.readline())
                mtu.write_text("unlimited\n", encoding="ascii")
                self.assertIn(b"mtu is no longer a number", plot.communicate(timeout=30)[1])
                self.assertEqual(plot.returncode, FAILED)
        for arguments, expected in ((["eth0", "ifindx"], b"Did you mean ifindex?"),
                                    (["eth0", "address"], b"is not a number"),
                                    (["eth0", "ifindex", "--interval", "0.1"], b"from 0.2 to 60")):
            self.assertIn(expected, run("plot", *arguments).stderr)

    @unittest.skipUnless(Path("/sys/class/net/lo/statistics/rx_bytes").exists(), "there is no lo")
    def test_values_of_the_loopback_under_traffic(self):
        for command in (["plot", "lo", "statistics/rx_bytes"], ["watch", "lo", "--properties"]):
            with self.subTest(command):
                traffic = threading.Thread(target=send_to_loopback, args=(3,))
                traffic.start()
                lines = self.lines(*command, tree="/sys")
                traffic.join()
                if command[0] == "plot":
                    values = [line["value"] for line in lines]
                    self.assertGreater(values[-1], values[0])
                    self.assertGreater(lines[-1]["rate"], 1000)
                else:
                    keys = {change["property"] for line in lines for change in line["changes"]}
                    self.assertIn("statistics/rx_bytes", keys)
                    self.assertNotIn("mtu", keys)


class ExitCodes(unittest.TestCase):
    def test_code_and_one_line_with_the_nearest(self):
        cases = [
            (FOUND, "", ["find", "lo"]),
            (NOTHING, "", ["find", "no such text"]),
            (NOTHING, "", ["show", "lo", "--property", "mtuu"]),
            (NOTHING, "", ["driver", "idle"]),
            (FAILED, "The nearest is eth0", ["show", "eht0"]),
            (FAILED, "nearest is DxService:/virtual/net", ["tree", "DxService:/virtual/nt"]),
            (FAILED, "nearest is hub", ["driver", "hubb"]),
            (FAILED, "nearest is usbcore", ["module", "usbcor"]),
            (WRONG_USAGE, "nearest is show", ["shwo"]),
            (WRONG_USAGE, "--property", ["show", "lo", "--proprty", "mtu"]),
            (WRONG_USAGE, "ndjson", ["tree", "--format", "ndjsn"]),
            (WRONG_USAGE, "values", ["find", "lo", "--in", "valuse"]),
            (WRONG_USAGE, "character", ["find", "--where", "vendor == ("]),
        ]
        for code, message, arguments in cases:
            with self.subTest(arguments):
                result = run(*arguments)
                error = result.stderr.decode()
                self.assertEqual(result.returncode, code, error)
                self.assertEqual(len(error.splitlines()), int(bool(message)), error)
                self.assertIn(message, error)
                if message:
                    self.assertEqual(result.stdout, b"")

    def test_check_says_what_it_found_and_whether_it_could_look(self):
        warned = run("check", "--nagios")
        self.assertEqual(warned.returncode, 1)
        self.assertEqual(warned.stdout, b"VANDREL WARNING - 0 errors, 1 warnings, 0 notes: Device "
                         b"waits for another one | errors=0;;1;0 warnings=1;1;;0 notes=0;;;0\n")
        self.assertEqual(run("check", "--skip", "probe-deferred").returncode, 0)
        self.assertEqual(run("check", "--severity", "error").stdout, b"")
        for question in (["warning", "--in", "states"], ["--where", "state == warning"]):
            self.assertEqual(len(run("find", *question).stdout.splitlines()), 1)
        self.assertEqual(run("check", "--modules", "/nowhere").returncode, 3)
        with tempfile.TemporaryDirectory() as folder:
            snapshot = f"{folder}/machine.vandrel"
            run("capture", snapshot)
            self.assertEqual(run("check", snapshot).stdout, run("check").stdout)
        self.assertEqual(run("check", "/nowhere.vandrel").returncode, 3)
        with tempfile.TemporaryDirectory() as folder:
            tree = Path(folder) / "sys"
            shutil.copytree(SYNTHETIC, tree, symlinks=True)
            sensor = tree / "devices/platform/pump-a/hwmon/hwmon9"
            sensor.mkdir(parents=True)
            (tree / "class/hwmon").mkdir(exist_ok=True)
            (tree / "class/hwmon/hwmon9").symlink_to(sensor)
            (sensor / "subsystem").symlink_to("../../../../../class/hwmon")
            for name, text in (("uevent", ""), ("fan1_input", "0\n"), ("fan1_target", "900\n")):
                (sensor / name).write_text(text, encoding="ascii")
            stopped = ["check", "--only", "fan-stopped"]
            self.assertEqual(run(*stopped, tree=tree).returncode, 0)
            self.assertEqual(run(*stopped, "--measure", tree=tree).returncode, 1)
        wrong = run("check", "--only", "probe-defered")
        self.assertEqual(wrong.returncode, WRONG_USAGE)
        self.assertIn(b"--only is one of pci-link-slow,", wrong.stderr)

    def test_failed_output(self):
        with tempfile.TemporaryDirectory() as folder:
            result = run("capture", f"{folder}/missing/machine.vandrel")
            self.assertEqual((result.returncode, result.stdout), (FAILED, b""))
            self.assertEqual(len(result.stderr.splitlines()), 1)
            self.assertEqual(os.listdir(folder), [])
        commands = [["tree"], ["planes", "--format", "json"], ["tree", "--help"], ["capture", "-"],
                    ["export"], ["show", "lo", "--property", "address"]]
        for arguments in commands:
            with self.subTest(arguments), open("/dev/full", "wb") as full:
                result = run(*arguments, stdout=full)
                self.assertEqual(result.returncode, FAILED)
                self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)

    def test_closed_pipe_is_silent(self):
        command = [PROGRAM, "show", *["sda"] * 1000, "--sysfs", SYNTHETIC]
        with subprocess.Popen(command, env=ENVIRONMENT, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as process:
            self.assertEqual(process.stdout.readline(), b"sda\n")
            process.stdout.close()
            self.assertEqual(process.stderr.read(), b"")


class Completions(unittest.TestCase):
    SCRIPT = """
        source "$1"
        COMP_WORDBREAKS=$' \\t\\n"\\'@><=;|&(:' COMP_LINE=$2 COMP_POINT=${#2}
        _vandrel_cli
        printf '%s\\n' "${COMPREPLY[@]}"
    """

    def complete(self, rest, program=PROGRAM):
        command = ["bash", "--norc", "-c", self.SCRIPT, "bash", COMPLETIONS / "vandrel-cli.bash",
                   f"{shlex.quote(str(program))} {rest}"]
        return run_command(command).stdout.decode().split("\n")[:-1]

    def test_bash_completes_words_with_colons_spaces_and_quotes(self):
        tree = f"show --sysfs {shlex.quote(str(SYNTHETIC))}"
        hub = "DxService:/pci0000:00/usb@0000:00:14.0/Root"
        self.assertEqual(self.complete("sh"), ["show"])
        self.assertEqual(set(self.complete(f"{tree} DxService:/virt")), {"/virtual", "/virtual/"})
        self.assertEqual(self.complete(f"{tree} 0000:00:1c"), ["1c.0"])
        self.assertIn("14.0/Root\\ Hub@usb1", self.complete(f"{tree} {hub}"))
        self.assertIn(f"{hub} Hub@usb1", self.complete(f"{tree} '{hub} H"))
        self.assertEqual(self.complete(f"{tree} --property vendo"), ["vendor"])
        plot = f"plot --sysfs {SYNTHETIC} eth0"
        self.assertEqual(self.complete(f"{plot} ifi"), ["ifindex"])
        self.assertEqual(self.complete(f"{plot} ifindex ifi"), [""])

    def test_bash_quotes_hostile_names(self):
        name = "a$(exit)`exit`;it's \"q\" \\x *{1,2}~!"
        with tempfile.TemporaryDirectory() as folder:
            program = Path(folder, "vandrel-cli")
            program.write_text(f"#!/bin/sh\nprintf '%s\\n' {shlex.quote(name)}\n")
            program.chmod(0o755)
            for quote in ("", "'", '"'):
                [reply] = self.complete(f"show {quote}a", program)
                printed = run_command(["bash", "-c", f"printf %s {quote}{reply}{quote}"])
                self.assertEqual(printed.stdout.decode(), name)

    @needs("shellcheck")
    def test_bash_script_passes_shellcheck(self):
        result = run_command(["shellcheck", COMPLETIONS / "vandrel-cli.bash"])
        self.assertEqual((result.returncode, result.stdout), (0, b""))

    @needs("fish")
    def test_fish_completes(self):
        command = f"source {COMPLETIONS}/vandrel-cli.fish; complete -C '{PROGRAM} sh'"
        self.assertEqual(run_command(["fish", "--no-config", "-c", command]).stdout, b"show\n")


class Program(unittest.TestCase):
    def test_needs_no_display(self):
        libraries = run_command(["ldd", PROGRAM]).stdout.decode()
        self.assertIn("libc.so", libraries)
        self.assertNotRegex(libraries, r"Qt6(Gui|Widgets)|libX|libxcb|libwayland|libGL|libEGL")

    def test_leaves_nothing_in_the_home_folder(self):
        with tempfile.TemporaryDirectory() as folder:
            for arguments in (["show", "sda"], ["capture", "-"]):
                run_command(["env", f"HOME={folder}", PROGRAM, *arguments, "--sysfs", SYNTHETIC])
            self.assertEqual(os.listdir(folder), [])

    def test_terminal_gets_the_output_alone(self):
        ours, theirs = os.openpty()
        result = run("planes", stdout=theirs)
        os.close(theirs)
        shown = os.read(ours, 4096).decode().splitlines()
        os.close(ours)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        self.assertEqual(shown[:2], ["DxService   96", "DxBlock     12"])

    def test_hostile_texts_do_not_reach_the_terminal(self):
        hostile = b"evil\x1b[31m\n\r\x07\xff\xc2\x9b\xe2\x80\xae"
        with tempfile.TemporaryDirectory() as folder:
            tree = os.fsencode(folder)
            device = tree + b"/devices/virtual/misc/" + hostile
            os.makedirs(device)
            os.makedirs(tree + b"/class/misc")
            os.makedirs(tree + b"/bus")
            os.symlink("../../../../class/misc", device + b"/subsystem")
            os.symlink(device, tree + b"/class/misc/" + hostile)
            for name in (b"uevent", b"label", hostile):
                Path(os.fsdecode(device + b"/" + name)).write_bytes(hostile.replace(b"\xff", b""))
            [entry] = run("find", "evil", "--format", "ndjson", tree=folder).stdout.splitlines()
            show = ["show", json.loads(entry)["id"]]
            for command in (["tree"], ["find", "evil", "--print", "name,label"], show,
                            [*show, "--property", "label"], [*show, "--raw"], ["export"]):
                with self.subTest(command):
                    text = run(*command, tree=folder).stdout.decode()
                    self.assertIn("evil\\x1b", text)
                    wrong = {c for c in text if unicodedata.category(c) in ("Cc", "Cf")}
                    self.assertLessEqual(wrong, {"\n", "\t"})

    @needs("man")
    def test_manual_is_whole(self):
        manual = run_command([PROGRAM, "--manual"]).stdout
        with tempfile.NamedTemporaryFile(suffix=".1") as page:
            page.write(manual)
            page.flush()
            result = run_command(["man", "--warnings", "-l", page.name])
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        shown = re.sub(r".\x08", "", result.stdout.decode())
        commands = run_command([PROGRAM, "--help"]).stdout.decode()
        for command in re.findall(r"^  ([a-z]+)  ", commands, re.M):
            text = run_command([PROGRAM, command, "--help"]).stdout.decode()
            for option in re.findall(r"^  (--[a-z-]+)", text, re.M):
                self.assertIn(option, shown, f"{command} {option}")


if __name__ == "__main__":
    unittest.main()
