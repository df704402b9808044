#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Writes manifest.json: the material to learn from, with hashes and licences. The licence of each package
named here was read; material.py refuses everything else."""
import glob
import hashlib
import json
import os

SOURCES = [
    ("fluid-soundfont-gm", "MIT", "/usr/share/sounds/sf2/FluidR3_GM.sf2"),
    ("musescore-general-soundfont", "MIT", "/usr/share/sounds/sf3/MuseScore_General_Full.sf3"),
    ("csound-soundfont", "public domain", "/usr/share/sounds/sf2/sf_GMbank.sf2"),
    ("sonic-pi-samples", "CC0-1.0", "/usr/share/sonic-pi/samples/*.flac"),
    ("hydrogen-drumkits", "CC0-1.0", "/usr/share/hydrogen/data/drumkits/Audiophob/*.wav"),
    ("freedoom", "BSD-3-Clause", "/usr/share/games/doom/freedoom1.wad"),
]
# Programs whose speech the songs are sung with; their output is not listed file by file.
VOICES = {"flite": "BSD-like (CMU), voices awb, kal16, rms, slt", "festvox-kallpc16k": "MIT-like (CSTR)", "festvox-kdlpc16k": "MIT-like (CSTR)",
          "festvox-us-slt-hts": "BSD-like (EST-2003, BSD-3-Clause)"}

if __name__ == "__main__":
    manifest = {"voices": VOICES}
    for package, licence, pattern in SOURCES:
        for path in sorted(glob.glob(pattern)):
            with open(path, "rb") as file:
                manifest[path] = {"package": package, "licence": licence, "sha256": hashlib.file_digest(file, "sha256").hexdigest()}
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "manifest.json"), "w") as file:
        json.dump(manifest, file, indent=1)
