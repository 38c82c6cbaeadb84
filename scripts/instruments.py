"""What the scripts and the tests of the pages share: the rows of drivers/instruments.txt and the files of the tree."""

import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
# What .gitignore has, and git's own folder.
NO_SOURCES = re.compile(r"build|\.git$|\.cache$")
# Where drivers are named because something was found, measured or released with them.
HISTORY = re.compile(r"fuzz/corpus/|docs/performance/|CHANGELOG\.md$")
# A table that scripts/tables writes, from marker to marker.
GENERATED = re.compile(r"instruments: begin.*?instruments: end", re.S)


def rows(root=ROOT):
    """Pairs of the name and the class of each instrument, in the order of the file."""
    lines = (root / "drivers/instruments.txt").read_text().splitlines()
    return [tuple(line.split()[:2]) for line in lines if line and not line.startswith("#")]


def sources(root=ROOT):
    """Paths of the tree's files, from its top, without those of HISTORY."""
    for top in sorted(root.iterdir()):
        if NO_SOURCES.match(top.name):
            continue
        for file in [top] if top.is_file() else sorted(top.rglob("*")):
            place = file.relative_to(root).as_posix()
            if file.is_file() and not HISTORY.match(place):
                yield place


def written_by_hand(text):
    """A file's text without the tables that a script writes."""
    return GENERATED.sub("", text)


def is_own(place, instrument):
    """Whether the path has the instrument's name or class in it."""
    return any(re.search(rf"(?<![\w-]){word}(?![a-z0-9-])", place) for word in instrument)
