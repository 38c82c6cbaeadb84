from cases import Driver, SWITCH, UNTOUCHED, mt_sics_readings, preset_tare_without_confirmation

DRIVERS = (
    Driver("9600 0 8 0 0 1", "9600 8N1", 4.25,
           operations=(*mt_sics_readings(4.25, UNTOUCHED),
                       *preset_tare_without_confirmation(UNTOUCHED), *SWITCH)),
)
