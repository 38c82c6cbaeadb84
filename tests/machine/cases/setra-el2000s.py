from cases import Driver, NO_PRESET_TARE, Operation, UNTOUCHED

DRIVERS = (
    # Asks up to five times, so that the second request of a reading succeeds. It tares after a
    # reading.
    Driver(
        "2400 0 8 0 0 1", "2400 8N1", 5.25,
        operations=(
            Operation("IsReady", 1, cut=1),
            Operation("Weight 0", 1, 5.25, UNTOUCHED, cut=1),
            Operation("Weight 2", 1, 5.25, UNTOUCHED, cut=1),
            Operation("Tare", 1, cut=1),
            Operation("Weight 0", 1, 0.0, UNTOUCHED, interrupted="never"),
            NO_PRESET_TARE,
        )),
)
