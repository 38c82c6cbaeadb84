#!/usr/bin/env python3
"""places.py SOURCE: fails unless docs/adding-a-driver.md names exactly the files that a new driver touches.

Such a file is one in which most of the drivers are named, or one of those that most drivers have for themselves, with
`Example` or `example` in the place of the driver. On that page a path in backticks is such a file, or a script to run.
"""

import collections
import pathlib
import re
import sys

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(sys.argv[1]) / "scripts"))
import instruments

PAGE = "docs/adding-a-driver.md"
MOST = 0.7  # of the drivers: some share a file with a relative


def own_place(place, driver):
    """The place with the name of the driver replaced."""
    name, class_name = driver
    for own, example in ((class_name, "WbalanceExample"), (name, "example")):
        place = re.sub(rf"(?<![\w-]){own}(?![a-z0-9-])", example, place)
    return place.replace("/mettler/", "/")  # the folder that drivers of one maker share


def places(source):
    drivers = instruments.rows(source)
    driver_of = {word: driver for driver in drivers for word in driver}
    any_word = re.compile(r"(?<![\w-])(?:" + "|".join(driver_of) + r")(?![\w-])")
    own = collections.Counter()
    for place in instruments.sources(source):
        text = (source / place).read_text(errors="replace").replace("\\fB", " ")  # a mark of manuals
        named = {driver_of[word] for word in any_word.findall(text)}
        if len(named) >= MOST * len(drivers):
            yield place
        own.update({own_place(place, driver) for driver in drivers if instruments.is_own(place, driver)})
    yield from (place for place, count in own.items() if count >= MOST * len(drivers))


def main():
    source = pathlib.Path(sys.argv[1])
    found = set(places(source)) - {PAGE}
    named = set(re.findall(r"`((?!scripts/)[\w.-]+/[\w./-]+|[\w-]+\.md)`", (source / PAGE).read_text()))
    wrong = [f"{PAGE} does not name {place}" for place in sorted(found - named)]
    wrong += [f"{PAGE} names {place}, in which a new driver changes nothing" for place in sorted(named - found)]
    print("\n".join(wrong) or f"{len(found)} places")
    return 1 if wrong or not found else 0


if __name__ == "__main__":
    sys.exit(main())
