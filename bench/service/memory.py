#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Time and memory of the service and its separator for 1, 4, 16 and 60 minutes of sound.

Usage: memory.py BIN/teko-service"""
import os
import sys
import threading
import time

from common import Service, wav


def peak(pid):
    try:
        with open(f"/proc/{pid}/status") as status:
            return next(int(line.split()[1]) for line in status if line.startswith("VmHWM")) >> 10
    except (OSError, StopIteration):
        return 0


def separators():
    """The process ids of all teko-separate."""
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            if open(f"/proc/{pid}/comm").read().strip() == "teko-separate":
                found.append(pid)
        except OSError:
            continue
    return found


def main():
    service = Service(os.path.abspath(sys.argv[1]), ["--workers", "1"])
    try:
        session = service.register("a@b.org")
        for minutes in (1, 4, 16, 60):
            highest, done = [0], threading.Event()

            def watch():
                while not done.is_set():
                    highest[0] = max([highest[0], *(peak(pid) for pid in separators())])
                    time.sleep(0.05)

            watcher = threading.Thread(target=watch)
            watcher.start()
            content = wav(minutes * 60)
            begin = time.monotonic()
            job = service.upload(content, session, name=f"{minutes}.wav")
            sent = time.monotonic()
            end = service.wait(job, session, 3000)
            took = time.monotonic() - sent
            done.set()
            watcher.join()
            print(f"{minutes:3} minutes, {len(content) >> 20:4} MiB: upload {sent - begin:5.1f} s, separation "
                  f"{took:6.1f} s ({minutes * 60 / took:.0f} times real time), separator {highest[0]} MB, "
                  f"service {peak(service.process.pid)} MB, {'ready' if end == '-1' else end}", flush=True)
            service.post("removeUploaded.php", session, fileName=f"{minutes}.wav")
    finally:
        service.remove()


main()
