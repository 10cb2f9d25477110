"""A pseudo-terminal with a process in it, and the rows that it shows."""
import fcntl
import os
import pty
import re
import select
import signal
import struct
import termios
import time

TIME_LIMIT = 120.0 if os.environ.get("VADELCLIP_SANITIZED") == "1" else 60.0  # seconds
ESCAPE = re.compile(r"\x1b(?:\[[0-9;?]*[A-Za-z]|[78])")
DRAWING = re.compile(rb"\x1b\[\?7l(.*?)\x1b\[K\r\x1b\[\?7h")


def drawnRows(received):
    """Returns the text of each complete drawing of the bar."""
    return [ESCAPE.sub("", row.decode()) for row in DRAWING.findall(received)]


def draws(pattern):
    """Returns a condition for `readUntil`: a complete drawing of the bar contains this pattern, and nothing follows it."""
    return lambda received: received.endswith(b"\x1b[?7h") and any(re.search(pattern, row) for row in drawnRows(received))


class Terminal:
    """A pseudo-terminal that is the controlling terminal of a process."""

    def __init__(self, command, directory, columns, environment):
        self.pid, self.descriptor = pty.fork()
        if self.pid == 0:
            os.chdir(directory)
            fcntl.ioctl(0, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))
            os.execve(command[0], command, environment)
        self.received = b""
        self.ended = False

    def end(self):
        """Ends the process, also after a failed test."""
        if not self.ended:
            os.kill(self.pid, signal.SIGKILL)
            os.waitpid(self.pid, 0)
            os.close(self.descriptor)

    def resize(self, columns):
        fcntl.ioctl(self.descriptor, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

    def type(self, text):
        os.write(self.descriptor, text)

    def settings(self):
        return termios.tcgetattr(self.descriptor)

    def readSome(self, seconds):
        """Reads more output. Returns False at its end."""
        ready, _, _ = select.select([self.descriptor], [], [], seconds)
        if not ready:
            return True
        try:
            data = os.read(self.descriptor, 65536)
        except OSError:  # the process has closed the terminal
            return False
        self.received += data
        return bool(data)

    def readUntil(self, condition, what):
        limit = time.monotonic() + TIME_LIMIT
        while not condition(self.received):
            if time.monotonic() > limit or not self.readSome(0.5):
                raise AssertionError(f"{what} was not seen in {self.received!r}")

    def finish(self):
        limit = time.monotonic() + TIME_LIMIT
        while self.readSome(0.5):
            if time.monotonic() > limit:
                os.kill(self.pid, signal.SIGKILL)
        _, status = os.waitpid(self.pid, 0)
        self.ended = True
        os.close(self.descriptor)
        return os.waitstatus_to_exitcode(status)


class Screen:
    """The rows of a terminal, as far as Vadelwatch uses it: rows are overwritten, erased and scrolled. A long row continues in
    the next one, or is cut at the edge while wrapping is off."""

    def __init__(self, columns):
        self.columns = columns
        self.rows = [""]
        self.row = self.column = 0
        self.saved = (0, 0)
        self.wrapping = True
        self.longest = 0  # max columns that a drawing of the bar has filled
        self.cut = 0  # characters of drawings that did not fit into the row
        self.drawings = []  # the row of the bar after each drawing

    def write(self, text):
        position = 0
        while position < len(text):
            escape = ESCAPE.match(text, position)
            if escape:
                self.escape(escape[0])
                position = escape.end()
                continue
            if text[position] == "\n":
                self.nextRow()
            elif text[position] == "\r":
                self.column = 0
            else:
                self.put(text[position])
            position += 1

    def nextRow(self):
        self.row += 1
        if self.row == len(self.rows):
            self.rows.append("")

    def put(self, character):
        if self.column == self.columns:
            if not self.wrapping:
                self.cut += 1
                return
            self.nextRow()
            self.column = 0
        row = self.rows[self.row].ljust(self.column)
        self.rows[self.row] = row[:self.column] + character + row[self.column + 1:]
        self.column += 1
        if not self.wrapping:
            self.longest = max(self.longest, self.column)

    def escape(self, sequence):
        if sequence == "\x1b[K":
            self.rows[self.row] = self.rows[self.row][:self.column]
        elif sequence == "\x1b[2K":
            self.rows[self.row] = ""
        elif sequence == "\x1b[B":
            self.row = min(self.row + 1, len(self.rows) - 1)
        elif sequence == "\x1b7":
            self.saved = (self.row, self.column)
        elif sequence == "\x1b8":
            self.row, self.column = self.saved
        elif sequence in ("\x1b[?7l", "\x1b[?7h"):
            self.wrapping = sequence.endswith("h")
            if self.wrapping:  # wrapping is on again: a drawing has ended
                self.drawings.append(self.rows[self.row])
        elif not sequence.endswith("m"):
            raise AssertionError(f"unknown sequence {sequence!r}")

    def text(self):
        return "\n".join(self.rows)
