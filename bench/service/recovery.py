#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Kills the service 50 times at random moments while clients send files and wait for their results, and looks at
what is left: every job that was accepted must end, and nothing unfinished may lie about.

Usage: recovery.py BIN/teko-service"""
import collections
import os
import random
import subprocess
import sys
import time

from common import Service, wav


def descendants():
    names = subprocess.run(["ps", "-eo", "comm="], capture_output=True, text=True, check=True).stdout.split("\n")
    return names.count("teko-separate")


def main():
    random.seed(7)
    service = Service(os.path.abspath(sys.argv[1]), ["--workers", "2"])
    session = service.register("a@b.org")
    song = wav(20)
    jobs, starts, slowest = [], 0, 0.0
    for kill in range(50):
        end = time.monotonic() + random.uniform(0.01, 0.8)
        while time.monotonic() < end:
            try:
                answer = service.upload(song, session, name=f"{len(jobs)}.wav")
                if answer.isdigit():
                    jobs.append(answer)
            except OSError:
                break
            if random.random() < 0.5:
                time.sleep(random.uniform(0, 0.2))
        service.stop(kill=True)
        begin = time.monotonic()
        service.start()
        slowest = max(slowest, time.monotonic() - begin)
        starts += 1
    ends = collections.Counter(service.wait(job, session, 300) for job in jobs)
    print(f"{starts} kills, {len(jobs)} accepted jobs: {dict(ends)}; slowest start {slowest * 1000:.0f} ms")
    ready = ends["-1"]
    results = len(os.listdir(os.path.join(service.folder, "results")))
    print(f"{ready} ready jobs and {results} results; {len(os.listdir(os.path.join(service.folder, 'work')))} unfinished; "
          f"{descendants()} separators left; log lines of damage: {open(service.log).read().count('damaged')}")
    uploads = len(os.listdir(os.path.join(service.folder, "uploads")))
    print(f"{uploads} uploads on the disk for {len(jobs)} jobs")
    service.remove()
    sys.exit(0 if results == ready and sum(ends.values()) == len(jobs) and "no end" not in ends else 1)


main()
