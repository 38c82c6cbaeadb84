"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

LINE = (1200, 8, "N", 2)

STEPS = {
    "": [
        (b"O8\r\n", b"A00\r\n+   2.50 G S\r\n"),
        (b"O9\r\n", b"A00\r\n+   2.50 G S\r\n"),
        (b"O1\r\n", b"A00\r\n+   2.50 G S\r\n"),
        (b"O0\r\n", b"A00\r\n", b"+   2.50 G S\r\n"),
        (b"T \r\n", b"A00\r\n"),
        (b"O8\r\n", b"A00\r\n+   0.00 G S\r\n"),
        (b"X\r\n", b"E01\r\n"),
    ],
}
