from cases import Driver, Operation


def _operations(weight_after_preset):
    """Every operation begins with a trial reading, which has no second attempt."""
    return (
        Operation("IsReady", 1),
        Operation("Weight 0", 1, 5.25, 2),
        Operation("Weight 1", 1, 5.25, 2),
        Operation("Weight 2", 1, 5.25, 2),
        Operation("Tare", 1),
        Operation("Weight 2", 1, 0.0, 2, interrupted="never"),
        Operation("TareSet 5", 1),
        Operation("Weight 2", 1, weight_after_preset, 2, interrupted="never"),
    )


DRIVERS = (
    # The preset takes the place of the tare; only MT-SICS is told the sum of both.
    Driver("600 2 7 0 0 1", "600 7E1", 5.25,
           variant="on the standard protocol", operations=_operations(0.25)),
    Driver("600 2 7 0 0 1", "600 7E1", 5.25, instrument="mettler-toledo", variant="on MT-SICS",
           operations=_operations(-5.0)),
)
