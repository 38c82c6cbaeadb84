from cases import Driver, NO_PRESET_TARE, Operation, UNTOUCHED

DRIVERS = (
    # The driver sets no parity: the port keeps none.
    Driver(
        "9600 1024 7 0 0 1", "9600 7N1", 5.25, line_readiness=True,
        failed_weight=UNTOUCHED,
        operations=(
            Operation("IsReady", 1, interrupted="before"),
            Operation("Weight 0", 1, 5.25, 2),
            Operation("Tare", 1),
            Operation("Weight 0", 1, 0.0, 2, interrupted="never"),
            NO_PRESET_TARE,
        )),
)
