"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

from mt_sics import BASIC_COMMANDS

LINE = (2400, 7, "E", 1)

STEPS = {
    "": [
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
    ],
}
