#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Writes manifest.json: the material to learn from, with hashes and licences. The licence of each package
named here was read; material.py refuses everything else."""
import glob
import hashlib
import json
import os
import re

SOURCES = [
    ("fluid-soundfont-gm", "MIT", "/usr/share/sounds/sf2/FluidR3_GM.sf2"),
    ("musescore-general-soundfont", "MIT", "/usr/share/sounds/sf3/MuseScore_General_Full.sf3"),
    ("sonic-pi-samples", "MIT", "/usr/share/sonic-pi/samples/*.flac"),
    ("hydrogen-drumkits", "CC0-1.0", "/usr/share/hydrogen/data/drumkits/Audiophob/*.wav"),
    ("freedoom", "BSD-3-Clause", "/usr/share/games/doom/freedoom1.wad"),
]
# Programs whose speech the songs are sung with; their output is not listed file by file.
VOICES = {"flite": "BSD-like (CMU), voices awb, kal16, rms, slt", "festvox-kallpc16k": "MIT-like (CSTR)", "festvox-kdlpc16k": "MIT-like (CSTR)",
          "festvox-us-slt-hts": "BSD-like (EST-2003, BSD-3-Clause)"}


def named_cc0(package):
    """The files that a package's list of licences puts under CC0 by name."""
    with open(f"/usr/share/doc/{package}/copyright") as file:
        stanzas = file.read().split("\n\n")
    return {name for stanza in stanzas if "License: CC0" in stanza for name in re.findall(r"etc/samples/(\S+)", stanza)}


def main():
    manifest, cc0 = {"voices": VOICES}, named_cc0("sonic-pi-samples")
    for package, licence, pattern in SOURCES:
        for path in sorted(glob.glob(pattern)):
            with open(path, "rb") as file:
                kept = "CC0-1.0" if os.path.basename(path) in cc0 else licence
                manifest[path] = {"package": package, "licence": kept, "sha256": hashlib.file_digest(file, "sha256").hexdigest()}
    with open(os.path.join(os.path.dirname(os.path.abspath(__file__)), "manifest.json"), "w") as file:
        json.dump(manifest, file, indent=1)


if __name__ == "__main__":
    main()
