#!/usr/bin/env python3
# Reads screenshots (through ImageMagick's connected components) and the live screen for the
# end-to-end scripts. Rectangles are X,Y,W,H in screen pixels.
#
#   play SHOT RECT X Y        the lit block (a push button) nearest X,Y and the black playfield
#                             round it: "X Y FX FY FW FH", the button's centre and the field
#   waitlit X Y SECONDS       polls the live screen until X,Y is not black; prints when (ns)
#   changes RECT SECONDS      polls the live screen: "CHANGES GRABS", each a second

import ctypes
import os
import re
import subprocess
import sys
import time

CONVERT = os.environ.get("CONVERT", "convert")


def play(shot, rect, tx, ty):
    # the lit and the dark parts as ImageMagick's connected components: "ID: WxH+X+Y CENTROID AREA COLOUR"
    x, y, w, h = rect
    out = subprocess.run([CONVERT, shot, "-crop", f"{w}x{h}+{x}+{y}", "+repage", "-grayscale", "Average",
                          "-threshold", "11.8%", "-define", "connected-components:verbose=true",
                          "-connected-components", "4", "null:"], check=True, stdout=subprocess.PIPE, text=True)
    buttons, fields = [], []
    for f in (line.split() for line in out.stdout.splitlines()[1:]):
        pw, ph, px, py = (int(v) for v in re.split("[x+]", f[1]))
        area, left, top = int(f[3]), x + px, y + py
        # a push button: a solid lit block some tens of pixels across
        if f[-1] == "gray(255)" and 40 <= pw <= 300 and 15 <= ph <= 100 and area >= 0.6 * pw * ph:
            cx, cy = left + pw // 2, top + ph // 2
            buttons.append(((cx - tx) ** 2 + (cy - ty) ** 2, cx, cy))
        elif f[-1] == "gray(0)":
            fields.append((area, left, top, pw, ph))
    if not buttons:
        return 1
    _, cx, cy = min(buttons)
    # the playfield: the largest dark part round the button
    field = max(f for f in fields if f[1] <= cx < f[1] + f[3] and f[2] <= cy < f[2] + f[4])
    print(cx, cy, *field[1:])


def screen():
    # A screen grab through ImageMagick costs a third of a second, Xlib's XGetImage of a
    # small area well under a millisecond: grab(x, y, w, h) -> 4 bytes a pixel.
    x11 = ctypes.CDLL("libX11.so.6")
    x11.XOpenDisplay.restype = x11.XGetImage.restype = ctypes.c_void_p
    x11.XDefaultRootWindow.restype = ctypes.c_ulong
    x11.XDefaultRootWindow.argtypes = x11.XFree.argtypes = [ctypes.c_void_p]
    x11.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong] + [ctypes.c_int] * 2 + [ctypes.c_uint] * 2 + [
        ctypes.c_ulong, ctypes.c_int]
    dpy = x11.XOpenDisplay(None) or sys.exit("no X display")
    root = x11.XDefaultRootWindow(dpy)

    def grab(x, y, w, h):
        img = x11.XGetImage(dpy, root, x, y, w, h, 0xFFFFFFFF, 2)  # ZPixmap
        raw = ctypes.cast(img + 16, ctypes.POINTER(ctypes.c_void_p))[0]  # after four ints: data
        data = ctypes.string_at(raw, w * h * 4)
        x11.XFree(raw)  # what XDestroyImage (a macro) does for a plain image
        x11.XFree(img)
        return data
    return grab


def wait_lit(x, y, seconds):
    grab, end = screen(), time.time() + seconds
    while time.time() < end:
        if grab(x, y, 1, 1)[:3] != b"\0\0\0":
            print(time.time_ns())
            return 0
        time.sleep(0.002)
    return 1


def changes(rect, seconds):
    grab, end, last, n, grabs = screen(), time.time() + seconds, None, 0, 0
    while time.time() < end:
        data = grab(*rect)
        n, grabs, last = n + (last is not None and data != last), grabs + 1, data
    print("%.1f %.0f" % (n / seconds, grabs / seconds))


def main(cmd, *a):
    if cmd == "play":
        return play(a[0], rect(a[1]), int(a[2]), int(a[3]))
    elif cmd == "waitlit":
        return wait_lit(int(a[0]), int(a[1]), float(a[2]))
    elif cmd == "changes":
        changes(rect(a[0]), float(a[1]))
    else:
        sys.exit("unknown command %s: the commands are listed at the head of %s" % (cmd, sys.argv[0]))


def rect(text):
    return tuple(int(v) for v in text.split(","))


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
