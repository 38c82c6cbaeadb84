"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

LINE = (600, 7, "E", 1)

STEPS = {
    "": [
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
    ],
}
