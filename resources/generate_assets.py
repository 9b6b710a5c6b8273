#!/usr/bin/env python3
"""Draws every picture and synthesises every sound of Quillop.

Writes, next to this script:
  sprites/<name>.xpm      the playfield's sprite pictures and their black erasers
  sprites/help_imgPaddle.xpm   the help window's 32 x 4 paddle bitmap
  icons/quillop_32.xpm, icons/quillop_16.xpm, icons/quillop.svg   the program icon
  icons/quillop_16.png, _32.png, _48.png                          the icon for the desktop's theme
  about.xpm               the about box picture (139 x 214)
  queen.svg               the high-score dialog's vector Queen (3172 x 2697 units)
  sounds/<event>.wav      the fourteen event sounds and default.wav

Python 3 standard library only, and deterministic: running it again rewrites the same bytes.
`--check` regenerates in memory and reports every file on disk that differs.
"""

import io
import math
import os
import struct
import sys
import wave
import zlib

HERE = os.path.dirname(os.path.abspath(__file__))

# ---------------------------------------------------------------------------------------------
# Pictures: a picture is a list of rows, each pixel an (r, g, b) tuple or None (transparent).

BLACK = (0, 0, 0)


def hexrgb(text):
    return (int(text[1:3], 16), int(text[3:5], 16), int(text[5:7], 16))


def blank(width, height, fill=None):
    return [[fill] * width for _ in range(height)]


def size_of(pic):
    return len(pic[0]), len(pic)


def grid(rows, palette, mirror=None):
    """A figure from ASCII rows; '.' is transparent. `mirror` completes a symmetric figure
    drawn by its left half: "even" repeats every column, "odd" shares the centre column."""
    if mirror == "even":
        rows = [r + r[::-1] for r in rows]
    elif mirror == "odd":
        rows = [r + r[-2::-1] for r in rows]
    width = len(rows[0])
    for r in rows:
        assert len(r) == width, "ragged row %r" % r
    return [[None if ch == "." else hexrgb(palette[ch]) for ch in r] for r in rows]


def paste(dest, src, x0, y0):
    """Copies the opaque pixels of src onto dest (clipped)."""
    w, h = size_of(dest)
    for y, row in enumerate(src):
        for x, px in enumerate(row):
            if px is not None and 0 <= x0 + x < w and 0 <= y0 + y < h:
                dest[y0 + y][x0 + x] = px
    return dest


def icon(width, height, figure, x0=0, y0=0):
    return paste(blank(width, height), figure, x0, y0)


def opaque(figure, ground=BLACK):
    """A bitmap: every transparent pixel becomes the ground colour."""
    return [[ground if px is None else px for px in row] for row in figure]


def mask_of(pic):
    """The eraser: black exactly where the picture is opaque."""
    return [[None if px is None else BLACK for px in row] for row in pic]


def bbox(pic):
    xs = [x for row in pic for x, px in enumerate(row) if px is not None]
    ys = [y for y, row in enumerate(pic) if any(px is not None for px in row)]
    return min(xs), min(ys), max(xs) - min(xs) + 1, max(ys) - min(ys) + 1


def hflip(pic):
    return [row[::-1] for row in pic]


def fill_where(pic, inside, colour):
    for y, row in enumerate(pic):
        for x in range(len(row)):
            c = inside(x, y)
            if c:
                row[x] = colour if c is True else c
    return pic


def line(pic, x0, y0, x1, y1, colour):
    """Bresenham, both ends included."""
    w, h = size_of(pic)
    dx, dy = abs(x1 - x0), -abs(y1 - y0)
    sx, sy = (1 if x0 < x1 else -1), (1 if y0 < y1 else -1)
    err = dx + dy
    while True:
        if 0 <= x0 < w and 0 <= y0 < h:
            pic[y0][x0] = colour
        if x0 == x1 and y0 == y1:
            return
        e2 = 2 * err
        if e2 >= dy:
            err += dy
            x0 += sx
        if e2 <= dx:
            err += dx
            y0 += sy


def in_polygon(x, y, pts):
    inside = False
    j = len(pts) - 1
    for i in range(len(pts)):
        xi, yi = pts[i]
        xj, yj = pts[j]
        if (yi > y) != (yj > y) and x < (xj - xi) * (y - yi) / (yj - yi) + xi:
            inside = not inside
        j = i
    return inside


class Lcg:
    """A tiny generator of our own, so the output never depends on Python's `random`."""

    def __init__(self, seed):
        self.state = seed & 0xFFFFFFFF

    def next(self):
        self.state = (self.state * 1664525 + 1013904223) & 0xFFFFFFFF
        return self.state / 4294967296.0


# ---------------------------------------------------------------------------------------------
# The figures. Palettes name the colours of the design table first.

ARSE_PAL = {"C": "#00FFFF", "c": "#00A0A0", "Y": "#FFFF00", "k": "#000000", "W": "#FFFFFF"}
ARSE = grid([
    "...YY.......",
    "...YY.......",
    "....C.......",
    ".....C......",
    "......CCCCCC",
    "....CCCCCCCC",
    "...CCCCCCCCC",
    "..CCCWYYCCCC",
    "..CCYYkkYCCC",
    ".CCCYYkkYCCC",
    ".CCCcYYYCCCC",
    "CCCCCCCCCCCC",
    "CCCCCCCCCCCC",
    "cCCCCkkkkkkk",
    "cCCCCkYkYkYk",
    ".cCCCCkkkkkk",
    ".cCCCCCCCCCC",
    "..ccCCCCCCCC",
    "...cccccCCcc",
    "...CC...CC..",
    "..CC....CC..",
    ".YYY...YYY..",
], ARSE_PAL, "even")

GRAY_PAL = {"W": "#FFFFFF", "L": "#C0C0C0", "G": "#A0A0A0", "g": "#808080", "d": "#404040",
            "O": "#808000", "o": "#C0C000", "k": "#000000"}
GRAY_ARSE = grid([
    "..........WW",
    ".........WLL",
    "........WLLL",
    ".......WLLGG",
    "......WLLGGG",
    ".....WLLGGGG",
    "....WLOOOGGG",
    "...WLOooOGGG",
    "..WLGOokOGGG",
    ".WLGGGOOOGGG",
    "WLGGGGGGGGGG",
    "gGGGGGGGGGGG",
    ".gGGGGdddddd",
    "..gGGGdWdWdW",
    "...gGGGddddd",
    "....gGGGGGGG",
    ".....gGGGGGG",
    "......ggGGGG",
    ".....gg.ggGG",
    "....gg....gg",
    "...gg.......",
    "..WW........",
], GRAY_PAL, "even")

KNIGHT_PAL = {"R": "#FF0000", "D": "#800000", "d": "#500000", "Y": "#FFFF00", "y": "#C0A000",
              "k": "#000000"}
KNIGHT = grid([
    "..........RR",
    ".........RRR",
    "........RRR.",
    "...........Y",
    ".....YYYYYYY",
    "....YDDDDDDD",
    "...YDDDDDDDD",
    "..YDDDDDDDDD",
    "..YDDkkkkkkk",
    "..YDDkRRkRRk",
    "..YDDkkkkkkk",
    "..YDDDDDDDDD",
    ".YYDDDDkDkDk",
    "YYDDDDDDDDDD",
    "YDDDDDDDDDDD",
    ".YDDDDDDDDDD",
    "..yDDDDDDDDD",
    "...yyyyyyDDy",
    "....RR...DD.",
    "....RR...DD.",
    "...RRR..RRR.",
    "...RR...RR..",
], KNIGHT_PAL, "even")

QUEEN_PAL = {"G": "#00FF00", "g": "#008000", "Y": "#FFFF00", "y": "#C0C000", "k": "#000000",
             "W": "#FFFFFF", "R": "#FF0000"}
QUEEN = grid([
    "....Y....Y..",
    "....YY..YYY.",
    "....YYYYYRYY",
    "....YYYYYYYY",
    "....yyyyyyyy",
    "...gGGGGGGGG",
    "..gGGGGGGGGG",
    ".gGGWWWGGGGG",
    ".gGWWkkWGGGG",
    "gGGWWkkWGGGG",
    "gGGGWWWGGGGG",
    "gGGGGGGGGGGG",
    "gGGGGGGGGGGG",
    "gGGGGGRRRRRR",
    ".gGGGGGRRRRR",
    ".gGGGGGGGGGG",
    "..gGGGGGGGGG",
    "...gggGGGGGG",
    "....gggggggg",
    "....gg....gg",
    "...gg....gg.",
    "..YYY...YYY.",
], QUEEN_PAL, "even")

SEEKER_PAL = {"R": "#FF0000", "O": "#FF8000", "Y": "#FFFF00", "G": "#00FF00", "g": "#008000",
              "k": "#000000"}
SEEKER = grid([
    "O......R",
    ".O....RR",
    "..RRRRRR",
    "..ROOOOO",
    ".ROOYYYY",
    "RROYYGGG",
    "ROOYGGgg",
    "ROOYGgkk",
    "ROOYGGgg",
    "RROYYGGG",
    ".ROOYYYY",
    "..ROOOOO",
    "..RRRRRR",
    ".O....RR",
    "O......R",
], SEEKER_PAL, "odd")

MINE_PAL = {"R": "#FF0000", "r": "#A00000", "G": "#00FF00", "g": "#00A000", "Y": "#FFFF00",
            "y": "#C0C000", "k": "#000000"}
MINE_ROWS = [
    "YY..........",
    "YYR.......YY",
    ".RRR......YY",
    "..RRR....GG.",
    "..RRRR..GGGG",
    "...RRRRGGGGG",
    "...RRRRRGGGG",
    "...yYYyYYyYY",
    "...RRRRRRRRR",
    "...RRRRRRRRR",
    "...RRkkRRRRR",
    "...RRkkRRRRR",
    "...RRRRRRRRR",
    "....RRRRRRRR",
    "....RRkRRRRR",
    ".....RRkkkkk",
    "......RRRRRR",
    ".....GGRRGGR",
    "....GGGGGGGG",
    "...YGG.GGG.G",
    "...YY...YY..",
    ".........YY.",
]


def mine(variant):
    """The Jester mine; the three variants share one silhouette (they share one eraser)."""
    rows = [r + r[::-1] for r in MINE_ROWS]
    if variant == 1:    # a yellow ruff
        rows[17:20] = [r.replace("G", "Y") for r in rows[17:20]]
    if variant == 2:    # a wink
        rows[10] = rows[10][:14] + "RRRR" + rows[10][18:]
        rows[11] = rows[11][:14] + "kkkk" + rows[11][18:]
    return grid(rows, MINE_PAL)


# The second Jester picture: a whole jester, 27 x 31.
JESTER_PAL = {"k": "#000000", "C": "#00FFFF", "T": "#008080", "W": "#FFFFFF", "w": "#C0C0C0"}
JESTER = grid([
    "WW...........W",
    "WWk.........WW",
    ".kCk.......kTk",
    "..kCk......kTT",
    "..kCCk....kTTT",
    "...kCCk..kTTTT",
    "...kCCCkkTTTTT",
    "....kCCCCTTTTT",
    "....kkkkkkkkkk",
    "....kWWWWWWWWW",
    "....kWkkWWWWWW",
    "....kWkkWWWWWW",
    "....kWWWWWWWWW",
    "....kWWWWWWWkW",
    ".....kWWWkkkWW",
    "......kWWWWWWW",
    "....WkkkkkkkkW",
    "...WwWkkWwWkWw",
    "....kkCCCkTTTk",
    "...kCCkCCCkTTT",
    "..kCCCkkCkTTTk",
    ".kCCCCk.kTTTkC",
    ".kWWCk..kTTkCC",
    ".kWWk...kTkCCC",
    "..kk....kkCCCC",
    "........kTkCCC",
    ".......kTTTkCC",
    ".......kTTkkkk",
    "......kkTk....",
    ".....kTTTk....",
    ".....kkkkk....",
], JESTER_PAL, "odd")


def second_jester(variant):
    pic = [row[:] for row in JESTER]
    if variant == 1:
        pic = hflip(pic)
    elif variant == 2:    # colours of the suit swapped
        swap = {hexrgb("#00FFFF"): hexrgb("#008080"), hexrgb("#008080"): hexrgb("#00FFFF")}
        pic = [[swap.get(px, px) for px in row] for row in pic]
    return pic


PADDLE_PAL = {"Y": "#FFFF00", "y": "#E0E000", "L": "#C0C0C0", "W": "#E8E8E8", "g": "#909090",
              "O": "#FF8000", "M": "#FF00FF"}
PADDLE = grid([
    ".LWWL" + "Y" * 22 + "LWWL.",
    "LLMLL" + "YYYOYYYYYYYYYYYYYYOYYY" + "LLMLL",
    "LLLLL" + "yyyyyyyyyyyyyyyyyyyyyy" + "LLLLL",
    ".ggg" + "O" + "yy" + "y" * 18 + "yy" + "O" + "ggg.",
], PADDLE_PAL)


def wide_paddle():
    mid = lambda ch, marks: "".join(marks.get(i, ch) for i in range(54))
    return grid([
        ".LWWL" + "Y" * 54 + "LWWL.",
        "LLMLL" + mid("Y", {3: "O", 17: "O", 27: "M", 36: "O", 50: "O"}) + "LLMLL",
        "LLLLL" + "y" * 54 + "LLLLL",
        ".gggO" + "y" * 54 + "Oggg.",
    ], PADDLE_PAL)


def energypod(frame):
    """A spinning pod: cyan rim, yellow body, three red vanes turned 30 degrees a frame."""
    pic = blank(48, 48)
    c = 23.5
    turn = frame * math.pi / 6
    for y in range(48):
        for x in range(48):
            dx, dy = x - c, y - c
            r = math.hypot(dx, dy)
            if r > 24.0:
                continue
            if r > 21.0:
                col = "#00FFFF"
            elif r > 19.5:
                col = "#000000"
            elif r < 3.5:
                col = "#000000" if r < 2.0 else "#FF0000"
            else:
                a = (math.atan2(dy, dx) - turn) % (2 * math.pi / 3)
                # a vane is a curved wedge: its width widens towards the rim
                edge = 0.35 + 0.25 * (r / 19.5)
                if a < edge:
                    col = "#FF0000"
                elif a < edge + 0.12:
                    col = "#000000"
                elif r < 17 and (a > 1.75) and (r > 14):
                    col = "#FFFFA0"
                else:
                    col = "#FFFF00"
            pic[y][x] = hexrgb(col)
    return pic


def pointspod():
    """A green pod with a yellow star, on black."""
    pic = blank(40, 40, BLACK)
    c = 19.5
    star = []
    for i in range(10):
        a = -math.pi / 2 + i * math.pi / 5
        rad = 12.5 if i % 2 == 0 else 5.2
        star.append((c + rad * math.cos(a), c + 0.5 + rad * math.sin(a)))
    for y in range(40):
        for x in range(40):
            r = math.hypot(x - c, y - c)
            if r <= 19.6:
                col = "#00FF00"
                if r > 18.0:
                    col = "#008000"
                elif r < 16.0:
                    col = "#000000"
                    if r > 15.0 and (int(math.atan2(y - c, x - c) * 8 / math.pi) % 2 == 0):
                        col = "#00A000"
                if in_polygon(x, y, star):
                    col = "#FFFF00"
                    if y < c - 2 and abs(x - c) < 2:
                        col = "#FFFFA0"
                pic[y][x] = hexrgb(col)
    return pic


def sidestopper():
    """The iron rod: a shaded cylinder with capped, ribbed ends."""
    shade = ["#808080", "#C0C0C0", "#FFFFFF", "#FFFFFF", "#C0C0C0",
             "#C0C0C0", "#C0C0C0", "#808080", "#808080", "#606060"]
    pic = blank(10, 75, BLACK)
    for y in range(75):
        for x in range(10):
            col = shade[x]
            if y in (0, 74) or x in (0, 9) and (y < 6 or y > 68):
                col = "#808080"
            elif y in (6, 68):
                col = "#404040"
            elif y < 6 or y > 68:
                col = "#FFFFFF" if x in (2, 3) else "#C0C0C0"
            elif (y - 6) % 8 == 0 and 0 < x < 9:
                col = "#808080"
            pic[y][x] = hexrgb(col)
    return pic


def catfish():
    """A grey catfish on navy water, whiskers forward, bubbles rising from its mouth."""
    navy, grey, light, dark = "#000080", "#808080", "#C0C0C0", "#505050"
    pic = blank(75, 75, hexrgb(navy))
    # faint ripples in the water
    for y in range(6, 75, 9):
        for x in range((y * 7) % 11, 75, 17):
            for k in range(4):
                if x + k < 75:
                    pic[y][x + k] = hexrgb("#101090")
    body = lambda x, y: ((x - 38) / 27.0) ** 2 + ((y - 47) / 12.5) ** 2 <= 1.0
    tail = [(2, 33), (16, 47), (2, 61), (6, 47)]
    dorsal = [(24, 37), (34, 27), (46, 36)]
    fin = [(38, 55), (46, 66), (50, 56)]
    fill_where(pic, lambda x, y: in_polygon(x, y, tail), hexrgb(dark))
    fill_where(pic, lambda x, y: in_polygon(x, y, dorsal), hexrgb(dark))
    fill_where(pic, lambda x, y: body(x, y) and
               (hexrgb(light) if y > 50 else hexrgb(grey)), True)
    fill_where(pic, lambda x, y: in_polygon(x, y, fin), hexrgb(dark))
    for sx in range(18, 56, 6):           # spots along the back
        pic[41][sx] = pic[42][sx + 1] = hexrgb(dark)
    for y in range(44, 50):               # the gill line
        pic[y][54 - (y - 44) // 3] = hexrgb(dark)
    pic[43][58] = pic[43][59] = pic[44][58] = pic[44][59] = BLACK   # eye
    pic[43][59] = hexrgb("#FFFFFF")
    line(pic, 60, 50, 65, 50, BLACK)      # mouth
    line(pic, 64, 48, 73, 40, hexrgb(light))  # whiskers
    line(pic, 64, 49, 74, 46, hexrgb(light))
    line(pic, 64, 51, 74, 58, hexrgb(light))
    line(pic, 63, 52, 70, 62, hexrgb(light))
    for bx, by, br in ((66, 30, 2.5), (61, 18, 3.5), (68, 7, 2.0)):   # bubbles
        fill_where(pic, lambda x, y: abs(math.hypot(x - bx, y - by) - br) < 0.7, hexrgb(light))
    return pic


EXPLOSION_SIZES = [(14, 12), (20, 19), (23, 22), (32, 32), (23, 22), (14, 12)]


def explosion(frame):
    """A ragged burst of the stated figure size, centred in a 32 x 32 icon."""
    w, h = EXPLOSION_SIZES[frame]
    rng = Lcg(71 + frame * 13)
    spikes = 12
    lengths = [0.62 + 0.38 * rng.next() for _ in range(spikes)]
    for k in range(0, spikes, 3):         # spikes on the axes reach the figure's edges
        lengths[k] = 1.08
    cx, cy = (w - 1) / 2.0, (h - 1) / 2.0
    if frame in (0, 5):
        rim, mid, core = "#FFFF00", "#FFFF00", "#FFFFC0"
    elif frame == 1:
        rim, mid, core = "#C00000", "#FF0000", "#FF4040"
    else:
        rim, mid, core = "#FF0000", "#FF8040", "#FFC080"
    fig = blank(w, h)
    for y in range(h):
        for x in range(w):
            nx, ny = (x - cx) / (w / 2.0), (y - cy) / (h / 2.0)
            r = math.hypot(nx, ny)
            a = (math.atan2(ny, nx) % (2 * math.pi)) / (2 * math.pi) * spikes
            k = int(a)
            t = a - k
            # the boundary dips between two spike tips
            tip = lengths[k] * (1 - t) + lengths[(k + 1) % spikes] * t
            limit = tip * (0.7 + 0.3 * abs(1 - 2 * t))
            if r <= limit:
                col = rim if r > 0.62 * limit else (mid if r > 0.3 else core)
                if frame in (0, 5) and r > 0.62 * limit:
                    col = "#E0E000"
                fig[y][x] = hexrgb(col)
    # the axis spikes run right out to the figure's edges
    for y in (int(cy), int(math.ceil(cy))):
        for x in (0, 1, w - 2, w - 1):
            fig[y][x] = fig[y][x] or hexrgb(rim)
    for x in (int(cx), int(math.ceil(cx))):
        for y in (0, 1, h - 2, h - 1):
            fig[y][x] = fig[y][x] or hexrgb(rim)
    if frame == 4:
        fig = hflip(fig)
    return icon(32, 32, fig, (32 - w) // 2, (32 - h) // 2)


# ---------------------------------------------------------------------------------------------
# The program icon and the about picture.

def program_icon(size):
    """Round: a navy disc in a yellow rim, a teal puck flying off a yellow paddle."""
    pic = blank(size, size)
    c = (size - 1) / 2.0
    s = size / 32.0
    for y in range(size):
        for x in range(size):
            r = math.hypot(x - c, y - c)
            if r <= size / 2.0:
                pic[y][x] = hexrgb("#FFFF00" if r > size / 2.0 - 2.2 * s else "#000080")
                if size / 2.0 - 3.2 * s < r <= size / 2.0 - 2.2 * s:
                    pic[y][x] = hexrgb("#808000")
    for y in range(size):
        for x in range(size):
            if pic[y][x] is None:
                continue
            # the paddle
            if 20 * s <= y < 23 * s and 9 * s <= x < 23 * s:
                pic[y][x] = hexrgb("#C0C0C0" if x < 11 * s or x >= 21 * s else "#FFFF00")
            # the puck and its trail
            if math.hypot(x - 16 * s, y - 12 * s) <= 3.6 * s:
                pic[y][x] = hexrgb("#00C0C0" if math.hypot(x - 15 * s, y - 11 * s) > 1.2 * s
                                   else "#80FFFF")
            elif size >= 32 and abs((x - 16) + (y - 12)) <= 0.8 and 18 < x < 25:
                pic[y][x] = hexrgb("#008080")
    return pic


FONT = {
    "Q": ["01110", "10001", "10001", "10001", "10101", "10010", "01101"],
    "U": ["10001", "10001", "10001", "10001", "10001", "10001", "01110"],
    "I": ["01110", "00100", "00100", "00100", "00100", "00100", "01110"],
    "L": ["10000", "10000", "10000", "10000", "10000", "10000", "11111"],
    "O": ["01110", "10001", "10001", "10001", "10001", "10001", "01110"],
    "P": ["11110", "10001", "10001", "11110", "10000", "10000", "10000"],
    "V": ["10001", "10001", "10001", "10001", "01010", "01010", "00100"],
    "2": ["01110", "10001", "00001", "00110", "01000", "10000", "11111"],
    "0": ["01110", "10011", "10101", "10101", "10101", "11001", "01110"],
    ".": ["00000", "00000", "00000", "00000", "00000", "01100", "01100"],
    " ": ["00000"] * 7,
}


def text(pic, x0, y0, words, scale, colour_at):
    for n, ch in enumerate(words):
        for gy, bits in enumerate(FONT[ch]):
            for gx, bit in enumerate(bits):
                if bit == "1":
                    for yy in range(scale):
                        for xx in range(scale):
                            x = x0 + (n * 6 + gx) * scale + xx
                            y = y0 + gy * scale + yy
                            pic[y][x] = colour_at(x, y)


def about_picture(sprites):
    """A playfield scene under the title, 139 x 214."""
    w, h = 139, 214
    pic = blank(w, h)
    for y in range(h):                    # a deep violet sky fading to black
        t = min(1.0, y / 150.0)
        col = (int(48 * (1 - t)), 0, int(96 * (1 - t) + 16 * t))
        for x in range(w):
            pic[y][x] = col
    rng = Lcg(1999)
    for _ in range(70):
        x, y = int(rng.next() * w), int(rng.next() * 150)
        pic[y][x] = hexrgb("#FFFFFF" if rng.next() < 0.6 else "#FFFF80")
    shadow = lambda x, y: hexrgb("#400000")
    text(pic, 13, 9, "QUILLOP", 2, shadow)
    text(pic, 12, 8, "QUILLOP", 2,
         lambda x, y: (255, max(64, 255 - (y - 8) * 14), 0))
    text(pic, 48, 28, "V2.00", 1, lambda x, y: hexrgb("#00FFFF"))
    frame = hexrgb("#808080")
    for x in range(2, w - 2):             # the playfield's rim
        pic[40][x] = frame
    for y in range(40, h):
        pic[y][2] = pic[y][w - 3] = frame

    def put(name, x, y, ground=False):
        fig = sprites[name]
        if ground:
            fig = [[None if px == BLACK else px for px in row] for row in fig]
        paste(pic, fig, x, y)

    for i in range(4):
        put("imgClub", 8 + i * 32, 46)
    put("imgQueen", 20, 76)
    put("imgKnight", 58, 76, ground=True)
    put("imgDiamond", 96, 76, ground=True)
    put("imgSeeker", 6, 104)
    put("imgEnergypod_1", 22, 108)
    put("imgPointspod", 96, 118, ground=True)
    put("imgMine_0", 70, 98)
    for k in range(1, 6):                 # the puck's dotted trail
        pic[148 - k * 5][80 + k * 4] = hexrgb("#008080")
    fill_where(pic, lambda x, y: math.hypot(x - 80, y - 148) <= 4.2 and
               (hexrgb("#80FFFF") if math.hypot(x - 79, y - 147) < 1.5 else hexrgb("#00C0C0")),
               True)
    put("imgPaddle_0", 66, 160)
    for y in range(172, h):               # water along the bottom, the Catfish in it
        for x in range(3, w - 3):
            pic[y][x] = hexrgb("#000080")
    paste(pic, sprites["imgCatfish"][24:66], 58, 172)
    return pic


# ---------------------------------------------------------------------------------------------
# Output formats.

XPM_CHARS = (" .XoO+@#$%&*=-;:>,<1234567890qwertyuipasdfghjklzxcvbnm"
             "MNBVCZASDFGHJKLPIUYTREWQ!~^/()_`'][{}|")


def xpm(name, pic):
    w, h = size_of(pic)
    colours = []
    for row in pic:
        for px in row:
            if px not in colours:
                colours.append(px)
    # the transparent colour, if any, takes the blank
    colours.sort(key=lambda c: (c is not None, c or (0, 0, 0)))
    cpp = 1 if len(colours) <= len(XPM_CHARS) else 2
    codes = {}
    for i, c in enumerate(colours):
        if cpp == 1:
            codes[c] = XPM_CHARS[i]
        else:
            codes[c] = XPM_CHARS[i // len(XPM_CHARS)] + XPM_CHARS[i % len(XPM_CHARS)]
    out = ["/* XPM */", "static const char *const %s[] = {" % name,
           '"%d %d %d %d",' % (w, h, len(colours), cpp)]
    for c in colours:
        entry = "None" if c is None else "#%02X%02X%02X" % c
        out.append('"%s c %s",' % (codes[c], entry))
    for y, row in enumerate(pic):
        out.append('"%s"%s' % ("".join(codes[px] for px in row), "," if y < h - 1 else ""))
    out.append("};")
    return ("\n".join(out) + "\n").encode("ascii")


def png(pic):
    """RGBA PNG, transparent where the picture is blank; byte for byte the same every run."""
    w, h = size_of(pic)
    raw = b"".join(b"\0" + bytes(v for px in row for v in ((*px, 255) if px else (0, 0, 0, 0)))
                   for row in pic)

    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", w, h, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def icon_svg():
    return """<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" width="128" height="128" viewBox="0 0 32 32">
  <title>Quillop</title>
  <circle cx="16" cy="16" r="15.5" fill="#FFFF00"/>
  <circle cx="16" cy="16" r="13.6" fill="#808000"/>
  <circle cx="16" cy="16" r="12.8" fill="#000080"/>
  <line x1="19.5" y1="15.5" x2="24.5" y2="20.5" stroke="#008080" stroke-width="1.5"
        stroke-dasharray="1.5 1.5"/>
  <rect x="9" y="20" width="14" height="3" fill="#FFFF00"/>
  <rect x="9" y="20" width="2" height="3" fill="#C0C0C0"/>
  <rect x="21" y="20" width="2" height="3" fill="#C0C0C0"/>
  <circle cx="16" cy="12" r="3.6" fill="#00C0C0"/>
  <circle cx="15" cy="11" r="1.2" fill="#80FFFF"/>
</svg>
""".encode("ascii")


def queen_svg():
    """The Queen Arse in vector shapes, on the metafile's 3172 x 2697 unit canvas
    (hundredths of a millimetre, hence the physical size)."""
    return """<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" width="31.72mm" height="26.97mm"
     viewBox="0 0 3172 2697">
  <title>Queen Arse</title>
  <!-- legs and feet -->
  <path d="M1000 2150 L880 2420 L620 2420 L620 2560 L1060 2560 L1160 2180 Z" fill="#008000"/>
  <path d="M2172 2150 L2292 2420 L2552 2420 L2552 2560 L2112 2560 L2012 2180 Z" fill="#008000"/>
  <ellipse cx="760" cy="2560" rx="260" ry="110" fill="#FFFF00"/>
  <ellipse cx="2412" cy="2560" rx="260" ry="110" fill="#FFFF00"/>
  <!-- body -->
  <ellipse cx="1586" cy="1500" rx="1420" ry="760" fill="#008000"/>
  <ellipse cx="1586" cy="1460" rx="1320" ry="690" fill="#00FF00"/>
  <!-- eyes -->
  <ellipse cx="1000" cy="1250" rx="260" ry="230" fill="#FFFFFF"/>
  <ellipse cx="2172" cy="1250" rx="260" ry="230" fill="#FFFFFF"/>
  <circle cx="1080" cy="1270" r="120" fill="#000000"/>
  <circle cx="2092" cy="1270" r="120" fill="#000000"/>
  <!-- mouth -->
  <path d="M1000 1700 Q1586 2080 2172 1700 Q1586 1880 1000 1700 Z" fill="#FF0000"/>
  <!-- the crown -->
  <path d="M700 820 L700 120 L1040 480 L1586 40 L2132 480 L2472 120 L2472 820 Z"
        fill="#FFFF00" stroke="#C0C000" stroke-width="40"/>
  <rect x="700" y="700" width="1772" height="140" fill="#C0C000"/>
  <circle cx="1586" cy="480" r="130" fill="#FF0000"/>
  <circle cx="1040" cy="620" r="80" fill="#00FF00"/>
  <circle cx="2132" cy="620" r="80" fill="#00FF00"/>
</svg>
""".encode("ascii")


# ---------------------------------------------------------------------------------------------
# Sounds: 22050 Hz, 16-bit, mono PCM.

RATE = 22050


def wav(samples):
    # every sound peaks at the same level, so none drowns out the others
    peak = max(1e-9, max(abs(s) for s in samples))
    gain = 0.75 / peak
    frames = b"".join(struct.pack("<h", int(round(max(-1.0, min(1.0, s * gain)) * 32767)))
                      for s in samples)
    buf = io.BytesIO()
    with wave.open(buf, "wb") as w:
        w.setnchannels(1)
        w.setsampwidth(2)
        w.setframerate(RATE)
        w.writeframes(frames)
    return buf.getvalue()


def tone(duration, freq, wave_shape="sine", attack=0.005, release=0.03, volume=0.7,
         vibrato=(0.0, 0.0)):
    """`freq` is a number or a function of time; the phase is integrated so sweeps are smooth."""
    n = int(duration * RATE)
    out = []
    phase = 0.0
    for i in range(n):
        t = i / RATE
        f = freq(t) if callable(freq) else freq
        if vibrato[0]:
            f *= 1 + vibrato[1] * math.sin(2 * math.pi * vibrato[0] * t)
        phase += f / RATE
        p = phase % 1.0
        if wave_shape == "square":
            v = 1.0 if p < 0.5 else -1.0
        elif wave_shape == "triangle":
            v = 4 * abs(p - 0.5) - 1
        elif wave_shape == "saw":
            v = 2 * p - 1
        else:
            v = math.sin(2 * math.pi * p)
        env = min(1.0, t / attack if attack else 1.0, (duration - t) / release if release else 1.0)
        out.append(v * volume * max(0.0, env))
    return out


def noise(duration, seed, smooth=0.0, decay=None, volume=0.8):
    """White noise through a one-pole low-pass (`smooth` towards 1 is darker)."""
    rng = Lcg(seed)
    n = int(duration * RATE)
    out, prev = [], 0.0
    for i in range(n):
        s = smooth(i / RATE) if callable(smooth) else smooth
        prev = prev * s + (rng.next() * 2 - 1) * (1 - s)
        env = math.exp(-i / RATE / decay) if decay else 1.0
        out.append(prev * env * volume)
    return out


def mix(*parts):
    n = max(len(p) for p in parts)
    return [sum(p[i] for p in parts if i < len(p)) for i in range(n)]


def seq(*parts):
    out = []
    for p in parts:
        out.extend(p)
    return out


def silence(duration):
    return [0.0] * int(duration * RATE)


def decaying(samples, tau):
    return [s * math.exp(-i / RATE / tau) for i, s in enumerate(samples)]


def note(name):
    names = {"C": -9, "D": -7, "E": -5, "F": -4, "G": -2, "A": 0, "B": 2}
    semis = names[name[0]] + (1 if "#" in name else 0) - (1 if "b" in name[1:] else 0)
    octave = int(name[-1])
    return 440.0 * 2 ** ((semis + 12 * (octave - 4)) / 12.0)


def sounds():
    s = {}
    # a new game is laid out: a bright rising arpeggio
    s["begin.wav"] = seq(*[tone(0.09, note(n), "square", volume=0.35) for n in
                           ("C5", "E5", "G5")], tone(0.22, note("C6"), "square", volume=0.35,
                                                     release=0.15))
    # the puck is served: a falling whistle
    s["drop.wav"] = tone(0.32, lambda t: 1400 * (0.25 ** (t / 0.32)), "triangle", release=0.08)
    # wall bounces: a short high tick for the sides, a duller knock for the bottom
    s["sidebounce.wav"] = decaying(tone(0.07, 1180, "square", volume=0.4, release=0.02), 0.03)
    s["bottombounce.wav"] = decaying(mix(tone(0.11, lambda t: 260 - 900 * t, "triangle"),
                                         noise(0.03, 5, 0.6, 0.01, 0.4)), 0.05)
    # the paddle: the classic blip
    s["paddlebounce.wav"] = tone(0.08, 740, "square", volume=0.45, release=0.03)
    # the Catfish fires the puck upward: a boing that leaps up
    s["catfish.wav"] = tone(0.42, lambda t: 180 + 1500 * t * t * 4, "sine", release=0.1,
                            vibrato=(28, 0.12))
    # energized: a shimmering rising chord
    s["energypod.wav"] = [a * (0.6 + 0.4 * math.sin(2 * math.pi * 16 * i / RATE))
                          for i, a in enumerate(mix(
                              tone(0.65, lambda t: 523 * (1 + t), "sine", volume=0.35),
                              tone(0.65, lambda t: 659 * (1 + t), "sine", volume=0.3),
                              tone(0.65, lambda t: 784 * (1 + t), "triangle", volume=0.25)))]
    # points: a coin-like two-step
    s["pointspod.wav"] = seq(tone(0.07, note("B5"), "square", volume=0.35, release=0.01),
                             decaying(tone(0.3, note("E6"), "square", volume=0.35,
                                           release=0.1), 0.12))
    # the rod stops the puck: an inharmonic metallic clank
    s["sidestopper.wav"] = decaying(mix(tone(0.35, 523, "sine", volume=0.4),
                                        tone(0.35, 1311, "sine", volume=0.3),
                                        tone(0.35, 2063, "sine", volume=0.2),
                                        noise(0.02, 9, 0.2, 0.005, 0.5)), 0.09)
    # a Seeker sets off: a rising and falling warble
    s["seeker3.wav"] = tone(0.75, lambda t: 600 + 350 * math.sin(2 * math.pi * 5 * t),
                            "saw", volume=0.3, release=0.15)
    # the puck explodes: a rumbling burst of noise that darkens as it dies away
    s["blowup.wav"] = mix(noise(1.2, 3, lambda t: 0.55 + 0.4 * min(1.0, t / 0.6), 0.35, 1.0),
                          decaying(tone(1.2, lambda t: 90 - 40 * t, "sine", volume=0.6), 0.3))
    # an Arse dies: a squelchy falling zap
    s["arsedeath.wav"] = mix(tone(0.34, lambda t: 900 * (0.15 ** (t / 0.34)), "saw",
                                  volume=0.4, release=0.05),
                             noise(0.34, 7, 0.3, 0.08, 0.3))
    # the last life is gone: a slow sad descent
    s["gameover.wav"] = seq(*[tone(d, note(n), "triangle", volume=0.5, release=0.06)
                              for n, d in (("G4", 0.3), ("Eb4", 0.3), ("C4", 0.3),
                                           ("G3", 0.5))])
    # the game is won: a fanfare
    fan = [("C5", 0.12), ("C5", 0.12), ("C5", 0.12), ("G5", 0.3), ("E5", 0.12),
           ("G5", 0.12), ("C6", 0.45)]
    s["goodjob.wav"] = seq(*[mix(tone(d, note(n), "square", volume=0.3, release=0.03),
                                 tone(d, note(n) / 2, "triangle", volume=0.3, release=0.03))
                             for n, d in fan])
    # what plays when a named sound cannot be found
    s["default.wav"] = tone(0.15, 1000, "sine", volume=0.5, release=0.02)
    return {name: wav(samples) for name, samples in s.items()}


# ---------------------------------------------------------------------------------------------

def sprite_pictures():
    p = {}
    p["imgClub"] = icon(32, 32, ARSE)
    p["imgDiamond"] = opaque(GRAY_ARSE)
    p["imgKnight"] = opaque(KNIGHT)
    p["img24x22mask"] = blank(24, 22, BLACK)
    p["imgQueen"] = icon(32, 32, QUEEN)
    p["imgSeeker"] = icon(32, 32, SEEKER)
    for i in range(3):
        p["imgMine_%d" % i] = icon(32, 32, mine(i))
        p["imgMine_%d" % (i + 3)] = icon(32, 32, second_jester(i))
    for i in range(4):
        p["imgEnergypod_%d" % i] = energypod(i)
    p["imgPointspod"] = pointspod()
    p["img40x40mask"] = blank(40, 40, BLACK)
    p["imgSidestopper"] = sidestopper()
    p["img10x75mask"] = blank(10, 75, BLACK)
    p["imgCatfish"] = catfish()
    p["img75x75mask"] = blank(75, 75, BLACK)
    for i in range(6):
        p["imgExplosion_%d" % i] = explosion(i)
    p["imgPaddle_0"] = icon(32, 32, PADDLE)
    p["imgPaddle_1"] = opaque(wide_paddle())
    p["imgPaddlemask_1"] = blank(64, 4, BLACK)
    # the icon erasers are the silhouettes of their sprites
    p["imgArsemask"] = mask_of(p["imgClub"])
    p["imgQueenmask"] = mask_of(p["imgQueen"])
    p["imgSeekermask"] = mask_of(p["imgSeeker"])
    p["imgMinemask"] = mask_of(p["imgMine_0"])
    for i in range(4):
        p["imgEnergypodmask_%d" % i] = mask_of(p["imgEnergypod_%d" % i])
    for i in range(6):
        p["imgExplosionmask_%d" % i] = mask_of(p["imgExplosion_%d" % i])
    p["imgPaddlemask_0"] = mask_of(p["imgPaddle_0"])
    # the help window's paddle is a plain 32 x 4 bitmap
    p["help_imgPaddle"] = opaque(PADDLE)
    return p


# Figure areas the windows and the game rely on: (x, y, width, height) of the opaque pixels.
FIGURES = {
    "imgClub": (0, 0, 24, 22), "imgQueen": (0, 0, 24, 22), "imgSeeker": (0, 0, 15, 15),
    "imgMine_0": (0, 0, 24, 22), "imgMine_1": (0, 0, 24, 22), "imgMine_2": (0, 0, 24, 22),
    "imgMine_3": (0, 0, 27, 31), "imgMine_4": (0, 0, 27, 31), "imgMine_5": (0, 0, 27, 31),
    "imgPaddle_0": (0, 0, 32, 4),
    **{"imgEnergypod_%d" % i: (0, 0, 48, 48) for i in range(4)},
    **{"imgExplosion_%d" % i: ((32 - w) // 2, (32 - h) // 2, w, h)
       for i, (w, h) in enumerate(EXPLOSION_SIZES)},
}


def build():
    files = {}
    sprites = sprite_pictures()
    for name, pic in sprites.items():
        if name in FIGURES:
            assert bbox(pic) == FIGURES[name], (name, bbox(pic))
        files["sprites/%s.xpm" % name] = xpm(name, pic)
    files["icons/quillop_32.xpm"] = xpm("quillop_32", program_icon(32))
    files["icons/quillop_16.xpm"] = xpm("quillop_16", program_icon(16))
    files["icons/quillop.svg"] = icon_svg()
    # the desktop's copies of the icon, for its icon theme
    for size in (16, 32, 48):
        files["icons/quillop_%d.png" % size] = png(program_icon(size))
    files["about.xpm"] = xpm("about", about_picture(sprites))
    files["queen.svg"] = queen_svg()
    for name, data in sounds().items():
        files["sounds/" + name] = data
    return files


def main(argv):
    files = build()
    if "--check" in argv:
        stale = []
        for rel, data in sorted(files.items()):
            path = os.path.join(HERE, rel)
            if not os.path.exists(path) or open(path, "rb").read() != data:
                stale.append(rel)
        for rel in stale:
            print("differs from the generator: " + rel)
        return 1 if stale else 0
    for rel, data in sorted(files.items()):
        path = os.path.join(HERE, rel)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as f:
            f.write(data)
    print("wrote %d files" % len(files))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
