"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

LINE = (2400, 7, "N", 1)

STEPS = {
    "": [
        (b"V\r\n", b"1.10\r\n"),
        (b"P\r\n", b"        2.50 g      \r\n"),
        (b"SP\r\n", b"        2.50 g      \r\n"),
        (b"T\r\n", b""),
        (b"P\r\n", b"        0.00 g      \r\n"),
    ],
    "series=explorer wake-up-time=0s": [
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
    ],
}
