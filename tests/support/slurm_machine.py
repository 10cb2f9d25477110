"""A real Slurm on this machine with several virtual nodes: without systemd, and with all its files in one directory.
It runs as root and as an ordinary user.

It can only listen on the address of the host's name, which is usually one of the loopback interface.
"""
import getpass
import os
import socket
import subprocess

from engines import freePorts, kill, waitFor

PROGRAMS = ("munged", "mungekey", "slurmctld", "slurmd", "sbatch")
CPUS = 4  # of each node; more tasks than a job has, so that only its dependency delays a merge

# - Nodes differ in name and port. They need cons_tres, because otherwise one host is one node.
# - config_overrides: a node may have more processors than the machine.
# - SchedulerParameters and KillWait make it fast. MaxArraySize is the default of Slurm.
# - ReturnToService: a lost node must not return because of an answer that was on its way.
CONFIGURATION = """ClusterName=vadel
SlurmctldHost=localhost({address})
SlurmUser={user}
SlurmdUser={user}
AuthType=auth/munge
AuthInfo=socket={place}/munge.socket
CredType=cred/munge
SlurmctldPort={controllerPort}
SlurmctldParameters=enable_configless
SlurmdParameters=config_overrides
CommunicationParameters=NoInAddrAny,NoCtldInAddrAny
StateSaveLocation={place}/state
SlurmdSpoolDir={place}/%n
SlurmctldPidFile={place}/slurmctld.pid
SlurmdPidFile={place}/%n.pid
SlurmctldLogFile={place}/slurmctld.log
SlurmdLogFile={place}/%n.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SwitchType=switch/none
MpiDefault=none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SchedulerType=sched/backfill
SchedulerParameters=sched_interval=1,bf_interval=1,batch_sched_delay=0,sched_min_interval=0
ReturnToService=0
JobRequeue=0
KillWait=2
MinJobAge=3600
MaxArraySize=1001
JobAcctGatherType=jobacct_gather/linux
AccountingStorageType=accounting_storage/none
JobCompType=jobcomp/none
PartitionName=all Nodes=ALL Default=YES MaxTime=INFINITE State=UP
"""


def reasonAgainstStart():
    """Returns why Slurm cannot run on this host, or None."""
    try:
        socket.gethostbyname(socket.gethostname())
    except OSError:
        return "the host's own name has no address: /etc/hosts lacks it"
    return None


class SlurmMachine:
    def __init__(self, place, nodes):
        self.place = place
        self.nodes = nodes
        self.daemons = {}
        self.environment = {"SLURM_CONF": self.path("slurm.conf")}

    def path(self, name):
        return os.path.join(self.place, name)

    def start(self):
        """Starts all daemons and returns as soon as every node is idle."""
        self.write("cgroup.conf", "CgroupPlugin=cgroup/v1\n")  # so that it starts in a container without /sys/fs/cgroup
        address = socket.gethostbyname(socket.gethostname())
        controllerPort, *ports = freePorts(1 + len(self.nodes), address)
        self.write("slurm.conf", CONFIGURATION.format(user=getpass.getuser(), place=self.place, address=address,
                                                      controllerPort=controllerPort)
                   + "".join(f"NodeName={node} NodeHostname=localhost NodeAddr={address} Port={port} CPUs={CPUS}\n"
                             for node, port in zip(self.nodes, ports)))
        os.mkdir(self.path("state"))
        os.mkdir(self.path("munge"), 0o700)
        subprocess.run(["mungekey", "--create", "--keyfile=" + self.path("munge/key")], check=True)
        self.startDaemon("munged", "munged", "--foreground", "--force", "--num-threads=2",
                         "--key-file=" + self.path("munge/key"), "--socket=" + self.path("munge.socket"),
                         "--pid-file=" + self.path("munge/pid"), "--seed-file=" + self.path("munge/seed"),
                         "--log-file=" + self.path("munge/log"))
        waitFor(lambda: os.path.exists(self.path("munge.socket")), "munged")
        self.startDaemon("slurmctld", "slurmctld", "-D", "-f", self.path("slurm.conf"))
        for node in self.nodes:
            os.mkdir(self.path(node))
            self.startDaemon(node, "slurmd", "-D", "-N", node, "-f", self.path("slurm.conf"))
        waitFor(lambda: self.ask("sinfo", "-h", "-t", "idle", "-o", "%D").strip() == str(len(self.nodes)), "idle nodes")

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    def startDaemon(self, name, *command):
        with open(self.path(name + ".out"), "ab") as log:
            self.daemons[name] = subprocess.Popen(command, env={**os.environ, **self.environment}, cwd=self.place,
                                                  stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT,
                                                  start_new_session=True)

    def stop(self):
        """Ends all tasks and daemons."""
        self.cancelAll()
        for daemon in reversed(self.daemons.values()):
            daemon.terminate()
            daemon.wait()

    def cancelAll(self):
        if "slurmctld" in self.daemons and self.daemons["slurmctld"].poll() is None:
            self.ask("scancel", "--user=" + getpass.getuser())
            waitFor(lambda: self.queue() == [], "an empty queue")

    # Faults

    def loseNode(self, node, tasks=()):
        """Ends the daemon of a node at once, and these processes in this order.

        Slurm would notice it after some time and start the tasks again two minutes later. This ends both delays.
        """
        kill(self.daemons[node].pid, *tasks)
        self.daemons[node].wait()
        self.ask("scontrol", "update", "NodeName=" + node, "State=down", "Reason=test")
        waitFor(lambda: not self.ask("squeue", "-h", "--nodelist=" + node), "a node without tasks")
        for job in self.ask("squeue", "-h", "--array", "--states=pending", "-o", "%i").split():
            self.ask("scontrol", "update", "JobId=" + job, "StartTime=now")

    # Questions

    def ask(self, *command):
        return subprocess.run(command, env={**os.environ, **self.environment}, stdin=subprocess.DEVNULL, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False).stdout

    def queue(self):
        """Returns the numbers of all jobs that are not over."""
        return self.ask("squeue", "-h", "-o", "%i").split()

    def tasks(self, job):
        """Returns the state of each task of an array, by the index of the task. Tasks that are over are in it."""
        lines = self.ask("squeue", "-h", "--array", "--states=all", "--jobs=" + job, "-o", "%K %T").splitlines()
        return {int(index): state for index, state in map(str.split, lines)}
