#!/usr/bin/env python3
# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Draws every picture of the program: the views' icons, the tile of the progress bar, the program icon and the installer's.

    icons/generate.py          write the pictures
    icons/generate.py --check  change nothing; list each picture that differs from its drawing and exit with 1
"""
import argparse
import sys
from pathlib import Path

from artwork import actions, bitmaps, instruments, palette
from artwork.grounds import button, plain

ROOT = Path(__file__).resolve().parent.parent


def view_pictures():
    """File name -> text of every SVG picture of the views."""
    files = {}

    def add(glyphs, width=128, radius=26, states=tuple(palette.STATES)):
        for name, glyph in glyphs.items():
            for state in states:
                files[f"{name}{palette.SUFFIXES[state]}.svg"] = button(glyph, state, palette.STATES[state], width, radius)

    add(actions.TILES | instruments.TILES)
    add(actions.DISCS, radius=64)
    add(actions.PILLS, width=640, radius=64)
    add(actions.EYES, radius=64, states=("normal", "hovered", "pressed"))
    for name, glyph in actions.EMBLEMS.items():
        files[f"{name}.svg"] = plain(glyph, palette.PLAIN)
    return files


def pictures():
    """Path below the project's root -> bytes of every picture."""
    files = {f"icons/{name}": text.encode() for name, text in view_pictures().items()}
    files["icons/progress-item.png"] = bitmaps.progress_item()
    files["packaging/teko.svg"] = bitmaps.program_icon_svg().encode()
    files["packaging/teko.ico"] = bitmaps.program_icon()
    files["packaging/windows/installer.bmp"] = bitmaps.installer_picture()
    return files


def differences(drawn):
    """The paths whose file is missing, shows something else, or has no drawing."""
    def differs(path, data):
        file = ROOT / path
        return not file.is_file() or bitmaps.unpacked(file.read_bytes()) != bitmaps.unpacked(data)

    stray = {f"icons/{file.name}" for kind in ("*.svg", "*.png") for file in (ROOT / "icons").glob(kind)} - drawn.keys()
    return sorted(stray | {path for path, data in drawn.items() if differs(path, data)})


def main():
    parser = argparse.ArgumentParser(description="Draws every picture of the program.")
    parser.add_argument("--check", action="store_true", help="only compare the pictures with their drawings")
    drawn = pictures()
    if parser.parse_args().check:
        found = differences(drawn)
        sys.exit("\n".join(f"not as drawn: {path}" for path in found) if found else 0)
    for path, data in drawn.items():
        (ROOT / path).parent.mkdir(exist_ok=True)
        (ROOT / path).write_bytes(data)


if __name__ == "__main__":
    main()
