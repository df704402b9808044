#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Compares the program's transfers with curl's, in one run against the same raw server.

Files lie in memory (/dev/shm), so that disks do not count.
The second half puts the server behind a link shaped to 1 Gbit/s, which takes Linux, the rights of an
administrator and the tools ip and tc; without them it says so and is left out.
"""
import argparse
import os
import shutil
import socket
import subprocess
import sys
import tempfile
import threading
import time

PORT = 8799
NETNS = "teko-bench"


class Server:
    """A raw server: throws uploads away and sends the file to whoever asks for anything else."""

    def __init__(self, address, path):
        self.path = path
        self.listener = socket.create_server((address, PORT))
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            connection, _ = self.listener.accept()
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()

    def serve(self, connection):
        with connection:
            try:
                while self.answer(connection):
                    pass
            except OSError:
                pass

    def answer(self, connection):
        head = b""
        while b"\r\n\r\n" not in head:
            data = connection.recv(65536)
            if not data:
                return False
            head += data
        head, rest = head.split(b"\r\n\r\n", 1)
        length = 0
        for line in head.split(b"\r\n")[1:]:
            if line.lower().startswith(b"content-length:"):
                length = int(line.split(b":")[1])
        self.drain(connection, length - len(rest))
        if b"download.php" in head:
            host = head.split(b"Host: ")[1].split(b"\r\n")[0]
            self.send(connection, b"http://" + host + b"/1|http://" + host + b"/2")
        elif head.startswith(b"GET"):
            self.send_file(connection)
        else:
            self.send(connection, b"1")
        return True

    @staticmethod
    def drain(connection, left):
        buffer = bytearray(1 << 20)
        while left > 0:
            got = connection.recv_into(buffer, min(left, len(buffer)))
            if not got:
                raise OSError("cut off")
            left -= got

    @staticmethod
    def send(connection, body):
        connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % len(body) + body)

    def send_file(self, connection):
        with open(self.path, "rb") as file:
            size = os.fstat(file.fileno()).st_size
            connection.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: %d\r\n\r\n" % size)
            connection.sendfile(file)


def run(command):
    """Seconds and peak memory in MB of one command, which must succeed."""
    begin = time.monotonic()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"failed: {' '.join(command)}")
    return time.monotonic() - begin, usage.ru_maxrss / 1024


def best(commands, rounds):
    """The best time and the highest memory of each command; they take turns."""
    results = {name: [] for name in commands}
    for _ in range(rounds):
        for name, command in commands.items():
            results[name].append(run(command))
    return {name: (min(r[0] for r in runs), max(r[1] for r in runs)) for name, runs in results.items()}


def compare(client, address, folder, path, rounds):
    url = f"http://{address}:{PORT}"
    targets = [os.path.join(folder, name) for name in ("1.wav", "2.wav")]
    up = best({
        "curl": ["curl", "-sf", "-H", "Expect:", "-F", f"uploadedFile=@{path}", f"{url}/up"],
        "client": [client, url, "up", path],
    }, rounds)
    down = best({
        "curl": ["curl", "-sfZ", "--no-progress-meter", "-o", targets[0], f"{url}/1", "-o", targets[1], f"{url}/2"],
        "client": [client, url, "down", *targets],
    }, rounds)
    for target in targets:
        if os.path.getsize(target) != os.path.getsize(path):
            sys.exit(f"{target} is not whole")
    return up, down


def report(title, result, limit, max_memory, size, wanted):
    (curl_time, curl_memory), (time_, memory) = result["curl"], result["client"]
    ratio = time_ / curl_time
    ok = ratio <= limit and memory <= max_memory
    print(f"{title:28} curl {curl_time:6.2f} s {size / curl_time:6.0f} MiB/s {curl_memory:4.0f} MB"
          f"   client {time_:6.2f} s {size / time_:6.0f} MiB/s {memory:4.0f} MB"
          f"   {wanted.format(ratio=ratio, speed=1 / ratio)}   {'ok' if ok else 'MISSED'}")
    return ok


def shaped_link():
    """A network namespace of its own behind two ends of a cable that carries 1 Gbit/s each way."""
    # What a run that was killed has left behind.
    for leftover in (f"ip netns del {NETNS}", "ip link del tekob0"):
        subprocess.run(leftover.split(), stderr=subprocess.DEVNULL)
    commands = [
        f"ip netns add {NETNS}",
        f"ip link add tekob0 type veth peer name tekob1 netns {NETNS}",
        "ip addr add 10.249.0.1/30 dev tekob0",
        "ip link set tekob0 up",
        f"ip -n {NETNS} addr add 10.249.0.2/30 dev tekob1",
        f"ip -n {NETNS} link set tekob1 up",
        "tc qdisc add dev tekob0 root tbf rate 1gbit burst 256kb latency 20ms",
        f"tc -n {NETNS} qdisc add dev tekob1 root tbf rate 1gbit burst 256kb latency 20ms",
    ]
    return all(subprocess.run(c.split(), stderr=subprocess.DEVNULL).returncode == 0 for c in commands)


def compare_on_link(arguments, folder, path):
    ok = False
    try:
        if not (shutil.which("ip") and shutil.which("tc") and shaped_link()):
            print("1 Gbit/s link: left out, a shaped link cannot be made on this machine")
            return True
        server = subprocess.Popen(["ip", "netns", "exec", NETNS, sys.executable, __file__, "--serve", path])
        wait_for("10.249.0.2")
        up, down = compare(arguments.client, "10.249.0.2", folder, path, 2)
        server.terminate()
        server.wait()
        wanted = "{speed:.3f} of curl's speed (at least %s)"
        ok = report("upload at 1 Gbit/s", up, 1 / 0.98, 60, arguments.size, wanted % 0.98)
        ok = report("two downloads at 1 Gbit/s", down, 1 / 0.95, 100, 2 * arguments.size, wanted % 0.95) and ok
    finally:
        if shutil.which("ip"):
            subprocess.run(["ip", "netns", "del", NETNS], stderr=subprocess.DEVNULL)
    return ok


def wait_for(address):
    while True:
        try:
            socket.create_connection((address, PORT)).close()
            return
        except OSError:
            time.sleep(0.01)


def built_client():
    root = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
    return os.path.join(root, "build", "release", "bin", "transferclient")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("client", nargs="?", default=built_client(), help="the built transferclient")
    parser.add_argument("--size", type=int, default=1024, help="of each file, in MiB")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--no-link", action="store_true")
    parser.add_argument("--serve", metavar="FILE", help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    if arguments.serve:
        Server("0.0.0.0", arguments.serve)
        threading.Event().wait()
    folder = tempfile.mkdtemp(prefix="teko-bench-", dir="/dev/shm")
    path = os.path.join(folder, "source.wav")
    try:
        with open(path, "wb") as file:
            for _ in range(arguments.size):
                file.write(os.urandom(1 << 20))
        server = subprocess.Popen([sys.executable, __file__, "--serve", path])
        wait_for("127.0.0.1")
        up, down = compare(arguments.client, "127.0.0.1", folder, path, arguments.rounds)
        server.terminate()
        server.wait()
        # Qt's manager hands a body over in steps of 16 kB, which only shows where no link is slower.
        ok = report("upload, loopback", up, float("inf"), 60, arguments.size, "{ratio:.2f} x curl's time (no limit)")
        ok = report("two downloads, loopback", down, 2, 100, 2 * arguments.size,
                    "{ratio:.2f} x curl's time (at most 2)") and ok
        if not arguments.no_link:
            ok = compare_on_link(arguments, folder, path) and ok
    finally:
        shutil.rmtree(folder)
    sys.exit(0 if ok else 1)


main()
