#!/usr/bin/env python3
"""places.py SOURCE: fails when docs/adding-a-driver.md does not name a place that a new driver touches.

Such a place is a file in which most of the drivers are named, or one of the files that most drivers have for
themselves, `Example` in the place of the driver.
"""

import collections
import pathlib
import re
import sys

MOST = 0.6  # of the drivers: some share a file with a relative
# Where drivers are named because something was measured.
NO_PLACES = re.compile(r"(build|\.git|fuzz/corpus|docs/performance)/")


def drivers(source):
    """Pairs of name and class."""
    rows = (source / "drivers/instruments.txt").read_text().splitlines()
    return [tuple(row.split()[:2]) for row in rows if row and not row.startswith("#")]


def files(source):
    """Pairs of a path below the sources and the text there."""
    for path in sorted(source.rglob("*")):
        place = path.relative_to(source).as_posix()
        if path.is_file() and not NO_PLACES.match(place):
            yield place, path.read_text(errors="replace")


def own_place(place, driver):
    """The place with the name of the driver replaced; without it where it is none of the driver's own."""
    name, class_name = driver
    for own, example in ((class_name, "WbalanceExample"), (name, "example")):
        if re.search(rf"(?<![\w-]){own}(?![a-z0-9-])", place):
            return re.sub(rf"(?<![\w-]){own}(?![a-z0-9-])", example, place)
    return None


def places(source):
    every = drivers(source)
    own = collections.Counter()
    for place, text in files(source):
        named = [driver for driver in every if any(re.search(rf"(?<![\w-]){word}(?![\w-])", text) for word in driver)]
        if len(named) >= MOST * len(every):
            yield place
        own.update({own_place(place, driver) for driver in every} - {None})
    # A driver of Mettler's is in a folder of its own.
    counted = collections.Counter()
    for place, count in own.items():
        counted[place.replace("/mettler/", "/")] += count
    yield from (place for place, count in counted.items() if count >= MOST * len(every))


def main():
    source = pathlib.Path(sys.argv[1])
    page = "docs/adding-a-driver.md"
    text = (source / page).read_text()
    found = sorted(set(places(source)) - {page})
    missing = [place for place in found if f"`{place}`" not in text]
    print("\n".join(f"{page} does not name {place}" for place in missing) or f"{len(found)} places")
    return 1 if missing or not found else 0


if __name__ == "__main__":
    sys.exit(main())
