#!/usr/bin/env python3
"""links.py FOLDER [EVERYTHING]: fails for a link on a page below FOLDER that leads to no file there, or to no heading
of it, and names it. A page that names an installed file of this project, by its path from the root, must
find it below EVERYTHING."""

import pathlib
import re
import sys

SKIPPED = {"build", ".git"}


def pages(folder):
    for path in sorted(folder.rglob("*")):
        if path.is_file() and (path.suffix == ".md" or path.name == "README.Debian"):
            if not SKIPPED & set(path.relative_to(folder).parts):
                yield path


def anchors(page):
    headings = re.findall(r"^#+ (.*)$", page.read_text(), flags=re.M)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def relative_links(text):
    text = re.sub(r"^```.*?^```", "", text, flags=re.M | re.S)
    return [link for link in re.findall(r"\]\(([^)\s]+)\)", text) if "://" not in link]


def leads_nowhere(page, link):
    name, _, anchor = link.partition("#")
    target = page.parent / name if name else page
    return not target.exists() or (anchor and anchor not in anchors(target))


def main():
    folder = pathlib.Path(sys.argv[1])
    everything = pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else None
    wrong, count = [], 0
    for page in pages(folder):
        links = relative_links(page.read_text())
        named = re.findall(r"/usr/[\w./+-]*wbalance[\w./+-]*", page.read_text()) if everything else []
        count += len(links) + len(named)
        wrong += [f"{page}: {link} leads nowhere" for link in links if leads_nowhere(page, link)]
        wrong += [f"{page}: {path} is not installed" for path in named
                  if not (everything / path.rstrip(".").lstrip("/")).exists()]
    print("\n".join(wrong) or f"{count} links")
    return 1 if wrong or count == 0 else 0


if __name__ == "__main__":
    sys.exit(main())
