#!/usr/bin/env python3
# Draws wizard.bmp, the picture at the left of the wizards' pages; acctkit.ico, a letter on a newspaper; and the icons of
# the sample clients in host/samples, a letter on a shape that differs for each client. The picture has as many pixels as
# its control has in the font that usually replaces the dialogs' own. Run it by hand after a change.
import math
import pathlib
import struct

WIDTH, HEIGHT, OVERSAMPLING = 130, 245, 4
TOP, MIDDLE, BOTTOM = (24, 58, 112), (70, 130, 186), (170, 214, 230)
WHITE, INK, LINE = (255, 255, 255), (38, 78, 130), (164, 182, 204)


def mix(below, above, share):
    return tuple(b + (a - b) * share for b, a in zip(below, above))


def distance_to_line(x, y, start, end):
    dx, dy = end[0] - start[0], end[1] - start[1]
    along = max(0, min(1, ((x - start[0]) * dx + (y - start[1]) * dy) / (dx * dx + dy * dy)))
    return math.hypot(x - start[0] - along * dx, y - start[1] - along * dy)


# A paper returns the colour at a position in its own coordinates, where it is one unit wide and its middle is the origin.
class Letter:
    half_height = 0.34
    flap = ((-0.5, -0.34), (0, 0.08), (0.5, -0.34))
    folds = ((-0.5, 0.34), (-0.11, 0.0)), ((0.5, 0.34), (0.11, 0.0))

    def colour(self, x, y):
        if any(distance_to_line(x, y, *self.flap[i : i + 2]) < 0.016 for i in (0, 1)):
            return mix(INK, WHITE, 0.35)
        above_flap = y < 0.08 - abs(x) * 0.84
        if not above_flap and any(distance_to_line(x, y, *fold) < 0.01 for fold in self.folds):
            return LINE
        return mix(WHITE, (214, 228, 242), 0.1 if above_flap else 0.5 + y)


class Newspaper:
    half_height = 0.64

    def colour(self, x, y):
        if abs(x) < 0.4 and -0.54 < y < -0.4:
            return INK
        if -0.4 < x < -0.03 and -0.3 < y < 0.04:
            return mix(MIDDLE, BOTTOM, (y + 0.3) / 0.34)
        in_column = 0.03 < x < 0.4 or (-0.4 < x < -0.03 and y > 0.08)
        if in_column and -0.32 < y < 0.56 and (y + 0.32) % 0.1 < 0.04:
            return LINE
        return mix(WHITE, (228, 234, 240), y + 0.5 if y > -0.5 else 0)


class Placed:
    def __init__(self, paper, centre, width, degrees, opacity=1):
        self.paper, self.centre, self.width, self.opacity = paper, centre, width, opacity
        self.cos, self.sin = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))

    def own_place(self, x, y):
        dx, dy = (x - self.centre[0]) / self.width, (y - self.centre[1]) / self.width
        return dx * self.cos + dy * self.sin, dy * self.cos - dx * self.sin

    def outside(self, x, y):
        return math.hypot(max(0, abs(x) - 0.5), max(0, abs(y) - self.paper.half_height))

    # The background, with the paper's shadow and the paper on it.
    def over(self, below, x, y):
        shadow = self.outside(*self.own_place(x - 0.03 * self.width, y - 0.05 * self.width))
        below = mix(below, (10, 30, 64), 0.3 * max(0, 1 - shadow / 0.07) * self.opacity)
        place = self.own_place(x, y)
        return below if self.outside(*place) else mix(below, self.paper.colour(*place), self.opacity)


SCENE = [
    Placed(Letter(), (102, 30), 16, 14, 0.35),
    Placed(Letter(), (84, 52), 24, -8, 0.55),
    Placed(Letter(), (40, 74), 34, 10, 0.8),
    Placed(Newspaper(), (70, 144), 70, 9),
    Placed(Letter(), (60, 186), 84, -7),
]


def picture_colour(x, y):
    share = y / HEIGHT
    here = mix(TOP, MIDDLE, share * 2) if share < 0.5 else mix(MIDDLE, BOTTOM, share * 2 - 1)
    # Wide arcs of light give the gradient some depth.
    for centre, radius in (((160, -30), 160), ((-70, 120), 150), ((150, 300), 170)):
        if math.hypot(x - centre[0], y - centre[1]) < radius:
            here = mix(here, WHITE, 0.06)
    for placed in SCENE:
        here = placed.over(here, x, y)
    return here


def sampled(column, row, colour):
    samples = [colour(column + (i + 0.5) / OVERSAMPLING, row + (j + 0.5) / OVERSAMPLING)
               for i in range(OVERSAMPLING) for j in range(OVERSAMPLING)]
    return [sum(part) / len(samples) for part in zip(*samples)]


def bitmap_header(width, height, bits, size):
    return struct.pack("<IiiHHIIiiII", 40, width, height, 1, bits, 0, size, 3780, 3780, 0, 0)


def picture():
    padding = bytes(-WIDTH * 3 % 4)
    rows = b"".join(b"".join(bytes(round(part) for part in reversed(sampled(x, y, picture_colour)))
                             for x in range(WIDTH)) + padding for y in reversed(range(HEIGHT)))
    head = struct.pack("<2sIHHI", b"BM", 54 + len(rows), 0, 0, 54)
    return head + bitmap_header(WIDTH, HEIGHT, 24, len(rows)) + rows


# The shapes of the sample clients: the distance of a position from the middle, and a colour.
CLIENTS = {
    "outlook_express": (lambda x, y: max(abs(x), abs(y)), (226, 152, 44)),
    "communicator": (math.hypot, (62, 146, 92)),
    "netscape6": (lambda x, y: abs(x) + abs(y), (134, 92, 172)),
    "mailer": (lambda x, y: max(y, abs(x), abs(x) - y), (196, 70, 74)),
}


def client_colour(client):
    distance, shape = CLIENTS[client]
    letter = Placed(Letter(), (0.5, 0.53), 0.54, 0)

    def colour(x, y):
        place = letter.own_place(x, y)
        if not letter.outside(*place):
            return (*Letter().colour(*place), 1)
        away = distance(x - 0.5, y - 0.5)
        return (0, 0, 0, 0) if away > 0.48 else (*mix(shape, INK, 0.5 if away > 0.43 else 0), 1)

    return colour


# The colour, and whether there is one, in a square whose side is one.
def icon_colour(x, y):
    for placed in (Placed(Letter(), (0.5, 0.66), 0.96, 0), Placed(Newspaper(), (0.5, 0.48), 0.72, 0)):
        place = placed.own_place(x, y)
        outside = placed.outside(*place)
        if not outside:
            edge = min(0.5 - abs(place[0]), placed.paper.half_height - abs(place[1])) < 0.04
            return (*(INK if edge else placed.paper.colour(*place)), 1)
    return (0, 0, 0, 0)


def icon_image(side, colour):
    pixels, mask = b"", b""
    for y in reversed(range(side)):
        row = [sampled(x, y, lambda x, y: colour(x / side, y / side)) for x in range(side)]
        pixels += b"".join(bytes((*(round(part / max(cover, 0.01)) for part in (blue, green, red)), round(cover * 255)))
                           for red, green, blue, cover in row)
        bits = sum((cover < 0.5) << (side - 1 - x) for x, (*_, cover) in enumerate(row))
        mask += bits.to_bytes(side // 8, "big") + bytes(-(side // 8) % 4)
    return bitmap_header(side, side * 2, 32, len(pixels) + len(mask)) + pixels + mask


def icon(sides, colour):
    images = [icon_image(side, colour) for side in sides]
    head, place = struct.pack("<HHH", 0, 1, len(sides)), 6 + 16 * len(sides)
    for side, image in zip(sides, images):
        head += struct.pack("<BBBBHHII", side, side, 0, 0, 1, 32, len(image), place)
        place += len(image)
    return head + b"".join(images)


folder = pathlib.Path(__file__).parent
(folder / "wizard.bmp").write_bytes(picture())
(folder / "acctkit.ico").write_bytes(icon((16, 32, 48), icon_colour))
for client in CLIENTS:
    samples = folder.parent.parent / "host" / "samples"
    (samples / f"{client}.ico").write_bytes(icon((16, 32), client_colour(client)))
