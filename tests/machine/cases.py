"""The drivers: their settings, their operations, and what those give with an interrupted line.

All expectations are literal, from the rules of the instrument and of the driver. An interruption
takes the operation's first command away, and its answer with it.
"""

from dataclasses import dataclass

UNTOUCHED = -1  # what the guest's weight and decimals hold before a reading


@dataclass(frozen=True)
class Operation:
    call: str
    result: int
    weight: float = None
    decimals: int = None
    pulled: int = 0  # the result when the adapter is pulled
    cut: int = 0  # the result when the line is cut and is whole again half a second later
    # When the adapter is pulled: at the "first command"; "before" an operation that waits for no
    # answer, so that nothing leaves the port; "never" when the operation sends nothing at all or
    # only shows what the one before it has done.
    interrupted: str = "first command"


@dataclass(frozen=True)
class Driver:
    name: str  # of machine-guest
    codes: str  # the driver's own settings as SetCommConfig takes them
    settings: str  # the same as the port receives them
    instrument: str  # of the simulated instruments
    grams: float  # on its pan
    operations: tuple
    switches: tuple = ()
    failed_weight: float = 0.0  # what a failed reading leaves in *weight


def _mt_sics_readings(weight, decimals):
    """Without the answer to S these drivers go on with SI, and that one arrives."""
    return (
        Operation("IsReady", 1, interrupted="before"),
        Operation("Weight 0", 1, weight, decimals),
        Operation("Weight 1", 1, weight, decimals, cut=1),
        Operation("Weight 2", 1, weight, decimals),
        Operation("Tare", 1),
        Operation("Weight 2", 1, 0.0, decimals, interrupted="never"),
    )


_PRESET_TARE_SENDS_NOTHING = Operation("TareSet 5", 1, interrupted="never")
_FACTORY_SETTINGS_SEND_NOTHING = Operation("RestoreFactorySettings", 1, interrupted="never")

DRIVERS = (
    Driver(
        "mettler-toledo", "2400 2 7 0 0 1", "2400 7E1", "mettler-toledo", 5.25,
        switches=("reset-answer=off",),
        operations=(*_mt_sics_readings(5.25, 2), _PRESET_TARE_SENDS_NOTHING,
                    _FACTORY_SETTINGS_SEND_NOTHING)),
    # A balance that answers the reset needs the readiness that sends none.
    Driver("mettler-toledo+line", "2400 2 7 0 0 1", "2400 7E1", "mettler-toledo", 5.25,
           operations=_mt_sics_readings(5.25, 2)),
)
