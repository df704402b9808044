#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Attacks a processing service of its own, on loopback, and prints what came of each try.

Usage: attacks.py BIN/teko-service"""
import concurrent.futures
import os
import re
import statistics
import sys
import tempfile
import threading
import time

from common import Service, wav


def report(tried, outcome):
    print(f"{tried:74} → {outcome}", flush=True)


def answers(service, path="/generate_204"):
    """How long a short request takes, in words."""
    begin = time.monotonic()
    try:
        status, _ = service.raw(f"GET {path} HTTP/1.1\r\nHost: 127.0.0.1:{service.port}\r\n\r\n".encode(), timeout=8)
    except OSError:
        status = 0
    took = time.monotonic() - begin
    return f"a short request is answered after {took * 1000:.0f} ms" if status else f"no answer within {took:.0f} s"


def hold(service, count, request, read=0):
    """Opens connections, sends each the same bytes, and keeps them open."""
    connections = []
    for _ in range(count):
        try:
            connection = service.connect(timeout=1)
            connections.append(connection)
            connection.sendall(request)
            if read:
                connection.recv(read)
        except OSError:
            continue
    return connections


def occupy(service, session, job):
    results = service.post("download.php", session, songID=job).split("|")[0]
    path = results[results.index("/results/"):]
    begin, _ = service.upload_request(1 << 30)
    mine, _ = service.upload_request(1 << 30, session)
    host = f"Host: 127.0.0.1:{service.port}\r\n"
    tries = {
        "450 connections that say nothing": (450, b"", 0),
        "450 that begin a form and stop": (450, f"POST /teko-server/remains.php HTTP/1.1\r\n{host}".encode(), 0),
        "60 uploads without an account, 2 MB and then nothing": (60, begin + bytes(2 << 20), 0),
        "60 readers of a result that take 1 byte": (60, f"GET {path} HTTP/1.1\r\n{host}\r\n".encode(), 1),
        "250 uploads with an account, 1 kB and then nothing": (250, mine + bytes(1024), 0),
    }
    for tried, (count, request, read) in tries.items():
        held = hold(service, count, request, read)
        report(tried, answers(service))
        for connection in held:
            connection.close()
        time.sleep(0.5)


def slow_transfers(service, session, job):
    """Held for longer than the window of the minimum rate."""
    path = service.post("download.php", session, songID=job).split("|")[0]
    path = path[path.index("/results/"):]
    mine, _ = service.upload_request(1 << 30, session)
    get = f"GET {path} HTTP/1.1\r\nHost: 127.0.0.1:{service.port}\r\n\r\n".encode()
    connections = {"upload": service.connect(timeout=200), "reader": service.connect(timeout=200)}
    connections["upload"].sendall(mine + bytes(2 << 20))
    connections["reader"].sendall(get)
    begin = time.monotonic()
    ended = {}
    while len(ended) < 2 and time.monotonic() - begin < 150:
        time.sleep(5)
        took = time.monotonic() - begin
        if "upload" not in ended:
            try:
                connections["upload"].sendall(b"x")
            except OSError:
                ended["upload"] = took
        if "reader" not in ended:
            connections["reader"].recv(1)
            if not holds_result(service):
                ended["reader"] = took
    for what, name in (("an upload of 2 MB at once, then", "upload"), ("a reader of a result that takes", "reader")):
        report(f"{what} a byte every 5 s", f"cut after {ended[name]:.0f} s" if name in ended else "held for 150 s")


def holds_result(service):
    """Whether the service still has a result's file open."""
    folder = f"/proc/{service.process.pid}/fd"
    for number in os.listdir(folder):
        try:
            if "/results/" in os.readlink(os.path.join(folder, number)):
                return True
        except OSError:
            continue
    return False


def fill_disk(service):
    begin, _ = service.upload_request(1 << 30)
    peak, stop = [0], threading.Event()
    folder = os.path.join(service.folder, "uploads")
    known = set(os.listdir(folder))

    def watch():
        while not stop.is_set():
            sizes = 0
            for name in set(os.listdir(folder)) - known:
                try:
                    sizes += os.path.getsize(os.path.join(folder, name))
                except OSError:
                    continue
            peak[0] = max(peak[0], sizes)
            time.sleep(0.01)

    thread = threading.Thread(target=watch)
    thread.start()
    with service.connect() as connection:
        connection.sendall(begin)
        try:
            for _ in range(300):
                connection.sendall(bytes(1 << 20))
        except OSError:
            pass
    stop.set()
    thread.join()
    report("300 MB uploaded without a session", f"{peak[0] >> 20} MB on the disk at most")


def web_pages(service):
    host = f"127.0.0.1:{service.port}"
    for header, value in (("Origin", "http://evil.example"), ("Origin", "null"), ("Origin", "http://" + host),
                          ("Host", f"evil.example:{service.port}"), ("Host", f"[::1]:{service.port}"),
                          ("Host", "localhost:1"), ("Host", "")):
        headers = {"Host": host, header: value}
        request = "GET / HTTP/1.1\r\n" + "".join(f"{k}: {v}\r\n" for k, v in headers.items()) + "\r\n"
        report(f"{header}: {value}", service.raw(request.encode())[0])
    for kind in ("text/plain", "multipart/form-data"):
        body = "email=a@b.c&password=12345678&name=x"
        request = (f"POST /teko-server/auth/register.php HTTP/1.1\r\nHost: {host}\r\nContent-Type: {kind}\r\n"
                   f"Content-Length: {len(body)}\r\n\r\n{body}")
        report(f"a form of the type {kind}", service.raw(request.encode())[0])


def sign_in(service, session):
    def login(email, password, client="127.0.0.1"):
        return service.post("auth/login.php", client=client, email=email, password=password)

    def outcome(reply):
        return "succeeds" if "hash" in reply else reply

    for name in ("owner", "other"):
        service.register(name + "@b.org")
    for _ in range(11):
        last = login("owner@b.org", "wrong", "198.51.100.3")
    report("11 wrong passwords of one account from one address", last)
    report("… its owner signs in from another address", outcome(login("owner@b.org", "12345678")))
    tries = [login(f"n{i}@b.org", "password", "198.51.100.4") for i in range(40)]
    report("one password for 40 accounts", f"{sum('is wrong' in t for t in tries)} tried, then: {tries[-1]}")
    tries = [login("other@b.org", "12345678", "198.51.100.5") for i in range(40)]
    report("40 sign-ins with the right password", f"{sum('hash' in t for t in tries)} succeed, then: {tries[-1]}")
    tries = [login(f"n{i}@b.org", "password", f"127.1.{i}.1") for i in range(40)]
    report("one password for 40 accounts, from 40 loopback addresses",
           f"{sum('is wrong' in t for t in tries)} tried, then: {tries[-1]}")

    stop, times = threading.Event(), []

    def flood(i):
        while not stop.is_set():
            login(f"f{i}@b.org", "password", f"203.0.113.{i % 50 + 1}")

    with concurrent.futures.ThreadPoolExecutor(100) as pool:
        for i in range(100):
            pool.submit(flood, i)
        time.sleep(1)
        replies = [login("owner@b.org", "12345678", f"192.0.2.{i + 1}") for i in range(5)]
        for _ in range(20):
            begin = time.monotonic()
            service.post("auth/check.php", session)
            times.append(time.monotonic() - begin)
        stop.set()
    report("100 clients at 50 addresses sign in all the time; 5 sign-ins of the owner",
           " · ".join(sorted({f"{[outcome(r) for r in replies].count(text)} × {text}" for text in map(outcome, replies)})))
    report("… a signed-in user's request",
           f"median {statistics.median(times) * 1000:.0f} ms, worst {max(times) * 1000:.0f} ms")
    report("a stolen session changes the password",
           service.post("auth/update.php", session, client="192.0.2.99", name="A", email="a@b.org", password="87654321"))
    report("recovery of local@localhost", service.post("auth/recover.php", client="192.0.2.99", email="local@localhost"))
    times = {"owner@b.org": [], "unknown@b.org": []}
    for i in range(40):
        for email in times:
            begin = time.monotonic()
            service.post("auth/recover.php", client=f"192.0.2.{i + 1}", email=email)
            times[email].append(time.monotonic() - begin)
    report("time of a recovery, known and unknown",
           " and ".join(f"{statistics.median(t) * 1e6:.0f} µs" for t in times.values()))


def pile_up(program):
    service = Service(program, ["--workers", "1", "--separator", "sleep 1000", "--trusted-proxy", "127.0.0.1"])
    session = service.register("a@b.org")
    service.upload(wav(1), session)

    def repeat():
        return service.post("repeat.php", session, instrument="bass", version="full", fileName="a", extension="mp3",
                            uploadedFileName="x.wav")

    jobs = [repeat() for _ in range(300)]
    report("one file repeated 300 times", f"{sum(job.isdigit() for job in jobs)} wait, then: {jobs[-1]}")
    for _ in range(1000):
        service.post("cancel.php", session, songID=jobs[0])
        jobs[0] = repeat()
    begin = time.monotonic()
    service.post("remains.php", session, songID=jobs[0])
    report("… and cancelled and repeated 1000 times", f"the time left is answered after {(time.monotonic() - begin) * 1000:.0f} ms")
    sessions = [re.search(r'"hash":"(\w+)"', service.post("auth/login.php", client=f"192.0.2.{i}", email="a@b.org",
                                                          password="12345678"))[1] for i in range(40)]
    report("40 sign-ins to one account", f"{sum('hash' in service.post('auth/check.php', s) for s in sessions)} sessions")
    for _ in range(3):
        service.post("auth/recover.php", client="192.0.2.77", email="a@b.org")
    code = re.search(r"code for a@b.org is (\w+)", open(service.log).read())[1]
    report("a recovery code, asked for by others afterwards",
           "is still valid" if service.post("auth/recover.php", email="a@b.org", code=code, password="87654321") == "1"
           else "is void")
    service.remove()


def files_and_log(program):
    root = tempfile.mkdtemp(prefix="teko-try-")
    for name in ("", "uploads", "results", "work"):
        os.makedirs(os.path.join(root, "data", name), mode=0o755, exist_ok=True)
    for name in ("service.log", "service.db.damaged-2026-01-01T00-00-00", "reserve"):
        open(os.path.join(root, "data", name), "w").close()
    service = Service(program, folder=root)
    session = service.register("a@b.org")
    job = service.upload(wav(1), session)
    service.wait(job, session)
    found = set()
    for folder, folders, files in os.walk(service.folder):
        found |= {f"{os.stat(os.path.join(folder, f)).st_mode & 0o777:o} folder" for f in folders}
        found |= {f"{os.stat(os.path.join(folder, f)).st_mode & 0o777:o} file" for f in files}
    report("a data folder that was there with 0755", ", ".join(sorted(found)))
    hidden = "c\u2028d\u202e\u0085@b.org"
    report("an account for an address with bidi characters",
           service.post("auth/register.php", name="A", email=hidden, password="12345678"))
    service.post("auth/recover.php", email=hidden)
    time.sleep(0.2)
    log = open(service.log, encoding="utf-8").read()
    report("separators and bidi characters in an address",
           "reach the log" if re.search("[\u2028\u202e\u0085]", log) else "do not reach the log")
    service.remove()


def odd_requests(service, session):
    host = f"Host: 127.0.0.1:{service.port}\r\n\r\n"
    report("GET of a form's path", service.raw(f"GET /teko-server/remains.php HTTP/1.1\r\n{host}".encode())[0])
    report("POST of /healthz", service.raw(f"POST /healthz HTTP/1.1\r\n{host}".encode())[0])
    report("two headers Host", service.raw(f"GET / HTTP/1.1\r\nHost: evil.example\r\n{host}".encode())[0])
    chunk = "email=a%40b.org"
    form = (f"POST /teko-server/auth/recover.php HTTP/1.1\r\nTransfer-Encoding: chunked\r\n"
            f"Content-Type: application/x-www-form-urlencoded\r\n{host}{len(chunk):x}\r\n{chunk}\r\n")
    report("a form in chunks that breaks off", service.raw(form.encode())[0])
    for what, name in (("NUL", b"x\0y.wav"), ("broken UTF-8", b"x\xff.wav")):
        content = wav(1)
        begin, end = service.upload_request(len(content) + len(name) - 4, session, name="NAME")
        report(f"a file name with {what}", service.raw(begin.replace(b"NAME", name) + content + end))


def main():
    program = os.path.abspath(sys.argv[1])
    service = Service(program, ["--trusted-proxy", "127.0.0.1"])
    session = service.register("a@b.org")
    job = service.upload(wav(60), session)
    service.wait(job, session)
    fill_disk(service)
    web_pages(service)
    odd_requests(service, session)
    occupy(service, session, job)
    sign_in(service, session)
    if "--quick" not in sys.argv:
        slow_transfers(service, session, job)
    report("addresses of results", service.post("download.php", session, songID=job)[:40] + "…")
    service.remove()
    pile_up(program)
    files_and_log(program)


main()
