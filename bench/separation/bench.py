#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Separates songs of known parts with the real service and prints how near the results come to the parts.

usage: bench.py BIN FOLDER [--set NAME] [--separator COMMAND] [--songs] [--json FILE]
BIN is the folder of teko-service; the songs of the set (tuning, held-out, ..., sparse) are rendered into FOLDER first."""
import argparse
import io
import json
import os
import sys
import urllib.request

import numpy as np
import soundfile

import songs
import spectra

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "service"))
from common import Service  # noqa: E402

INSTRUMENTS = songs.PARTS[:5]


def parts_of(folder):
    """The parts of a rendered song by name; those that do not play are None, unknown ones are missing."""
    known = INSTRUMENTS if not os.path.exists(os.path.join(folder, "rest.wav")) or len(os.listdir(folder)) > 3 else ("guitar",)
    return {part: read(path) if os.path.exists(path := os.path.join(folder, part + ".wav")) else None for part in known}


def read(path_or_file):
    return soundfile.read(path_or_file, dtype="float32", always_2d=True)[0].T


class ServiceSeparator:
    """Has a service of its own separate a song, over the wire, as a client does."""

    def __init__(self, binaries, command):
        options = ["--workers", "1", "--daily-limit", "1000"] + (["--separator", command] if command else [])
        self._service = Service(os.path.join(binaries, "teko-service"), options)
        self._session = self._service.register("bench@localhost.example")

    def separate(self, path, instrument):
        """The instrument alone, and the largest error of the two results' sum, in 16-bit steps."""
        with open(path, "rb") as file:
            job = self._service.upload(file.read(), self._session, form={"instrument": instrument})
        if (end := self._service.wait(job, self._session)) != "-1":
            raise SystemExit(f"{path}, {instrument}: {job} {end}")
        root = f"http://127.0.0.1:{self._service.port}/teko-server/"
        addresses = self._service.post("download.php", self._session, songID=job).split("|")
        main, mix = (read(io.BytesIO(urllib.request.urlopen(urllib.parse.urljoin(root, a)).read())) for a in addresses)
        return main, np.abs(main + mix - read(path)).max() * 32768

    def close(self):
        self._service.remove()


def measure(folder, separator):
    """For each instrument of one song its score (or, where it does not play, how far below the mix its result is)."""
    path = os.path.join(folder, "mix.wav")
    mix, scores = read(path), {}
    for instrument, part in parts_of(folder).items():
        estimate, error = separator.separate(path, instrument)
        if error > 0:
            raise SystemExit(f"{path}: the results of {instrument} differ from the mix by {error} steps.")
        if part is None:
            scores[instrument] = {"below": spectra.below(mix, estimate)}
        else:
            scores[instrument] = {"sdr": spectra.sdr(part, estimate), "mix": spectra.sdr(part, mix),
                                  "oracle": spectra.sdr(part, spectra.oracle(mix, part))}
    return scores


def summary(results):
    """The table: median [worst] over the songs in which an instrument plays."""
    lines = ["| dB | " + " | ".join(INSTRUMENTS) + " |", "|---" * (len(INSTRUMENTS) + 1) + "|"]
    for title, key in (("untouched mix", "mix"), ("separator", "sdr"), ("best 133-band mask", "oracle"), ("below the mix where absent", "below")):
        cells = []
        for instrument in INSTRUMENTS:
            values = [s[instrument][key] for s in results.values() if key in s.get(instrument, {})]
            cells.append(f"{np.median(values):.1f} [{min(values):.1f}]" if values else "–")
        lines.append(f"| {title} | " + " | ".join(cells) + " |")
    return "\n".join(lines)


def per_song(results):
    def cell(score):
        return "–" if score is None else f"{score['sdr']:.1f}" if "sdr" in score else f"({score['below']:.0f})"

    lines = ["| song | " + " | ".join(INSTRUMENTS) + " |", "|---" * (len(INSTRUMENTS) + 1) + "|"]
    return "\n".join(lines + [f"| {song} | " + " | ".join(cell(s.get(i)) for i in INSTRUMENTS) + " |" for song, s in results.items()])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("binaries")
    parser.add_argument("folder")
    parser.add_argument("--set", choices=list(songs.SETS), default="tuning")
    parser.add_argument("--separator", help="as teko-service takes it")
    parser.add_argument("--songs", action="store_true", help="print the scores of each song, too")
    parser.add_argument("--json", help="write all scores to this file")
    options = parser.parse_args()
    folder = os.path.join(options.folder, options.set)
    songs.render(options.folder, options.set)
    separator = ServiceSeparator(options.binaries, options.separator)
    try:
        results = {plan.name: measure(os.path.join(folder, plan.name), separator) for plan in songs.SETS[options.set].songs}
    finally:
        separator.close()
    print(summary(results))
    if options.songs:
        print("\n" + per_song(results))
    if options.json:
        with open(options.json, "w") as file:
            json.dump(results, file, indent=1)


if __name__ == "__main__":
    main()
