"""The drivers: their settings, their operations, and what those give with an interrupted line. Each
instrument has a file of its own.

All expectations are literal, from the rules of the instrument and of the driver. An interruption
takes the operation's first command away, and its answer with it.
"""

import importlib
import sys
from dataclasses import dataclass, replace
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
    codes: str  # the driver's own settings as SetCommConfig takes them
    settings: str  # the same as the port receives them
    grams: float  # on its pan
    operations: tuple
    switches: tuple = ()
    failed_weight: float = 0.0  # what a failed reading leaves in *weight
    variant: str = ""  # tells two rows of one driver apart
    line_readiness: bool = False  # the guest's driver is that WithLineReadiness
    instrument: str = ""  # of the simulated instruments; without one the driver's own
    name: str = ""  # of machine-guest; the name of the file in which the row stands

    @property
    def title(self):
        return f"{self.name} {self.variant}".strip()


def mt_sics_readings(weight, decimals):
    """Without the answer to S these drivers go on with SI, and that one arrives."""
    return (
        Operation("IsReady", 1, interrupted="before"),
        Operation("Weight 0", 1, weight, decimals),
        Operation("Weight 1", 1, weight, decimals, cut=1),
        Operation("Weight 2", 1, weight, decimals),
        Operation("Tare", 1),
        Operation("Weight 2", 1, 0.0, decimals, interrupted="never"),
    )


def preset_tare_without_confirmation(decimals):
    """The preset is 5 g more than the load that the tare takes; no answer to it is success too."""
    return (
        Operation("TareSet 5", 1, pulled=1, cut=1),
        Operation("Weight 2", 1, -5.0, decimals, interrupted="never"),
        Operation("DisplayMessage READY", 1),
        Operation("Weight 2", 1, -5.0, decimals, interrupted="never"),
    )


SWITCH = (Operation("TurnItOff", 1), Operation("TurnItOn", 1))

NO_PRESET_TARE = Operation("TareSet 5", 0, interrupted="never")
PRESET_TARE_SENDS_NOTHING = Operation("TareSet 5", 1, interrupted="never")
FACTORY_SETTINGS_SEND_NOTHING = Operation("RestoreFactorySettings", 1, interrupted="never")


_LIST = Path(__file__).parents[3] / "drivers" / "instruments.txt"
_NAMES = [row.split()[0] for row in _LIST.read_text().splitlines() if row and row[0] != "#"]
_MISSING = [name for name in _NAMES if not (Path(__file__).parent / f"{name}.py").exists()]
if _MISSING:
    sys.exit(f"no cases in {Path(__file__).parent} for {', '.join(_MISSING)}")


def _rows(name, module):
    """The rows of one instrument's file, with the names that the file's own gives them."""
    return tuple(replace(row, name=name + "+line" * row.line_readiness, instrument=row.instrument or name)
                 for row in module.DRIVERS)


_MODULES = {name: importlib.import_module(f"cases.{name}") for name in _NAMES}

DRIVERS = tuple(row for name, module in _MODULES.items() for row in _rows(name, module))

# Readings of an answer that comes character by character, and what the driver reads of it. With an
# end mark all is read; without one a piece ends an attempt, and three attempts end the reading.
IN_PIECES = tuple((_rows(name, module)[-1], *module.IN_PIECES)
                  for name, module in _MODULES.items() if hasattr(module, "IN_PIECES"))
