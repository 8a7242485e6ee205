#!/usr/bin/env python3
"""Watches an example as its user would: watch_example.py SCREEN RRGGBB PROGRAM...

SCREEN is what Xvfb keeps its picture in (-fbdir). The colour has to fill the window, to move, to
follow when the window grows; the program has to end when the window is closed.
"""
import ctypes
import struct
import subprocess
import sys
import time

x11 = ctypes.CDLL("libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
TOLERANCE = 12
GRID = 4  # each fourth pixel of each fourth row


def picture(screen):
    """The pixels of the screen, as (blue, green, red) in a grid."""
    with open(screen, "rb") as file:
        data = file.read()
    header = struct.unpack(">25I", data[:100])
    width, height, row_bytes, colours = header[4], header[5], header[12], header[19]
    start = header[0] + colours * 12
    offsets = (start + y * row_bytes + x * 4
               for y in range(0, height, GRID) for x in range(0, width, GRID))
    return [data[offset:offset + 3] for offset in offsets]


def count(pixels, colour):
    return sum(all(abs(have - want) < TOLERANCE for have, want in zip(pixel, colour))
               for pixel in pixels) * GRID * GRID


def wait_for(what, condition, timeout_s=20):
    end = time.monotonic() + timeout_s
    while not condition():
        if time.monotonic() > end:
            raise SystemExit(f"not within {timeout_s} s: {what}")
        time.sleep(0.1)


def top_level(display):
    """The largest window on the root window."""
    root = ctypes.c_ulong(x11.XDefaultRootWindow(display))
    unused, children, number = ctypes.c_ulong(), ctypes.POINTER(ctypes.c_ulong)(), ctypes.c_uint()
    x11.XQueryTree(display, root, ctypes.byref(unused), ctypes.byref(unused),
                   ctypes.byref(children), ctypes.byref(number))

    def area(window):
        size = [ctypes.c_uint() for _ in range(4)]
        place = [ctypes.c_int() for _ in range(2)]
        x11.XGetGeometry(display, ctypes.c_ulong(window), ctypes.byref(unused),
                         *map(ctypes.byref, place + size))
        return size[0].value * size[1].value

    return ctypes.c_ulong(max(children[:number.value], key=area))


def close(display, window):
    """What a window manager sends when the user closes the window."""
    atoms = [x11.XInternAtom(display, name, False) for name in (b"WM_PROTOCOLS", b"WM_DELETE_WINDOW")]
    event = ctypes.create_string_buffer(192)  # XClientMessageEvent
    struct.pack_into("@i4xLi4xQLLi4xL", event, 0, 33, 0, 1, 0, window.value, atoms[0], 32, atoms[1])
    x11.XSendEvent(display, window, False, ctypes.c_long(0), event)
    x11.XFlush(display)


def main():
    screen, colour = sys.argv[1], bytes.fromhex(sys.argv[2])[::-1]
    display = ctypes.c_void_p(x11.XOpenDisplay(None))
    with subprocess.Popen(sys.argv[3:]) as program:
        try:
            wait_for("the picture", lambda: count(picture(screen), colour) > 640 * 360 * 0.6)
            before = picture(screen)
            wait_for("another picture", lambda: picture(screen) != before)
            window = top_level(display)
            x11.XMoveResizeWindow(display, window, 0, 0, 1120, 630)
            x11.XFlush(display)
            wait_for("a larger picture", lambda: count(picture(screen), colour) > 1120 * 630 * 0.6)
            close(display, window)
            return program.wait(30)
        finally:
            program.kill()


sys.exit(main())
