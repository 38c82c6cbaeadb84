"""A serial line outside the machine: QEMU's socket on one end, a simulated instrument on the other."""

import asyncio
import re

from machine import connect


class Wire:
    def __init__(self, machine, port, instrument_program):
        self.machine, self.port, self.instrument_program = machine, port, instrument_program
        self.socket = None
        self.instrument = None
        self.swallowing = False
        self.said = bytearray()  # by the instrument
        self.gap = 0  # seconds from one character of an answer to the next; 0: all at once
        self.heard = asyncio.Event()
        self.settings = None
        self.tasks = set()

    async def plug(self):
        reader, self.socket = await connect(self.machine.directory / self.port)
        self.keep(self.carry_to_instrument(reader))

    async def unplug(self):
        self.socket.close()
        await self.socket.wait_closed()
        self.socket = None

    @property
    def is_plugged(self):
        return self.socket is not None

    async def fit(self, name, grams, switches=()):
        """Connects an instrument that has just been switched on."""
        await self.remove()
        self.instrument = await asyncio.create_subprocess_exec(
            self.instrument_program, name, str(grams), *switches,
            stdin=asyncio.subprocess.PIPE, stdout=asyncio.subprocess.PIPE)
        self.keep(self.carry_to_machine(self.instrument.stdout))

    async def remove(self):
        if self.instrument is not None:
            self.instrument.stdin.close()
            await self.instrument.wait()
            self.instrument = None

    def swallow(self):
        """From here on nothing reaches the instrument; `heard` tells when something would have."""
        self.heard.clear()
        self.swallowing = True

    def pass_on(self):
        self.swallowing = False

    def keep(self, work):
        task = asyncio.create_task(work)
        self.tasks.add(task)
        task.add_done_callback(self.tasks.discard)

    async def carry_to_instrument(self, reader):
        while data := await reader.read(4096):
            self.settings = received_settings(self.machine.received_settings, self.port)
            self.heard.set()
            if not self.swallowing and self.instrument is not None:
                self.instrument.stdin.write(data)

    async def carry_to_machine(self, answers):
        while data := await answers.read(4096):
            size = len(data) if self.gap == 0 else 1
            for start in range(0, len(data), size):
                piece = data[start:start + size]
                self.said += piece
                if self.is_plugged:
                    self.socket.write(piece)
                await asyncio.sleep(self.gap)


def received_settings(log, port):
    """What the port itself was last set to, as QEMU's trace has it: "2400 7E1"."""
    text = log.read_text()
    if port == "ttyS1":
        baud, parity, data, stop = re.findall(
            r"serial_update_parameters baudrate=(\d+) parity='(.)' data=(\d) stop=(\d)", text)[-1]
    else:
        baud = re.findall(r"usb_serial_set_baud .* baud rate (\d+)", text)[-1]
        parity, data, stop = re.findall(
            r"usb_serial_set_data .* parity (.), data bits (\d), stop bits (\d)", text)[-1]
    return f"{baud} {data}{parity}{stop}"
