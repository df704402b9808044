#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Lets the service hand 20 jobs to a Slurm cluster of two nodes on this machine, and kills one node's daemon with
all that it runs when six of them are done. All 20 must become ready.

Usage: try.py BIN   (the folder of teko-service and teko-separate)"""
import collections
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "service"))
from common import Service, wav

JOBS = 20
CLUSTER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "cluster.sh")


def programs_on(node):
    """The process ids of what the node's jobs run."""
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            if f"SLURMD_NODENAME={node}\0".encode() in open(f"/proc/{pid}/environ", "rb").read():
                found.append(int(pid))
        except OSError:
            continue
    return found


def kill_node(folder, node):
    """The daemon and its jobs' programs, as when the machine breaks down."""
    victims = [int(open(os.path.join(folder, node, "slurmd.pid")).read()), *programs_on(node)]
    for victim in victims:
        try:
            os.kill(victim, signal.SIGKILL)
        except ProcessLookupError:
            continue
    return len(victims)


def main():
    programs = os.path.abspath(sys.argv[1])
    folder = tempfile.mkdtemp(prefix="teko-slurm-")
    subprocess.run([CLUSTER, "start", folder], check=True)
    os.environ["SLURM_CONF"] = os.path.join(folder, "slurm.conf")
    command = f"srun --quiet {programs}/teko-separate {{input}} {{instrument}} {{main}} {{mix}}"
    service = Service(os.path.join(programs, "teko-service"), ["--workers", "4", "--separator", command])
    try:
        sessions = [service.register(f"m{i}@band.org") for i in range(4)]
        song = wav(120)
        begin = time.monotonic()
        jobs = [(service.upload(song, sessions[i % 4], name=f"{i}.wav"), sessions[i % 4]) for i in range(JOBS)]
        killed_at, last = None, -1
        while True:
            states = collections.Counter(service.post("remains.php", session, songID=job) for job, session in jobs)
            ready = states["-1"]
            if ready != last:
                print(f"{time.monotonic() - begin:6.1f} s: {ready} ready", flush=True)
                last = ready
            if ready >= 6 and killed_at is None and programs_on("n2"):
                killed_at = time.monotonic() - begin
                print(f"{killed_at:6.1f} s: killed node n2 ({kill_node(folder, 'n2')} processes)", flush=True)
            if all(state == "-1" or not state.isdigit() for state in states):
                break
            if time.monotonic() - begin > 900:
                break
            time.sleep(0.5)
        print(dict(states))
        log = open(os.path.join(folder, "slurmctld.log")).read()
        print("allocations:", dict(collections.Counter(re.findall(r"JobId=\d+ NodeList=(\w+)", log))))
        print("tried once more:", open(service.log).read().count("tried once more"), "jobs")
        sys.exit(0 if states["-1"] == JOBS else 1)
    finally:
        service.stop()
        if os.environ.get("KEEP"):
            print("kept:", folder, service.root)
        subprocess.run([CLUSTER, "stop", folder])
        if not os.environ.get("KEEP"):
            time.sleep(1)
            shutil.rmtree(folder, ignore_errors=True)
            shutil.rmtree(service.root, ignore_errors=True)


main()
