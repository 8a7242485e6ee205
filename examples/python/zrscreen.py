"""ZRScreenMod for Python, by way of its plain C functions.

The thread that imports this module is the GUI thread. On Windows the program's message loop drives
the library; on Linux call pump() from a timer, unless GTK's loop runs. What has no method here is
called by name: zrscreen.screens.ZRScreen_SetMute(screen.handle, person.handle, 1).
"""
import ctypes
import sys
import time

CLICK_AUDIO, CLICK_MORE, VIDEO_HIDDEN, VIDEO_SHOWN = 0, 1, 20, 21  # of eZRMsg

if sys.platform == "win32":
    screens, plain = ctypes.CDLL("ZRScreenMod.dll"), ctypes.CDLL("ZRScreenModC.dll")
else:
    # Below 1.0 each minor version may have another interface.
    screens = ctypes.CDLL("libZRScreenMod.so.0.1")
    plain = ctypes.CDLL("libZRScreenModC.so.0.1")
    _glib = ctypes.CDLL("libglib-2.0.so.0")

_NOTIFY = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_ulong, ctypes.c_ulonglong, ctypes.c_longlong)


class _Planes(ctypes.Structure):
    _fields_ = [(name, ctypes.c_void_p) for name in "yuv"]
    _fields_ += [(name, ctypes.c_ssize_t) for name in ("y_stride", "u_stride", "v_stride")]
    _fields_ += [("width", ctypes.c_uint32), ("height", ctypes.c_uint32)]


for _function in (screens.ZRScreen_Init, screens.ZRScreen_AddPerson):
    _function.restype = ctypes.c_void_p


def pump(most_s=0.01):
    """Lets the library work for what has happened; on Linux only."""
    end = time.monotonic() + most_s
    while _glib.g_main_context_iteration(None, False) and time.monotonic() < end:
        pass


class Screen:
    """A screen in the native window of that id. on_message(number, wparam, person or lparam)."""

    def __init__(self, window, on_message):
        self._people = {}
        self._on_message = on_message
        self._notify = _NOTIFY(self._hear)  # must live as long as the screen
        self.handle = ctypes.c_void_p(
            screens.ZRScreen_Init(ctypes.c_void_p(window), self._notify))

    def _hear(self, number, wparam, lparam):
        self._on_message(number, wparam, self._people.get(lparam, lparam))
        return 0

    def move(self, x, y, width, height):
        """Places the screen in its parent, in physical pixels."""
        area = (ctypes.c_int32 * 4)(x, y, x + width, y + height)
        screens.ZRScreen_MoveWindow(self.handle, ctypes.byref(area), 0)

    def add_person(self, user_id, name, join_time):
        person = Person(self, len(self._people) + 1)
        self._people[person.number] = person
        person.handle = ctypes.c_void_p(screens.ZRScreen_AddPerson(
            self.handle, user_id.encode(), name.encode(), ctypes.c_longlong(join_time), 0,
            ctypes.c_void_p(person.number)))
        return person

    def finish_joining(self):
        """Everybody who was there is told: arrange them."""
        screens.ZRScreen_JoinMeetingFinish(self.handle, True)

    def change_layout(self, mode, order=()):
        """Changes the mode, and the order to the given user ids."""
        positions = (ctypes.c_int * len(order))(*range(len(order)))
        ids = (ctypes.c_char_p * len(order))(*(user.encode() for user in order))
        plain.ZRScreenC_ChangeLayout(self.handle, mode, positions, ids,
                                     ctypes.c_size_t(len(order)))

    def release(self):
        """Ends the screen; to be called before its parent goes."""
        screens.ZRScreen_Release(self.handle)


class Person:
    """Somebody on a screen; made by Screen.add_person."""

    def __init__(self, screen, number):
        self.screen, self.number, self.handle = screen, number, None

    def preview(self, is_open):
        """Reports whether the stream is open."""
        screens.ZRScreen_Preview(self.screen.handle, self.handle, bool(is_open))

    def play_i420(self, picture, width, height):
        """Delivers one picture in one block (bytes), on any thread; copied at once."""
        half = (width + 1) // 2
        y = ctypes.cast(ctypes.c_char_p(picture), ctypes.c_void_p).value
        u = y + width * height
        v = u + half * ((height + 1) // 2)
        planes = _Planes(y, u, v, width, half, half, width, height)
        plain.ZRScreenC_PlayPlanes(self.screen.handle, self.handle, ctypes.byref(planes))
