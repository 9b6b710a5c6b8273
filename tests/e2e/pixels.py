#!/usr/bin/env python3
# Reads the live screen for the end-to-end scripts. Rectangles are X,Y,W,H in screen pixels.
#
#   waitlit X Y SECONDS       polls the live screen until X,Y is not black; prints when (ns)
#   changes RECT SECONDS      polls the live screen: "CHANGES GRABS", each a second

import ctypes
import sys
import time


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


if __name__ == "__main__":
    cmd, *a = sys.argv[1:] or ["none"]
    if cmd == "waitlit":
        sys.exit(wait_lit(int(a[0]), int(a[1]), float(a[2])))
    elif cmd == "changes":
        changes([int(v) for v in a[0].split(",")], float(a[1]))
    else:
        sys.exit("unknown command %s: the commands are listed at the head of %s" % (cmd, sys.argv[0]))
