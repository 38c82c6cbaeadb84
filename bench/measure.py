"""Runs a program several times and prints the medians of what a run costs, as one JSON object.

    measure.py RUNS PROGRAM ARGS...
"""

import json
import os
import statistics
import sys
import time


def run(command):
    begin = time.monotonic()
    process = os.fork()
    if process == 0:
        silent = os.open(os.devnull, os.O_WRONLY)
        os.dup2(silent, 1)
        os.dup2(silent, 2)
        os.execvp(command[0], command)
    _, status, usage = os.wait4(process, 0)
    return {
        "wall_ms": (time.monotonic() - begin) * 1e3,
        "processor_ms": (usage.ru_utime + usage.ru_stime) * 1e3,
        "resident_kb": usage.ru_maxrss,
        "failed": os.waitstatus_to_exitcode(status) != 0,
    }


def main():
    runs = [run(sys.argv[2:]) for _ in range(int(sys.argv[1]))]
    result = {key: statistics.median(r[key] for r in runs) for key in ("wall_ms", "processor_ms", "resident_kb")}
    result["failed"] = sum(r["failed"] for r in runs)
    print(json.dumps(result))


main()
