"""The platform that the tools under test are built for: this one, or Windows or ARM64, run by an emulator.

Tests state the behaviour on this platform. This module converts it where Windows differs: line ends, the separator of
joined paths, the order of a walk, the status of an abnormal end. tests/left-out-on-windows.txt and
tests/left-out-on-arm64.txt list the tests that do not run there, with reasons.
"""
import os
import re
import stat
import sys

EMULATOR = os.environ.get("VADELCLIP_EMULATOR", "")  # starts a program of the other platform; empty for this one
LAUNCHER = os.environ.get("VADELCLIP_LAUNCHER", "")  # opens descriptor 3 on Windows, see win32_launcher.cpp
WINDOWS = LAUNCHER != ""

LEFT_OUT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..",
                        "left-out-on-windows.txt" if WINDOWS else "left-out-on-arm64.txt")


def joined(left, right):
    """Joins two parts of a path as the tool does."""
    return left + ("\\" if WINDOWS else "/") + right


def inTextMode(content):
    """Returns the bytes that text mode writes for `content`."""
    return content.replace(b"\n", b"\r\n") if WINDOWS else content


def withoutTextMode(content):
    """Returns the content that text mode wrote as these bytes."""
    return content.replace(b"\r\n", b"\n") if WINDOWS else content


def inTextModeTree(tree):
    return {path: inTextMode(content) if isinstance(content, bytes) else content for path, content in tree.items()}


def possible(*names):
    """Returns the file names that can exist on the platform together with the names before them."""
    if not WINDOWS:
        return list(names)
    found = {}
    for name in names:
        if not re.search(r'[<>:"|?*\\\x00-\x1f]|[^\x00-\x7f]|[ .]$|^(con|nul)\.', name):
            found.setdefault(name.upper(), name)
    return list(found.values())


def walkOrder(directory):
    """Returns the names in the order of the platform's listing. The file system of Windows sorts them."""
    names = [entry.name for entry in os.scandir(directory)]
    return sorted(names, key=str.upper) if WINDOWS else names


def endedAbnormally(status):
    """Returns true for the exit status of a process that the run-time library ended."""
    return status == 3 if WINDOWS else status < 0


def crashed(status):
    """Returns true for the exit status of a process that the system ended. The emulator returns the last byte of
    0xC0000005, an access violation."""
    return status == 5 if WINDOWS else status < 0


def leftOutReason(testId):
    """Returns why the platform leaves a test out, or None. The id is that of unittest: __main__.<class>.<test>."""
    if not EMULATOR:
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
    """Returns the command that starts a tool."""
    return [program for program in (EMULATOR, LAUNCHER if launcher else "", tool) if program] + list(arguments)


def launchSettings(channel, closed):
    """Returns the environment for the launcher. A channel is the descriptor of a file, which the launcher opens by
    name, or a text for the launcher."""
    if not WINDOWS:
        return {}
    settings = {"VADELCLIP_CLOSED": "".join(map(str, closed)), "LC_ALL": "C.UTF-8"}
    if isinstance(channel, int):
        assert stat.S_ISREG(os.fstat(channel).st_mode), "only a file can be opened by its name"
        settings["VADELCLIP_CHANNEL_FILE"] = os.readlink(f"/proc/self/fd/{channel}")
        channel = "append"
    return {**settings, "VADELCLIP_CHANNEL": channel}
