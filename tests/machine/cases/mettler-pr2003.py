from cases import (
    Driver, Operation, SWITCH, UNTOUCHED, mt_sics_readings, preset_tare_without_confirmation)

DRIVERS = (
    Driver("2400 2 7 0 0 1", "2400 7E1", 5.25,
           operations=(*mt_sics_readings(5.25, UNTOUCHED),
                       *preset_tare_without_confirmation(UNTOUCHED), *SWITCH)),
)

IN_PIECES = Operation("Weight 2", 1, 5.25, UNTOUCHED), "S S      5.250 g\r\n"
