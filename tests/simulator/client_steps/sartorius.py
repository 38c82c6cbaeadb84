"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

LINE = (1200, 7, "O", 1)

STEPS = {
    "": [
        (b"\x1bx1_\r\n", b"LA620S        \r\n"),
        (b"\x1bx2_\r\n", b"37454321      \r\n"),
        (b"\x1bx3_\r\n", b"00-37-09      \r\n"),
        (b"\x1bP\r\n", b"+     2.50 g  \r\n"),
        (b"\x1bT\r\n", b""),
        (b"\x1bP\r\n", b"+     0.00 g  \r\n"),
    ],
    "series=mse line=22": [
        (b"\x1bx1_\r\n", b"MSE1203S-100-DR     \r\n"),
        (b"\x1bx2_\r\n", b"37454321            \r\n"),
        (b"\x1bx3_\r\n", b"00-37-09            \r\n"),
        (b"\x1bP\r\n", b"N     +     2.50 g  \r\n"),
        (b"\x1bT\r\n", b""),
        (b"\x1bP\r\n", b"N           0.00 g  \r\n"),
    ],
}
