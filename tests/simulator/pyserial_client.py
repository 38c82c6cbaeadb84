#!/usr/bin/python3
"""A client that is not ours, Debian's python3-serial, at every simulated instrument.

    pyserial_client.py every SIMULATOR INSTRUMENTS   each instrument of the list, all at once
    pyserial_client.py NUMBER                        the row of that number, under wbalance-sim

At every instrument: the port opens with the instrument's settings, takes others and the first again,
is held exclusively, moves its control lines, asks for low latency, and drops what was received. Then
each command that client programs send comes with the bytes that the instrument answers. The forms of
the answers are those of the manuals that tests/simulator/*_test.cpp name.
"""

import re
import subprocess
import sys
import termios
import time
from collections import namedtuple

try:
    import serial
except ImportError:
    print(f"skipped: {sys.executable} has no module serial (apt-get install python3-serial)")
    sys.exit(77)

DEVICE = "/dev/ttyS0"
LOAD = "2.5"
PATIENCE = 30  # seconds; an answer is there at once, but the computer may be busy

# `line` are speed, data bits, parity and stop bits. A step is a command and its answer; with a third
# part, that part is what the instrument goes on sending until the answer.
Row = namedtuple("Row", "instrument switches line steps")

# Level 0 and 1 of every MT-SICS balance.
BASIC_COMMANDS = (
    b'I0 B 0 "I0"\r\nI0 B 0 "I1"\r\nI0 B 0 "I2"\r\nI0 B 0 "I3"\r\nI0 B 0 "I4"\r\nI0 B 0 "I5"\r\n'
    b'I0 B 0 "S"\r\nI0 B 0 "SI"\r\nI0 B 0 "SIR"\r\nI0 B 0 "Z"\r\nI0 B 0 "ZI"\r\nI0 B 0 "@"\r\n'
    b'I0 B 1 "D"\r\nI0 B 1 "DW"\r\nI0 B 1 "SR"\r\nI0 B 1 "T"\r\nI0 B 1 "TA"\r\nI0 B 1 "TAC"\r\n'
    b'I0 B 1 "TI"\r\n')

ROWS = [
    Row("mettler-toledo", [], (2400, 7, "E", 1), [
        (b"@\r\n", b'I4 A "1126493049"\r\n'),
        (b"I0\r\n", BASIC_COMMANDS + b'I0 A 2 "PWR"\r\n'),
        (b"I1\r\n", b'I1 A "01" "2.30" "2.22"\r\n'),
        (b"I2\r\n", b'I2 A "MT-SICS 610.00 g"\r\n'),
        (b"I3\r\n", b'I3 A "1.20 34.28.3.4485.1729"\r\n'),
        (b"I4\r\n", b'I4 A "1126493049"\r\n'),
        (b"S\r\n", b"S S       2.50 g\r\n"),
        (b"T\r\n", b"T S       2.50 g\r\n"),
        (b"TA\r\n", b"TA A       2.50 g\r\n"),
        (b"SI\r\n", b"S S       0.00 g\r\n"),
        (b"TAC\r\n", b"TAC A\r\n"),
        (b"TA 1.00 g\r\n", b"TA A       1.00 g\r\n"),
        (b"SI\r\n", b"S S       1.50 g\r\n"),
        (b"TI\r\n", b"TI S       2.50 g\r\n"),
        (b"ZI\r\n", b"ZI S\r\n"),
        (b"Z\r\n", b"Z A\r\n"),
        (b"SI\r\n", b"S S       0.00 g\r\n"),
        (b"M21 0 0\r\n", b"ES\r\n"),
    ]),
    Row("mettler-xs", [], (9600, 8, "N", 1), [
        (b"@\r\n", b'I4 A "1126493049"\r\n'),
        (b"I0\r\n", BASIC_COMMANDS + b'I0 B 2 "C1"\r\nI0 B 2 "C3"\r\nI0 B 2 "DAT"\r\n'
                    b'I0 B 2 "I10"\r\nI0 B 2 "I11"\r\nI0 B 2 "M21"\r\nI0 B 2 "PWR"\r\n'
                    b'I0 B 2 "SIS"\r\nI0 B 2 "SNR"\r\nI0 B 2 "TIM"\r\nI0 A 2 "UPD"\r\n'),
        (b"I1\r\n", b'I1 A "0123" "2.30" "2.22" "2.33" "2.20"\r\n'),
        (b"I2\r\n", b'I2 A "XS204 Excellence 220.0090 g"\r\n'),
        (b"I3\r\n", b'I3 A "4.10 10.28.0.493.142"\r\n'),
        (b"I4\r\n", b'I4 A "1126493049"\r\n'),
        (b"M21 0 0\r\n", b"M21 A\r\n"),
        (b"S\r\n", b"S S     2.5000 g\r\n"),
        (b"T\r\n", b"T S     2.5000 g\r\n"),
        (b"TA\r\n", b"TA A     2.5000 g\r\n"),
        (b"SI\r\n", b"S S     0.0000 g\r\n"),
        (b"TAC\r\n", b"TAC A\r\n"),
        (b"TI\r\n", b"TI S     2.5000 g\r\n"),
        (b"ZI\r\n", b"ZI S\r\n"),
        (b"Z\r\n", b"Z A\r\n"),
        (b"SI\r\n", b"S S     0.0000 g\r\n"),
    ]),
    Row("mettler-pr2003", [], (2400, 7, "E", 1), [
        (b"@\r\n", b'I4 A "1126493049"\r\n'),
        (b"I0\r\n", BASIC_COMMANDS + b'I0 B 2 "C1"\r\nI0 B 2 "C3"\r\nI0 B 2 "DAT"\r\n'
                    b'I0 B 2 "I10"\r\nI0 B 2 "I11"\r\nI0 B 2 "M21"\r\nI0 B 2 "PWR"\r\n'
                    b'I0 B 2 "SNR"\r\nI0 B 2 "TIM"\r\nI0 A 2 "UPD"\r\n'),
        (b"I1\r\n", b'I1 A "0123" "2.30" "2.22" "2.33" "2.20"\r\n'),
        (b"I2\r\n", b'I2 A "PR2003 2100.000 g"\r\n'),
        (b"I3\r\n", b'I3 A "3.10 4.23.0.241.117"\r\n'),
        (b"S\r\n", b"S S      2.500 g\r\n"),
        (b"T\r\n", b"T S      2.500 g\r\n"),
        (b"TA\r\n", b"TA A      2.500 g\r\n"),
        (b"SI\r\n", b"S S      0.000 g\r\n"),
        (b"TAC\r\n", b"TAC A\r\n"),
        (b"TI\r\n", b"TI S      2.500 g\r\n"),
        (b"ZI\r\n", b"ZI S\r\n"),
        (b"Z\r\n", b"Z A\r\n"),
        (b"SI\r\n", b"S S      0.000 g\r\n"),
    ]),
    Row("mettler-sb32001", [], (2400, 7, "E", 1), [
        (b"@\r\n", b'I4 A "1126493049"\r\n'),
        (b"I0\r\n", BASIC_COMMANDS + b'I0 B 2 "C1"\r\nI0 B 2 "C3"\r\nI0 B 2 "DAT"\r\n'
                    b'I0 B 2 "I10"\r\nI0 B 2 "I11"\r\nI0 B 2 "M21"\r\nI0 B 2 "PWR"\r\n'
                    b'I0 B 2 "SNR"\r\nI0 B 2 "TIM"\r\nI0 A 2 "UPD"\r\n'),
        (b"I1\r\n", b'I1 A "0123" "2.30" "2.22" "2.33" "2.20"\r\n'),
        (b"I2\r\n", b'I2 A "SB32001 32100.0 g"\r\n'),
        (b"I3\r\n", b'I3 A "3.10 4.23.0.241.118"\r\n'),
        (b"S\r\n", b"S S        2.5 g\r\n"),
        (b"T\r\n", b"T S        2.5 g\r\n"),
        (b"TA\r\n", b"TA A        2.5 g\r\n"),
        (b"SI\r\n", b"S S        0.0 g\r\n"),
        (b"TAC\r\n", b"TAC A\r\n"),
        (b"TI\r\n", b"TI S        2.5 g\r\n"),
        (b"ZI\r\n", b"ZI S\r\n"),
        (b"Z\r\n", b"Z A\r\n"),
        (b"SI\r\n", b"S S        0.0 g\r\n"),
    ]),
    Row("mettler-pm", [], (600, 7, "E", 1), [
        (b"@\r\n", b"ES\r\n"),
        (b"S\r\n", b"S        2.50 g\r\n"),
        (b"T\r\n", b""),
        (b"SI\r\n", b"S        0.00 g\r\n"),
        (b"B 5.00\r\n", b""),
        (b"SI\r\n", b"S       -2.50 g\r\n"),
        (b"B 0\r\n", b""),
        (b"TI\r\n", b""),
        (b"S\r\n", b"S        0.00 g\r\n"),
        (b"IDX\r\n", b"1126493\r\n"),
    ]),
    Row("sartorius", [], (1200, 7, "O", 1), [
        (b"\x1bx1_\r\n", b"LA620S        \r\n"),
        (b"\x1bx2_\r\n", b"37454321      \r\n"),
        (b"\x1bx3_\r\n", b"00-37-09      \r\n"),
        (b"\x1bP\r\n", b"+     2.50 g  \r\n"),
        (b"\x1bT\r\n", b""),
        (b"\x1bP\r\n", b"+     0.00 g  \r\n"),
    ]),
    Row("sartorius", ["series=mse", "line=22"], (1200, 7, "O", 1), [
        (b"\x1bx1_\r\n", b"MSE1203S-100-DR     \r\n"),
        (b"\x1bx2_\r\n", b"37454321            \r\n"),
        (b"\x1bx3_\r\n", b"00-37-09            \r\n"),
        (b"\x1bP\r\n", b"N     +     2.50 g  \r\n"),
        (b"\x1bT\r\n", b""),
        (b"\x1bP\r\n", b"N           0.00 g  \r\n"),
    ]),
    Row("ohaus", [], (2400, 7, "N", 1), [
        (b"V\r\n", b"1.10\r\n"),
        (b"P\r\n", b"        2.50 g      \r\n"),
        (b"SP\r\n", b"        2.50 g      \r\n"),
        (b"T\r\n", b""),
        (b"P\r\n", b"        0.00 g      \r\n"),
    ]),
    Row("ohaus", ["series=explorer", "wake-up-time=0s"], (2400, 7, "N", 1), [
        (b"PSN\r\n", b"B717693125\r\n"),
        (b"PV\r\n", b"1.10\r\n"),
        (b"V\r\n", b"1.10\r\n"),
        (b"IP\r\n", b"      2.50 g\r\n"),
        (b"P\r\n", b"      2.50 g\r\n"),
        (b"SP\r\n", b"      2.50 g\r\n"),
        (b"CP\r\n", b"      2.50 g\r\n"),
        (b"0P\r\n", b"OK!\r\n", b"      2.50 g\r\n"),
        (b"3600P\r\n", b"      2.50 g\r\n"),
        (b"0P\r\n", b"OK!\r\n"),
        (b"Z\r\n", b"OK!\r\n"),
        (b"IP\r\n", b"      0.00 g\r\n"),
        (b"T\r\n", b"ES\r\n"),
        (b"OFF\r\n", b"OK!\r\n"),
        (b"IP\r\n", b"ES\r\n"),
        (b"ON\r\n", b"OK!\r\n"),
        (b"IP\r\n", b"      0.00 g\r\n"),
    ]),
    Row("radwag", [], (9600, 7, "E", 1), [
        (b"PC\r\n", b'PC A "Z,T,OT,UT,S,SI,SU,SUI,C1,C0,CU1,CU0,DH,UH,ODH,OUH,NB,BN,FS,RV,UI,US,UG,'
                    b'OMI,OMS,OMG,BP,PC"\r\n'),
        (b"S\r\n", b"S A\r\nS          2.50 g  \r\n"),
        (b"SI\r\n", b"SI         2.50 g  \r\n"),
        (b"SU\r\n", b"SU A\r\nSU         2.50 g  \r\n"),
        (b"SUI\r\n", b"SUI        2.50 g  \r\n"),
        (b"C1\r\n", b"C1 A\r\nSI         2.50 g  \r\n"),
        (b"C0\r\n", b"C0 A\r\n", b"SI         2.50 g  \r\n"),
        (b"T\r\n", b"T A\r\nT D\r\n"),
        (b"SI\r\n", b"SI         0.00 g  \r\n"),
        (b"Z\r\n", b"Z A\r\nZ D\r\n"),
        (b"X\r\n", b"ES\r\n"),
    ]),
    Row("kern", [], (1200, 8, "N", 2), [
        (b"O8\r\n", b"A00\r\n+   2.50 G S\r\n"),
        (b"O9\r\n", b"A00\r\n+   2.50 G S\r\n"),
        (b"O1\r\n", b"A00\r\n+   2.50 G S\r\n"),
        (b"O0\r\n", b"A00\r\n", b"+   2.50 G S\r\n"),
        (b"T \r\n", b"A00\r\n"),
        (b"O8\r\n", b"A00\r\n+   0.00 G S\r\n"),
        (b"X\r\n", b"E01\r\n"),
    ]),
    Row("gibertini", [], (9600, 7, "N", 1), [
        (b"B\r", b"      2.50 g   DS\r\n"),
        (b"T\r", b"      2.50 g   TS\r\n"),
        (b"B\r", b"      0.00 g   DS\r\n"),
    ]),
    Row("denver-xl1800", [], (2400, 8, "N", 1), [
        (b"?1", b"1+     2.50 g\r\n"),
        (b"T", b""),
        (b"?1", b"1+     0.00 g\r\n"),
    ]),
    Row("setra-el2000s", [], (2400, 8, "N", 1), [
        (b"#", b"1+     2.50 g\r\n"),
        (b"T", b""),
        (b"#", b"1+     0.00 g\r\n"),
    ]),
    Row("scale-house", [], (2400, 7, "N", 1), [
        (b"P\r\n", b"PROJ 12\r\n 2.50 g\r\n 0.00 g T\r\n 2.50 g N\r\n"),
        (b"Z\r\n", b""),
        (b"P\r\n", b"PROJ 12\r\n 0.00 g\r\n 0.00 g T\r\n 0.00 g N\r\n"),
        (b"T\r\n", b""),
        (b"P\r\n", b"PROJ 12\r\n 0.00 g\r\n 0.00 g T\r\n 0.00 g N\r\n"),
    ]),
]


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


def be_client(row):
    with opened(row.line) as port:
        try_settings(port, row.line)
        try_exclusive(row.line)
        try_control_lines(port)
        try_dropping(port, *row.steps[0])
        for step in row.steps:
            try_step(port, *step)
        port.timeout = 0.2
        expect("behind the last answer", port.read(100), b"")
    with opened(row.line) as port:  # again, after it was closed
        try_step(port, *row.steps[-1])


def listed_instruments(path):
    with open(path, encoding="ascii") as rows:
        return [row.split()[0] for row in rows if row.strip() and not row.startswith("#")]


def start(simulator, number):
    row = ROWS[number]
    switches = [word for switch in row.switches for word in ("--with", switch)]
    return subprocess.Popen([simulator, row.instrument, "--load", LOAD, *switches, "--", sys.executable,
                             __file__, str(number)], stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def try_every(simulator, instruments):
    expect("instruments with rows", sorted({row.instrument for row in ROWS}),
           sorted(listed_instruments(instruments)))
    running = [start(simulator, number) for number in range(len(ROWS))]
    wrong = 0
    for row, client in zip(ROWS, running):
        said = client.communicate()[0].decode()
        if client.returncode == 0 and not said:
            continue
        wrong += 1
        print(f"{row.instrument} {' '.join(row.switches)}: exit code {client.returncode}\n{said}")
    return 1 if wrong else 0


if __name__ == "__main__":
    if sys.argv[1] == "every":
        sys.exit(try_every(sys.argv[2], sys.argv[3]))
    be_client(ROWS[int(sys.argv[1])])
