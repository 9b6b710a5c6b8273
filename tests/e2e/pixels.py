#!/usr/bin/env python3
"""Reads screenshots for the end-to-end scripts (no PIL here: ImageMagick
turns the PNG into a binary PPM and this reads the bytes).

Rectangles are X,Y,W,H in screen pixels.  Colours are RRGGBB.

  count  SHOT RECT COLOUR [TOL]   pixels within TOL of COLOUR (per channel)
  other  SHOT RECT COLOUR...      pixels matching none of the listed colours (tol 24)
  diff   SHOT1 SHOT2 RECT [HOLE]  pixels that differ, HOLE left out
  blobs  SHOT RECT COLOUR [TOL]   connected groups of COLOUR: x y w h n per line
  puck   SHOT RECT [HOLE]         the puck: a small round or square blob of the
                                  puck's colours (white, teal, yellow-green and
                                  the light-grey rim), outside HOLE and off the
                                  Catfish; prints x y w h n per find
  button SHOT RECT X Y            the lit-up block (a push button) nearest X,Y
                                  inside black surroundings: prints its centre
  field  SHOT X Y BW BH            the black playfield round a centred button
                                  (centre X,Y, size BWxBH): prints X,Y,W,H
  top    SHOT RECT [N]            the N commonest colours, for diagnosis
  stray  SHOT RECT COLOUR R       pixels of COLOUR with only black or COLOUR within
                                  R pixels: left-over bits of an outline, not part
                                  of any figure
  waitlit X Y SECONDS             polls the live screen ($DISPLAY) until the
                                  pixel at X,Y is not black; prints the
                                  clock (ns since the epoch) when it was seen
  changes RECT SECONDS            polls the live screen and prints how many
                                  times a second RECT changed (the redraw rate)
"""
import os
import subprocess
import sys

CONVERT = os.environ.get("CONVERT", "convert")


def rect(text):
    x, y, w, h = (int(v) for v in text.split(","))
    return x, y, w, h


def load(shot, r):
    x, y, w, h = r
    ppm = subprocess.run(
        [CONVERT, shot, "-crop", f"{w}x{h}+{x}+{y}", "+repage", "-depth", "8", "ppm:-"],
        check=True, stdout=subprocess.PIPE).stdout
    # P6\n<w> <h>\n255\n<data>; ImageMagick writes no comments
    parts = ppm.split(maxsplit=4)
    assert parts[0] == b"P6", parts[0]
    pw, ph = int(parts[1]), int(parts[2])
    data = parts[4]
    return pw, ph, data


def colour(text):
    v = int(text.lstrip("#"), 16)
    return v >> 16, (v >> 8) & 255, v & 255


def near(data, i, c, tol):
    return abs(data[i] - c[0]) <= tol and abs(data[i + 1] - c[1]) <= tol and abs(data[i + 2] - c[2]) <= tol


def mask_of(w, h, data, test):
    return bytearray(1 if test(i * 3) else 0 for i in range(w * h))


def components(w, h, mask, diagonal=False):
    seen = bytearray(w * h)
    out = []
    for start in range(w * h):
        if not mask[start] or seen[start]:
            continue
        stack = [start]
        seen[start] = 1
        x0 = y0 = 10 ** 9
        x1 = y1 = -1
        n = 0
        while stack:
            p = stack.pop()
            n += 1
            px, py = p % w, p // w
            x0, x1, y0, y1 = min(x0, px), max(x1, px), min(y0, py), max(y1, py)
            near_ = [p - 1 if px else -1, p + 1 if px + 1 < w else -1, p - w, p + w]
            if diagonal:
                if px:
                    near_ += [p - w - 1, p + w - 1]
                if px + 1 < w:
                    near_ += [p - w + 1, p + w + 1]
            for q in near_:
                if 0 <= q < w * h and mask[q] and not seen[q]:
                    seen[q] = 1
                    stack.append(q)
        out.append((x0, y0, x1 - x0 + 1, y1 - y0 + 1, n))
    return out


def xlib_open():
    import ctypes
    xlib = ctypes.CDLL("libX11.so.6")
    xlib.XOpenDisplay.restype = ctypes.c_void_p
    xlib.XOpenDisplay.argtypes = [ctypes.c_char_p]
    xlib.XDefaultRootWindow.restype = ctypes.c_ulong
    xlib.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
    xlib.XGetImage.restype = ctypes.c_void_p
    xlib.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                               ctypes.c_uint, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
    xlib.XGetPixel.restype = ctypes.c_ulong
    xlib.XGetPixel.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int]
    xlib.XDestroyImage = None
    xlib.XFree.argtypes = [ctypes.c_void_p]
    dpy = xlib.XOpenDisplay(None)
    if not dpy:
        sys.exit("no X display")
    return xlib, dpy, xlib.XDefaultRootWindow(dpy)


def wait_lit(x, y, seconds):
    """A screen grab through ImageMagick costs a third of a second; Xlib's
    XGetImage of one pixel costs well under a millisecond."""
    import time
    xlib, dpy, root = xlib_open()
    end = time.time() + seconds
    while time.time() < end:
        img = xlib.XGetImage(dpy, root, x, y, 1, 1, 0xFFFFFFFF, 2)  # ZPixmap
        if img and xlib.XGetPixel(img, 0, 0) & 0xFFFFFF:
            print(time.time_ns())
            return 0
        time.sleep(0.002)
    return 1


def changes(r, seconds):
    import ctypes
    import time
    xlib, dpy, root = xlib_open()
    x, y, w, h = r

    class XImage(ctypes.Structure):  # the leading fields, up to the data pointer
        _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                    ("format", ctypes.c_int), ("data", ctypes.c_void_p)]
    last, n, grabs = None, 0, 0
    end = time.time() + seconds
    while time.time() < end:
        img = xlib.XGetImage(dpy, root, x, y, w, h, 0xFFFFFFFF, 2)
        raw = ctypes.cast(img, ctypes.POINTER(XImage)).contents.data
        data = ctypes.string_at(raw, w * h * 4)
        xlib.XFree(raw)   # what XDestroyImage (a macro) does for a plain image
        xlib.XFree(img)
        grabs += 1
        if last is not None and data != last:
            n += 1
        last = data
    print("%.1f %.0f" % (n / seconds, grabs / seconds))
    return 0


def main(argv):
    cmd = argv[1]
    if cmd == "count":
        r = rect(argv[3])
        w, h, d = load(argv[2], r)
        c, tol = colour(argv[4]), int(argv[5]) if len(argv) > 5 else 16
        print(sum(1 for i in range(0, w * h * 3, 3) if near(d, i, c, tol)))
    elif cmd == "other":
        r = rect(argv[3])
        w, h, d = load(argv[2], r)
        cs = [colour(a) for a in argv[4:]]
        print(sum(1 for i in range(0, w * h * 3, 3) if not any(near(d, i, c, 24) for c in cs)))
    elif cmd == "diff":
        r = rect(argv[4])
        w, h, a = load(argv[2], r)
        _, _, b = load(argv[3], r)
        hx = hy = hw = hh = 0
        if len(argv) > 5:
            hx, hy, hw, hh = rect(argv[5])
            hx, hy = hx - r[0], hy - r[1]
        n = 0
        for p in range(w * h):
            px, py = p % w, p // w
            if hx <= px < hx + hw and hy <= py < hy + hh:
                continue
            if a[3 * p:3 * p + 3] != b[3 * p:3 * p + 3]:
                n += 1
        print(n)
    elif cmd == "blobs":
        r = rect(argv[3])
        w, h, d = load(argv[2], r)
        c, tol = colour(argv[4]), int(argv[5]) if len(argv) > 5 else 16
        for x, y, bw, bh, n in components(w, h, mask_of(w, h, d, lambda i: near(d, i, c, tol))):
            print(x + r[0], y + r[1], bw, bh, n)
    elif cmd == "puck":
        r = rect(argv[3])
        w, h, d = load(argv[2], r)
        hx = hy = hw = hh = 0
        if len(argv) > 4:
            hx, hy, hw, hh = rect(argv[4])
        cs = [colour(c) for c in ("FFFFFF", "C0C0C0", "00C0C0", "90C000")]
        found = 1
        # the hatch of the energized puck touches only at corners
        mask = mask_of(w, h, d, lambda i: any(near(d, i, c, 24) for c in cs))
        for x, y, bw, bh, n in components(w, h, mask, diagonal=True):
            x, y = x + r[0], y + r[1]
            # up to 4 pixels lopsided: a puck half under the field's edge
            if not (6 <= bw <= 15 and 6 <= bh <= 15 and abs(bw - bh) <= 4 and n >= 0.4 * bw * bh):
                continue
            if n >= 0.9 * bw * bh and (bw != bh or bw < 8):
                continue      # solid oblongs and chips: bits of the Sidestopper rod
            if hx <= x and x + bw <= hx + hw and hy <= y and y + bh <= hy + hh:
                continue      # a letter's hole on the button
            if y + bh > r[1] + r[3] - 14 and any(
                    near(d, 3 * (py * w + px), (0, 0, 128), 8)
                    for py in range(max(y - r[1] - 3, 0), min(y - r[1] + bh + 3, h))
                    for px in range(max(x - r[0] - 3, 0), min(x - r[0] + bw + 3, w))):
                continue      # a bubble of the Catfish, on its navy body
            print(x, y, bw, bh, n)
            found = 0
        return found
    elif cmd == "button":
        r = rect(argv[3])
        w, h, d = load(argv[2], r)
        tx, ty = int(argv[4]) - r[0], int(argv[5]) - r[1]
        lit = mask_of(w, h, d, lambda i: d[i] + d[i + 1] + d[i + 2] > 90)
        best = None
        for x, y, bw, bh, n in components(w, h, lit):
            # a push button: a solid block some tens of pixels across
            if not (40 <= bw <= 300 and 15 <= bh <= 100 and n >= 0.6 * bw * bh):
                continue
            cx, cy = x + bw // 2, y + bh // 2
            dist = (cx - tx) ** 2 + (cy - ty) ** 2
            if best is None or dist < best[0]:
                best = (dist, cx + r[0], cy + r[1], bw, bh)
        if best is None:
            return 1
        print(*best[1:])
    elif cmd == "changes":
        return changes(rect(argv[2]), float(argv[3]))
    elif cmd == "waitlit":
        return wait_lit(int(argv[2]), int(argv[3]), float(argv[4]))
    elif cmd == "field":
        x, y, bw, bh = (int(v) for v in argv[3:7])
        w, h, d = load(argv[2], (0, 0, 1280, 1024))
        dark = lambda px, py: d[3 * (py * w + px)] + d[3 * (py * w + px) + 1] + d[3 * (py * w + px) + 2] < 60
        # up from just above the button; sideways a little higher, clear of
        # the pods parked on the left edge at half height
        top = y - bh // 2 - 3
        while top > 0 and dark(x, top - 1):
            top -= 1
        row = y - bh // 2 - 12
        left = right = x
        while left > 0 and dark(left - 1, row):
            left -= 1
        while right + 1 < w and dark(right + 1, row):
            right += 1
        # the button is centred, so the field reaches as far below it
        print("%d,%d,%d,%d" % (left, top, right - left + 1, 2 * (y - top)))
    elif cmd == "top":
        r = rect(argv[3])
        w, h, d = load(argv[2], r)
        hist = {}
        for i in range(0, w * h * 3, 3):
            k = "%02X%02X%02X" % (d[i], d[i + 1], d[i + 2])
            hist[k] = hist.get(k, 0) + 1
        for k, n in sorted(hist.items(), key=lambda kv: -kv[1])[:int(argv[4]) if len(argv) > 4 else 10]:
            print(k, n)
    elif cmd == "stray":
        r = rect(argv[3])
        w, h, d = load(argv[2], r)
        c, rad = colour(argv[4]), int(argv[5])
        plain = bytearray(1 if near(d, i * 3, c, 8) or near(d, i * 3, (0, 0, 0), 24) else 0 for i in range(w * h))
        n = 0
        for p in range(w * h):
            px, py = p % w, p // w
            if not near(d, p * 3, c, 8) or px < rad or py < rad or px >= w - rad or py >= h - rad:
                continue
            if all(plain[q] for y in range(py - rad, py + rad + 1) for q in range(y * w + px - rad, y * w + px + rad + 1)):
                n += 1
        print(n)
    else:
        print(__doc__, file=sys.stderr)
        return 2
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
