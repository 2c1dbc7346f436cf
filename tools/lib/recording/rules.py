"""Which attributes are not read, and why: a read runs driver code."""
import re

# Reading these creates devices, touches ports, hangs, has no end or always fails.
NEVER = re.compile(
    r"hot_(add|remove)|resource.*|rom|legacy_(io|mem)|vpd|autosuspend_delay_ms"
    r"|trace.*|msglog|fw_?log|log|cfg_?log"
)
# One read in such a folder can reset the board, or walks a debugging file system.
FOLDERS = re.compile(r".*_descriptors?|trace.*|debug|hw_counters|counters|sections|notes")

# Slow, waking or disturbing reads, made only when somebody asks for that one device.
ON_REQUEST = re.compile(r"eeprom|nvmem|nvm_.*|(scaling|cpuinfo)_cur_freq")
ON_REQUEST_IN = {
    "pci": re.compile(r"config"),
    "usb": re.compile(r"bConfigurationValue|descriptors"),
    "net": re.compile(r"speed|duplex|phys_.*|carrier.*"),
    "hwmon": re.compile(r"(temp|in|fan|curr|power|energy|humidity|pwm|freq)\d.*(?<!_label)"),
    "thermal": re.compile(r"temp|cur_state|.*stats.*"),
    "power_supply": re.compile(r"(?!type$|scope$|uevent$).*"),
    "tpm": re.compile(r"(?!dev$|uevent$|tpm_version_major$).*"),
}
# Asks the battery for every value it has; the file must be there all the same.
BLANK_IN = {"power_supply": re.compile(r"uevent")}


def is_skipped_folder(name):
    return FOLDERS.fullmatch(name) is not None


def is_skipped(name, subsystem):
    """Whether the attribute of a device of this subsystem (or None) is not to be read."""
    of_subsystem = ON_REQUEST_IN.get(subsystem)
    return bool(
        NEVER.fullmatch(name)
        or ON_REQUEST.fullmatch(name)
        or (of_subsystem and of_subsystem.fullmatch(name))
    )


def is_blanked(name, subsystem):
    return subsystem in BLANK_IN and BLANK_IN[subsystem].fullmatch(name) is not None
