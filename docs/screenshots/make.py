#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""docs/screenshots/make.py [BUILD]   pictures every window in every state at the scales 0.6, 1.0 and 1.5

Draws the views of build/dev (or BUILD) without a display and puts the pictures beside this script.
"""
import os
import pathlib
import subprocess
import sys
import tempfile

here = pathlib.Path(__file__).resolve().parent
root = here.parent.parent
program = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else root / "build/dev").resolve() / "bin/viewtests"
environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", QT_QUICK_BACKEND="software")

with tempfile.TemporaryDirectory() as folder:
    subprocess.run([program, "-input", here / "shots.qml", "-import", root / "tests/qml/fakes", "-silent"],
                   cwd=folder, env=dict(environment, HOME=folder), check=True)
    pictures = sorted(pathlib.Path(folder).glob("*.png"))
    for old in here.glob("*.png"):
        old.unlink()
    for picture in pictures:
        # Few colours are enough, and keep the repository small; dithered ones would make larger files.
        subprocess.run(["convert", picture, "-strip", "-dither", "None", "-colors", "255", f"PNG8:{here / picture.name}"], check=True)
print(len(pictures), "pictures")
