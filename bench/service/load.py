#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""200 clients of ten accounts send a file of 40 MB each at the same time; meanwhile short requests are timed.

Usage: load.py BIN/teko-service"""
import os
import statistics
import sys
import threading
import time

from common import Service, wav

CLIENTS = 200


def resident(pid):
    with open(f"/proc/{pid}/status") as status:
        lines = dict(line.split(":", 1) for line in status)
    return int(lines["VmHWM"].split()[0]) >> 10


def main():
    # The separator does nothing for long: this is about the transfers.
    service = Service(os.path.abspath(sys.argv[1]), ["--workers", "1", "--separator", "sleep 1000"])
    try:
        sessions = [service.register(f"m{i}@b.org") for i in range(10)]
        content = wav(227)
        answers, times, begin, done = [], [], time.monotonic(), threading.Event()

        def client(i):
            answers.append(service.upload(content, sessions[i % 10], name=f"{i}.wav"))

        def watch():
            while not done.is_set():
                start = time.monotonic()
                service.post("auth/check.php", sessions[0])
                times.append(time.monotonic() - start)
                time.sleep(0.05)

        watcher = threading.Thread(target=watch)
        watcher.start()
        clients = [threading.Thread(target=client, args=(i,)) for i in range(CLIENTS)]
        for thread in clients:
            thread.start()
        for thread in clients:
            thread.join()
        took = time.monotonic() - begin
        done.set()
        watcher.join()
        accepted = sum(answer.isdigit() for answer in answers)
        print(f"{accepted} of {CLIENTS} uploads of {len(content) / 1e6:.0f} MB accepted in {took:.1f} s "
              f"({CLIENTS * len(content) / took / 1e6:.0f} MB/s)")
        print("others:", set(answer for answer in answers if not answer.isdigit()) or "none")
        print(f"a signed-in user's request meanwhile: median {statistics.median(times) * 1000:.0f} ms, "
              f"worst {max(times) * 1000:.0f} ms, {len(times)} requests")
        print(f"memory of the service: {resident(service.process.pid)} MB at most")
        begin = time.monotonic()
        service.post("remains.php", sessions[9], songID=answers[-1])
        print(f"the time left of a job behind the others: {(time.monotonic() - begin) * 1000:.0f} ms")
        sys.exit(0 if accepted == CLIENTS else 1)
    finally:
        service.remove()


main()
