"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

LINE = (2400, 8, "N", 1)

STEPS = {
    "": [
        (b"?1", b"1+     2.50 g\r\n"),
        (b"T", b""),
        (b"?1", b"1+     0.00 g\r\n"),
    ],
}
