# SPDX-FileCopyrightText: The TEKO authors
# SPDX-License-Identifier: Apache-2.0
"""The four states of a picture, as colours by role."""

SUFFIXES = {"normal": "-U", "hovered": "-F", "pressed": "-D", "disabled": "-X"}

# Apart in lightness, not only in hue: hovered is the brightest with a white outline, pressed the darkest with an inner
# ring, disabled a flat grey in which the glyph hardly stands out.
STATES = {
    "normal": {"top": "#2f63de", "bottom": "#0b1e78", "rim_top": "#a9c8ff", "rim_bottom": "#2446b8",
               "ink": "#ffffff", "accent": "#ffc233", "hole": "#0c1f6e", "shade": "#0d2274"},
    "hovered": {"top": "#2496f2", "bottom": "#0a50b4", "rim_top": "#ffffff", "rim_bottom": "#ffffff",
                "ink": "#ffffff", "accent": "#ffd75e", "hole": "#073a80", "shade": "#084691"},
    "pressed": {"top": "#040c34", "bottom": "#152c8e", "rim_top": "#3f63d8", "rim_bottom": "#3f63d8",
                "ink": "#c4d4fb", "accent": "#eda81f", "hole": "#050f3c", "shade": "#040b30"},
    "disabled": {"top": "#6f7581", "bottom": "#434853", "rim_top": "#8b919c", "rim_bottom": "#5c626d",
                 "ink": "#b4b9c2", "accent": "#959ba6", "hole": "#4c525d", "shade": "#4c525d"},
}

# Pictures without states lie on coloured buttons: white, with the accent of the normal state.
PLAIN = {"ink": "#ffffff", "accent": "#ffc233", "hole": "#0c1f6e"}
