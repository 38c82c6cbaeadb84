from cases import Driver, NO_PRESET_TARE, Operation, UNTOUCHED

DRIVERS = (
    Driver(
        "1200 0 8 2 0 1", "1200 8N2", 5.25, line_readiness=True, failed_weight=UNTOUCHED,
        operations=(
            Operation("IsReady", 1, interrupted="before"),
            Operation("Weight 0", 1, 5.25, 7),
            Operation("Weight 1", 1, 5.25, 7),
            Operation("Weight 2", 1, 5.25, 7),
            Operation("Tare", 1),
            Operation("Weight 2", 1, 0.0, 7, interrupted="never"),
            NO_PRESET_TARE,
        )),
)
