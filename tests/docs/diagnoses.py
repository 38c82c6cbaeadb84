#!/usr/bin/env python3
"""diagnoses.py SOURCE: compares docs/troubleshooting.md with the sentences in the program.

Every sentence with which doctor ends must be quoted on the page, at least in part, and whatever the page
quotes must be in the program.
"""

import pathlib
import re
import sys

# Where diagnoses are made. Shorter literals are labels, device names and parts of sentences.
SOURCES = ("tools/wbalance/doctor/Doctor.cpp", "tools/wbalance/line/PortTrouble.cpp",
           "tools/wbalance/line/PortName.cpp", "tools/wbalance/process/PortCheck.cpp",
           "tools/wbalance/process/BalanceProcess.cpp", "tools/wbalance/readings/Reading.cpp")
SHORTEST = 30

# Literals that are no diagnosis.
NO_DIAGNOSIS = {
    "opens, nobody else holds it": "what was seen, not what is wrong",
    '": give a number, or a name such as /dev/ttyS0': "an error of the command line, before anything is examined",
    "--usb goes with a port number, not with the name ": "the same",
    ": too large; at most 8 digits": "the same",
    ": everything works; `wbalance weigh --driver ": "nothing is wrong",
    "? `wbalance detect` tries other settings": "the end of the sentence about silence",
    "; `wbalance detect` finds the instrument": "the end of the sentence about unknown text",
    " reads the weight": "nothing is wrong",
    "; choose the balance's standard print format": "the end of the sentence about records",
    "; end other programs, or raise the limits of this one (ulimit -n, ulimit -u)":
        "the end of the sentence about processes",
    "; choose others with --line, or use another adapter": "the end of the sentence about settings",
}


def literals(text):
    """The string literals of C++ source, neighbours joined as the compiler joins them."""
    text = re.sub(r"^\s*#include.*$|//.*$", "", text, flags=re.M)
    for joined in re.findall(r'"(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*', text):
        yield "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', joined)).replace('\\"', '"')


def quotations(page):
    """What the first cells of the page's tables quote, without what differs from case to case."""
    for cell in re.findall(r"^\| (`[^|]*?`(?:, `[^|]*?`)*) \|", page, flags=re.M):
        for quotation in re.findall(r"`([^`]+)`", cell):
            parts = re.split(r"[;:] |/dev/ttyACM0|dialout|NAME|\.\.\.| N\)| X(?![a-z])| Y(?![a-z])", quotation)
            yield quotation, [part.strip(" ;:,()") for part in parts if len(part.strip(" ;:,()")) > 2]


def main():
    source = pathlib.Path(sys.argv[1])
    said = [literal for name in SOURCES for literal in literals((source / name).read_text())]
    said += ["No such file or directory"]  # of the C library
    quoted = list(quotations((source / "docs/troubleshooting.md").read_text()))
    wrong = [f'the page quotes "{quotation}", but the program does not say "{part}"'
             for quotation, parts in quoted for part in parts if not any(part in literal for literal in said)]
    known = [part for _, parts in quoted for part in parts]
    wrong += [f'the program says "{literal}", but the page does not quote it' for literal in said
              if len(literal) >= SHORTEST and literal not in NO_DIAGNOSIS
              and not any(part in literal for part in known)]
    print("\n".join(wrong) or f"{len(quoted)} quotations")
    return 1 if wrong or not quoted else 0


if __name__ == "__main__":
    sys.exit(main())
