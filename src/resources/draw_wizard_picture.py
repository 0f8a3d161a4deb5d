#!/usr/bin/env python3
# Draws wizard.bmp: an envelope among connection lines on a calm gradient, in as many pixels as the pages' picture takes
# in the usual fonts at 96 dpi. Run by hand after a change: src/resources/draw_wizard_picture.py
import math
import pathlib
import struct

WIDTH, HEIGHT, OVERSAMPLING = 130, 245, 4
TOP, BOTTOM = (28, 62, 110), (118, 178, 204)
NODES = [(18, 30), (62, 16), (112, 42), (30, 84), (98, 96), (14, 176), (110, 186), (58, 222), (24, 232)]
LINKS = [(0, 1), (1, 2), (0, 3), (2, 4), (5, 7), (6, 7), (7, 8), (5, 8), (1, 4)]
TO_ENVELOPE = [3, 4, 5, 6]
ENVELOPE = (27, 110, 103, 160)  # left, top, right, bottom
FLAP = ((27, 110), (65, 140), (103, 110))


def mix(below, above, share):
    return tuple(b + (a - b) * share for b, a in zip(below, above))


def distance_to_line(x, y, start, end):
    dx, dy = end[0] - start[0], end[1] - start[1]
    along = max(0, min(1, ((x - start[0]) * dx + (y - start[1]) * dy) / (dx * dx + dy * dy)))
    return math.hypot(x - start[0] - along * dx, y - start[1] - along * dy)


def inside_rounded(x, y, box, radius):
    left, top, right, bottom = box
    dx = max(left + radius - x, 0, x - right + radius)
    dy = max(top + radius - y, 0, y - bottom + radius)
    return math.hypot(dx, dy) <= radius


def envelope_colour(x, y):
    paper = mix((255, 255, 255), (222, 233, 243), (y - ENVELOPE[1]) / (ENVELOPE[3] - ENVELOPE[1]))
    folds = [((27, 160), (56, 133)), ((103, 160), (74, 133))]
    if any(distance_to_line(x, y, *fold) < 0.7 for fold in folds):
        return (172, 193, 213)
    if any(distance_to_line(x, y, FLAP[i], FLAP[i + 1]) < 1.0 for i in (0, 1)):
        return (120, 150, 182)
    return paper


def colour(x, y):
    here = mix(TOP, BOTTOM, y / HEIGHT)
    # Two wide arcs of light give the gradient some depth.
    for centre, radius in (((150, -20), 150), ((-60, 270), 170)):
        if math.hypot(x - centre[0], y - centre[1]) < radius:
            here = mix(here, (255, 255, 255), 0.07)
    if inside_rounded(x, y, ENVELOPE, 4):
        return envelope_colour(x, y)
    if inside_rounded(x - 2, y - 3, ENVELOPE, 5):
        return mix(here, (10, 30, 60), 0.35)
    for node in NODES:
        far = math.hypot(x - node[0], y - node[1])
        if far < 2.6:
            return (255, 246, 214)
        if far < 5.2:
            return mix(here, (255, 255, 255), 0.35)
    middle = (65, 135)
    lines = [(NODES[a], NODES[b]) for a, b in LINKS] + [(NODES[n], middle) for n in TO_ENVELOPE]
    if any(distance_to_line(x, y, *line) < 0.6 for line in lines):
        return mix(here, (255, 255, 255), 0.55)
    return here


def pixel(column, row):
    samples = [colour(column + (i + 0.5) / OVERSAMPLING, row + (j + 0.5) / OVERSAMPLING)
               for i in range(OVERSAMPLING) for j in range(OVERSAMPLING)]
    red, green, blue = (round(sum(part) / len(samples)) for part in zip(*samples))
    return bytes((blue, green, red))


def bitmap():
    padding = bytes(-WIDTH * 3 % 4)
    rows = b"".join(b"".join(pixel(x, y) for x in range(WIDTH)) + padding for y in reversed(range(HEIGHT)))
    header = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 24, 0, len(rows), 3780, 3780, 0, 0)
    return struct.pack("<2sIHHI", b"BM", 54 + len(rows), 0, 0, 54) + header + rows


pathlib.Path(__file__).with_name("wizard.bmp").write_bytes(bitmap())
