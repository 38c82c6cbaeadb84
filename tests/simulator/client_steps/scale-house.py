"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

LINE = (2400, 7, "N", 1)

STEPS = {
    "": [
        (b"P\r\n", b"PROJ 12\r\n 2.50 g\r\n 0.00 g T\r\n 2.50 g N\r\n"),
        (b"Z\r\n", b""),
        (b"P\r\n", b"PROJ 12\r\n 0.00 g\r\n 0.00 g T\r\n 0.00 g N\r\n"),
        (b"T\r\n", b""),
        (b"P\r\n", b"PROJ 12\r\n 0.00 g\r\n 0.00 g T\r\n 0.00 g N\r\n"),
    ],
}
