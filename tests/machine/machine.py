"""The virtual machine: Debian's kernel in QEMU under plain emulation, on the host's own root.

A guest has two serial ports. "/dev/ttyS1" is a UART of the mainboard, "/dev/ttyUSB0" an FTDI adapter
that can be pulled; the far end of each is a socket of the host (see wire.py). The guest's programs
are reached through channels, one line out and one line back.
"""

import asyncio
import json
import lzma
import pathlib
import re
import shutil
import subprocess

HERE = pathlib.Path(__file__).resolve().parent

MODULES = ("virtio_pci", "virtio_console", "9pnet_virtio", "9p", "xhci_pci", "ftdi_sio")
APPLETS = ("basename", "cat", "chroot", "insmod", "mkdir", "mount", "sed", "sh")

# `init` tells from the name as whom the program runs.
CHANNELS = ("member-1", "member-2", "member-3", "stranger-1", "root-1", "shell-1")

# The identification of the adapter, so that device_add brings back the one that was pulled.
ADAPTER = {"driver": "usb-serial", "bus": "usb.0", "chardev": "ttyUSB0", "id": "adapter"}


class Lost(Exception):
    """The machine has ended or does not answer in time."""


def output(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, **options).stdout


def unpack_kernel(directory):
    """Debian's present kernel package, unpacked in `directory`; nothing of it is installed."""
    depends = output("apt-cache", "depends", "linux-image-amd64", text=True)
    found = re.search(r"Depends: (linux-image-\S+)", depends)
    if found is None:
        raise FileNotFoundError("apt knows no linux-image-amd64; try apt-get update")
    package = found.group(1)
    unpacked = directory / package
    if not unpacked.exists():
        download = directory / "download"
        shutil.rmtree(download, ignore_errors=True)
        download.mkdir(parents=True)
        output("apt-get", "download", package, cwd=download, stderr=subprocess.DEVNULL)
        output("dpkg-deb", "-x", next(download.glob("*.deb")), download / package)
        (download / package).rename(unpacked)
        shutil.rmtree(download)
    return unpacked


def uncompress_kernel(unpacked, kernel):
    """A kernel that need not uncompress itself starts seconds sooner under emulation."""
    image = next(unpacked.glob("boot/vmlinuz-*")).read_bytes()
    kernel.write_bytes(lzma.LZMADecompressor().decompress(image[image.index(b"\xfd7zXZ\0"):]))


def modules_in_order(unpacked):
    version = next(unpacked.glob("lib/modules/*")).name
    output("depmod", "-b", unpacked, version)
    paths = {}
    for module in MODULES:
        listed = output("modprobe", "-d", unpacked, "-S", version, "--show-depends", module, text=True)
        paths.update(dict.fromkeys(re.findall(r"^insmod (\S+)", listed, re.MULTILINE)))
    return [pathlib.Path(path) for path in paths]


def pack_first_root(unpacked, archive):
    tree = archive.with_suffix(".d")
    shutil.rmtree(tree, ignore_errors=True)
    for name in ("bin", "dev", "modules", "proc", "sys"):
        (tree / name).mkdir(parents=True)
    shutil.copy(shutil.which("busybox"), tree / "bin")
    for applet in APPLETS:
        (tree / "bin" / applet).symlink_to("busybox")
    shutil.copy(HERE / "init", tree)
    modules = modules_in_order(unpacked)
    for module in modules:
        shutil.copy(module, tree / "modules")
    (tree / "modules/order").write_text("".join(f"{module.name}\n" for module in modules))
    archive.write_bytes(output("cpio", "--quiet", "-o", "-H", "newc", "-R", "0:0", cwd=tree,
                               input=output("find", ".", cwd=tree)))


def prepare(directory):
    """Puts the kernel and the first root into `directory`."""
    unpacked = unpack_kernel(directory)
    uncompress_kernel(unpacked, directory / "vmlinux")
    pack_first_root(unpacked, directory / "initrd")


def last_words(directory):
    """What the kernel and the programs have said, for the report of a machine that was lost."""
    logs = (directory / "qemu.log", directory / "console.log")
    return "".join(log.read_text(errors="replace")[-2000:] for log in logs if log.exists())


async def connect(path, seconds=30):
    """Connects to one of QEMU's sockets as soon as it is there."""
    for _ in range(seconds * 10):
        try:
            return await asyncio.open_unix_connection(path)
        except (FileNotFoundError, ConnectionRefusedError):
            await asyncio.sleep(0.1)
    raise Lost(f"no socket {path}")


class Channel:
    """Lines to and from one end of the machine."""

    def __init__(self, path):
        self.path, self.name = path, path.name

    async def open(self):
        self.reader, self.writer = await connect(self.path)

    def send(self, line):
        self.writer.write(line.encode() + b"\n")

    async def receive(self, seconds=120):
        try:
            line = await asyncio.wait_for(self.reader.readline(), seconds)
        except asyncio.TimeoutError:
            raise Lost(f"nothing from {self.name} for {seconds} s") from None
        if not line:
            raise Lost(f"{self.name} has closed")
        return line.decode("latin-1").strip()


class Program(Channel):
    """A program of the guest that uses the library (guest.cpp)."""

    is_busy = True  # until it says for the first time that it is ready

    async def call(self, line):
        self.send(line)
        return await self.answer()

    def send(self, line):
        self.is_busy = True
        super().send(line)

    async def answer(self):
        answer = json.loads(await self.receive())
        self.is_busy = False
        return answer

    async def die(self):
        """It is killed; another one takes its place."""
        self.send("die")
        await self.answer()

    async def construct(self, driver, port, settings):
        """A new driver object on `port`, such as "ttyUSB0", at the settings it has by itself."""
        kind, number = re.fullmatch(r"tty(S|USB)(\d+)", port).groups()
        await self.call(f"new {driver}")
        await self.call(f"SetCommPort {number}")
        # A built-in port needs no more: the driver's own settings are for one.
        if kind == "USB":
            await self.call(f"SetCommConfig {settings} U")


class Shell(Channel):
    """Root's shell in the guest; one command at a time."""

    def __init__(self, path):
        super().__init__(path)
        self.turn = asyncio.Lock()

    async def run(self, command):
        """The lines that `command` prints; an error when it fails."""
        async with self.turn:
            self.send(f"{command}; echo \"status $?\"")
            lines = [await self.receive()]
            while not lines[-1].startswith("status "):
                lines.append(await self.receive())
        if lines[-1] != "status 0":
            raise Lost(f"{command}: {lines}")
        return lines[:-1]


class Monitor(Channel):
    """QEMU's monitor (QMP)."""

    async def open(self):
        await super().open()
        self.events = []
        await self.execute("qmp_capabilities")

    async def execute(self, command, **arguments):
        self.send(json.dumps({"execute": command, "arguments": arguments}))
        while "return" not in (message := await self.message()):
            if "error" in message:
                raise Lost(f"{command}: {message['error']['desc']}")

    async def event(self, name):
        """Waits for an event, which may have come already."""
        while name not in self.events:
            await self.message()
        self.events.remove(name)

    async def message(self):
        message = json.loads(await self.receive())
        if "event" in message:
            self.events.append(message["event"])
        return message


class Machine:
    def __init__(self, directory):
        self.directory = directory
        self.received_settings = directory / "settings.log"
        self.monitor = Monitor(directory / "monitor")
        self.shell = Shell(directory / "shell-1")
        self.programs = {name: Program(directory / name) for name in CHANNELS if name != "shell-1"}

    async def start(self, boot, guest):
        """Starts the machine and returns when all of its programs answer."""
        with open(self.directory / "qemu.log", "wb") as log:
            self.qemu = await asyncio.create_subprocess_exec(
                *self.command(boot, guest), stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        for channel in (self.monitor, self.shell, *self.programs.values()):
            await channel.open()
        for program in self.programs.values():
            await program.answer()
        await self.grant("ttyS1")

    async def stop(self):
        if self.qemu.returncode is None:
            self.qemu.kill()
        await self.qemu.wait()

    async def grant(self, port):
        """Waits for the port's node and gives it to the group dialout, as Debian's udev does."""
        await self.shell.run(f"until test -c /dev/{port}; do sleep 0.05; done; "
                             f"chgrp dialout /dev/{port} && chmod 660 /dev/{port}")

    async def reset_receiver(self, port):
        """Lets the UART gather as much as it can before it hands characters to the kernel.

        The kernel lowers that to a single character below 2400 baud and leaves it there. The
        emulated line has no speed, so the pieces in which an answer comes would be chance.
        """
        await self.shell.run(f"echo 14 >/sys/class/tty/{port}/rx_trig_bytes")

    def command(self, boot, guest):
        def socket(name):
            return ("-chardev", f"socket,id={name},path={self.directory / name},server=on,wait=off")

        command = [
            "qemu-system-x86_64", "-nodefaults", "-no-user-config", "-display", "none",
            "-machine", "pc", "-accel", "tcg", "-cpu", "max", "-smp", "1", "-m", "384", "-no-reboot",
            "-kernel", boot / "vmlinux", "-initrd", boot / "initrd",
            "-append", f"console=ttyS0 quiet panic=-1 machine.guest={guest}",
            "-chardev", f"file,id=console,path={self.directory / 'console.log'}",
            "-device", "isa-serial,index=0,chardev=console",
            *socket("ttyS1"), "-device", "isa-serial,index=1,chardev=ttyS1",
            *socket("ttyUSB0"), "-device", "qemu-xhci,id=usb",
            "-device", ",".join(f"{key}={value}" for key, value in ADAPTER.items()),
            "-fsdev", "local,id=root,path=/,security_model=none,readonly=on,multidevs=remap",
            "-device", "virtio-9p-pci,fsdev=root,mount_tag=host",
            *socket("monitor"), "-mon", "chardev=monitor,mode=control",
            "-device", "virtio-serial-pci",
            "-D", self.received_settings,
            "-trace", "serial_update_parameters", "-trace", "usb_serial_set_baud",
            "-trace", "usb_serial_set_data", "-trace", "usb_serial_set_flow_control",
        ]
        for name in CHANNELS:
            command += (*socket(name), "-device", f"virtserialport,chardev={name},name={name}")
        return command
