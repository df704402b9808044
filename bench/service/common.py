# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""A processing service under test, and the requests that the scripts of this folder send to it."""
import http.client
import os
import re
import shutil
import socket
import struct
import subprocess
import tempfile
import time
import urllib.parse


def wav(seconds, rate=44100, channels=2):
    """A 16-bit WAV file of random sound, which no file system compresses."""
    data = os.urandom(1 << 16)
    size = int(seconds * rate) * channels * 2
    header = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", 36 + size, b"WAVE", b"fmt ", 16, 1, channels, rate,
                         rate * channels * 2, channels * 2, 16, b"data", size)
    return header + (data * (size // len(data) + 1))[:size]


class Service:
    def __init__(self, program, options=(), folder=None):
        self.program = program
        self.options = options
        self.root = folder or tempfile.mkdtemp(prefix="teko-try-")
        self.folder = os.path.join(self.root, "data")
        self.start()

    def start(self):
        self.log = os.path.join(self.root, "log")
        before = os.path.getsize(self.log) if os.path.exists(self.log) else 0
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(
                [self.program, "--listen", "127.0.0.1:0", "--data", self.folder, *self.options], stderr=log)
        while True:
            with open(self.log, "rb") as log:
                log.seek(before)
                found = re.search(rb"Listening on https?://[^:]+:(\d+)", log.read())
            if found:
                break
            if self.process.poll() is not None:
                raise SystemExit(open(self.log).read())
            time.sleep(0.01)
        self.port = int(found[1])

    def stop(self, kill=False):
        self.process.kill() if kill else self.process.terminate()
        self.process.wait()

    def remove(self):
        self.stop()
        shutil.rmtree(self.root)

    def connect(self, source="127.0.0.1", timeout=10):
        return socket.create_connection(("127.0.0.1", self.port), timeout, (source, 0))

    def raw(self, request, **where):
        """The status of the reply to raw bytes, and its text."""
        with self.connect(**where) as connection:
            connection.sendall(request)
            reply = b""
            try:
                while data := connection.recv(65536):
                    reply += data
            except OSError:
                pass
        head, _, body = reply.partition(b"\r\n\r\n")
        return (int(head.split()[1]) if head else 0), body.decode(errors="replace")

    def post(self, path, session="", client="127.0.0.1", headers=None, timeout=60, **form):
        """The reply to a form. Services with --trusted-proxy 127.0.0.1 take it for that of a client at another address."""
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout)
        all_headers = {"Content-Type": "application/x-www-form-urlencoded", "Cookie": "teko-session=" + session,
                       "X-Forwarded-For": client}
        connection.request("POST", "/teko-server/" + path, urllib.parse.urlencode(form),
                           {**all_headers, **(headers or {})})
        return connection.getresponse().read().decode()

    def register(self, email):
        """The session of a new account."""
        reply = self.post("auth/register.php", name="A", email=email, password="12345678")
        return re.search(r'"hash":"(\w+)"', reply)[1]

    def upload_request(self, size, session="", name="x.wav", form=None):
        """The beginning of an upload, up to the content, and its end."""
        fields = {"instrument": "vocals", "version": "full", "fileName": "song", "extension": "mp3",
                  "originalFilePath": "/x", **(form or {})}
        head = "".join(f'--B\r\nContent-Disposition: form-data; name="{k}"\r\n\r\n{v}\r\n' for k, v in fields.items())
        head += f'--B\r\nContent-Disposition: form-data; name="uploadedFile"; filename="{name}"\r\n\r\n'
        end = b"\r\n--B--\r\n"
        length = len(head.encode()) + size + len(end)
        begin = (f"POST /teko-server/proceed.php HTTP/1.1\r\nHost: 127.0.0.1:{self.port}\r\n"
                 f"Content-Length: {length}\r\nCookie: teko-session={session}\r\n"
                 f"Content-Type: multipart/form-data; boundary=B\r\n\r\n{head}").encode()
        return begin, end

    def upload(self, content, session, **options):
        begin, end = self.upload_request(len(content), session, **options)
        return self.raw(begin + content + end, timeout=300)[1]

    def wait(self, job, session, limit=600):
        deadline = time.monotonic() + limit
        while time.monotonic() < deadline:
            reply = self.post("remains.php", session, songID=job)
            if not reply.isdigit():
                return reply
            time.sleep(0.1)
        return "no end"
