#!/usr/bin/python3
"""A client that is not ours, Debian's python3-serial, at every simulated instrument.

    pyserial_client.py every SIMULATOR INSTRUMENTS   each instrument of the list, all at once
    pyserial_client.py NAME [SWITCH...]              that instrument, under wbalance-sim

At every instrument: the port opens with the instrument's settings, takes others and the first again,
is held exclusively, moves its control lines, asks for low latency, and drops what was received. Then
each command that client programs send comes with the bytes that the instrument answers. They stand in
client_steps/NAME.py:

    LINE     speed, data bits, parity and stop bits
    STEPS    for the instrument as delivered and for some of its switches: commands and their answers;
             a third part is what the instrument goes on sending until the answer

The forms of the answers are those of the manuals that tests/simulator/*_test.cpp name.
"""

import importlib
import pathlib
import re
import subprocess
import sys
import termios
import time

try:
    import serial
except ImportError:
    print(f"skipped: {sys.executable} has no module serial (apt-get install python3-serial)")
    sys.exit(77)

DEVICE = "/dev/ttyS0"
LOAD = "2.5"
PATIENCE = 30  # seconds; an answer is there at once, but the computer may be busy

STEPS_DIRECTORY = pathlib.Path(__file__).parent / "client_steps"

sys.dont_write_bytecode = True
sys.path.insert(0, str(STEPS_DIRECTORY))


def expect(what, found, wanted):
    if found != wanted:
        raise SystemExit(f"{what}: {found!r} instead of {wanted!r}")


def opened(line):
    speed, data_bits, parity, stop_bits = line
    return serial.Serial(DEVICE, speed, data_bits, parity, stop_bits, timeout=PATIENCE,
                         exclusive=True)


def wait_for(what, condition):
    end = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > end:
            raise SystemExit(f"{what}: not within {PATIENCE} seconds")
        time.sleep(0.005)


def try_step(port, sent, answer, repeated=b""):
    port.write(sent)
    if not repeated:
        return expect(f"answer to {sent!r}", port.read(len(answer)), answer)
    received = port.read_until(answer)
    whole = re.fullmatch(b"(%s)*%s" % (re.escape(repeated), re.escape(answer)), received)
    expect(f"{received!r} until the answer to {sent!r}", bool(whole), True)


def system_settings(port):
    """What the system says of the port: speed, data bits, parity and stop bits."""
    flags, speed = termios.tcgetattr(port.fileno())[2], termios.tcgetattr(port.fileno())[5]
    data_bits = {termios.CS7: 7, termios.CS8: 8}[flags & termios.CSIZE]
    parity = "N" if not flags & termios.PARENB else "O" if flags & termios.PARODD else "E"
    return speed, data_bits, parity, 2 if flags & termios.CSTOPB else 1


def try_settings(port, line):
    speed, data_bits, parity, stop_bits = line
    system_speed = getattr(termios, f"B{speed}")
    expect("settings", system_settings(port), (system_speed, data_bits, parity, stop_bits))
    port.apply_settings({"baudrate": 19200, "bytesize": 15 - data_bits, "stopbits": 3 - stop_bits,
                         "parity": "E" if parity == "N" else "N"})
    expect("other settings", system_settings(port),
           (termios.B19200, 15 - data_bits, "E" if parity == "N" else "N", 3 - stop_bits))
    port.apply_settings({"baudrate": speed, "bytesize": data_bits, "stopbits": stop_bits,
                         "parity": parity})
    expect("first settings", system_settings(port), (system_speed, data_bits, parity, stop_bits))


def try_exclusive(line):
    try:
        opened(line)
    except serial.SerialException:
        return
    raise SystemExit("a port that is held exclusively opened again")


def try_control_lines(port):
    expect("CTS, DSR, DCD, RI", (port.cts, port.dsr, port.cd, port.ri), (True, True, True, False))
    for level in (False, True):
        port.dtr = port.rts = level
        expect("DTR and RTS", (port.dtr, port.rts), (level, level))
    port.set_low_latency_mode(True)


def try_dropping(port, sent, answer):
    port.write(sent)
    wait_for(f"{len(answer)} characters to read", lambda: port.in_waiting == len(answer))
    port.reset_input_buffer()
    expect("characters left", port.in_waiting, 0)
    port.reset_output_buffer()
    expect("characters to send", port.out_waiting, 0)


def be_client(name, switches):
    instrument = importlib.import_module(name)
    steps = instrument.STEPS[" ".join(switches)]
    with opened(instrument.LINE) as port:
        try_settings(port, instrument.LINE)
        try_exclusive(instrument.LINE)
        try_control_lines(port)
        try_dropping(port, *steps[0])
        for step in steps:
            try_step(port, *step)
        port.timeout = 0.2
        expect("behind the last answer", port.read(100), b"")
    with opened(instrument.LINE) as port:  # again, after it was closed
        try_step(port, *steps[-1])


def listed_instruments(path):
    with open(path, encoding="ascii") as rows:
        return [row.split()[0] for row in rows if row.strip() and not row.startswith("#")]


def start(simulator, name, switches):
    with_switches = [word for switch in switches for word in ("--with", switch)]
    return subprocess.Popen([simulator, name, "--load", LOAD, *with_switches, "--", sys.executable,
                             __file__, name, *switches],
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def try_every(simulator, instruments):
    # mt_sics.py, with another kind of name, is no instrument's.
    expect("instruments with steps",
           sorted(path.stem for path in STEPS_DIRECTORY.glob("*.py") if "_" not in path.stem),
           sorted(listed_instruments(instruments)))
    running = [(f"{name} {switches}".strip(), start(simulator, name, switches.split()))
               for name in listed_instruments(instruments)
               for switches in importlib.import_module(name).STEPS]
    wrong = 0
    for what, client in running:
        said = client.communicate()[0].decode()
        if client.returncode == 0 and not said:
            continue
        wrong += 1
        print(f"{what}: exit code {client.returncode}\n{said}")
    return 1 if wrong else 0


if __name__ == "__main__":
    if sys.argv[1] == "every":
        sys.exit(try_every(sys.argv[2], sys.argv[3]))
    be_client(sys.argv[1], sys.argv[2:])
