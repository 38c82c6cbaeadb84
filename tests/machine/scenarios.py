"""What is done to the library on the machine's two ports. Every case reports one line."""

import asyncio
import itertools
import time

from cases import DRIVERS, IN_PIECES
from machine import ADAPTER

# Two ways in which an adapter goes; the guest sees the same.
PULLS = itertools.cycle(("device_del", "chardev closed"))

FAIR_TRIALS = 5


class Failure(Exception):
    """A case did not give what it must."""


class InPieces(Failure):
    """The emulated UART handed out an answer in more pieces than a driver takes: no fair trial."""


def expect(what, seen, wanted):
    if seen != wanted:
        raise Failure(f"{what} is {seen!r}, not {wanted!r}")


def expect_in_trace(text, answer):
    if text not in answer["trace"]:
        raise Failure(f"{text!r} is not in the trace {answer['trace']!r}")


class Report:
    def __init__(self, chosen):
        self.chosen = chosen
        self.passed, self.failed = 0, 0

    async def case(self, name, work, *arguments):
        """Carries out one case, if it was chosen, and prints its line."""
        if self.chosen not in name:
            return
        start = time.monotonic()
        for repeated in range(FAIR_TRIALS):
            try:
                outcome, told = "ok  ", await work(*arguments)
                break
            except InPieces as failure:
                outcome, told = "FAIL", failure
            except Failure as failure:
                outcome, told = "FAIL", failure
                break
        self.passed += outcome == "ok  "
        self.failed += outcome == "FAIL"
        note = f", repeated {repeated} times after an answer in pieces" if repeated else ""
        print(f"{outcome}  {name}: {told}  ({time.monotonic() - start:.1f} s{note})", flush=True)


class Lane:
    """One port, the wire behind it and an ordinary user's program that has it to itself."""

    def __init__(self, machine, wire, program, port=None, pulled=None):
        self.machine, self.wire = machine, wire
        self.program = machine.programs[program]
        self.port = port or wire.port  # the adapter comes back under other numbers
        self.pulled = pulled  # in which way the adapter was pulled; None when it is in its place

    async def fit(self, driver):
        """An instrument just switched on, and a driver object that has not opened its port yet."""
        await self.restore()
        await self.wire.fit(driver.instrument, driver.grams, driver.switches)
        await self.construct(driver)

    async def restore(self):
        """Puts right what a case that failed has left behind."""
        self.wire.pass_on()
        if self.program.is_busy:
            await self.program.answer()
        if self.pulled:
            await self.put_back()
        if not self.wire.is_plugged:
            await self.wire.plug()
        if self.port == "ttyS1":
            await self.machine.reset_receiver(self.port)

    async def construct(self, driver):
        await self.program.call("delete")
        await self.program.construct(driver.name, self.port, driver.codes)

    async def start_and_lose_first_command(self, call):
        """Starts an operation and returns when its first command has left the port."""
        self.wire.swallow()
        self.wire.said.clear()
        self.program.send(call)
        try:
            await asyncio.wait_for(self.wire.heard.wait(), 60)
        except asyncio.TimeoutError:
            raise Failure(f"{call} has sent nothing for 60 s") from None

    def failure(self, text, answer):
        """Of an operation: what the instrument has said must have been read whole."""
        lines = self.wire.said.decode("latin-1").splitlines(keepends=True)
        whole = all(line in answer["trace"] for line in lines)
        return (Failure if whole else InPieces)(f"{text}; trace {answer['trace']!r}")

    async def pull(self, way):
        self.pulled = way
        if way == "device_del":
            await self.machine.monitor.execute("device_del", id=ADAPTER["id"])
            await self.machine.monitor.event("DEVICE_DELETED")
        else:
            await self.wire.unplug()
        await self.machine.shell.run(f"while test -e /dev/{self.port}; do sleep 0.05; done")

    async def put_back(self):
        way, self.pulled = self.pulled, None
        if way == "device_del":
            await self.machine.monitor.execute("device_add", **ADAPTER)
        else:
            await self.wire.plug()
        nodes = await self.machine.shell.run("until ls /dev/ttyUSB* 2>/dev/null; do sleep 0.05; done")
        self.port = nodes[0].removeprefix("/dev/")
        await self.machine.grant(self.port)


def expect_refused(port, answer):
    expect("the result", answer["result"], 0)
    expect_in_trace(f"INVALID COMM PORT ... UNABLE OPENING /dev/{port}!\n\n", answer)


def reading_of(driver):
    """The driver's first reading: it shows that all is well again."""
    return next(operation for operation in driver.operations if operation.call.startswith("Weight"))


async def expect_result(lane, call, result):
    answer = await lane.program.call(call)
    if answer["result"] != result:
        raise lane.failure(f"{call} gives {answer['result']}, not {result}", answer)


async def expect_operation(lane, operation):
    """Carries it out undisturbed; returns the answer."""
    lane.wire.said.clear()
    answer = await lane.program.call(operation.call)
    seen = (answer["result"], answer.get("weight"), answer.get("decimals"))
    wanted = (operation.result, operation.weight, operation.decimals)
    if seen != wanted:
        raise lane.failure(f"{operation.call} gives {seen}, not {wanted}", answer)
    return answer


async def expect_interrupted(lane, operation, driver, result):
    """The end of an operation that was begun before."""
    answer = await lane.program.answer()
    weight = operation.weight if result or operation.weight is None else driver.failed_weight
    seen = (answer["result"], answer.get("weight"))
    if seen != (result, weight):
        raise lane.failure(f"{operation.call} gives {seen}, not {(result, weight)}", answer)


async def read_again(lane, driver):
    await expect_operation(lane, reading_of(driver))


async def every_operation(lane, driver):
    """All operations in turn, on one driver object at the driver's own settings."""
    await lane.fit(driver)
    for position, operation in enumerate(driver.operations):
        answer = await expect_operation(lane, operation)
        if position == 0:
            expect_in_trace(f"/dev/{lane.port} OPENED SUCCESSFULLY!\n\n", answer)
    expect("the port's settings", lane.wire.settings, driver.settings)
    return f"{len(driver.operations)} operations at {driver.settings}"


async def pulled_and_returned(lane, driver, operation, way):
    """The adapter goes at the operation's first command and is put back at once."""
    await lane.fit(driver)
    await expect_result(lane, "IsReady", 1)
    held = lane.port
    if operation.interrupted == "before":
        await lane.pull(way)
        lane.program.send(operation.call)
    else:
        await lane.start_and_lose_first_command(operation.call)
        await lane.pull(way)
    await lane.put_back()
    await expect_interrupted(lane, operation, driver, operation.pulled)
    lane.wire.pass_on()
    await lane.construct(driver)
    await expect_result(lane, "IsReady", 1)
    await read_again(lane, driver)
    return f"{operation.pulled}; {held} came back as {lane.port}, read again by a new object"


async def cut_and_mended(lane, driver, operation):
    """The cable is out for half a second from the operation's first command on."""
    await lane.fit(driver)
    await expect_result(lane, "IsReady", 1)
    await lane.start_and_lose_first_command(operation.call)
    await lane.wire.unplug()
    await asyncio.sleep(0.5)
    lane.wire.pass_on()
    await lane.wire.plug()
    await expect_interrupted(lane, operation, driver, operation.cut)
    await lane.wire.fit(driver.instrument, driver.grams, driver.switches)
    await read_again(lane, driver)
    return f"{operation.cut}; read again on the open port"


async def in_pieces(lane, driver, reading, read):
    """Each character of the answer comes by itself, as on a slow line."""
    await lane.fit(driver)
    await expect_result(lane, "IsReady", 1)
    lane.wire.gap = 0.15
    try:
        answer = await expect_operation(lane, reading)
    finally:
        lane.wire.gap = 0
    expect_in_trace(f"Read from scale: {read} (time elapsed", answer)
    return f"{reading.result}, read {read!r}"


async def built_in_port(lane, report):
    for driver in DRIVERS:
        await report.case(f"ttyS1 {driver.title}", every_operation, lane, driver)
        for operation in driver.operations:
            if operation.interrupted == "first command":
                await report.case(f"ttyS1 {driver.title}, {operation.call}, cable out and in again",
                                  cut_and_mended, lane, driver, operation)


async def adapter(lane, report):
    for driver in DRIVERS:
        await report.case(f"ttyUSB0 {driver.title}", every_operation, lane, driver)
        for operation in driver.operations:
            if operation.interrupted != "never":
                way = next(PULLS)
                await report.case(
                    f"ttyUSB0 {driver.title}, {operation.call}, adapter pulled and back ({way})",
                    pulled_and_returned, lane, driver, operation, way)


# From here on: who may use a port, and what is no port. Any driver shows it.
ANY = DRIVERS[0]


def beside(lane, program):
    """Another program's view of the same port."""
    return Lane(lane.machine, lane.wire, program, port=lane.port)


async def two_programs(lane):
    """The second is refused while the first goes on; it has the port when the first has closed."""
    await lane.fit(ANY)
    second = beside(lane, "member-3")
    await second.construct(ANY)
    await read_again(lane, ANY)
    expect_refused(lane.port, await second.program.call("IsReady"))
    await read_again(lane, ANY)
    await lane.program.call("delete")
    # The port object that could not be opened is still held, and is given up by this call.
    await expect_result(second, "IsReady", 0)
    await read_again(second, ANY)
    await second.program.call("delete")
    return "refused, the first undisturbed, then its turn"


async def stale_lock(lane):
    """A program is killed with the port open; its lock stays, and does not keep others out."""
    await lane.fit(ANY)
    await read_again(lane, ANY)
    await lane.program.die()
    await lane.machine.shell.run(f"test -e /run/lock/LCK..{lane.port}")
    await lane.construct(ANY)
    await read_again(lane, ANY)
    await lane.program.call("delete")
    await lane.machine.shell.run(f"test ! -e /run/lock/LCK..{lane.port}")
    return "the port opens, the lock of the dead is replaced and gone in the end"


async def stale_lock_of_root(lane):
    """An ordinary user can't take away a lock that root's killed program has left."""
    await lane.fit(ANY)
    root = beside(lane, "root-1")
    await root.construct(ANY)
    await read_again(root, ANY)
    await root.program.die()
    refused = await lane.program.call("IsReady")
    await lane.machine.shell.run(f"rm /run/lock/LCK..{lane.port}")
    expect_refused(lane.port, refused)
    await lane.construct(ANY)
    await read_again(lane, ANY)
    return "refused until root takes it away"


async def no_permission(lane):
    await lane.fit(ANY)
    modes = await lane.machine.shell.run(f"stat -c '%a %U:%G' /dev/{lane.port}")
    expect("the node", modes, ["660 root:dialout"])
    stranger = beside(lane, "stranger-1")
    await stranger.construct(ANY)
    expect_refused(lane.port, await stranger.program.call("IsReady"))
    await read_again(lane, ANY)
    return "refused; a member of dialout reads"


async def no_port(lane, port, put_there, take_away):
    """What stands at the device's name is no serial port."""
    await lane.machine.shell.run(put_there)
    await lane.program.call("delete")
    await lane.program.construct(ANY.name, port, ANY.codes)
    expect_refused(port, await lane.program.call("IsReady"))
    await expect_result(lane, "IsReady", 0)
    expect_refused(port, await lane.program.call("IsReady"))
    await lane.machine.shell.run(take_away)
    return "refused each time"


async def plugged_in_later(lane):
    """The adapter comes after the first attempt; the same driver object finds it."""
    await lane.fit(ANY)
    # Nobody holds a port: from here on the adapter always comes back under the lowest number.
    await lane.pull("device_del")
    await lane.put_back()
    await lane.construct(ANY)
    await lane.pull("device_del")
    expect_refused(lane.port, await lane.program.call("IsReady"))
    await lane.put_back()
    await expect_result(lane, "IsReady", 0)
    await read_again(lane, ANY)
    return "refused, given up, found"


async def refusals(lane, report):
    async def case(name, work, *arguments):
        await report.case(f"{lane.wire.port} {name}", work, lane, *arguments)

    for driver, reading, read in IN_PIECES:
        await case(f"{driver.title}, {reading.call}, an answer in pieces", in_pieces, driver, reading,
                   read)
    await case("two programs on one port", two_programs)
    await case("the lock of a killed program", stale_lock)
    await case("the lock of root's killed program", stale_lock_of_root)
    await case("a user outside dialout", no_permission)
    other = lane.wire.port.rstrip("01") + "77"
    await case("no such device", no_port, other, "true", "true")
    await case("a directory", no_port, other, f"mkdir /dev/{other}", f"rmdir /dev/{other}")
    await case("a plain file", no_port, other, f"echo 12.34 >/dev/{other}; chmod 666 /dev/{other}",
               f"rm /dev/{other}")
    if lane.wire.port == "ttyS1":
        await case("a node without a UART behind it", no_port, "ttyS3", "chmod 666 /dev/ttyS3", "true")
    else:
        await case("the adapter comes later", plugged_in_later)
