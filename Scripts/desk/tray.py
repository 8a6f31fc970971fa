"""A desktop's tray: what it is told of the icons in it, and hands on their menus. It speaks as panels do:
StatusNotifierItem for the icon, com.canonical.dbusmenu for its menu."""

import threading
from dataclasses import dataclass

from .failure import DeskFailure
from .processes import wait_until

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"

INTERFACE = f"""
<node>
  <interface name="{WATCHER}">
    <method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
    <method name="RegisterStatusNotifierHost"><arg type="s" direction="in"/></method>
    <property name="RegisteredStatusNotifierItems" type="as" access="read"/>
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <signal name="StatusNotifierItemRegistered"><arg type="s"/></signal>
    <signal name="StatusNotifierHostRegistered"/>
  </interface>
</node>
"""


def _gi():
    from gi.repository import Gio, GLib

    return Gio, GLib


@dataclass(frozen=True)
class MenuItem:
    id: int
    label: str
    is_enabled: bool


class Tray:
    """From now on the desktop has one."""

    def __init__(self, address):
        Gio, GLib = _gi()
        self._items = []
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._context.push_thread_default()
        try:
            self._bus = Gio.DBusConnection.new_for_address_sync(
                address, Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT |
                Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION, None, None)
            node = Gio.DBusNodeInfo.new_for_xml(INTERFACE)
            self._bus.register_object("/StatusNotifierWatcher", node.interfaces[0],
                                      self._answer_call, self._answer_property, None)
        finally:
            self._context.pop_thread_default()
        self._thread = threading.Thread(target=self._run, daemon=True)
        self._thread.start()
        self._call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                   "RequestName", GLib.Variant("(su)", (WATCHER, 0)))
        self._bus.emit_signal(None, "/StatusNotifierWatcher", WATCHER,
                              "StatusNotifierHostRegistered", None)

    def _run(self):
        self._context.push_thread_default()
        self._loop.run()

    def close(self):
        """As a panel that crashes."""
        self._bus.close_sync(None)
        self._loop.quit()
        self._thread.join()

    def _answer_call(self, _bus, sender, _path, _interface, method, arguments, invocation):
        if method == "RegisterStatusNotifierItem":
            self._items.append((sender, arguments.unpack()[0]))
        invocation.return_value(None)

    def _answer_property(self, _bus, _sender, _path, _interface, name):
        _, GLib = _gi()
        return {"RegisteredStatusNotifierItems": GLib.Variant("as", [item for _, item in self._items]),
                "IsStatusNotifierHostRegistered": GLib.Variant("b", True),
                "ProtocolVersion": GLib.Variant("i", 0)}[name]

    def _call(self, name, path, interface, method, arguments=None):
        Gio, _ = _gi()
        return self._bus.call_sync(name, path, interface, method, arguments, None,
                                   Gio.DBusCallFlags.NONE, 10000, None).unpack()

    # The icon. There is one at most: the desk's program's.

    def has_icon(self):
        return bool(self._items)

    def wait_for_icon(self):
        wait_until(self.has_icon, 10, "No icon comes into the tray")

    def property(self, name, path="/StatusNotifierItem", interface=ITEM):
        _, GLib = _gi()
        return self._call(self._items[-1][0], path, "org.freedesktop.DBus.Properties", "Get",
                          GLib.Variant("(ss)", (interface, name)))[0]

    def tool_tip(self):
        """Its title, which a panel shows first, or its text."""
        _, _, title, text = self.property("ToolTip")
        return title or text

    def picture(self):
        """The pixels of the icon's largest size."""
        sizes = self.property("IconPixmap")
        if not sizes:
            raise DeskFailure("The tray's icon has no picture.")
        return bytes(max(sizes, key=lambda size: size[0])[2])

    def activate(self):
        """A click on it."""
        _, GLib = _gi()
        self._call(self._items[-1][0], "/StatusNotifierItem", ITEM, "Activate",
                   GLib.Variant("(ii)", (0, 0)))

    # Its menu.

    def menu(self):
        """What can be chosen, from the top."""
        _, GLib = _gi()
        path = self.property("Menu")
        _, (_, _, entries) = self._call(self._items[-1][0], path, MENU, "GetLayout",
                                        GLib.Variant("(iias)", (0, -1, [])))
        return [MenuItem(entry, properties.get("label", "").replace("_", ""),
                         properties.get("enabled", True))
                for entry, properties, _ in entries if properties.get("type") != "separator"]

    def labels(self):
        return [item.label for item in self.menu()]

    def choose(self, label):
        _, GLib = _gi()
        for item in self.menu():
            if item.label == label and item.is_enabled:
                self._call(self._items[-1][0], self.property("Menu"), MENU, "Event",
                           GLib.Variant("(isvu)", (item.id, "clicked", GLib.Variant("i", 0), 0)))
                return
        raise DeskFailure(f"The tray's menu has no {label!r} to choose, but {self.menu()}.")
