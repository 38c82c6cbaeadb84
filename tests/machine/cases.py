"""The drivers: their settings, their operations, and what those give with an interrupted line.

All expectations are literal, from the rules of the instrument and of the driver. An interruption
takes the operation's first command away, and its answer with it.
"""

import sys
from dataclasses import dataclass
from pathlib import Path

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
    variant: str = ""  # tells two rows of one driver apart

    @property
    def title(self):
        return f"{self.name} {self.variant}".strip()


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


def _preset_tare_without_confirmation(decimals):
    """The preset is 5 g more than the load that the tare takes; no answer to it is success too."""
    return (
        Operation("TareSet 5", 1, pulled=1, cut=1),
        Operation("Weight 2", 1, -5.0, decimals, interrupted="never"),
        Operation("DisplayMessage READY", 1),
        Operation("Weight 2", 1, -5.0, decimals, interrupted="never"),
    )


_SWITCH = (Operation("TurnItOff", 1), Operation("TurnItOn", 1))

_NO_PRESET_TARE = Operation("TareSet 5", 0, interrupted="never")
_PRESET_TARE_SENDS_NOTHING = Operation("TareSet 5", 1, interrupted="never")
_FACTORY_SETTINGS_SEND_NOTHING = Operation("RestoreFactorySettings", 1, interrupted="never")


def _mettler_pm(weight_after_preset):
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
    Driver(
        "mettler-toledo", "2400 2 7 0 0 1", "2400 7E1", "mettler-toledo", 5.25,
        switches=("reset-answer=off",), variant="without an answer to the reset",
        operations=(*_mt_sics_readings(5.25, 2), _PRESET_TARE_SENDS_NOTHING,
                    _FACTORY_SETTINGS_SEND_NOTHING)),
    # A balance that answers the reset needs the readiness that sends none.
    Driver("mettler-toledo+line", "2400 2 7 0 0 1", "2400 7E1", "mettler-toledo", 5.25,
           operations=_mt_sics_readings(5.25, 2)),
    # The preset takes the place of the tare; only MT-SICS is told the sum of both.
    Driver("mettler-pm", "600 2 7 0 0 1", "600 7E1", "mettler-pm", 5.25,
           variant="on the standard protocol", operations=_mettler_pm(0.25)),
    Driver("mettler-pm", "600 2 7 0 0 1", "600 7E1", "mettler-toledo", 5.25, variant="on MT-SICS",
           operations=_mettler_pm(-5.0)),
    Driver("mettler-pr2003", "2400 2 7 0 0 1", "2400 7E1", "mettler-pr2003", 5.25,
           operations=(*_mt_sics_readings(5.25, UNTOUCHED),
                       *_preset_tare_without_confirmation(UNTOUCHED), *_SWITCH)),
    Driver("mettler-xs", "9600 0 8 0 0 1", "9600 8N1", "mettler-xs", 4.25,
           operations=(*_mt_sics_readings(4.25, UNTOUCHED),
                       *_preset_tare_without_confirmation(UNTOUCHED), *_SWITCH)),
    Driver("mettler-sb32001", "2400 2 7 0 0 1", "2400 7E1", "mettler-sb32001", 5.2,
           operations=(*_mt_sics_readings(5.2, 1), *_preset_tare_without_confirmation(1))),
    Driver(
        "sartorius", "1200 1 7 0 0 1", "1200 7O1", "sartorius", 5.25,
        operations=(
            Operation("IsReady", 1),
            Operation("Weight 0", 1, 5.25, UNTOUCHED),
            Operation("Tare", 1),
            Operation("Weight 0", 1, 0.0, UNTOUCHED, interrupted="never"),
            Operation("TareSet 5", 1),
            Operation("Weight 0", 1, -5.0, UNTOUCHED, interrupted="never"),
        )),
    Driver(
        "ohaus", "2400 0 7 0 0 1", "2400 7N1", "ohaus", 5.25,
        operations=(
            Operation("IsReady", 1),
            Operation("Weight 0", 1, 5.25, 7),
            Operation("Weight 1", 1, 5.25, 7),
            Operation("Tare", 1),
            Operation("Weight 1", 1, 0.0, 7, interrupted="never"),
            _NO_PRESET_TARE,
            # Waits for nothing, and a port takes what it can't send any more.
            Operation("RestoreFactorySettings", 1, pulled=1, interrupted="before"),
        )),
    # A tare without an answer is followed by a zero, and that succeeds.
    Driver(
        "radwag", "9600 2 7 0 0 1", "9600 7E1", "radwag", 5.25,
        operations=(
            Operation("IsReady", 1, interrupted="before"),
            Operation("Weight 0", 1, 5.25, 2),
            Operation("Weight 1", 1, 5.25, 2, cut=1),
            Operation("Weight 2", 1, 5.25, 2),
            Operation("Tare", 1, cut=1),
            Operation("Weight 2", 1, 0.0, 2, interrupted="never"),
            Operation("Zero", 1),
            _PRESET_TARE_SENDS_NOTHING,
        )),
    Driver(
        "kern+line", "1200 0 8 2 0 1", "1200 8N2", "kern", 5.25, failed_weight=UNTOUCHED,
        operations=(
            Operation("IsReady", 1, interrupted="before"),
            Operation("Weight 0", 1, 5.25, 7),
            Operation("Weight 1", 1, 5.25, 7),
            Operation("Weight 2", 1, 5.25, 7),
            Operation("Tare", 1),
            Operation("Weight 2", 1, 0.0, 7, interrupted="never"),
            _NO_PRESET_TARE,
        )),
    # The driver sets no parity: the port keeps none.
    Driver(
        "gibertini+line", "9600 1024 7 0 0 1", "9600 7N1", "gibertini", 5.25,
        failed_weight=UNTOUCHED,
        operations=(
            Operation("IsReady", 1, interrupted="before"),
            Operation("Weight 0", 1, 5.25, 2),
            Operation("Tare", 1),
            Operation("Weight 0", 1, 0.0, 2, interrupted="never"),
            _NO_PRESET_TARE,
        )),
    # These two ask up to five times, so that the second request of a reading succeeds. The
    # XL-1800's tare has been lost then, the EL-2000S tares after a reading.
    Driver(
        "denver-xl1800", "2400 0 8 0 0 1", "2400 8N1", "denver-xl1800", 5.25,
        operations=(
            Operation("IsReady", 1, cut=1),
            Operation("Weight 0", 1, 5.25, UNTOUCHED, cut=1),
            Operation("Weight 2", 1, 5.25, UNTOUCHED, cut=1),
            Operation("Tare", 1),
            Operation("Weight 0", 1, 0.0, UNTOUCHED, interrupted="never"),
            _NO_PRESET_TARE,
        )),
    Driver(
        "setra-el2000s", "2400 0 8 0 0 1", "2400 8N1", "setra-el2000s", 5.25,
        operations=(
            Operation("IsReady", 1, cut=1),
            Operation("Weight 0", 1, 5.25, UNTOUCHED, cut=1),
            Operation("Weight 2", 1, 5.25, UNTOUCHED, cut=1),
            Operation("Tare", 1, cut=1),
            Operation("Weight 0", 1, 0.0, UNTOUCHED, interrupted="never"),
            _NO_PRESET_TARE,
        )),
    Driver(
        "scale-house", "2400 0 7 0 0 1", "2400 7N1", "scale-house", 5.25,
        operations=(
            Operation("IsReady", 1),
            Operation("Weight 0", 1, 5.25, 3),
            Operation("Tare", 1),
            Operation("Weight 0", 1, 0.0, 3, interrupted="never"),
            _NO_PRESET_TARE,
        )),
)

_LIST = Path(__file__).parents[2] / "drivers" / "instruments.txt"
_LISTED = {row.split()[0] for row in _LIST.read_text().splitlines() if row and row[0] != "#"}
_MISSING = _LISTED - {driver.name.removesuffix("+line") for driver in DRIVERS}
if _MISSING:
    sys.exit(f"no cases in {__file__} for {', '.join(sorted(_MISSING))}")

_BY_TITLE = {driver.title: driver for driver in DRIVERS}

# Readings of an answer that comes character by character, and what the driver reads of it. With an
# end mark all is read; without one a piece ends an attempt, and three attempts end the reading.
IN_PIECES = (
    (_BY_TITLE["mettler-pr2003"], Operation("Weight 2", 1, 5.25, UNTOUCHED),
     "S S      5.250 g\r\n"),
    (_BY_TITLE["mettler-toledo+line"], Operation("Weight 2", 0, 0.0, UNTOUCHED), "S S"),
)
