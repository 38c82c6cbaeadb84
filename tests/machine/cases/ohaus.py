from cases import Driver, NO_PRESET_TARE, Operation

DRIVERS = (
    Driver(
        "2400 0 7 0 0 1", "2400 7N1", 5.25,
        operations=(
            Operation("IsReady", 1),
            Operation("Weight 0", 1, 5.25, 7),
            Operation("Weight 1", 1, 5.25, 7),
            Operation("Tare", 1),
            Operation("Weight 1", 1, 0.0, 7, interrupted="never"),
            NO_PRESET_TARE,
            # Waits for nothing, and a port takes what it can't send any more.
            Operation("RestoreFactorySettings", 1, pulled=1, interrupted="before"),
        )),
)
