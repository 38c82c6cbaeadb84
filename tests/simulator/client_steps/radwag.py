"""What client programs send to this instrument, and its answers; pyserial_client.py says how."""

LINE = (9600, 7, "E", 1)

STEPS = {
    "": [
        (b"PC\r\n", b'PC A "Z,T,OT,UT,S,SI,SU,SUI,C1,C0,CU1,CU0,DH,UH,ODH,OUH,NB,BN,FS,RV,UI,US,UG,'
                    b'OMI,OMS,OMG,BP,A,EV,FIS,ARS,LDS,PC"\r\n'),
        (b"S\r\n", b"S A\r\nS          2.50 g  \r\n"),
        (b"SI\r\n", b"SI         2.50 g  \r\n"),
        (b"SU\r\n", b"SU A\r\nSU         2.50 g  \r\n"),
        (b"SUI\r\n", b"SUI        2.50 g  \r\n"),
        (b"C1\r\n", b"C1 A\r\nSI         2.50 g  \r\n"),
        (b"C0\r\n", b"C0 A\r\n", b"SI         2.50 g  \r\n"),
        (b"T\r\n", b"T A\r\nT D\r\n"),
        (b"SI\r\n", b"SI         0.00 g  \r\n"),
        (b"Z\r\n", b"Z A\r\nZ D\r\n"),
        (b"X\r\n", b"ES\r\n"),
    ],
}
