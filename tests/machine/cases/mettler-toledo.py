from cases import (
    Driver, FACTORY_SETTINGS_SEND_NOTHING, Operation, PRESET_TARE_SENDS_NOTHING, UNTOUCHED,
    mt_sics_readings)

DRIVERS = (
    Driver(
        "2400 2 7 0 0 1", "2400 7E1", 5.25,
        switches=("reset-answer=off",), variant="without an answer to the reset",
        operations=(*mt_sics_readings(5.25, 2), PRESET_TARE_SENDS_NOTHING,
                    FACTORY_SETTINGS_SEND_NOTHING)),
    # A balance that answers the reset needs the readiness that sends none.
    Driver("2400 2 7 0 0 1", "2400 7E1", 5.25, line_readiness=True,
           operations=mt_sics_readings(5.25, 2)),
)

# Of the balance that answers the reset.
IN_PIECES = Operation("Weight 2", 0, 0.0, UNTOUCHED), "S S"
