#!/usr/bin/env python3
"""chaos.py SECONDS [--seed N] [--simulator PATH] [--program PATH]

Everything that can happen to `wbalance monitor` with every simulated balance happens to it at once for so long, in an
order that the seed gives: its processes are killed while they wait and while they read, adapters are pulled and put
back, file descriptors run out, the reader of its standard output falls asleep. Then there is peace, and

- every balance gives weights again, and each loss was told with its reason, and no balance stays lost;
- no process is left over, none is a zombie, no port has a lock file;
- the log and standard output hold the same lines, each once.

After that the disk becomes full while it writes its log, and it shows itself on a terminal that changes its size all
the time and is closed at last: it ends with the exit code for that, and leaves nothing behind, either.

The program starts itself anew below wbalance-sim. Nothing here depends on how fast the machine is.
"""

import argparse
import csv
import fcntl
import json
import os
import pty
import random
import resource
import select
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time

HERE = os.path.dirname(os.path.abspath(__file__))
BUILD = os.path.join(HERE, "../../build/delivered/tools")

INSTRUMENTS = os.path.join(HERE, "../../drivers/instruments.txt")


def drivers():
    """The names of the instruments that the library drives."""
    with open(INSTRUMENTS, encoding="utf-8") as file:
        return tuple(line.split()[0] for line in file if line.strip() and not line.startswith("#"))


DRIVERS = drivers()
DEVICES = [f"/dev/ttyUSB{number}" for number in range(len(DRIVERS))]
BALANCES = [f"{driver}@{device}" for driver, device in zip(DRIVERS, DEVICES)]
# Short waits, so that much happens.
MONITOR = ["monitor", *BALANCES, "--timeout", "0", "--interval", "0.2", "--mode", "now"]

PATIENCE = 180  # seconds for what must come; far longer than it takes


class Broken(Exception):
    """A promise was not kept."""


def require(holds, what):
    if not holds:
        raise Broken(what)


def await_true(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        require(time.monotonic() < end, f"never came: {what}")
        time.sleep(0.05)


def stat_of(pid):
    """State and parent of a process; None when it has gone."""
    try:
        with open(f"/proc/{pid}/stat", encoding="utf-8", errors="replace") as file:
            fields = file.read().rpartition(")")[2].split()
        return fields[0], int(fields[1])
    except OSError:
        return None


def children_of(pid):
    found = []
    for name in os.listdir("/proc"):
        stat = stat_of(name) if name.isdigit() else None
        if stat is not None and stat[1] == pid:
            found.append(int(name))
    return found


def is_zombie(pid):
    stat = stat_of(pid)
    return stat is not None and stat[0] == "Z"


def send(pid, signum):
    try:
        os.kill(pid, signum)
    except ProcessLookupError:
        pass


def size_of(path):
    return os.stat(path).st_size if os.path.exists(path) else 0


def locks():
    return [path for path in map("/var/lock/LCK..ttyUSB{}".format, range(len(DRIVERS))) if os.path.exists(path)]


class Reader:
    """Takes in what a monitor writes, unless it is asleep."""

    def __init__(self, stream):
        self.stream = stream
        self.text = b""
        self.awake_at = 0.0
        os.set_blocking(stream, False)

    def read(self):
        if time.monotonic() < self.awake_at:
            return
        try:
            while piece := os.read(self.stream, 65536):
                self.text += piece
        except OSError:  # nothing there, or a terminal whose other end has gone
            pass

    def read_for(self, seconds):
        end = time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            select.select([], [], [], min(left, 0.02))
            self.read()

    def lines(self):
        text = self.text.decode()
        return list(csv.reader(text[:text.rfind("\n") + 1].splitlines()))[1:]


class Chaos:
    """A balance for each driver, one monitor, and what befalls them."""

    def __init__(self, options, log):
        self.options = options
        self.dice = random.Random(options.seed)
        self.log = log
        self.happened = {}

    def start(self, *arguments, **settings):
        # What hangs is to be ended from outside, with all that it has started.
        return subprocess.Popen([self.options.program, *MONITOR, *arguments], stdin=subprocess.DEVNULL, **settings)

    def control(self, *words):
        return subprocess.run([self.options.simulator, "control", *words], check=False,
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)

    def kill(self, monitor, state):
        """Kills a process of the monitor's; one that sleeps between two readings, or any."""
        children = children_of(monitor.pid)
        if children:
            send(self.dice.choice(children), self.dice.choice(state))

    def befall(self, monitor, reader):
        device = self.dice.choice(DEVICES)
        what = self.dice.choice(("kill", "kill", "crash", "massacre", "unplug", "plug in", "no descriptors", "sleep",
                                 "silent"))
        self.happened[what] = self.happened.get(what, 0) + 1
        if what == "kill":
            self.kill(monitor, (signal.SIGKILL,))
        elif what == "crash":
            self.kill(monitor, (signal.SIGSEGV, signal.SIGABRT, signal.SIGBUS))
        elif what == "massacre":
            for child in children_of(monitor.pid):
                send(child, signal.SIGKILL)
        elif what == "unplug":
            self.control("--port", device, "unplug", "for", "1s")
        elif what == "plug in":
            self.control("--port", device, "plug-in")
        elif what == "no descriptors":
            # Whoever is lost now finds no way back until they are there again.
            self.limit(monitor, 6)
            self.kill(monitor, (signal.SIGKILL,))
            reader.read_for(1.5)
            self.limit(monitor, 1024)
        elif what == "sleep":
            reader.awake_at = time.monotonic() + 1.0
        else:
            self.control("--port", device, "fault", "silent", "for", "1s")

    @staticmethod
    def limit(monitor, files):
        _, hard = resource.prlimit(monitor.pid, resource.RLIMIT_NOFILE)
        resource.prlimit(monitor.pid, resource.RLIMIT_NOFILE, (files, hard))

    def go_on(self):
        """The long part: chaos, then peace."""
        log = os.path.join(self.log, "chaos.csv")
        monitor = self.start("--csv", "--log", log, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        try:
            fcntl.fcntl(monitor.stdout, fcntl.F_SETPIPE_SZ, 4096)
            reader = Reader(monitor.stdout.fileno())
            end = time.monotonic() + self.options.seconds
            while time.monotonic() < end:
                self.befall(monitor, reader)
                reader.read_for(self.dice.uniform(0.0, 0.4))
                require(monitor.poll() is None, f"the monitor ended with {monitor.returncode}")
            self.make_peace(monitor, reader)
            children = children_of(monitor.pid)
            send(monitor.pid, signal.SIGINT)
            end = time.monotonic() + PATIENCE
            while monitor.poll() is None and time.monotonic() < end:
                reader.read_for(0.05)
            # Ctrl-C that comes while a line is written is the end of that line.
            require(monitor.poll() in (0, 130), f"the monitor ended with {monitor.returncode}")
            reader.read()
            self.check_traces(children)
            with open(log, "rb") as file:
                self.check_lines(reader, file.read(), monitor.stderr.read().decode(), monitor.returncode == 130)
        finally:
            monitor.kill()
            monitor.wait()

    def make_peace(self, monitor, reader):
        for device in DEVICES:
            self.control("--port", device, "plug-in")
            self.control("--port", device, "end")
        reader.awake_at = 0.0
        reader.read()
        lines = len(reader.lines())

        def all_weigh():
            reader.read()
            weighing = {line[2] for line in reader.lines()[lines:] if line[3] == "weight"}
            return weighing == set(DEVICES)

        await_true(all_weigh, "a weight of every balance in peace")
        zombies = [child for child in children_of(monitor.pid) if is_zombie(child)]
        await_true(lambda: not any(is_zombie(child) for child in zombies), "the end of zombies")

    @staticmethod
    def check_traces(children):
        await_true(lambda: all(stat_of(child) is None for child in children), "the end of the monitor's processes")
        require(not locks(), f"lock files are left: {locks()}")

    def check_lines(self, reader, log, summary, interrupted):
        require(log.startswith(reader.text), "the log and standard output differ")
        require(log[len(reader.text):].count(b"\n") <= interrupted, "standard output lacks lines of the log")
        require(log.endswith(b"\n"), "the last line is cut off")
        reader.text = log
        readings = [line for line in reader.lines() if line[3] not in ("lost", "back")]
        require(len(set(map(tuple, readings))) == len(readings), "a reading is there twice")
        for device, driver in zip(DEVICES, DRIVERS):
            notices = [line[3] for line in reader.lines() if line[2] == device and line[3] in ("lost", "back")]
            losses = notices.count("lost")
            require(notices == (["lost", "back"] * losses)[:len(notices)], f"{device}: {notices}")
            ours = [line for line in readings if line[2] == device]
            require(f"{driver} {device}: {len(ours)} readings" in summary, f"{device}: not {len(ours)}: {summary}")
            require(any(f"{driver} {device}:" in line and f"lost {losses} times" in line
                        for line in summary.splitlines()), f"{device}: not lost {losses} times: {summary}")
        print(f"{len(readings)} readings, {len(reader.lines()) - len(readings)} notices; "
              f"{json.dumps(self.happened)}", flush=True)

    def fill_the_disk(self):
        """A write that fails ends it; what was shown is in the log."""
        log = os.path.join(self.log, "full.csv")

        def limit_files():
            resource.setrlimit(resource.RLIMIT_FSIZE, (3000, 3000))

        monitor = self.start("--csv", "--log", log, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                             preexec_fn=limit_files)
        try:
            children = set()
            await_true(lambda: children.update(children_of(monitor.pid)) or monitor.poll() is not None,
                       "the end at a full disk")
            output, errors = monitor.stdout.read(), monitor.stderr.read()
            require(monitor.returncode == 70, f"a full disk ended it with {monitor.returncode}: {errors.decode()}")
            require(b"full.csv: " in errors, f"a full disk was not told: {errors.decode()}")
            with open(log, "rb") as file:
                require(file.read().startswith(output), "a line was shown that is not in the log")
            self.check_traces(children)
        finally:
            monitor.kill()
            monitor.wait()

    def close_the_terminal(self):
        """The live display on a terminal of any size, whose processes are killed, until it is closed."""
        log = os.path.join(self.log, "terminal.csv")
        outer, inner = pty.openpty()
        monitor = self.start("--log", log, stdout=inner, stderr=inner, start_new_session=True,
                             preexec_fn=lambda: fcntl.ioctl(inner, termios.TIOCSCTTY, 0))
        try:
            os.close(inner)
            reader = Reader(outer)
            end = time.monotonic() + min(self.options.seconds, 30) / 4
            while time.monotonic() < end:
                size = struct.pack("HHHH", self.dice.randint(0, 60), self.dice.randint(0, 200), 0, 0)
                fcntl.ioctl(outer, termios.TIOCSWINSZ, size)
                if self.dice.random() < 0.1:
                    self.kill(monitor, (signal.SIGKILL,))
                reader.read_for(0.02)
                require(monitor.poll() is None, f"a terminal's size ended it with {monitor.returncode}")
            await_true(lambda: reader.read() or size_of(log) > 0, "a line in the log")
            children = children_of(monitor.pid)
            os.close(outer)
            await_true(lambda: monitor.poll() is not None, "the end after the terminal was closed")
            self.check_traces(children)
            with open(log, "rb") as file:
                require(file.read().endswith(b"\n"), "the log's last line is cut off")
        finally:
            monitor.kill()
            monitor.wait()


def run_below_the_simulator(options):
    """Each instrument has a weight of its own."""
    words = []
    for number, driver in enumerate(DRIVERS):
        words += ["," ] if words else []
        words += [driver, "--usb", "--port", str(number), "--load", str(10 + number)]
    own = [sys.executable, os.path.abspath(__file__), str(options.seconds), "--seed", str(options.seed),
           "--simulator", options.simulator, "--program", options.program, "--below"]
    return subprocess.run([options.simulator, *words, "--", *own], check=False).returncode


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("seconds", type=float)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--simulator", default=os.path.join(BUILD, "wbalance-sim/wbalance-sim"))
    parser.add_argument("--program", default=os.path.join(BUILD, "wbalance/wbalance"))
    parser.add_argument("--below", action="store_true", help=argparse.SUPPRESS)
    options = parser.parse_args()
    if not options.below:
        return run_below_the_simulator(options)
    with tempfile.TemporaryDirectory(prefix="wbalance-chaos-") as folder:
        chaos = Chaos(options, folder)
        try:
            chaos.go_on()
            chaos.fill_the_disk()
            chaos.close_the_terminal()
        except Broken as broken:
            print(f"seed {options.seed}: {broken}", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
