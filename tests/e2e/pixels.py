#!/usr/bin/env python3
"""Reads screenshots for the end-to-end scripts, through ImageMagick (its connected
components find the blocks).  Rectangles are X,Y,W,H in screen pixels, colours RRGGBB.

  count  SHOT RECT COLOUR [TOL]   pixels within TOL of COLOUR (per channel)
  other  SHOT RECT COLOUR...      pixels matching none of the listed colours (tol 24)
  diff   SHOT1 SHOT2 RECT [HOLE]  pixels that differ, HOLE left out
  button SHOT RECT X Y            the push button (a lit block) nearest X,Y: its centre and size
  field  SHOT X Y BW BH           the black playfield round the centred button: X,Y,W,H
  waitlit X Y SECONDS             polls the live screen until X,Y is not black; prints when (ns)
  changes RECT SECONDS            how many times a second RECT of the live screen changed
"""
import ctypes
import os
import subprocess
import sys
import time

CONVERT = os.environ.get("CONVERT", "convert")


def crop(r):
    return ["-crop", "%dx%d+%d+%d" % (r[2], r[3], r[0], r[1]), "+repage"]


def pixels(shot, r, hole=None):
    """RECT's pixels as RGB triples, row by row; HOLE (screen coordinates) painted black."""
    paint = ["-fill", "black", "-draw", "rectangle %d,%d %d,%d" % (hole[0], hole[1], hole[0] + hole[2] - 1,
                                                                   hole[1] + hole[3] - 1)] if hole else []
    data = subprocess.run([CONVERT, shot] + paint + crop(r) + ["-depth", "8", "rgb:-"], check=True,
                          stdout=subprocess.PIPE).stdout
    return [tuple(data[i:i + 3]) for i in range(0, len(data), 3)]


def near(p, c, tol):
    return all(abs(a - b) <= tol for a, b in zip(p, c))


def blocks(shot, r, select):
    """Connected groups of the pixels SELECT (ImageMagick options) makes white."""
    out = subprocess.run([CONVERT, shot] + crop(r) + select + ["-define", "connected-components:verbose=true",
                         "-connected-components", "4", "null:"], check=True, stdout=subprocess.PIPE, text=True).stdout
    for line in out.splitlines()[1:]:
        _, box, _, area, colour = line.split()
        if "255" in colour:
            w, rest = box.split("x")
            h, x, y = (int(v) for v in rest.split("+"))
            yield x + r[0], y + r[1], int(w), h, int(area)


def grab(x, y, w, h):
    """The live screen's pixels (BGRA) through Xlib: a thousandth of ImageMagick's time."""
    if not hasattr(grab, "x"):
        grab.x = x11 = ctypes.CDLL("libX11.so.6")
        x11.XOpenDisplay.restype = x11.XGetImage.restype = ctypes.c_void_p
        x11.XOpenDisplay.argtypes, x11.XFree.argtypes = [ctypes.c_char_p], [ctypes.c_void_p]
        x11.XDefaultRootWindow.restype, x11.XDefaultRootWindow.argtypes = ctypes.c_ulong, [ctypes.c_void_p]
        x11.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong] + [ctypes.c_int] * 2 + [ctypes.c_uint] * 2 + [
            ctypes.c_ulong, ctypes.c_int]
        grab.dpy = x11.XOpenDisplay(None) or sys.exit("no X display")
        grab.root = x11.XDefaultRootWindow(grab.dpy)
    image = grab.x.XGetImage(grab.dpy, grab.root, x, y, w, h, 0xFFFFFFFF, 2)  # ZPixmap
    data_at = ctypes.cast(image + 16, ctypes.POINTER(ctypes.c_void_p)).contents.value  # XImage's data
    data = ctypes.string_at(data_at, w * h * 4)
    grab.x.XFree(data_at)  # what the XDestroyImage macro does for a plain image
    grab.x.XFree(image)
    return data


def main(cmd, *a):
    if cmd == "count":
        c, tol = tuple(bytes.fromhex(a[2])), int(a[3]) if len(a) > 3 else 16
        print(sum(near(p, c, tol) for p in pixels(a[0], [int(v) for v in a[1].split(",")])))
    elif cmd == "other":
        cs = [tuple(bytes.fromhex(c)) for c in a[2:]]
        print(sum(not any(near(p, c, 24) for c in cs) for p in pixels(a[0], [int(v) for v in a[1].split(",")])))
    elif cmd == "diff":
        r, hole = [int(v) for v in a[2].split(",")], [int(v) for v in a[3].split(",")] if len(a) > 3 else None
        print(sum(p != q for p, q in zip(pixels(a[0], r, hole), pixels(a[1], r, hole))))
    elif cmd == "button":
        r, tx, ty = [int(v) for v in a[1].split(",")], int(a[2]), int(a[3])
        found = [(x + w // 2, y + h // 2, w, h) for x, y, w, h, n in
                 blocks(a[0], r, ["-grayscale", "Average", "-threshold", "11.8%"])
                 if 40 <= w <= 300 and 15 <= h <= 100 and n >= 0.6 * w * h]
        if not found:
            return 1
        print(*min(found, key=lambda b: (b[0] - tx) ** 2 + (b[1] - ty) ** 2))
    elif cmd == "field":
        x, y, bw, bh = (int(v) for v in a[1:5])
        screen = pixels(a[0], (0, 0, 1280, 1024))
        dark = lambda px, py: sum(screen[py * 1280 + px]) < 60
        # up from just above the button; sideways a little higher, clear of the pods
        # parked on the left edge at half height
        top, row, left, right = y - bh // 2 - 3, y - bh // 2 - 12, x, x
        while top > 0 and dark(x, top - 1):
            top -= 1
        while left > 0 and dark(left - 1, row):
            left -= 1
        while right < 1279 and dark(right + 1, row):
            right += 1
        print("%d,%d,%d,%d" % (left, top, right - left + 1, 2 * (y - top)))  # the button is centred
    elif cmd == "waitlit":
        end = time.time() + float(a[2])
        while time.time() < end:
            if any(grab(int(a[0]), int(a[1]), 1, 1)[:3]):
                print(time.time_ns())
                return 0
            time.sleep(0.002)
        return 1
    elif cmd == "changes":
        r, seconds = [int(v) for v in a[0].split(",")], float(a[1])
        last, n, grabs, end = None, 0, 0, time.time() + seconds
        while time.time() < end:
            data = grab(*r)
            n, grabs, last = n + (last is not None and data != last), grabs + 1, data
        print("%.1f %.0f" % (n / seconds, grabs / seconds))
    else:
        print(__doc__, file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(*(sys.argv[1:] or ["help"])))
