from cases import Driver, Operation, UNTOUCHED

DRIVERS = (
    Driver(
        "1200 1 7 0 0 1", "1200 7O1", 5.25,
        operations=(
            Operation("IsReady", 1),
            Operation("Weight 0", 1, 5.25, UNTOUCHED),
            Operation("Tare", 1),
            Operation("Weight 0", 1, 0.0, UNTOUCHED, interrupted="never"),
            Operation("TareSet 5", 1),
            Operation("Weight 0", 1, -5.0, UNTOUCHED, interrupted="never"),
        )),
)
