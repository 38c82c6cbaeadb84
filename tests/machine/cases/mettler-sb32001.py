from cases import Driver, mt_sics_readings, preset_tare_without_confirmation

DRIVERS = (
    Driver("2400 2 7 0 0 1", "2400 7E1", 5.2,
           operations=(*mt_sics_readings(5.2, 1), *preset_tare_without_confirmation(1))),
)
