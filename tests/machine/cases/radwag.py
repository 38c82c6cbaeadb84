from cases import Driver, Operation, PRESET_TARE_SENDS_NOTHING

DRIVERS = (
    # A tare without an answer is followed by a zero, and that succeeds.
    Driver(
        "9600 2 7 0 0 1", "9600 7E1", 5.25,
        operations=(
            Operation("IsReady", 1, interrupted="before"),
            Operation("Weight 0", 1, 5.25, 2),
            Operation("Weight 1", 1, 5.25, 2, cut=1),
            Operation("Weight 2", 1, 5.25, 2),
            Operation("Tare", 1, cut=1),
            Operation("Weight 2", 1, 0.0, 2, interrupted="never"),
            Operation("Zero", 1),
            PRESET_TARE_SENDS_NOTHING,
        )),
)
