"""Runs the examples of a man page or a document in a shell and compares their output with the page.

An example is a block between .EX and .EE, or in Markdown an indented block that starts with "$ ". A line that starts with
"$ " is a command, "> " continues it, and all other lines are the output of the command, standard error included. All
examples of a page run in order in one bash and one new directory. A time such as "0.3 s" at the end of a line may differ.

    manual_examples.py [--examples DIRECTORY] PAGE [COMMAND ...]

PAGE may be compressed. COMMAND is a prefix for bash, for example "chroot DIRECTORY". --examples names a directory that
replaces the installed examples.
"""
import argparse
import difflib
import gzip
import re
import subprocess
import sys

INSTALLED_EXAMPLES = "/usr/share/doc/vadelclip/examples"
END_OF_COMMAND = "\x1e"  # printed after each command; no output contains it
TIME = re.compile(r"\b[0-9]+\.[0-9] s$")
ESCAPES = {r"\-": "-", r"\e": "\\", r"\&": "", r"\(aq": "'", r"\(rs": "\\"}


def readPage(path):
    with (gzip.open if path.endswith(".gz") else open)(path, "rt", encoding="utf-8") as file:
        return file.read()


def plainText(line):
    """Returns a line of a man page as a reader sees it. Fails on an unknown escape."""
    return re.sub(r"\\(\(..|.)", lambda escape: ESCAPES[escape[0]], line)


def readExamples(page):
    """Returns all commands in order, each with the lines of its output."""
    blocks = [[plainText(line) for line in block.splitlines()]
              for block in re.findall(r"^\.EX\n(.*?)^\.EE$", page, re.MULTILINE | re.DOTALL)]
    blocks += [[line[4:] for line in block.splitlines()]
               for block in re.findall(r"^    \$ .*\n(?:    .*\n)*", page, re.MULTILINE)]
    examples = []
    for block in blocks:
        for line in block:
            if line.startswith("$ "):
                examples.append((line[2:], []))
            elif line.startswith("> "):
                examples[-1] = (examples[-1][0] + "\n" + line[2:], examples[-1][1])
            else:
                examples[-1][1].append(line)
    return examples


def shellScript(commands):
    lines = ["directory=$(mktemp -d) && cd \"$directory\" || exit", "trap 'cd /; rm -rf \"$directory\"' EXIT",
             "exec 2>&1 </dev/null"]
    for command in commands:
        lines += [command, f"printf '{END_OF_COMMAND}'"]
    return "\n".join(lines) + "\n"


def transcript(examples):
    """Returns commands and outputs as lines of a page, with every time as "N s"."""
    lines = []
    for command, output in examples:
        lines.append("$ " + command.replace("\n", "\n> "))
        lines += [TIME.sub("N s", line) for line in output]
    return "\n".join(lines).splitlines()


def differences(page, examplesDirectory=None, inFrontOfBash=(), environment=None):
    """Runs the examples of a page (its text). Returns the lines that differ as a unified diff."""
    expected = readExamples(page)
    if not expected:
        return ["the page has no examples"]
    script = shellScript(command for command, _ in expected)
    if examplesDirectory:
        script = script.replace(INSTALLED_EXAMPLES, examplesDirectory)
    run = subprocess.run([*inFrontOfBash, "bash", "-c", script], stdout=subprocess.PIPE, env=environment, check=False)
    outputs = run.stdout.decode().split(END_OF_COMMAND)
    got = [(command, output.splitlines()) for (command, _), output in zip(expected, outputs)]
    if outputs[-1] or len(outputs) != len(expected) + 1:
        got.append((f"ended early, with status {run.returncode}", outputs[-1].splitlines()))
    return list(difflib.unified_diff(transcript(expected), transcript(got), "the page", "the run", lineterm="", n=3))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--examples")
    parser.add_argument("page")
    parser.add_argument("command", nargs=argparse.REMAINDER)
    arguments = parser.parse_args()
    page = readPage(arguments.page)
    wrong = differences(page, arguments.examples, arguments.command)
    print("\n".join(wrong) if wrong else f"{len(readExamples(page))} commands, all as in the page: {arguments.page}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
