# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""Pictures made of pixels: the tile of the progress bar, and the program icon with its file formats."""
import math
import struct
import zlib

from .grounds import document, gradients
from .shapes import Shape, rounded

ICON_SIZES = (16, 24, 32, 48, 64, 128, 256)
_PNG_FROM = 128  # smaller sizes are stored as bitmaps, which every reader of icons knows
INSTALLER_PICTURE = (164, 314)  # a multiple of 4 wide, as bitmaps want their rows
TILE = (128, 104)  # four pixels for each of the 32 x 26 that the bar shows at scale 1


def _rgb(text):
    return tuple(int(text[i:i + 2], 16) for i in (1, 3, 5))


def _mix(a, b, share):
    return tuple(p + (q - p) * share for p, q in zip(a, b))


def _clamped(value):
    return min(1.0, max(0.0, value))


# --- the tile of the progress bar ---

def progress_item():
    """A PNG with one diagonal stripe whose period is the tile's width, so that tiles laid in a row join without a seam."""
    width, height = TILE
    light, middle, dark = _rgb("#58c0ff"), _rgb("#1f8cf0"), _rgb("#0d5fc6")
    rows = []
    for y in range(height):
        down = (y + 0.5) / height
        base = _mix(light, middle, down * 2.2) if down < 1 / 2.2 else _mix(middle, dark, (down - 1 / 2.2) / (1 - 1 / 2.2))
        stripe = _mix(base, (255, 255, 255), 0.34)
        row = bytearray()
        for x in range(width):
            phase = (x + 0.5 + y) % width
            edge = abs(phase - width / 2) - width / 4  # distance from the stripe's edge, along x
            row += bytes(round(c) for c in _mix(base, stripe, _clamped(0.5 - edge / math.sqrt(2))))
        rows.append(bytes(row))
    return png(width, height, rows, colour_type=2)


# --- the program icon: the bars of a sound, one of them lifted out of the row ---

_SPARSE = ((24, 42, 16, 58, "ink"), (56, 76, 16, 24, "slot"), (56, 20, 16, 44, "accent"), (88, 42, 16, 58, "ink"))
_FULL = ((18, 56, 12, 32, "ink"), (38, 38, 12, 68, "ink"), (58, 78, 12, 26, "slot"), (58, 20, 12, 46, "accent"),
         (78, 38, 12, 68, "ink"), (98, 56, 12, 32, "ink"))
_COLOURS = {"top": "#2f6bea", "bottom": "#0a1b70", "rim_top": "#b9d2ff", "rim_bottom": "#2446b8",
            "ink": "#ffffff", "accent": "#ffc233", "slot": "#0a1a66"}


def program_icon_svg():
    ground = f'<path fill="url(#tile)" stroke="url(#rim)" stroke-width="3" d="{rounded(3.5, 3.5, 121, 121, 26)}"/>'
    bars = "".join(Shape(rounded(x, y, w, h, w / 2), role).svg(_COLOURS) for x, y, w, h, role in _FULL)
    return document(128, 128, gradients(_COLOURS) + "\n" + ground + "\n" + bars)


def program_icon():
    """The same picture as an .ico file; sizes too small for five bars show three."""
    images = [(size, _image(size)) for size in ICON_SIZES]
    offset = 6 + 16 * len(images)
    header, body = struct.pack("<HHH", 0, 1, len(images)), b""
    for size, data in images:
        header += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset + len(body))
        body += data
    return header + body


def _image(size):
    rows = [[_pixel((x + 0.5) * 128 / size, (y + 0.5) * 128 / size, size) for x in range(size)] for y in range(size)]
    if size >= _PNG_FROM:
        return png(size, size, [b"".join(map(bytes, row)) for row in rows], colour_type=6)
    upward = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    mask = bytes((size + 31) // 32 * 4 * size)
    return struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, len(upward) + len(mask), 0, 0, 0, 0) + upward + mask


def installer_picture():
    """The bars alone, as the bitmap of 256 colours that stands beside the text of the installer's last page."""
    width, height = INSTALLER_PICTURE
    indices, pixels = {}, bytearray()
    for y in reversed(range(height)):
        for x in range(width):
            colour = _rgb(_COLOURS["bottom"])
            for *box, role in _FULL:
                share = _coverage(x + 0.5 - (width - 128) / 2, y + 0.5 - (height - 128) / 2, box, box[2] / 2, 128)
                colour = _mix(colour, _rgb(_COLOURS[role]), round(share * 16) / 16)  # few colours
            pixels.append(indices.setdefault(tuple(round(c) for c in colour), len(indices)))
    palette = b"".join(bytes((b, g, r, 0)) for r, g, b in indices).ljust(4 * 256, b"\0")
    start = 14 + 40 + len(palette)
    return (struct.pack("<2sIII", b"BM", start + len(pixels), 0, start)
            + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 8, 0, len(pixels), 0, 0, 256, 0) + palette + pixels)


def _pixel(x, y, size):
    """The colour, as (red, green, blue, alpha), of a pixel whose centre is (x, y) on the common grid."""
    down = _clamped((y - 4) / 120)
    ground = _coverage(x, y, (2, 2, 124, 124), 27.5, size)
    colour = _mix(_rgb(_COLOURS["rim_top"]), _rgb(_COLOURS["rim_bottom"]), down)
    rim = max(3.0, 64 / size)
    inside = _coverage(x, y, (2 + rim, 2 + rim, 124 - 2 * rim, 124 - 2 * rim), 27.5 - rim, size)
    colour = _mix(colour, _mix(_rgb(_COLOURS["top"]), _rgb(_COLOURS["bottom"]), down), inside)
    for *box, role in (_SPARSE if size < 32 else _FULL):
        left, top, width, height = _on_pixels(*box, size) if size <= 32 else box
        share = _coverage(x, y, (left, top, width, height), width / 2, size)
        colour = _mix(colour, _rgb(_COLOURS[role]), share)
    return tuple(round(c) for c in colour) + (round(255 * ground),)


def _on_pixels(left, top, width, height, size):
    """The bar with its edges on the borders of pixels and its distance from the middle kept."""
    pixel = 128 / size
    half = math.floor(width / pixel / 2 + 0.5) * pixel
    middle = 64 + round((left + width / 2 - 64) / pixel) * pixel
    return middle - half, round(top / pixel) * pixel, 2 * half, round(height / pixel) * pixel


def _coverage(x, y, box, radius, size):
    """How much of the pixel lies inside a rounded box, from the distance of its centre to the outline."""
    left, top, width, height = box
    dx = abs(x - left - width / 2) - width / 2 + radius
    dy = abs(y - top - height / 2) - height / 2 + radius
    distance = math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius
    return _clamped(0.5 - distance * size / 128)


# --- file formats ---

def png(width, height, rows, colour_type):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    pixels = zlib.compress(b"".join(b"\0" + row for row in rows), 9)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, colour_type, 0, 0, 0))
            + chunk(b"IDAT", pixels) + chunk(b"IEND", b""))


def unpacked(data):
    """What a .png or .ico made here shows, whatever the zlib that packed it."""
    if data[:4] == b"\x89PNG":
        length, = struct.unpack(">I", data[33:37])
        return [data[16:29] + zlib.decompress(data[41:41 + length])]
    if data[:4] == b"\0\0\1\0":
        entries = [struct.unpack("<BBBBHHII", data[6 + 16 * i:22 + 16 * i]) for i in range(data[4])]
        return [part for *_, length, at in entries for part in unpacked(data[at:at + length])]
    return [data]
