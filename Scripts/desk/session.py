"""A desktop's session manager, as programs under X11 know it (XSMP): it asks them to save themselves
and then ends them."""

import ctypes
import select
import threading
from ctypes import CFUNCTYPE, POINTER, Structure, byref, c_char_p, c_int, c_ulong, c_void_p

from .failure import DeskFailure

# <X11/SM/SM.h>
SAVE_BOTH = 2
INTERACT_NONE, INTERACT_ANY = 0, 2
ALL_CALLBACKS = (1 << 10) - 1

NewClient = CFUNCTYPE(c_int, c_void_p, c_void_p, POINTER(c_ulong), c_void_p, c_void_p)
HostAllowed = CFUNCTYPE(c_int, c_char_p)
Register = CFUNCTYPE(c_int, c_void_p, c_void_p, c_void_p)
# None of the others takes more arguments; further ones may be left alone.
Other = CFUNCTYPE(None, c_void_p, c_void_p, c_void_p, c_void_p)


class Callback(Structure):
    _fields_ = [("function", c_void_p), ("data", c_void_p)]


class Session:
    """Programs that are launched with `address` as SESSION_MANAGER belong to it."""

    def __init__(self):
        self._sm = ctypes.CDLL("libSM.so.6")
        self._ice = ctypes.CDLL("libICE.so.6")
        for function in (self._ice.IceAcceptConnection, self._ice.IceComposeNetworkIdList):
            function.restype = c_void_p
        self._lock = threading.Lock()
        self._client = None
        self._is_ending = False
        self.was_saved = threading.Event()
        # They must live as long as the library may call them.
        self._kept = [NewClient(self._take_in), HostAllowed(lambda _host: 1),
                      Register(self._register), Other(self._saved), Other(self._closed),
                      Other(lambda *_: None)]
        # The library's own way with a program that has gone is to end this one.
        self._gone = CFUNCTYPE(None, c_void_p)(lambda _connection: None)
        self._ice.IceSetIOErrorHandler(self._gone)
        # For this machine alone.
        for network in (b"tcp", b"inet", b"inet6"):
            self._ice._IceTransNoListen(network)
        error = ctypes.create_string_buffer(256)
        if not self._sm.SmsInitialize(b"desk", b"1", self._kept[0], None, self._kept[1], 256, error):
            raise DeskFailure(f"There is no session manager: {error.value.decode()}")
        count, listeners = c_int(), POINTER(c_void_p)()
        if not self._ice.IceListenForConnections(byref(count), byref(listeners), 256, error):
            raise DeskFailure(f"The session manager can't listen: {error.value.decode()}")
        self._all_listeners = count, listeners
        self._listeners = [c_void_p(listeners[i]) for i in range(count.value)]
        for listener in self._listeners:
            self._ice.IceSetHostBasedAuthProc(listener, self._kept[1])
        self.address = ctypes.string_at(
            self._ice.IceComposeNetworkIdList(count, listeners)).decode()
        self._connections = {}
        self._is_open = True
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()

    def end(self):
        """As logging out does: the program is asked to save itself, and is ended when it has."""
        with self._lock:
            if self._client is None:
                raise DeskFailure("No program has joined the session.")
            self._is_ending = True
            self._sm.SmsSaveYourself(c_void_p(self._client), SAVE_BOTH, 1, INTERACT_ANY, 0)
            self._ice.IceFlush(c_void_p(self._sm_connection()))

    def close(self):
        with self._lock:
            self._is_open = False
        self._thread.join()
        self._ice.IceFreeListenObjs(*self._all_listeners)

    def has_program(self):
        return self._client is not None

    def _sm_connection(self):
        get = self._sm.SmsGetIceConnection
        get.restype = c_void_p
        return get(c_void_p(self._client))

    def _serve(self):
        listening = {self._ice.IceGetListenConnectionNumber(one): one for one in self._listeners}
        while self._is_open:
            ready, _, _ = select.select([*listening, *self._connections], [], [], 0.1)
            with self._lock:
                for descriptor in ready:
                    if descriptor in listening:
                        self._accept(listening[descriptor])
                    elif self._ice.IceProcessMessages(
                            c_void_p(self._connections[descriptor]), None, None) != 0:
                        del self._connections[descriptor]

    def _accept(self, listener):
        connection = self._ice.IceAcceptConnection(listener, byref(c_int()))
        if connection:
            number = self._ice.IceConnectionNumber(c_void_p(connection))
            self._connections[number] = connection

    # What the program says.

    def _take_in(self, client, _data, mask, callbacks, _reason):
        self._client = client
        mask[0] = ALL_CALLBACKS
        _, _, register, saved, closed, ignored = self._kept
        # In the library's order: register, interact request, interact done, save request,
        # phase 2 request, save done, close, set, delete and get properties.
        functions = [register, ignored, ignored, ignored, ignored, saved, closed, ignored, ignored,
                     ignored]
        entries = (Callback * len(functions)).from_address(callbacks)
        for entry, function in zip(entries, functions):
            entry.function = ctypes.cast(function, c_void_p).value
            entry.data = None
        return 1

    def _register(self, client, _data, previous):
        self._sm.SmsRegisterClientReply(c_void_p(client), c_char_p(b"desk-1"))
        if not previous:
            self._sm.SmsSaveYourself(c_void_p(client), SAVE_BOTH, 0, INTERACT_NONE, 0)
        return 1

    def _saved(self, client, _data, _success, _):
        if self._is_ending:
            self.was_saved.set()
            self._sm.SmsDie(c_void_p(client))
        else:
            self._sm.SmsSaveComplete(c_void_p(client))

    def _closed(self, client, *_):
        self._client = None
