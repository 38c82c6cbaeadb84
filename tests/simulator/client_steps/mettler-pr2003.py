"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

from mt_sics import BASIC_COMMANDS

LINE = (2400, 7, "E", 1)

STEPS = {
    "": [
        (b"@\r\n", b'I4 A "1126493049"\r\n'),
        (b"I0\r\n", BASIC_COMMANDS + b'I0 B 2 "C0"\r\nI0 B 2 "C1"\r\nI0 B 2 "C3"\r\n'
                    b'I0 B 2 "DAT"\r\nI0 B 2 "I10"\r\nI0 B 2 "I11"\r\nI0 B 2 "M21"\r\n'
                    b'I0 B 2 "PWR"\r\nI0 B 2 "SIRU"\r\nI0 B 2 "SIU"\r\nI0 B 2 "SNR"\r\n'
                    b'I0 B 2 "SNRU"\r\nI0 B 2 "SRU"\r\nI0 B 2 "SU"\r\nI0 B 2 "TIM"\r\n'
                    b'I0 A 2 "UPD"\r\n'),
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
    ],
}
