#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Opens and scrolls a long archive with the software renderer.

    bench/archive.py CLIENT [--records N]

CLIENT is the built archiveclient. Limits: 500 ms from the request to the first frame of the list, the
service's answer included, and 55 frames a second while it is scrolled.
"""
import argparse
import http.server
import json
import os
import subprocess
import sys
import threading

SPEEDS = (500, 2000, 8000)


def records(count):
    return json.dumps([{
        "name": f"A song of the usual length {i}", "deleted": "21 Dec 2026", "instrument": "vocals",
        "extension": "mp3" if i % 3 else "mp4", "demoFile": "no" if i % 5 else "yes",
        "local_file_path": f"/home/musician/Music/A song of the usual length {i}.mp4", "ai_id": i + 1,
    } for i in range(count)]).encode()


class Service(http.server.BaseHTTPRequestHandler):
    """Any address that is asked for gives an empty text, any that is posted to the list."""
    protocol_version = "HTTP/1.1"
    body = b""

    def answer(self, body):
        self.send_response(200)
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def do_GET(self):
        self.answer(b"")

    def do_POST(self):
        self.rfile.read(int(self.headers["Content-Length"]))
        self.answer(Service.body)

    def log_message(self, *_):
        pass


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("client")
    parser.add_argument("--records", type=int, default=10000)
    options = parser.parse_args()
    Service.body = records(options.records)
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Service)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software")
    answer = subprocess.run([options.client, f"http://127.0.0.1:{server.server_port}"], env=environment,
                            capture_output=True, text=True, check=True).stdout.split()
    listed, shown, *motion = map(float, answer)
    print(f"{options.records} records: listed after {listed:.0f} ms, shown after {shown:.0f} ms (limit 500)")
    broken = shown > 500
    for speed, frames, longest in zip(SPEEDS, motion[::2], motion[1::2]):
        print(f"scrolled by {speed} pixels/s: {frames:.0f} frames/s (limit 55), longest frame {longest:.0f} ms")
        broken |= frames < 55
    return int(broken)


if __name__ == "__main__":
    sys.exit(main())
