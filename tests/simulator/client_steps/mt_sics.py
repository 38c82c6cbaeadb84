"""What the balances that speak MT-SICS have in common."""

# Level 0 and 1 of every MT-SICS balance.
BASIC_COMMANDS = (
    b'I0 B 0 "I0"\r\nI0 B 0 "I1"\r\nI0 B 0 "I2"\r\nI0 B 0 "I3"\r\nI0 B 0 "I4"\r\nI0 B 0 "I5"\r\n'
    b'I0 B 0 "S"\r\nI0 B 0 "SI"\r\nI0 B 0 "SIR"\r\nI0 B 0 "Z"\r\nI0 B 0 "ZI"\r\nI0 B 0 "@"\r\n'
    b'I0 B 1 "D"\r\nI0 B 1 "DW"\r\nI0 B 1 "SR"\r\nI0 B 1 "T"\r\nI0 B 1 "TA"\r\nI0 B 1 "TAC"\r\n'
    b'I0 B 1 "TI"\r\n')
