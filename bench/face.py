# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""The face's cost with the software renderer: first frame, rest, moving bar."""
import os
import statistics
import subprocess
import sys
import tempfile
import time

client = sys.argv[1]
home = tempfile.TemporaryDirectory()
environment = dict(os.environ, HOME=home.name, QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software",
                   TEKO_SERVICE_URL="http://127.0.0.1:9")
broken = False


def run(*arguments):
    done = subprocess.run([client, *arguments], env=environment, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, check=True, text=True, timeout=60)
    return done.stdout.strip()


def report(what, value, unit, limit):
    global broken
    broken |= value > limit
    print(f"{what:44} {value:7.2f} {unit} (limit {limit})")


def first_frames(rounds):
    """The median seconds from the start of the process to the first frame, of the windows in turn."""
    times = {"empty": [], "main": []}
    for number in range(rounds + 2):
        for which, found in times.items():
            start = time.perf_counter()
            assert run(which) == "frame"
            if number > 1:
                found.append(time.perf_counter() - start)
    return {which: statistics.median(found) for which, found in times.items()}


frames = first_frames(15)
empty, main = (frames[which] * 1000 for which in ("empty", "main"))
print(f"empty window {empty:.0f} ms, main window with all its pictures {main:.0f} ms")
report("first frame, main to empty", main / empty, "x", 2)
report("frames of the main window at rest in 5 s", int(run("rest", "5")), " ", 0)
for scale in ("0.6", "1.0", "1.5"):
    report(f"moving bar at scale {scale}", float(run("bar", scale, "8")), "% of a core", 3)
sys.exit(broken)
