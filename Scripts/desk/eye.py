"""What stands on an X display, looked at as often as wanted: no process is started for a look."""

import ctypes

Z_PIXMAP = 2
ALL_PLANES = ctypes.c_ulong(~0)


class XImage(ctypes.Structure):
    """The head of Xlib's."""

    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.POINTER(ctypes.c_char)),
                ("byte_order", ctypes.c_int), ("bitmap_unit", ctypes.c_int),
                ("bitmap_bit_order", ctypes.c_int), ("bitmap_pad", ctypes.c_int),
                ("depth", ctypes.c_int), ("bytes_per_line", ctypes.c_int)]


class Eye:
    """Looks at a part of the screen, in 32-bit pixels row by row."""

    def __init__(self, display, x, y, width, height):
        self._x11 = ctypes.CDLL("libX11.so.6")
        self._x11.XOpenDisplay.restype = ctypes.c_void_p
        self._x11.XGetImage.restype = ctypes.POINTER(XImage)
        self._x11.XDefaultRootWindow.restype = ctypes.c_ulong
        self._display = ctypes.c_void_p(self._x11.XOpenDisplay(display.encode()))
        self._root = ctypes.c_ulong(self._x11.XDefaultRootWindow(self._display))
        self._place = (x, y, width, height)

    def look(self):
        image = self._x11.XGetImage(self._display, self._root, *self._place, ALL_PLANES, Z_PIXMAP)
        seen = image.contents
        pixels = ctypes.string_at(seen.data, seen.bytes_per_line * seen.height)
        self._x11.XDestroyImage(image)
        return pixels
