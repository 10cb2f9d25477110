"""The platform that the tools under test are built for: this one, or Windows by way of an emulator.

Tests state what the tools do here; this module turns that into what they do there, where the platform differs: line ends,
the separator of joined paths, the order of a walk, the status of an abnormal end. Tests that mean nothing there are left
out: tests/left-out-on-windows.txt has the list, and the reasons.
"""
import os
import re
import stat
import sys

EMULATOR = os.environ.get("VADELCLIP_EMULATOR", "")  # what starts a Windows program on this system
WINDOWS = EMULATOR != ""
LAUNCHER = os.environ.get("VADELCLIP_LAUNCHER")  # opens descriptor 3 there, see win32_launcher.cpp

LEFT_OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "left-out-on-windows.txt")


def joined(left, right):
    """A path as the tool joins it from two parts."""
    return left + ("\\" if WINDOWS else "/") + right


def inTextMode(content):
    """What becomes of bytes that are written in text mode."""
    return content.replace(b"\n", b"\r\n") if WINDOWS else content


def withoutTextMode(content):
    """What was written, from what text mode made of it."""
    return content.replace(b"\r\n", b"\n") if WINDOWS else content


def inTextModeTree(tree):
    return {path: inTextMode(content) if isinstance(content, bytes) else content for path, content in tree.items()}


def possible(*names):
    """Those of the file names that can exist on the platform, beside the ones before them."""
    if not WINDOWS:
        return list(names)
    found = {}
    for name in names:
        if not re.search(r'[<>:"|?*\\\x00-\x1f]|[^\x00-\x7f]|[ .]$|^(con|nul)\.', name):
            found.setdefault(name.upper(), name)
    return list(found.values())


def walkOrder(directory):
    """Names in the order in which the platform lists them: Windows' file system keeps them sorted."""
    names = [entry.name for entry in os.scandir(directory)]
    return sorted(names, key=str.upper) if WINDOWS else names


def endedAbnormally(status):
    """Whether this is the exit status of a process that the run-time library ended."""
    return status == 3 if WINDOWS else status < 0


def crashed(status):
    """Whether it is that of a process that the system ended for what it did. The emulator hands on the last byte of an
    access violation, 0xC0000005."""
    return status == 5 if WINDOWS else status < 0


def leftOutReason(testId):
    """Why a test is left out on the platform, or None. The id is that of unittest: __main__.<class>.<test>."""
    if not WINDOWS:
        return None
    file = "/".join(os.path.splitext(os.path.realpath(sys.argv[0]))[0].split(os.sep)[-2:])
    className, test = testId.split(".")[-2:]
    names = (file, f"{file}.{className}", f"{file}.{className}.{test}")
    with open(LEFT_OUT, encoding="utf-8") as entries:
        for entry in entries:
            kind, name, reason, *_ = *entry.split(None, 2), "", "", ""
            if kind == "acceptance" and name in names:
                return reason.strip()
    return None


def launch(tool, arguments, launcher=True):
    """The command that starts a tool."""
    return [EMULATOR, *([LAUNCHER] if launcher else []), tool, *arguments] if WINDOWS else [tool, *arguments]


def launchSettings(channel, closed):
    """Environment for the launcher. A channel is a descriptor of a file, which is handed over by its name, or a text for
    the launcher."""
    if not WINDOWS:
        return {}
    settings = {"VADELCLIP_CLOSED": "".join(map(str, closed)), "LC_ALL": "C.UTF-8"}
    if isinstance(channel, int):
        assert stat.S_ISREG(os.fstat(channel).st_mode), "only files can be handed over by their name"
        settings["VADELCLIP_CHANNEL_FILE"] = os.readlink(f"/proc/self/fd/{channel}")
        channel = "append"
    return {**settings, "VADELCLIP_CHANNEL": channel}
