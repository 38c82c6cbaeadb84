#!/usr/bin/env python3
"""places.py SOURCE: fails when docs/adding-a-driver.md does not name a file that a new driver touches.

Such a file is one in which most of the drivers are named, or one of those that most drivers have for themselves, with
`Example` or `example` in the place of the driver.
"""

import collections
import pathlib
import re
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(sys.argv[1]) / "scripts"))
import instruments

PAGE = "docs/adding-a-driver.md"
MOST = 0.6  # of the drivers: some share a file with a relative


def own_place(place, driver):
    """The place with the name of the driver replaced."""
    name, class_name = driver
    for own, example in ((class_name, "WbalanceExample"), (name, "example")):
        place = re.sub(rf"(?<![\w-]){own}(?![a-z0-9-])", example, place)
    return place.replace("/mettler/", "/")  # the folder that drivers of one maker share


def places(source):
    drivers = instruments.rows(source)
    own = collections.Counter()
    for place in instruments.sources(source):
        text = (source / place).read_text(errors="replace")
        named = [driver for driver in drivers if any(re.search(rf"(?<![\w-]){word}(?![\w-])", text) for word in driver)]
        if len(named) >= MOST * len(drivers):
            yield place
        own.update({own_place(place, driver) for driver in drivers if instruments.is_own(place, driver)})
    yield from (place for place, count in own.items() if count >= MOST * len(drivers))


def main():
    source = pathlib.Path(sys.argv[1])
    found = set(places(source)) - {PAGE}
    text = (source / PAGE).read_text()
    missing = sorted(place for place in found if f"`{place}`" not in text)
    print("\n".join(f"{PAGE} does not name {place}" for place in missing) or f"{len(found)} places")
    return 1 if missing or not found else 0


if __name__ == "__main__":
    sys.exit(main())
