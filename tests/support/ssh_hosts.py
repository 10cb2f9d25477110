"""Hosts for GNU parallel: ssh servers on ports of the loopback interface, with keys and configuration in one directory.

An ordinary user can start them, too; then only this user can log in.
"""
import getpass
import os
import pwd
import shutil
import subprocess

from engines import descendants, freePorts, kill, waitFor

PROGRAMS = ("sshd", "ssh", "ssh-keygen")
PRIVILEGE_SEPARATION = "/run/sshd"  # compiled into sshd; root needs it


def reasonAgainstLogin():
    """Returns why this user cannot log in, or None."""
    shell = pwd.getpwuid(os.getuid()).pw_shell
    return None if os.path.basename(shell) not in ("nologin", "false") else f"the user's shell is {shell}"


class SshHosts:
    def __init__(self, place, names):
        self.place = place
        self.ports = dict(zip(names, freePorts(len(names))))
        self.servers = {}

    def path(self, name):
        return os.path.join(self.place, name)

    def start(self):
        if os.getuid() == 0 and not os.path.isdir(PRIVILEGE_SEPARATION):
            os.mkdir(PRIVILEGE_SEPARATION, 0o755)
        for key in ("host", "user"):
            subprocess.run(["ssh-keygen", "-q", "-t", "ed25519", "-N", "", "-f", self.path(key)], check=True)
        self.write("client", "".join(f"Host {name}\n  HostName 127.0.0.1\n  Port {port}\n"
                                     for name, port in self.ports.items())
                   + f"Host *\n  User {getpass.getuser()}\n  IdentityFile {self.path('user')}\n  IdentitiesOnly yes\n"
                   f"  UserKnownHostsFile {self.path('known_hosts')}\n  StrictHostKeyChecking accept-new\n"
                   "  BatchMode yes\n")
        for name, port in self.ports.items():
            self.write(name, f"ListenAddress 127.0.0.1:{port}\nHostKey {self.path('host')}\nPidFile none\n"
                       f"AuthorizedKeysFile {self.path('user.pub')}\nStrictModes no\nPasswordAuthentication no\n"
                       # PAM also lets root in whose password is locked. An ordinary user's sshd does not need it.
                       f"KbdInteractiveAuthentication no\nUsePAM {'yes' if os.getuid() == 0 else 'no'}\n")
            with open(self.path(name + ".log"), "wb") as log:
                # sshd wants its absolute path.
                self.servers[name] = subprocess.Popen([shutil.which("sshd"), "-D", "-e", "-f", self.path(name)],
                                                      stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                                                      start_new_session=True)
        for name in self.ports:
            waitFor(lambda name=name: self.log(name).count("Server listening") == 1, f"sshd of {name}")

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def log(self, name):
        with open(self.path(name + ".log"), encoding="utf-8", errors="replace") as file:
            return file.read()

    def command(self):
        """Returns the ssh command that knows the hosts by their names."""
        return "ssh -F " + self.path("client")

    def lose(self, name):
        """Ends the server of a host at once and everything that it has started."""
        server = self.servers.pop(name)
        kill(server.pid, *descendants(server.pid))
        server.wait()

    def stop(self):
        for name in list(self.servers):
            self.lose(name)
