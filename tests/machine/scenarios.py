"""What is done to the library on the machine's two ports. Every case reports one line."""

import asyncio
import itertools
import time

from cases import DRIVERS
from machine import ADAPTER

# Two ways in which an adapter goes; the guest sees the same.
PULLS = itertools.cycle(("device_del", "chardev closed"))


class Failure(Exception):
    """A case did not give what it must."""


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
        try:
            outcome, told = "ok  ", await work(*arguments)
            self.passed += 1
        except Failure as failure:
            outcome, told = "FAIL", failure
            self.failed += 1
        print(f"{outcome}  {name}: {told}  ({time.monotonic() - start:.1f} s)", flush=True)


class Lane:
    """One port, the wire behind it and an ordinary user's program that has it to itself."""

    def __init__(self, machine, wire, program):
        self.machine, self.wire = machine, wire
        self.program = machine.programs[program]
        self.port = wire.port  # the adapter comes back under other numbers

    async def fit(self, driver):
        """An instrument just switched on, and a driver object that has not opened its port yet."""
        self.wire.pass_on()
        await self.wire.fit(driver.instrument, driver.grams, driver.switches)
        await self.construct(driver)

    async def construct(self, driver):
        await self.program.call("delete")
        await self.program.construct(driver.name, self.port, driver.codes)

    async def pull(self, way):
        if way == "device_del":
            await self.machine.monitor.execute("device_del", id=ADAPTER["id"])
            await self.machine.monitor.event("DEVICE_DELETED")
        else:
            await self.wire.unplug()
        await self.machine.shell.run(f"while test -e /dev/{self.port}; do sleep 0.05; done")

    async def put_back(self, way):
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


def expect_answer(operation, answer):
    seen = (answer["result"], answer.get("weight"), answer.get("decimals"))
    wanted = (operation.result, operation.weight, operation.decimals)
    if seen != wanted:
        raise Failure(f"{operation.call} gives {seen}, not {wanted}; trace {answer['trace']!r}")


async def read_again(lane, driver):
    reading = reading_of(driver)
    expect_answer(reading, await lane.program.call(reading.call))


async def every_operation(lane, driver):
    """All operations in turn, on one driver object at the driver's own settings."""
    await lane.fit(driver)
    for position, operation in enumerate(driver.operations):
        answer = await lane.program.call(operation.call)
        expect_answer(operation, answer)
        if position == 0:
            expect_in_trace(f"/dev/{lane.port} OPENED SUCCESSFULLY!\n\n", answer)
    expect("the port's settings", lane.wire.settings, driver.settings)
    return f"{len(driver.operations)} operations at {driver.settings}"


def expect_interrupted(operation, driver, answer, result):
    weight = operation.weight if result or operation.weight is None else driver.failed_weight
    if (answer["result"], answer.get("weight")) != (result, weight):
        raise Failure(f"{operation.call} gives {answer}, not {result} with {weight}")


async def pulled_and_returned(lane, driver, operation, way):
    """The adapter goes at the operation's first command and is back before the operation ends."""
    await lane.fit(driver)
    expect("IsReady before it", (await lane.program.call("IsReady"))["result"], 1)
    held = lane.port
    if operation.interrupted == "before":
        await lane.pull(way)
        lane.program.send(operation.call)
    else:
        lane.wire.swallow()
        lane.program.send(operation.call)
        await asyncio.wait_for(lane.wire.heard.wait(), 60)
        await lane.pull(way)
    await lane.put_back(way)
    expect_interrupted(operation, driver, await lane.program.answer(), operation.pulled)
    lane.wire.pass_on()
    await lane.construct(driver)
    expect("IsReady of a new object", (await lane.program.call("IsReady"))["result"], 1)
    await read_again(lane, driver)
    return f"{operation.pulled}; {held} came back as {lane.port}, read again by a new object"


async def cut_and_mended(lane, driver, operation):
    """The cable is out for half a second from the operation's first command on."""
    await lane.fit(driver)
    expect("IsReady before it", (await lane.program.call("IsReady"))["result"], 1)
    lane.wire.swallow()
    lane.program.send(operation.call)
    await asyncio.wait_for(lane.wire.heard.wait(), 60)
    await lane.wire.unplug()
    await asyncio.sleep(0.5)
    lane.wire.pass_on()
    await lane.wire.plug()
    expect_interrupted(operation, driver, await lane.program.answer(), operation.cut)
    await lane.wire.fit(driver.instrument, driver.grams, driver.switches)
    await read_again(lane, driver)
    return f"{operation.cut}; read again on the open port"


async def built_in_port(lane, report):
    await lane.wire.plug()
    for driver in DRIVERS:
        await report.case(f"ttyS1 {driver.name}", every_operation, lane, driver)
        for operation in driver.operations:
            if operation.interrupted == "first command":
                await report.case(f"ttyS1 {driver.name} {operation.call}, cable out and in again",
                                  cut_and_mended, lane, driver, operation)


async def adapter(lane, report):
    await lane.put_back("chardev closed")
    for driver in DRIVERS:
        await report.case(f"ttyUSB0 {driver.name}", every_operation, lane, driver)
        for operation in driver.operations:
            if operation.interrupted != "never":
                way = next(PULLS)
                await report.case(
                    f"ttyUSB0 {driver.name} {operation.call}, adapter pulled and back ({way})",
                    pulled_and_returned, lane, driver, operation, way)


# From here on: who may use a port, and what is no port. Any driver shows it.
ANY = DRIVERS[0]


async def two_programs(lane):
    """The second is refused while the first goes on; it has the port when the first has closed."""
    await lane.fit(ANY)
    second = lane.machine.programs["member-2" if lane.program.name == "member-1" else "member-1"]
    await second.construct(ANY.name, lane.port, ANY.codes)
    await read_again(lane, ANY)
    expect_refused(lane.port, await second.call("IsReady"))
    await read_again(lane, ANY)
    await lane.program.call("delete")
    # The port object that could not be opened is still held, and is given up by this call.
    expect("the next IsReady of the second", (await second.call("IsReady"))["result"], 0)
    expect_answer(reading_of(ANY), await second.call(reading_of(ANY).call))
    await second.call("delete")
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
    root = lane.machine.programs["root-1"]
    await root.construct(ANY.name, lane.port, ANY.codes)
    expect_answer(reading_of(ANY), await root.call(reading_of(ANY).call))
    await root.die()
    expect_refused(lane.port, await lane.program.call("IsReady"))
    await lane.machine.shell.run(f"rm /run/lock/LCK..{lane.port}")
    await lane.construct(ANY)
    await read_again(lane, ANY)
    return "refused until root takes it away"


async def no_permission(lane):
    await lane.fit(ANY)
    modes = await lane.machine.shell.run(f"stat -c '%a %U:%G' /dev/{lane.port}")
    expect("the node", modes, ["660 root:dialout"])
    stranger = lane.machine.programs["stranger-1"]
    await stranger.construct(ANY.name, lane.port, ANY.codes)
    expect_refused(lane.port, await stranger.call("IsReady"))
    await read_again(lane, ANY)
    return "refused; a member of dialout reads"


async def no_port(lane, port, put_there, take_away):
    """What stands at the device's name is no serial port."""
    await lane.machine.shell.run(put_there)
    await lane.program.call("delete")
    await lane.program.construct(ANY.name, port, ANY.codes)
    expect_refused(port, await lane.program.call("IsReady"))
    expect("IsReady again", (await lane.program.call("IsReady"))["result"], 0)
    expect_refused(port, await lane.program.call("IsReady"))
    await lane.machine.shell.run(take_away)
    return "refused each time"


async def plugged_in_later(lane):
    """The adapter comes after the first attempt; the same driver object finds it."""
    await lane.fit(ANY)
    await lane.pull("device_del")
    expect_refused(lane.port, await lane.program.call("IsReady"))
    await lane.put_back("device_del")
    expect("the next IsReady", (await lane.program.call("IsReady"))["result"], 0)
    await read_again(lane, ANY)
    return "refused, given up, found"


async def refusals(lane, report):
    async def case(name, work, *arguments):
        await report.case(f"{lane.wire.port} {name}", work, lane, *arguments)

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
