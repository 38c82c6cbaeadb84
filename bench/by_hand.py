"""What a user would write instead: a pyserial script that asks a balance for its weight."""

import sys

import serial

if sys.argv[1] == "kern":
    port = serial.Serial("/dev/ttyS0", 1200, serial.EIGHTBITS, serial.PARITY_NONE, serial.STOPBITS_TWO, timeout=3)
    port.write(b"O8\r\n")
    port.readline()  # A00
    record = port.readline().decode("ascii")
    print(float(record[0:8].replace(" ", "")), "g", file=sys.stderr)
else:
    port = serial.Serial("/dev/ttyS0", 2400, serial.SEVENBITS, serial.PARITY_EVEN, serial.STOPBITS_ONE, timeout=3)
    port.write(b"SI\r\n")
    answer = port.readline().decode("ascii")
    print(float(answer[4:14]), "g", file=sys.stderr)
