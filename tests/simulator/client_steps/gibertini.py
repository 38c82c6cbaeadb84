"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

LINE = (9600, 7, "N", 1)

STEPS = {
    "": [
        (b"B\r", b"      2.50 g   DS\r\n"),
        (b"T\r", b"      2.50 g   TS\r\n"),
        (b"B\r", b"      0.00 g   DS\r\n"),
    ],
}
