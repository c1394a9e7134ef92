#!/usr/bin/env python3
"""Draws the program's icons and its sign-on bitmap.

usage: make_images.py OUTPUT_FOLDER

Writes veldor_frame.ico (a radio mast), veldor_listing.ico (a list),
veldor_plot.ico (a survey plot), veldor_chart.ico (a histogram),
veldor_tags.ico (a tag), signon.bmp (240 x 190, 24 bits), the faces of
the Plot window's buttons, face_<id>.bmp (25 x 25, 16 colours), and the
pictures of the setup program: setup_side.bmp (164 x 314) for its welcome
and finish pages, setup_header.bmp (150 x 57) for the others. Plain Python:
shapes are drawn on a canvas four times the size and averaged down, which
smooths their edges; the button faces are drawn on whole pixels so that
they stay crisp.
"""
import math
import os
import struct
import sys

SUPER = 4


class Canvas:
    """An RGBA canvas of floats drawn at SUPER times the output size."""

    def __init__(self, width, height, fill=(0, 0, 0, 0)):
        self.w = width * SUPER
        self.h = height * SUPER
        self.px = [list(fill) for _ in range(self.w * self.h)]

    def put(self, x, y, colour):
        if 0 <= x < self.w and 0 <= y < self.h:
            r, g, b, a = colour
            p = self.px[y * self.w + x]
            # Source over destination.
            out_a = a + p[3] * (1 - a)
            if out_a > 0:
                for i, c in enumerate((r, g, b)):
                    p[i] = (c * a + p[i] * p[3] * (1 - a)) / out_a
            p[3] = out_a

    def region(self, inside, colour, box=None):
        """Paints every fine pixel whose centre (in output units) is inside."""
        x0, y0, x1, y1 = box if box else (0, 0, self.w / SUPER, self.h / SUPER)
        fx0, fy0 = max(0, int(x0 * SUPER) - 1), max(0, int(y0 * SUPER) - 1)
        fx1, fy1 = min(self.w, int(x1 * SUPER) + 2), min(self.h, int(y1 * SUPER) + 2)
        for fy in range(fy0, fy1):
            y = (fy + 0.5) / SUPER
            for fx in range(fx0, fx1):
                x = (fx + 0.5) / SUPER
                if inside(x, y):
                    self.put(fx, fy, colour)

    def rect(self, x0, y0, x1, y1, colour):
        self.region(lambda x, y: x0 <= x < x1 and y0 <= y < y1, colour, (x0, y0, x1, y1))

    def circle(self, cx, cy, r, colour):
        self.region(lambda x, y: (x - cx) ** 2 + (y - cy) ** 2 <= r * r, colour,
                    (cx - r, cy - r, cx + r, cy + r))

    def line(self, xa, ya, xb, yb, width, colour):
        dx, dy = xb - xa, yb - ya
        length2 = dx * dx + dy * dy or 1e-9
        half = width / 2.0

        def inside(x, y):
            t = max(0.0, min(1.0, ((x - xa) * dx + (y - ya) * dy) / length2))
            px, py = xa + t * dx, ya + t * dy
            return (x - px) ** 2 + (y - py) ** 2 <= half * half

        self.region(inside, colour, (min(xa, xb) - half, min(ya, yb) - half,
                                     max(xa, xb) + half, max(ya, yb) + half))

    def arc(self, cx, cy, r, width, start_deg, end_deg, colour):
        half = width / 2.0

        def inside(x, y):
            d = math.hypot(x - cx, y - cy)
            if abs(d - r) > half:
                return False
            ang = math.degrees(math.atan2(-(y - cy), x - cx)) % 360
            return start_deg <= ang <= end_deg or start_deg <= ang + 360 <= end_deg

        self.region(inside, colour, (cx - r - half, cy - r - half, cx + r + half, cy + r + half))

    def polygon(self, points, colour):
        def inside(x, y):
            hit = False
            n = len(points)
            for i in range(n):
                (xa, ya), (xb, yb) = points[i], points[(i + 1) % n]
                if (ya > y) != (yb > y) and x < (xb - xa) * (y - ya) / (yb - ya) + xa:
                    hit = not hit
            return hit

        xs = [p[0] for p in points]
        ys = [p[1] for p in points]
        self.region(inside, colour, (min(xs), min(ys), max(xs), max(ys)))

    def text(self, x, y, string, scale, colour):
        """Draws string in the 5 x 7 font, each font dot scale pixels wide."""
        for ch in string:
            glyph = FONT.get(ch.upper(), FONT[" "])
            for row, bits in enumerate(glyph):
                for col in range(5):
                    if bits & (0x10 >> col):
                        self.rect(x + col * scale, y + row * scale,
                                  x + (col + 1) * scale, y + (row + 1) * scale, colour)
            x += 6 * scale

    def downsample(self, factor=1):
        """Averages SUPER * factor fine pixels into one; returns rows of RGBA bytes."""
        step = SUPER * factor
        ow, oh = self.w // step, self.h // step
        rows = []
        for oy in range(oh):
            row = []
            for ox in range(ow):
                acc = [0.0, 0.0, 0.0, 0.0]
                for fy in range(oy * step, (oy + 1) * step):
                    for fx in range(ox * step, (ox + 1) * step):
                        p = self.px[fy * self.w + fx]
                        for i in range(3):
                            acc[i] += p[i] * p[3]
                        acc[3] += p[3]
                n = step * step
                a = acc[3] / n
                if acc[3] > 0:
                    rgb = [acc[i] / acc[3] for i in range(3)]
                else:
                    rgb = [0, 0, 0]
                row.append(tuple(int(round(max(0, min(1, v)) * 255)) for v in rgb + [a]))
            rows.append(row)
        return rows


def rgb(r, g, b, a=1.0):
    return (r / 255.0, g / 255.0, b / 255.0, a)


# A 5 x 7 font for the few letters of the sign-on text.
FONT = {
    " ": [0, 0, 0, 0, 0, 0, 0],
    ".": [0, 0, 0, 0, 0, 0x0C, 0x0C],
    "1": [0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E],
    "2": [0x0E, 0x11, 0x01, 0x02, 0x04, 0x08, 0x1F],
    "3": [0x1F, 0x02, 0x04, 0x02, 0x01, 0x11, 0x0E],
    "4": [0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02],
    "A": [0x0E, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11],
    "D": [0x1E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x1E],
    "E": [0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x1F],
    "F": [0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x10],
    "I": [0x0E, 0x04, 0x04, 0x04, 0x04, 0x04, 0x0E],
    "L": [0x10, 0x10, 0x10, 0x10, 0x10, 0x10, 0x1F],
    "M": [0x11, 0x1B, 0x15, 0x15, 0x11, 0x11, 0x11],
    "N": [0x11, 0x19, 0x15, 0x13, 0x11, 0x11, 0x11],
    "O": [0x0E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E],
    "R": [0x1E, 0x11, 0x11, 0x1E, 0x14, 0x12, 0x11],
    "S": [0x0F, 0x10, 0x10, 0x0E, 0x01, 0x01, 0x1E],
    "T": [0x1F, 0x04, 0x04, 0x04, 0x04, 0x04, 0x04],
    "U": [0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E],
    "V": [0x11, 0x11, 0x11, 0x11, 0x11, 0x0A, 0x04],
    "W": [0x11, 0x11, 0x11, 0x15, 0x15, 0x15, 0x0A],
    "Y": [0x11, 0x11, 0x0A, 0x04, 0x04, 0x04, 0x04],
}

STEEL = rgb(70, 78, 90)
BEACON = rgb(220, 40, 40)
WAVE = rgb(30, 110, 220)
PAPER = rgb(255, 255, 255)
EDGE = rgb(60, 60, 70)


def draw_mast(c, cx, base, top, half_base, colour, weight):
    """A lattice mast from base up to top, its feet half_base either side of cx."""
    left = (cx - half_base, base)
    right = (cx + half_base, base)
    apex = (cx, top)
    c.line(left[0], left[1], apex[0], apex[1], weight, colour)
    c.line(right[0], right[1], apex[0], apex[1], weight, colour)
    levels = 4
    for i in range(levels + 1):
        t = i / levels
        y = base + (top - base) * t * 0.9
        w = half_base * (1 - t * 0.9)
        c.line(cx - w, y, cx + w, y, weight * 0.6, colour)
        if i < levels:
            t2 = (i + 1) / levels
            y2 = base + (top - base) * t2 * 0.9
            w2 = half_base * (1 - t2 * 0.9)
            c.line(cx - w, y, cx + w2, y2, weight * 0.5, colour)
            c.line(cx + w, y, cx - w2, y2, weight * 0.5, colour)


def icon_frame():
    c = Canvas(32, 32)
    draw_mast(c, 16, 30, 8, 7, STEEL, 1.6)
    c.circle(16, 6.5, 2.4, BEACON)
    for r in (6, 10):
        c.arc(16, 6.5, r, 1.6, 20, 70, WAVE)
        c.arc(16, 6.5, r, 1.6, 110, 160, WAVE)
    return c


def sheet(c):
    c.rect(3, 2, 29, 30, EDGE)
    c.rect(4, 3, 28, 29, PAPER)


def icon_listing():
    c = Canvas(32, 32)
    sheet(c)
    c.rect(4, 3, 28, 8, rgb(40, 90, 170))
    for i, y in enumerate(range(10, 28, 3)):
        c.rect(6, y, 10, y + 1.5, rgb(120, 120, 130))
        c.rect(12, y, 26 - (i % 3) * 3, y + 1.5, rgb(60, 60, 70))
    return c


def icon_plot():
    c = Canvas(32, 32)
    sheet(c)
    grid = rgb(200, 210, 225)
    for v in (10, 16, 22):
        c.line(v, 4, v, 28, 0.7, grid)
        c.line(5, v, 27, v, 0.7, grid)
    colours = [rgb(0, 0, 255), rgb(0, 190, 0), rgb(230, 0, 0)]
    for lane, y in enumerate((8, 13, 18, 23)):
        for i, x in enumerate(range(8, 27, 4)):
            band = min(2, abs(lane - 1.5) // 1 + abs(i - 2) // 2)
            c.circle(x, y + (i % 2) * 0.5, 1.5, colours[int(band)])
    return c


def icon_chart():
    c = Canvas(32, 32)
    sheet(c)
    c.line(7, 6, 7, 26, 1.2, EDGE)
    c.line(7, 26, 27, 26, 1.2, EDGE)
    heights = [5, 11, 17, 13, 7, 3]
    for i, h in enumerate(heights):
        x = 9 + i * 3
        c.rect(x, 25.5 - h, x + 2.4, 25.5, rgb(40, 110, 200))
    return c


def icon_tags():
    c = Canvas(32, 32)
    body = [(5, 12), (12, 5), (28, 5), (28, 27), (12, 27), (5, 20)]
    c.polygon(body, rgb(120, 90, 20))
    inner = [(6.5, 12.6), (12.6, 6.5), (26.5, 6.5), (26.5, 25.5), (12.6, 25.5), (6.5, 19.4)]
    c.polygon(inner, rgb(250, 205, 70))
    c.circle(11, 16, 2.2, rgb(120, 90, 20))
    c.circle(11, 16, 1.2, (1, 1, 1, 1))
    for y in (12, 16, 20):
        c.rect(15, y, 24, y + 1.4, rgb(120, 90, 20))
    return c


def signon():
    w, h = 240, 190
    c = Canvas(w, h)
    top, bottom = (10, 30, 70), (20, 110, 140)
    for y in range(h):
        t = y / (h - 1)
        colour = rgb(*(a + (b - a) * t for a, b in zip(top, bottom)))
        c.rect(0, y, w, y + 1, colour)
    # The survey ground: a plot of coloured dots along a lawn-mower route.
    dots = [rgb(70, 120, 255), rgb(60, 220, 90), rgb(255, 80, 70)]
    for lane in range(4):
        y = 150 + lane * 9
        for i in range(12):
            x = 110 + i * 10
            band = int(min(2, abs(i - 5.5) // 2.5 + lane // 2))
            c.circle(x, y, 2.2, dots[band])
    # The mast and its waves.
    light = rgb(230, 235, 240)
    draw_mast(c, 52, 176, 60, 22, light, 2.4)
    c.circle(52, 54, 4.5, rgb(255, 70, 60))
    for r in (14, 24, 34):
        c.arc(52, 54, r, 2.6, 25, 70, rgb(140, 200, 255, 0.9))
        c.arc(52, 54, r, 2.6, 110, 155, rgb(140, 200, 255, 0.9))
    c.text(102, 30, "VELDOR", 3, rgb(255, 255, 255))
    c.text(104, 68, "RF SURVEY", 2, rgb(200, 225, 255))
    c.text(104, 88, "SOFTWARE", 2, rgb(200, 225, 255))
    c.text(104, 114, "VERSION 2.3.3", 1, rgb(200, 225, 255))
    c.text(104, 128, "TREVAN INSTRUMENTS", 1, rgb(255, 220, 120))
    return c


def night_ground(c, w, h):
    """The sign-on's night blue, lighter downwards."""
    top, bottom = (10, 30, 70), (20, 110, 140)
    for y in range(h):
        t = y / (h - 1)
        c.rect(0, y, w, y + 1, rgb(*(a + (b - a) * t for a, b in zip(top, bottom))))


def survey_ground(c, w, h):
    """The night ground and, along its foot, a few lanes of a survey's dots in
    the Plot's bands: blue near the mast, then green, red."""
    night_ground(c, w, h)
    dots = [rgb(70, 120, 255), rgb(60, 220, 90), rgb(255, 80, 70)]
    for lane in range(4):
        for i in range(w // 10 - 1):
            band = int(min(2, abs(i - 2) // 3 + lane // 2))
            c.circle(10 + i * 10, h - 36 + lane * 9, 2.2, dots[band])


def mast_with_waves(c, cx, base, top, half_base, rings):
    light = rgb(230, 235, 240)
    draw_mast(c, cx, base, top, half_base, light, 2.4)
    c.circle(cx, top - 6, 4.5, rgb(255, 70, 60))
    for r in rings:
        c.arc(cx, top - 6, r, 2.6, 25, 70, rgb(140, 200, 255, 0.9))
        c.arc(cx, top - 6, r, 2.6, 110, 155, rgb(140, 200, 255, 0.9))


def setup_side():
    """The left-hand picture of the setup's welcome and finish pages."""
    w, h = 164, 314
    c = Canvas(w, h)
    survey_ground(c, w, h)
    mast_with_waves(c, 82, 264, 160, 24, (14, 24, 34))
    c.text(28, 24, "VELDOR", 3, rgb(255, 255, 255))
    c.text(28, 60, "RF SURVEY", 1, rgb(200, 225, 255))
    c.text(28, 72, "SOFTWARE", 1, rgb(200, 225, 255))
    c.text(28, 90, "TREVAN INSTRUMENTS", 1, rgb(255, 220, 120))
    return c


def setup_header():
    """The picture at the left of the setup's other pages."""
    w, h = 150, 57
    c = Canvas(w, h)
    night_ground(c, w, h)
    draw_mast(c, 22, 52, 14, 9, rgb(230, 235, 240), 1.6)
    c.circle(22, 10, 3, rgb(255, 70, 60))
    c.text(44, 14, "VELDOR", 2, rgb(255, 255, 255))
    c.text(46, 36, "RF SURVEY", 1, rgb(200, 225, 255))
    return c


# The button faces: 25 x 25 pixels in the standard 16-colour VGA palette.
VGA = [(0, 0, 0), (128, 0, 0), (0, 128, 0), (128, 128, 0), (0, 0, 128), (128, 0, 128),
       (0, 128, 128), (192, 192, 192), (128, 128, 128), (255, 0, 0), (0, 255, 0),
       (255, 255, 0), (0, 0, 255), (255, 0, 255), (0, 255, 255), (255, 255, 255)]
FACE = 25
BLACK, FACE_GREY, DARK_GREY, WHITE = rgb(0, 0, 0), rgb(192, 192, 192), rgb(128, 128, 128), PAPER
BLUE, GREEN, RED = rgb(0, 0, 255), rgb(0, 255, 0), rgb(255, 0, 0)


def pixel_line(dot, xa, ya, xb, yb, colour):
    """A one-pixel line between two pixels, both ends included."""
    n = max(abs(xb - xa), abs(yb - ya))
    for i in range(n + 1):
        dot(xa + round((xb - xa) * i / (n or 1)), ya + round((yb - ya) * i / (n or 1)), colour)


def pixel_box(dot, x0, y0, x1, y1, colour, filled=True):
    """The pixels x0..x1, y0..y1, all of them or only the outline."""
    for y in range(y0, y1 + 1):
        for x in range(x0, x1 + 1):
            if filled or x in (x0, x1) or y in (y0, y1):
                dot(x, y, colour)


def pixel_arrow(dot, xa, ya, xb, yb, colour):
    """A diagonal arrow from (xa, ya) to its head at (xb, yb)."""
    sx, sy = (1 if xb > xa else -1), (1 if yb > ya else -1)
    pixel_line(dot, xa, ya, xb, yb, colour)
    pixel_line(dot, xb - 3 * sx, yb, xb, yb, colour)
    pixel_line(dot, xb, yb - 3 * sy, xb, yb, colour)


def pixel_text(dot, x, y, string, scale, colours):
    """string in the 5 x 7 font; colours gives each character's colour."""
    for ch, colour in zip(string, colours):
        for row, bits in enumerate(FONT[ch]):
            for col in range(5):
                if bits & (0x10 >> col):
                    pixel_box(dot, x + col * scale, y + row * scale,
                              x + col * scale + scale - 1, y + row * scale + scale - 1, colour)
        x += 5 * scale + 2


def picture_digit(digit):
    return lambda dot: pixel_text(dot, 7, 5, digit, 2, [BLACK])


def picture_block(colours):
    def draw(dot):
        pixel_text(dot, 6, 4, "12", 1, colours[:2])
        pixel_text(dot, 6, 13, "34", 1, colours[2:])
    return draw


def picture_zoom_in(dot):
    pixel_box(dot, 3, 3, 20, 20, BLACK, filled=False)
    for sx, sy in ((-1, -1), (1, -1), (-1, 1), (1, 1)):
        cx, cy = (10 if sx < 0 else 13), (10 if sy < 0 else 13)
        pixel_arrow(dot, cx, cy, cx + 5 * sx, cy + 5 * sy, BLACK)


def arrows_in(dot, near, far):
    """Arrows from the corners far from the centre in to near from it."""
    for sx, sy in ((-1, -1), (1, -1), (-1, 1), (1, 1)):
        ox, oy = (11 if sx < 0 else 12), (11 if sy < 0 else 12)
        pixel_arrow(dot, ox + far * sx, oy + far * sy, ox + near * sx, oy + near * sy, BLACK)


def picture_zoom_out(dot):
    pixel_box(dot, 9, 9, 14, 14, BLACK, filled=False)
    arrows_in(dot, 4, 9)


def picture_zoom_auto(dot):
    pixel_box(dot, 7, 7, 16, 16, BLACK, filled=False)
    for x, y, colour in ((9, 9, BLUE), (13, 9, GREEN), (11, 11, BLUE), (9, 13, GREEN),
                         (13, 13, RED)):
        pixel_box(dot, x, y, x + 1, y + 1, colour)
    arrows_in(dot, 6, 9)


def picture_colours(dot):
    for i, colour in enumerate((BLUE, GREEN, RED)):
        y = 4 + 6 * i
        pixel_box(dot, 4, y, 8, y + 4, colour)
        pixel_line(dot, 11, y + 2, 19, y + 2, BLACK)


# Each button: its name, raised, down and disabled face ids (0: none), picture.
BUTTON_FACES = [
    ("Ch1", 1067, 26568, 26582, picture_digit("1")),
    ("Ch2", 1068, 26569, 26583, picture_digit("2")),
    ("Ch3", 1069, 26570, 26584, picture_digit("3")),
    ("Ch4", 1070, 26571, 26585, picture_digit("4")),
    ("All", 26572, 26573, 26586, picture_block([BLACK] * 4)),
    ("Best", 26574, 26575, 26587, picture_block([DARK_GREY, BLACK, DARK_GREY, DARK_GREY])),
    ("Zoom In", 26576, 26577, 26588, picture_zoom_in),
    ("Zoom Out", 26578, 26579, 26589, picture_zoom_out),
    ("Zoom Auto", 26590, 26591, 26592, picture_zoom_auto),
    ("Colours", 26581, 26580, 0, picture_colours),
]


def button_face(picture, state):
    """A face in state "up", "down" or "off": the bevel with the picture on it."""
    c = Canvas(FACE, FACE, FACE_GREY)
    last = FACE - 1

    def dot(x, y, colour):
        c.rect(x, y, x + 1, y + 1, colour)

    def shifted(dx, dy, colour=None):
        return lambda x, y, own: dot(x + dx, y + dy, colour or own)

    light, shade, edge = (BLACK, DARK_GREY, WHITE) if state == "down" else (WHITE, DARK_GREY, BLACK)
    pixel_line(dot, 0, 0, last, 0, light)
    pixel_line(dot, 0, 0, 0, last, light)
    pixel_line(dot, 0, last, last, last, edge)
    pixel_line(dot, last, 0, last, last, edge)
    if state == "down":
        pixel_line(dot, 1, 1, last - 1, 1, shade)
        pixel_line(dot, 1, 1, 1, last - 1, shade)
        picture(shifted(1, 1))
    else:
        pixel_line(dot, 1, last - 1, last - 1, last - 1, shade)
        pixel_line(dot, last - 1, 1, last - 1, last - 1, shade)
        if state == "off":
            picture(shifted(1, 1, WHITE))
            picture(shifted(0, 0, DARK_GREY))
        else:
            picture(shifted(0, 0))
    return c


def write_bmp16(path, canvas):
    """A 16-colour bitmap, each pixel snapped to the nearest VGA colour."""
    rows = canvas.downsample(1)
    height, width = len(rows), len(rows[0])
    stride = ((width * 4 + 31) // 32) * 4
    pixels = bytearray()
    for row in reversed(rows):
        index = [min(range(16), key=lambda i: sum((a - b) ** 2 for a, b in zip(VGA[i], p[:3])))
                 for p in row] + [0]
        line = bytearray((index[i] << 4) | index[i + 1] for i in range(0, width, 2))
        pixels += line + bytes(stride - len(line))
    palette = b"".join(bytes((b, g, r, 0)) for r, g, b in VGA)
    offset = 14 + 40 + len(palette)
    header = struct.pack("<2sIHHI", b"BM", offset + len(pixels), 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 4, 0, len(pixels),
                       2835, 2835, 16, 0)
    with open(path, "wb") as f:
        f.write(header + info + palette + pixels)


def bmp_rows_bgra(rows):
    """Bottom-up 32-bit BGRA rows as one byte string."""
    out = bytearray()
    for row in reversed(rows):
        for r, g, b, a in row:
            out += bytes((b, g, r, a))
    return bytes(out)


def icon_image(rows):
    size = len(rows)
    xor = bmp_rows_bgra(rows)
    mask_stride = ((size + 31) // 32) * 4
    mask = bytearray()
    for row in reversed(rows):
        bits = bytearray(mask_stride)
        for x, (_, _, _, a) in enumerate(row):
            if a == 0:
                bits[x // 8] |= 0x80 >> (x % 8)
        mask += bits
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0,
                         len(xor) + len(mask), 0, 0, 0, 0)
    return header + xor + bytes(mask)


def write_ico(path, canvas):
    images = [canvas.downsample(1), canvas.downsample(2)]
    blobs = [icon_image(rows) for rows in images]
    out = bytearray(struct.pack("<HHH", 0, 1, len(blobs)))
    offset = 6 + 16 * len(blobs)
    for rows, blob in zip(images, blobs):
        size = len(rows)
        out += struct.pack("<BBBBHHII", size, size, 0, 0, 1, 32, len(blob), offset)
        offset += len(blob)
    for blob in blobs:
        out += blob
    with open(path, "wb") as f:
        f.write(out)


def write_bmp(path, canvas):
    rows = canvas.downsample(1)
    height, width = len(rows), len(rows[0])
    stride = (width * 3 + 3) & ~3
    pixels = bytearray()
    for row in reversed(rows):
        line = bytearray()
        for r, g, b, _ in row:
            line += bytes((b, g, r))
        line += bytes(stride - len(line))
        pixels += line
    header = struct.pack("<2sIHHI", b"BM", 14 + 40 + len(pixels), 0, 0, 54)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(pixels),
                       2835, 2835, 0, 0)
    with open(path, "wb") as f:
        f.write(header + info + pixels)


def main():
    if len(sys.argv) != 2:
        sys.stderr.write("usage: make_images.py OUTPUT_FOLDER\n")
        return 2
    out = sys.argv[1]
    os.makedirs(out, exist_ok=True)
    write_ico(os.path.join(out, "veldor_frame.ico"), icon_frame())
    write_ico(os.path.join(out, "veldor_listing.ico"), icon_listing())
    write_ico(os.path.join(out, "veldor_plot.ico"), icon_plot())
    write_ico(os.path.join(out, "veldor_chart.ico"), icon_chart())
    write_ico(os.path.join(out, "veldor_tags.ico"), icon_tags())
    write_bmp(os.path.join(out, "signon.bmp"), signon())
    write_bmp(os.path.join(out, "setup_side.bmp"), setup_side())
    write_bmp(os.path.join(out, "setup_header.bmp"), setup_header())
    for _, up, down, off, picture in BUTTON_FACES:
        for face_id, state in ((up, "up"), (down, "down"), (off, "off")):
            if face_id:
                write_bmp16(os.path.join(out, "face_%d.bmp" % face_id), button_face(picture, state))
    return 0


if __name__ == "__main__":
    sys.exit(main())
