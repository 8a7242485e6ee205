#!/usr/bin/env python3
"""A meeting in a window of Tk's."""
import sys
import threading
import tkinter

import zrscreen

WIDTH, HEIGHT = 640, 360


def on_message(number, _, person):
    """Called on the GUI thread, from inside the library's event handling."""
    if number in (zrscreen.VIDEO_SHOWN, zrscreen.VIDEO_HIDDEN):
        person.is_open = number == zrscreen.VIDEO_SHOWN  # a client opens or closes the stream
        person.preview(person.is_open)


def decode(person, ended):
    """What a decoder does: any thread, any size, any rate."""
    chroma = bytes([16]) * (WIDTH * HEIGHT // 4) + bytes([138]) * (WIDTH * HEIGHT // 4)
    row = 0
    while not ended.wait(0.04):
        row = (row + 4) % (HEIGHT - 40)
        luma = bytearray([219]) * (WIDTH * HEIGHT)  # yellow, with a dark bar
        luma[row * WIDTH:(row + 40) * WIDTH] = bytes([60]) * (WIDTH * 40)
        if person.is_open:
            person.play_i420(bytes(luma) + chroma, WIDTH, HEIGHT)


def main():
    window = tkinter.Tk()
    window.title("Meeting")
    area = tkinter.Frame(window, width=WIDTH, height=HEIGHT, background="black")
    area.pack(fill="both", expand=True)
    window.update()  # the frame's window is there now

    screen = zrscreen.Screen(area.winfo_id(), on_message)
    screen.move(0, 0, area.winfo_width(), area.winfo_height())
    area.bind("<Configure>", lambda event: screen.move(0, 0, event.width, event.height))
    ann = screen.add_person("ann", "Ann", join_time=1)
    ann.is_open = False
    screen.finish_joining()

    def pump():
        zrscreen.pump()
        window.after(10, pump)

    if sys.platform != "win32":
        pump()
    ended = threading.Event()
    decoder = threading.Thread(target=decode, args=(ann, ended))
    decoder.start()
    window.protocol("WM_DELETE_WINDOW", window.quit)
    window.mainloop()
    ended.set()
    decoder.join()
    screen.release()  # before its parent goes
    window.destroy()


main()
