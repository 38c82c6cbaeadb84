#!/usr/bin/env python3
"""Runs every command line of the pages, the manuals and the programs' --help, as a reader would.

A page's commands run in their order, in a home directory of the page's own; a command of `wbalance` that
needs a balance meets a simulated one of its driver, at its port and line settings. What a page shows
behind "$ command" must be what comes out. A command line that is neither run nor named in NOT_RUN fails.
"""

import argparse
import concurrent.futures
import os
import pathlib
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
import instruments

# What can't be run here, by the beginning of the line.
NOT_RUN = {
    "sudo ": "changes the system",
    "systemctl ": "changes the system",
    "cmake ": "scripts/test-packages does it",
    "cpack ": "scripts/test-packages does it",
    "scripts/demo": "builds all programs anew; the program that it runs is run by this test",
    "scripts/test ": "is the suite that this test belongs to",
    "tests/simulator/node_client/run": "takes a module from the npm registry",
    "tests/machine/run": "boots a kernel; a command of its own",
}
# What a page leaves out of a list of ports: built-in ports of this computer, and the name of the simulated socket.
LEFT_OUT = re.compile(r"^/dev/ttyS\d+\n(?:  .*\n)*|^  stable   /dev/serial/by-path/.*\n", flags=re.M)

# Commands that need a balance and name no driver: they meet the driver of their page.
UNNAMED = ("detect", "ports")
# These go on until Ctrl-C.
ENDLESS = re.compile(r"wbalance monitor (?!.*(-n|--count) )|--pty$")
LOAD = "12.5"
PATIENCE = 240  # seconds; only a hang takes as long, also where a host is compiled on a busy computer
RUN_BEFORE_CTRL_C = 3


class Command:
    def __init__(self, line, text, shown=None):
        self.line, self.text, self.shown = line, text, shown


def join_continued(lines):
    """Command lines that go on behind a pipe or a backslash, as one; (number, text)."""
    whole = []
    for number, text in lines:
        if whole and re.search(r"[|\\]$", whole[-1][1]):
            whole[-1] = (whole[-1][0], whole[-1][1].rstrip("\\") + " " + text.strip())
        else:
            whole.append((number, text.strip()))
    return [Command(number, re.sub(r"\s+# .*", "", text)) for number, text in whole]


def of_console(number, lines):
    """The commands of a fenced block: "$ command" and what it shows."""
    for offset, text in enumerate(lines):
        if text.startswith("$ "):
            shown = []
            for following in lines[offset + 1:]:
                if following.startswith("$ "):
                    break
                shown.append(following)
            yield Command(number + offset, text[2:], shown)


def of_page(path, home):
    """The commands of a Markdown page. A program that the text calls `NAME.cpp`, and a block that begins with
    "# NAME.script", are put into the home."""
    commands, indented, fence, name, before = [], [], None, None, ""
    for number, text in enumerate(path.read_text().splitlines(), 1):
        if fence is not None:
            if text.startswith("```"):
                if fence == "console":
                    commands += of_console(start, block)
                if fence == "cpp" and name:
                    (home / name).write_text("\n".join(block) + "\n")
                file = re.fullmatch(r"# (\w+\.script)", block[0]) if block else None
                if file:
                    (home / file.group(1)).write_text("\n".join(block) + "\n")
                fence, name = None, None
            else:
                block.append(text)
        elif text.startswith("```"):
            fence, start, block = text[3:], number + 1, []
        elif text.startswith("    ") and text.strip() and not before.strip():
            indented.append((number, text))
            continue  # what follows is of the block, too; behind text it would be of a list's item
        else:
            name = (re.findall(r"a program `(\w+\.cpp)`", text) or [name])[0]
        before = text
    return sorted(commands + join_continued(indented), key=lambda command: command.line)


def of_manual(path):
    inside, lines = False, []
    for number, text in enumerate(path.read_text().splitlines(), 1):
        if text in (".nf", ".fi"):
            inside = text == ".nf"
        elif inside and re.match(r"\s*(wbalance|sudo|systemctl|\./)", text):
            lines.append((number, text.replace(r"\-", "-").replace(r"\e", "\\")))
    return join_continued(lines)


def of_help(text):
    return join_continued([(number, line) for number, line in enumerate(text.splitlines(), 1)
                           if re.match(r"  (wbalance(-sim)?|LD_PRELOAD\S*) \S", line)
                           and not re.search(r" (CHANGE|FILE) ", line)])


def value_of(words, *names):
    for index, word in enumerate(words[:-1]):
        if word in names:
            return words[index + 1]
    return None


def driver_of(commands, drivers):
    """The driver of a page: that of its record, or else the first that it names, or else any."""
    named = re.compile(r"(?:^|\s)(?:-d |--driver |wbalance-sim |monitor )(" + "|".join(drivers) + r")(?![\w-])")
    lines = [command.text for command in commands]
    lines.sort(key=lambda text: "trouble.record" not in text)
    return next((match.group(1) for match in map(named.search, lines) if match), drivers[0])


def served_at(port, usb):
    """The options of wbalance-sim for a port as wbalance takes it."""
    number = re.search(r"(\d+)$", port).group(1) if not port.endswith("port0") else "3"
    return f"--port {number}" + (" --usb" if usb or "USB" in port or "by-id" in port else "")


def served_for(command, drivers, page_driver):
    """What wbalance-sim serves for a command of wbalance; empty when it needs no balance."""
    words = shlex.split(command.split(" | ")[0])
    if words[1] == "monitor":
        balances = [word.split("@") for word in words[2:] if "@" in word]
        return " , ".join(f"{driver} --load {LOAD} {served_at(port, False)}" +
                          (f" --line {line[0]}" if line else "") for driver, port, *line in balances)
    driver = value_of(words, "-d", "--driver") or (page_driver if words[1] in UNNAMED else None)
    if "--thorough" in words:
        driver = drivers[0]  # which is found first; the others take minutes
    if driver is None or "--help" in words:
        return ""
    load = "0" if words[1] in ("zero", "preset-tare") else LOAD
    line = value_of(words, "-l", "--line")
    port = value_of(words, "-p", "--port") or "0"
    usb = words[1] == "ports" or "--usb" in words or "-u" in words
    return f"{driver} --load {load} {served_at(port, usb)}" + (f" --line {line}" if line else "")


class Bench:
    """Where the command lines are run."""

    def __init__(self, arguments, home):
        self.home = home
        self.drivers = [name for name, _ in instruments.rows()]
        self.environment = dict(os.environ, HOME=str(home), TMPDIR=str(home), LC_ALL="C", **self.host_settings(arguments))
        self.environment["PATH"] = ":".join(
            [str(home / "bin"), str(pathlib.Path(arguments.wbalance).parent),
             str(pathlib.Path(arguments.wbalance_sim).parent), os.environ["PATH"]])
        (home / "bin").mkdir()
        (home / "by-id").mkdir()
        (home / "by-id/usb-FTDI_A1B2-if00-port0").symlink_to("/dev/ttyUSB3")
        for host in ("my-host", "bin/PROGRAM"):
            self.script(host, "exec true")
        self.script("bin/mosquitto_pub", "trap '' INT\ngrep --quiet '\"status\":\"weight\"'; code=$?; cat >/dev/null; exit $code")
        self.script("bin/g++", f'exec {arguments.compiler} "$@"')
        (home / "parcel.script").write_text("0s load 12.5\n")

    def use(self, driver):
        """Has records of this driver from now on, and serves it where a command names none."""
        self.driver = driver
        self.run(f"wbalance weigh -d {driver} -p 3 --usb --record trouble.record")
        for copy in ("one", "other"):
            shutil.copy(self.home / "trouble.record", self.home / f"{copy}.record")

    @staticmethod
    def host_settings(arguments):
        libraries = f"{arguments.prefix}/{arguments.libraries}"
        return {"PKG_CONFIG_PATH": f"{libraries}/pkgconfig", "LD_LIBRARY_PATH": libraries}

    def script(self, name, text):
        (self.home / name).write_text(f"#!/bin/sh\n{text}\n")
        (self.home / name).chmod(0o755)

    def recorded_host(self, ports):
        """A host that does at these ports what the record has."""
        return "sh -c '" + " && ".join(f"wbalance weigh -d {self.driver} -p {port}" for port in ports) + "'"

    def as_run(self, command):
        command = command.replace("/dev/serial/by-id/", f"{self.home}/by-id/")
        if command.startswith("wbalance-sim control "):
            command = command.replace("/run/user/1000/", f"{self.home}/")
            path = value_of(shlex.split(command), "--control")
            return f"wbalance-sim {self.driver} --usb --port 1 {f'--control {path}' if path else ''} -- {command}"
        if command.startswith("wbalance-sim replay ") and command.endswith("./my-host"):
            return command[:-len("./my-host")] + self.recorded_host(re.findall(r"--port (\d+)", command))
        if command == "./first":
            return f"wbalance-sim {self.driver} --usb --load {LOAD} -- ./first"
        served = served_for(command, self.drivers, self.driver) if command.startswith("wbalance ") else ""
        if served:
            return f"wbalance-sim {served} -- {command}"
        return command

    def run(self, command):
        """The exit code, and what came out on standard output and standard error."""
        record = value_of(command.split(), "--record")
        if record:  # is not overwritten, and another page's reader has none yet
            (self.home / record).unlink(missing_ok=True)
        process = subprocess.Popen(["bash", "-o", "pipefail", "-c", self.as_run(command)], cwd=self.home,
                                   env=self.environment, text=True, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, start_new_session=True)
        try:
            if ENDLESS.search(command):
                try:
                    process.communicate(timeout=RUN_BEFORE_CTRL_C)
                    return 1, "", "ended by itself"
                except subprocess.TimeoutExpired:
                    os.killpg(process.pid, signal.SIGINT)
            output, errors = process.communicate(timeout=PATIENCE)
            return process.returncode, output, errors
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()
            return 1, "", f"not ended after {PATIENCE} s"


def reason_to_skip(command, compiler):
    """Why a command can't be run on this machine; empty when it can."""
    if "libasan.so" in command.text and "-fsanitize" in compiler:
        return "these programs bring a sanitizer's runtime of their own"
    if "sigrok-cli " in command.text and not shutil.which("sigrok-cli"):
        return "sigrok-cli is not installed"
    return ""


def complaint(command, code, output, errors):
    """What is wrong with the outcome of a command; empty when nothing is."""
    # A record that nobody has asked for is not at its end at Ctrl-C: 124.
    endless = ENDLESS.search(command.text) and code in ((0, 124) if " replay " in command.text else (0, 130))
    if code != 0 and not endless:
        return f"exit code {code}\n{output}{errors}"
    if command.shown is None:
        return ""
    if LEFT_OUT.sub("", output).splitlines() == command.shown:
        return ""
    return "shown:\n" + "\n".join(command.shown) + "\ncame:\n" + output + errors


def try_all(name, arguments, commands_of):
    """Runs the commands of one page; the complaints and the number of commands that were run."""
    with tempfile.TemporaryDirectory(prefix="wbalance-docs-") as folder:
        home = pathlib.Path(folder)
        bench = Bench(arguments, home)
        complaints, ran = [], 0
        commands = list(commands_of(home))
        bench.use(driver_of(commands, bench.drivers))
        for command in commands:
            if any((command.text + " ").startswith(start) for start in NOT_RUN):
                continue
            if reason_to_skip(command, arguments.compiler):
                print(f"{name}:{command.line}: not run: {reason_to_skip(command, arguments.compiler)}")
                continue
            ran += 1
            wrong = complaint(command, *bench.run(command.text))
            if wrong:
                complaints.append(f"{name}:{command.line}: {command.text}\n{wrong}")
        return complaints, ran


def help_text(command):
    return subprocess.run([*command, "--help"], capture_output=True, text=True, check=True).stdout


def help_texts(arguments):
    """The --help of the programs and of all the commands that it lists."""
    programs = ((arguments.wbalance, r"^  ([a-z][a-z-]*)  "),
                (arguments.wbalance_sim, r"^  wbalance-sim ([a-z]+) [A-Z]+  "))
    for program, listed in programs:
        for command in [[], *([name] for name in re.findall(listed, help_text([program]), flags=re.M))]:
            yield " ".join([pathlib.Path(program).name, *command, "--help"]), help_text([program, *command])


def sources(arguments):
    """Where command lines stand: a name, and a function from a home directory to the commands."""
    source = pathlib.Path(arguments.source)
    pages = [source / "README.md", source / "CONTRIBUTING.md", *source.glob("docs/**/*.md")]
    for page in sorted(pages):
        yield str(page.relative_to(source)), lambda home, page=page: of_page(page, home)
    for manual in sorted(source.glob("docs/man/*")):
        yield str(manual.relative_to(source)), lambda home, manual=manual: of_manual(manual)
    for name, text in help_texts(arguments):
        yield name, lambda home, text=text: of_help(text)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for name in ("source", "wbalance", "wbalance-sim", "prefix", "libraries", "compiler"):
        parser.add_argument("--" + name, required=True)
    arguments = parser.parse_args()
    with concurrent.futures.ThreadPoolExecutor(max_workers=12) as pool:
        results = list(pool.map(lambda each: try_all(each[0], arguments, each[1]), sources(arguments)))
    complaints = [complaint for complaints, _ in results for complaint in complaints]
    ran = sum(count for _, count in results)
    print("\n".join(complaints) or f"{ran} command lines")
    return 1 if complaints or ran == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
