"""A Slurm cluster on this machine alone: its own folder, ports and key, every address 127.0.0.1.

    with Cluster(folder, {"n1": "alpha", "n2": "beta"}) as cluster:      nodes and their features
        cluster.run("squeue")

All daemons are children of this process, and what they leave behind becomes one: at the end no process is left.
"""

import contextlib
import ctypes
import os
import pathlib
import random
import shutil
import signal
import socket
import struct
import subprocess
import threading
import time

PROGRAMS = ("munged", "slurmctld", "slurmd", "sbatch", "srun", "squeue", "sinfo", "scontrol")
SUBREAPER, DEATH_SIGNAL = 36, 1  # of prctl
LIBC = ctypes.CDLL(None)
LIMIT = 90  # seconds that anything is waited for; a node is given up after some 25

# For as long as cred_expire a requeued job waits (two minutes if it is not said). It has to wait: a node that comes
# back is told to end the run that it lost, and would end the next run of the job.
CONFIGURATION = """
ClusterName=fleet
SlurmctldHost=localhost(127.0.0.1)
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
AuthInfo=socket={folder}/munge.socket,cred_expire=10
CredType=cred/munge
SlurmctldPort={port}
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool-%n
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd-%n.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd-%n.log
CommunicationParameters=NoInAddrAny,NoCtldInAddrAny
ProctrackType=proctrack/pgid
TaskPlugin=task/none
SwitchType=switch/none
MpiDefault=none
JobAcctGatherType=jobacct_gather/none
SelectType=select/cons_tres
SelectTypeParameters=CR_Core
SchedulerParameters=batch_sched_delay=0,sched_interval=1,bf_interval=1
ReturnToService=2
KillWait=2
SlurmdTimeout=5
MailProg=/bin/true
"""


def why_not():
    """The reason why no cluster can be started here; empty if it can."""
    folders = [*os.environ["PATH"].split(":"), "/usr/sbin", "/sbin"]
    os.environ["PATH"] = ":".join(folders)
    missing = [name for name in PROGRAMS if shutil.which(name) is None]
    if missing:
        return "not installed: " + ", ".join(missing)
    if os.geteuid() != 0:
        return "only root starts nodes that run jobs"
    if not pathlib.Path(f"/proc/self/task/{os.getpid()}/children").exists():
        return "/proc does not tell the children of a process"
    with contextlib.suppress(OSError):
        if socket.gethostbyname("localhost") == "127.0.0.1":
            return ""
    return "localhost is not 127.0.0.1"


def free_ports(count):
    """The first of so many ports in a row that nobody listens on."""
    while True:
        first = random.randrange(20000, 30000)
        with contextlib.suppress(OSError):
            for port in range(first, first + count):
                with socket.socket() as one:
                    one.bind(("127.0.0.1", port))
            return first


def children_of(process):
    with contextlib.suppress(OSError):
        return [int(text) for text in pathlib.Path(f"/proc/{process}/task/{process}/children").read_text().split()]
    return []


def kill_all_of(process):
    """The process and all that it started."""
    for child in children_of(process):
        kill_all_of(child)
    with contextlib.suppress(OSError):
        os.kill(process, signal.SIGKILL)


def fake_library(folder, script):
    """A library for the instrument that measures nothing."""
    folder.mkdir()
    header = struct.pack("<4sBB10xHH44x", b"\x7fELF", 2, 1, 0, 62)
    for name in ("libzylcore.so.10", "libzyls.so.10", "libzylch.so.10"):
        (folder / name).write_bytes(header + f"{script}\nfile {name}\n".encode())


class Cluster:
    def __init__(self, folder, nodes, started=True):
        """Without `started` the nodes are known and down: jobs are taken and wait."""
        self.folder = pathlib.Path(folder)
        self.nodes = nodes
        self.started = list(nodes) if started else []
        self.daemons = {}

    def __enter__(self):
        LIBC.prctl(SUBREAPER, 1)
        threading.Thread(target=self.reap, daemon=True).start()
        try:
            self.start()
        except BaseException:
            self.stop()
            raise
        return self

    def __exit__(self, *_):
        self.stop()

    def start(self):
        self.folder.mkdir(parents=True, exist_ok=True)
        (self.folder / "state").mkdir(exist_ok=True)
        port = free_ports(1 + len(self.nodes))
        text = CONFIGURATION.format(folder=self.folder, port=port)
        for number, (name, feature) in enumerate(self.nodes.items(), start=1):
            (self.folder / f"spool-{name}").mkdir(exist_ok=True)
            text += (f"NodeName={name} NodeHostname=localhost NodeAddr=127.0.0.1 Port={port + number} CPUs=2 "
                     f"RealMemory=500 Feature={feature}\n")
        text += "PartitionName=all Nodes=ALL Default=YES\n"
        configuration = self.folder / "slurm.conf"
        configuration.write_text(text)
        # a node looks for the kind of control groups, though it uses none, and there may be none of any kind
        (self.folder / "cgroup.conf").write_text("CgroupPlugin=cgroup/v1\n")
        os.environ["SLURM_CONF"] = str(configuration)
        key = self.folder / "munge.key"
        key.touch(mode=0o600)
        key.write_bytes(os.urandom(128))
        self.spawn("munged", "--foreground", "--force", f"--socket={self.folder}/munge.socket", f"--key-file={key}",
                   f"--pid-file={self.folder}/munged.pid", f"--seed-file={self.folder}/munged.seed", "--num-threads=10")
        self.until(lambda: (self.folder / "munge.socket").exists(), "munged")
        self.spawn("slurmctld", "-D", "-f", str(configuration))
        for name in self.started:
            self.start_node(name)
        idle = ("--states=idle",) if self.started else ()
        self.until(lambda: self.run("sinfo", "--noheader", *idle, "--format=%D").strip() == str(len(self.nodes)), "slurm")

    def spawn(self, name, *arguments):
        with (self.folder / f"{name}.out").open("ab") as output:
            self.daemons[name] = subprocess.Popen(
                [name.split("-")[0], *arguments], stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                preexec_fn=lambda: LIBC.prctl(DEATH_SIGNAL, signal.SIGKILL))

    def start_node(self, name):
        self.spawn(f"slurmd-{name}", "-D", "-N", name)

    def lose_node(self, name):
        """As a power failure would: the daemon and its jobs are gone at once."""
        daemon = self.daemons.pop(f"slurmd-{name}")
        kill_all_of(daemon.pid)
        daemon.wait()
        # its steps are children of this process by now; the sockets in its folder tell which they are
        steps = {path.name.split("_")[-1].split(".")[0] for path in (self.folder / f"spool-{name}").glob("*_*.*")}
        for child in children_of(os.getpid()):
            with contextlib.suppress(OSError):
                words = pathlib.Path(f"/proc/{child}/cmdline").read_text()
                if any(words.startswith(f"slurmstepd: [{step}.") for step in steps):
                    kill_all_of(child)

    @staticmethod
    def run(*words):
        done = subprocess.run(words, stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=60, check=False)
        return done.stdout + done.stderr

    @staticmethod
    def until(condition, what):
        """Waits for what is not false, and returns it."""
        limit = time.monotonic() + LIMIT
        while not (found := condition()):
            if time.monotonic() > limit:
                raise TimeoutError(what)
            time.sleep(0.2)
        return found

    def reap(self):
        """Slurm waits for a minute for processes of a job that nobody has taken the status of."""
        mine = os.getpgid(0)
        while True:
            for child in children_of(os.getpid()):
                with contextlib.suppress(OSError):
                    state, _, group = pathlib.Path(f"/proc/{child}/stat").read_text().rpartition(")")[2].split()[:3]
                    if state == "Z" and int(group) != mine and child not in {one.pid for one in self.daemons.values()}:
                        os.waitpid(child, os.WNOHANG)
            time.sleep(0.1)

    def stop(self):
        # daemons first, so that none starts anything more; then what they left
        for daemon in reversed(self.daemons.values()):
            daemon.terminate()
            with contextlib.suppress(subprocess.TimeoutExpired):
                daemon.wait(5)
        while children := children_of(os.getpid()):
            for child in children:
                kill_all_of(child)
            for child in children:
                with contextlib.suppress(ChildProcessError):
                    os.waitpid(child, 0)
