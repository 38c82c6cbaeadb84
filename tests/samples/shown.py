#!/usr/bin/env python3
"""shown.py DOCS: fails when a program in DOCS/samples does not stand on host-programming.md as it is."""

import pathlib
import sys

docs = pathlib.Path(sys.argv[1])
page = (docs / "host-programming.md").read_text()
samples = list((docs / "samples").iterdir())
different = [sample.name for sample in samples if f"```cpp\n{sample.read_text()}```\n" not in page]
print("\n".join(f"host-programming.md does not show samples/{name} as it is" for name in different))
sys.exit(1 if different or not samples else 0)
