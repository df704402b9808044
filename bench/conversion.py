#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Compares conversions through the program's worker with bare ffmpeg under the same arguments.

    bench/conversion.py CLIENT [--minutes N] [--rounds N]

CLIENT is the built conversionclient. Limits: 1.05 times ffmpeg's own time plus 150 ms, and 700 ms from
a cancel to the end of the worker's thread.
"""
import argparse
import os
import statistics
import subprocess
import sys
import tempfile
import time

QUIET = dict(stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)


def removed(path):
    if os.path.exists(path):
        os.remove(path)


def client_seconds(client, entry, source, output, original="", *cancel):
    removed(output)
    answer = subprocess.run([client, entry, source, output, original, *cancel],
                            capture_output=True, text=True, check=True)
    return float(answer.stdout)


def bare_seconds(ffmpeg, arguments, output):
    removed(output)
    start = time.monotonic()
    subprocess.run([ffmpeg, *arguments, output], check=True, **QUIET)
    return time.monotonic() - start


def compare(name, rounds, ours, bare):
    """Takes turns, so that a busy machine is busy for both."""
    pairs = [(ours(), bare()) for _ in range(rounds)]
    mine, plain = (statistics.median(column) for column in zip(*pairs))
    limit = 1.05 * plain + 0.15
    print(f"{name:32} {mine:8.3f} s   ffmpeg alone {plain:8.3f} s   limit {limit:8.3f} s")
    return mine <= limit


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("client")
    parser.add_argument("--minutes", type=float, default=3)
    parser.add_argument("--rounds", type=int, default=5)
    options = parser.parse_args()
    client = os.path.abspath(options.client)
    ffmpeg = os.path.join(os.path.dirname(client), "ffmpeg.exe")

    with tempfile.TemporaryDirectory() as folder:
        wav, mp3, mp4, out_wav, out_flac, out_mpg = (
            os.path.join(folder, name) for name in
            ("s.wav", "s.mp3", "s.mp4", "out.wav", "out.flac", "out.mpg"))
        seconds = str(options.minutes * 60)
        sound = ["-f", "lavfi", "-i", f"anoisesrc=r=44100:a=0.3:d={seconds}", "-ac", "2"]
        picture = ["-f", "lavfi", "-i", f"testsrc=s=320x240:r=25:d={seconds}"]
        for arguments, path in ((sound, wav), (sound, mp3), (picture + sound + ["-shortest"], mp4)):
            subprocess.run([ffmpeg, *arguments, path], check=True, **QUIET)

        def row(name, entry, source, output, *arguments):
            return compare(name, options.rounds,
                           lambda: client_seconds(client, entry, source, output),
                           lambda: bare_seconds(ffmpeg, ["-i", source, *arguments], output))

        good = [
            row("mp3 before the upload", "upload", mp3, out_wav,
                "-vn", "-c:a", "pcm_s16le", "-y"),
            row("mp4 before the upload", "upload", mp4, out_wav,
                "-vn", "-acodec", "pcm_s16le", "-ac", "2", "-y"),
            row("wav to flac", "archived", wav, out_flac, "-b:a", "320k", "-vn"),
            row("mp4 to mpg", "archived", mp4, out_mpg,
                "-y", "-c:v", "mpeg2video", "-qscale:v", "2", "-c:a", "mp2"),
        ]
        slowest = max(client_seconds(client, "archived", mp4, out_mpg, "", str(300 + 37 * i))
                      for i in range(10))
        print(f"{'cancel to stopped, worst of ten':32} {slowest:8.3f} s   limit    0.700 s")
        good.append(slowest <= 0.7 and not os.path.exists(out_mpg))
    return 0 if all(good) else 1


if __name__ == "__main__":
    sys.exit(main())
