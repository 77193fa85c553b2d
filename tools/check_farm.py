#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Renders with a real Slurm: a cluster of this one machine, on the loopback address, with its
configuration, its munge key and all that it writes in a temporary folder. A moving scene goes
through it as an array job, one of whose tasks is killed and queued again; every picture is compared
with those of a single run. Prints what docs/farm.md says it costs, and ends what it started.

Usage: check_farm.py BUILD_FOLDER [--keep]
  --keep  leaves the folder, with the daemons' logs
"""
import contextlib
import getpass
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import time

LIMIT = 300  # seconds for all of it
SCENE = pathlib.Path(__file__).resolve().parents[1] / "examples/scenes/reed.gltf"
FRAMES, CHUNK, KILLED = 24, 4, 2
PICTURES = ("--resolution", "160", "120")
# Frames that take long enough for a task to be killed amid them.
SLOW = ("--python-expr", "import time\ndef render(frame): time.sleep(0.5)")
MANY = 100000

CONFIGURATION = """
ClusterName=quilfarm
SlurmctldHost={host}(127.0.0.1)
SlurmctldPort={controller_port}
SlurmdPort={node_port}
SlurmUser={user}
SlurmdUser={user}
AuthType=auth/munge
CredType=cred/munge
AuthInfo=socket={folder}/munge.socket
StateSaveLocation={folder}/state
SlurmdSpoolDir={folder}/spool
SlurmctldPidFile={folder}/slurmctld.pid
SlurmdPidFile={folder}/slurmd.pid
SlurmctldLogFile={folder}/slurmctld.log
SlurmdLogFile={folder}/slurmd.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
SwitchType=switch/none
MpiDefault=none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
SchedulerType=sched/builtin
SchedulerParameters=sched_interval=1,batch_sched_delay=0
SlurmdParameters=config_overrides
ReturnToService=2
KillWait=2
NodeName={host} NodeAddr=127.0.0.1 CPUs={cpus} State=UNKNOWN
PartitionName=all Nodes={host} Default=YES State=UP
"""


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def wait_for(what, condition, pause=0.2):
    """Waits until the condition holds; the limit of the whole run bounds it."""
    while not (result := condition()):
        time.sleep(pause)
    return result


class Cluster:
    """Three daemons, in the order in which they need each other."""

    def __init__(self, folder):
        self.folder = folder
        self.children = []
        os.chmod(folder, 0o755)  # munge wants its socket to be within everybody's reach
        for name in ("state", "spool"):
            (folder / name).mkdir()
        key = folder / "munge.key"
        key.write_bytes(os.urandom(128))
        key.chmod(0o600)
        (folder / "slurm.conf").write_text(CONFIGURATION.format(
            host=socket.gethostname().split(".")[0], folder=folder, user=getpass.getuser(),
            controller_port=free_port(), node_port=free_port(), cpus=os.cpu_count()))
        self.environment = dict(os.environ, SLURM_CONF=str(folder / "slurm.conf"),
                                PATH=os.environ["PATH"] + ":/usr/sbin:/sbin")

    def start(self):
        munge = ["munged", "--foreground", "--num-threads=2"]
        munge += ["--%s=%s/munge.%s" % (option, self.folder, name) for option, name in (
            ("key-file", "key"), ("socket", "socket"), ("pid-file", "pid"), ("log-file", "log"),
            ("seed-file", "seed"))]
        self.spawn(*munge)
        wait_for("munge", (self.folder / "munge.socket").exists)
        self.spawn("slurmctld", "-D", "-i")
        wait_for("the controller", lambda: self.run("scontrol", "ping", code=None)[1] == 0)
        self.spawn("slurmd", "-D")
        wait_for("the node", lambda: "idle" in self.run("sinfo", "--noheader", "--format=%t")[0])

    def spawn(self, *words):
        log = open(self.folder / (words[0] + ".out"), "wb")
        self.children.append(subprocess.Popen(words, env=self.environment, stdout=log, stderr=log,
                                              stdin=subprocess.DEVNULL, cwd=self.folder))

    def run(self, *words, code=0, **options):
        """A program's output and exit code, in the folder."""
        child = subprocess.run([str(word) for word in words], env=self.environment, text=True,
                               cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                               **options)
        if code is not None and child.returncode != code:
            raise SystemExit("check_farm: %s ended with %d and not %d:\n%s%s" % (
                " ".join(map(str, words)), child.returncode, code, child.stdout, child.stderr))
        return child.stdout, child.returncode

    def stop(self):
        if len(self.children) == 3:
            self.run("scancel", "--user", getpass.getuser(), code=None)
            with contextlib.suppress(subprocess.TimeoutExpired):
                self.run("sh", "-c", "while squeue --noheader | grep -q .; do sleep .2; done",
                         code=None, timeout=10)
        for child in reversed(self.children):
            child.terminate()
            try:
                child.wait(10)
            except subprocess.TimeoutExpired:
                child.kill()
                child.wait()


class Farm:
    def __init__(self, cluster, build):
        self.cluster = cluster
        self.folder = cluster.folder
        self.host, self.quilfarm = build / "bin/quilhost", build / "bin/quilfarm"

    def submit(self, *words):
        out, code = self.cluster.run(self.quilfarm, "submit", *words)
        return out.strip()

    def wait_for_end(self, job):
        wait_for("the job's end", lambda: not self.cluster.run(
            "squeue", "--noheader", "--jobs", job, code=None)[0])

    def log(self, job, task):
        path = self.folder / "quilfarm.jobs" / job / ("%d.log" % task)
        return path.read_text() if path.exists() else ""

    def check_faults(self):
        """One run here, an array job there, with a task that is killed, and queued again."""
        for name in ("one", "farm"):
            (self.folder / name).mkdir()
        frames = ("--frames", "1-%d" % FRAMES)
        self.cluster.run(self.host, SCENE, *frames, "--output", "one/##.exr", *PICTURES)
        start = time.time()
        job = self.submit(SCENE, *frames, "--chunk", CHUNK, "--output", "farm/##.exr", *PICTURES,
                          *SLOW)
        task = "%s_%d" % (job, KILLED)
        wait_for("a frame of the task", lambda: '"event":"frame"' in self.log(job, KILLED), 0.02)
        self.cluster.run("scancel", "--signal=KILL", "--full", task)
        wait_for("the task's end", lambda: task not in self.running(job))
        out, code = self.cluster.run(self.quilfarm, "status", job, code=3)
        print("killed task %d: %s" % (KILLED, out.splitlines()[0]))
        self.cluster.run("scontrol", "requeue", task)
        time.sleep(2)  # its new start must be later than the end of the old one; Slurm waits longer
        self.cluster.run("scontrol", "update", "JobId=" + task, "StartTime=now")
        self.wait_for_end(job)
        out, code = self.cluster.run(self.quilfarm, "status", job)
        assert out == "%d frames: %d whole\n" % (FRAMES, FRAMES), out
        log = self.log(job, KILLED)
        assert log.count('"event":"task"') == 2 and '"restarts":1' in log, log
        assert '"skipped":true' in log, log
        for frame in range(1, FRAMES + 1):
            pictures = [(self.folder / name / ("%02d.exr" % frame)).read_bytes()
                        for name in ("one", "farm")]
            assert pictures[0] == pictures[1], frame
        print("%d frames of %d tasks are those of a single run, after %.0f s"
              % (FRAMES, FRAMES // CHUNK, time.time() - start))

    def running(self, job):
        return self.cluster.run("squeue", "--noheader", "--array", "--states=RUNNING,COMPLETING",
                                "--format=%i", "--jobs", job, code=None)[0].split()

    def measure(self):
        small = ("--resolution", "16", "12")
        script, code = self.cluster.run(self.quilfarm, "submit", SCENE, "--output", "s.#.png",
                                        "--dry-run", *small)
        (self.folder / "quilfarm.jobs/dry-run").mkdir()

        def task():
            (self.folder / "s.1.png").unlink(missing_ok=True)
            self.cluster.run("env", "SLURM_ARRAY_TASK_ID=0", "sh", "-c", script)
        tell("a task of one picture of 16 x 12 pixels", task, 20)

        def array():
            job = self.submit(SCENE, "--frames", "1-50", "--output", "t.#.png", *small)
            self.wait_for_end(job)
        tell("an array of 50 such tasks, Slurm included", array, 1)
        many = ("--frames", "1-%d" % MANY, "--output", "m.#.png")

        def submit():
            self.job = self.submit(SCENE, *many, "--chunk", "100", "--sbatch=--hold", *small)
        tell("submitting %d frames as one array" % MANY, submit, 1)
        status = [self.quilfarm, "status", self.job]
        tell("status of them, none rendered", lambda: self.cluster.run(*status, code=3), 5)
        picture = (self.folder / "one/01.exr").read_bytes()
        for frame in range(1, MANY + 1):
            (self.folder / ("m.%d.png" % frame)).write_bytes(picture)
        tell("status of them, all whole", lambda: self.cluster.run(*status), 5)
        self.cluster.run("scancel", self.job)


def tell(what, work, times):
    """The shortest time, as other work on the machine only adds to it."""
    seconds = []
    for _ in range(times):
        start = time.time()
        work()
        seconds.append(time.time() - start)
    print("%-45s %7.3f s" % (what, min(seconds)), flush=True)


def main(build, keep=None):
    def too_long(*_):
        raise SystemExit("check_farm: it took more than %d s" % LIMIT)
    signal.signal(signal.SIGALRM, too_long)
    signal.signal(signal.SIGTERM, too_long)
    signal.alarm(LIMIT)
    folder = pathlib.Path(tempfile.mkdtemp(prefix="quilfarm_check_")).resolve()
    cluster = Cluster(folder)
    try:
        cluster.start()
        farm = Farm(cluster, pathlib.Path(build).resolve())
        farm.check_faults()
        farm.measure()
    finally:
        signal.alarm(0)
        cluster.stop()
        if keep:
            print("left in %s" % folder)
        else:
            shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main(*sys.argv[1:])
