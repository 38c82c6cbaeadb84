from cases import Driver, NO_PRESET_TARE, Operation

DRIVERS = (
    Driver(
        "2400 0 7 0 0 1", "2400 7N1", 5.25,
        operations=(
            Operation("IsReady", 1),
            Operation("Weight 0", 1, 5.25, 3),
            Operation("Tare", 1),
            Operation("Weight 0", 1, 0.0, 3, interrupted="never"),
            NO_PRESET_TARE,
        )),
)
