"""Child processes that end with their owner, however it ends."""

import ctypes
import os
import signal
import subprocess
import time
from pathlib import Path

from .failure import DeskFailure

# <linux/prctl.h>
PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36

_libc = ctypes.CDLL(None, use_errno=True)


def wait_until(condition, seconds, what):
    """The first true value of `condition()`; fails with `what` when there is none in time."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise DeskFailure(f"{what} (waited {seconds:g} seconds).")
        time.sleep(0.02)


class Processes:
    """Each child is in a session of its own, so that Ctrl+C reaches the owner alone, which then
    ends them in reverse order. Grandchildren that outlive their parent become ours, and end too."""

    def __init__(self, logs):
        self._logs = Path(logs)
        self._children = []
        _libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)

    def start(self, name, command, env, piped=False, **options):
        """Its output goes to a log, or to `stdout` of what is returned when it is piped."""
        log = open(self._logs / f"{name}.log", "ab")
        try:
            child = subprocess.Popen(
                command, env=env, stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE if piped else log, stderr=log, text=True,
                start_new_session=True,
                preexec_fn=lambda: _libc.prctl(PR_SET_PDEATHSIG, signal.SIGTERM, 0, 0, 0), **options)
        except FileNotFoundError as error:
            raise DeskFailure(
                f"{command[0]} is not installed: run Scripts/install-packages private.") from error
        finally:
            log.close()
        self._children.append(child)
        return child

    def run(self, command, env):
        """Waits for a command; fails with what it said on standard error. Meanwhile reaps what
        others leave to us, so that the command sees processes that it ends as ended."""
        child = self.start("command", command, env)
        while child.poll() is None:
            self._reap_orphans()
            time.sleep(0.01)
        self._children.remove(child)
        if child.returncode:
            raise DeskFailure(f"{Path(command[0]).name} failed: {self.log('command')}")

    def log(self, name):
        """What the process has said so far."""
        return (self._logs / f"{name}.log").read_text(errors="replace").strip()

    def stop(self, child, seconds=5.0):
        if child in self._children:
            self._children.remove(child)
        if child.poll() is None:
            child.terminate()
            try:
                child.wait(seconds)
            except subprocess.TimeoutExpired:
                child.kill()
                child.wait()

    def stop_all(self):
        for child in reversed(list(self._children)):
            self.stop(child)
        self._end_orphans()

    def _end_orphans(self):
        me = os.getpid()
        for ending in (signal.SIGTERM, signal.SIGKILL):
            deadline = time.monotonic() + 2.0
            while time.monotonic() < deadline:
                orphans = [pid for pid, parent, state in _process_table()
                           if parent == me and state != "Z"]
                if not orphans:
                    break
                for pid in orphans:
                    _signal(pid, ending)
                time.sleep(0.02)
        self._reap_orphans()

    def _reap_orphans(self):
        own = {child.pid for child in self._children}
        for pid, parent, state in _process_table():
            if parent == os.getpid() and state == "Z" and pid not in own:
                os.waitpid(pid, 0)


def _signal(pid, number):
    try:
        os.kill(pid, number)
    except ProcessLookupError:
        pass


def _process_table():
    """(pid, parent, state) of every process; the name in /proc/PID/stat may hold anything but ends
    at the last bracket."""
    for entry in Path("/proc").iterdir():
        if entry.name.isdigit():
            try:
                state, parent = (entry / "stat").read_text().rpartition(")")[2].split()[:2]
            except OSError:
                continue
            yield int(entry.name), int(parent), state


def cpu_seconds(pid):
    """User and system time that the process has taken so far, from /proc/PID/stat."""
    fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    user, system = int(fields[11]), int(fields[12])
    return (user + system) / os.sysconf("SC_CLK_TCK")


def cpu_shares(pids, seconds):
    """CPU seconds per second of each process, over that many seconds from now on."""
    before = [cpu_seconds(pid) for pid in pids]
    began = time.monotonic()
    time.sleep(seconds)
    elapsed = time.monotonic() - began
    return [(cpu_seconds(pid) - start) / elapsed for pid, start in zip(pids, before)]
