"""The running program: found, read and worked through what a user has. Readings come from the
accessibility tree, that is, from what a screen reader would say of the window."""

import re
import subprocess
import time

from .failure import DeskFailure
from .processes import cpu_shares, wait_until


def atspi():
    import gi

    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi

    return Atspi


MAIN_WINDOW = "Tarvane"


def text_of(element):
    """What a drawn value, a label or a field reads."""
    return atspi().Text.get_text(element, 0, -1) if "Text" in element.get_interfaces() else ""


class Program:
    def __init__(self, desk):
        self._desk = desk
        # The services of the tree are there first: a program that is refused at its start isn't in it.
        wait_until(self._tree_answers, 20, "The accessibility bus doesn't answer")
        self.process = desk.processes.start("tarvane", [str(desk.program("tarvane"))], desk.env)
        self._application = wait_until(self._find_application, 20, "The program shows no window")

    # What there is.

    @staticmethod
    def _tree_answers():
        try:
            return atspi().get_desktop(0).get_child_count() >= 0
        except Exception:  # not yet
            return False

    def _find_application(self):
        if self.process.poll() is not None:
            raise DeskFailure(f"The program ended with {self.process.returncode}: "
                              f"{self._desk.processes.log('tarvane')}")
        Atspi = atspi()
        desktop = Atspi.get_desktop(0)
        desktop.clear_cache()
        for index in range(desktop.get_child_count()):
            application = desktop.get_child_at_index(index)
            if application is not None and application.get_process_id() == self.process.pid:
                if application.get_child_count() > 0:
                    return application
        return None

    def elements(self):
        """Every element of every window, outermost first."""
        queue = [self._application]
        while queue:
            element = queue.pop(0)
            element.clear_cache()
            yield element
            try:
                children = [element.get_child_at_index(index)
                            for index in range(element.get_child_count())]
            except Exception:  # went away meanwhile
                continue
            queue.extend(child for child in children if child is not None)

    def find(self, name=None, role=None):
        """The first element with that name (or whose name matches a pattern) and role, that is
        on screen; None if there is none."""
        Atspi = atspi()
        for element in self.elements():
            try:
                if role is not None and element.get_role_name() != role:
                    continue
                said = element.get_name() or ""
                matches = (name is None or said == name if not isinstance(name, re.Pattern)
                           else name.search(said) is not None)
                if matches and element.get_state_set().contains(Atspi.StateType.SHOWING):
                    return element
            except Exception:  # went away meanwhile
                continue
        return None

    def wait_for(self, name=None, role=None, seconds=10.0):
        return wait_until(lambda: self.find(name, role), seconds,
                          f"The window shows no {role or 'element'} named {name!r}")

    def reading(self, name):
        """What the value of that name reads, as "-23.0 dBFS"."""
        return text_of(self.wait_for(name, "label"))

    def level(self, name):
        """The number in a reading; None for "—"."""
        number = re.match(r"-?[0-9.]+", self.reading(name))
        return float(number.group()) if number else None

    def levels(self, name):
        """The numbers in all readings of that name that are on screen, in whichever window."""
        found = []
        for element in self.elements():
            try:
                if (element.get_name() == name and element.get_role_name() == "label"
                        and self.has_state(element, "SHOWING")):
                    found.append(re.match(r"-?[0-9.]+", text_of(element)))
            except Exception:  # went away meanwhile
                continue
        return [float(number.group()) for number in found if number]

    def drawn(self, display, part):
        """What one part of a drawn display reads, as "Under the pointer" of the analyzer."""
        widget = self.wait_for(display, "chart")
        for index in range(widget.get_child_count()):
            child = widget.get_child_at_index(index)
            if child is not None and child.get_name() == part:
                child.clear_cache()
                return text_of(child)
        raise DeskFailure(f"{display!r} draws no {part!r}.")

    def clip_is_clear(self):
        return self.reading("Input clipping") == ""

    def settled_level(self, name):
        """The reading once it stays the same for a second and a half."""
        seen = []

        def settled():
            seen.append(self.level(name))
            time.sleep(0.25)
            return len(seen) >= 6 and seen[-1] is not None and len(set(seen[-6:])) == 1

        wait_until(settled, 30, f"{name} doesn't settle")
        return seen[-1]

    def alerts(self):
        """The texts of all alerts on the screen."""
        found = []
        for element in self.elements():
            try:
                if element.get_role_name() == "alert" and self.has_state(element, "SHOWING"):
                    labels = [element.get_child_at_index(index)
                              for index in range(element.get_child_count())]
                    found.append(" ".join(label.get_name() for label in labels
                                          if label.get_role_name() == "label" and label.get_name()))
            except Exception:  # went away meanwhile
                continue
        return found

    def wait_for_alert(self, seconds=10):
        wait_until(self.alerts, seconds, "The window shows no alert")
        return self.alerts()

    def window_id(self):
        """The main window's, as the X server knows it."""
        return self._desk.xdotool_output("search", "--all", "--onlyvisible", "--pid",
                                         str(self.process.pid), "--name",
                                         f"^{MAIN_WINDOW}$").split()[0]

    # Hands.

    def click(self, name, role=None):
        """With the pointer, in the element's middle."""
        place = self.extents(name, role)
        if not self._desk.xdotool("mousemove", str(place.x + place.width // 2),
                                  str(place.y + place.height // 2), "click", "1"):
            raise DeskFailure(f"{name!r} can't be clicked.")

    def point_into(self, display, across):
        """Puts the pointer on a drawn display, `across` pixels from its left edge. What the
        display says of the place."""
        place = self.extents(display, "chart")
        self._desk.xdotool("mousemove", str(place.x + across), str(place.y + place.height // 2))
        time.sleep(0.1)  # until the next picture
        return wait_until(lambda: self.drawn(display, "Under the pointer"), 10,
                          f"{display!r} says nothing of {across} pixels across")

    def extents(self, name, role="chart"):
        """Where it is on the screen: x, y, width, height. A graph, unless told otherwise."""
        Atspi = atspi()
        return Atspi.Component.get_extents(self.wait_for(name, role), Atspi.CoordType.SCREEN)

    def press(self, name, role=None):
        """As a screen reader does it: the element's first action, without the pointer."""
        if not atspi().Action.do_action(self.wait_for(name, role), 0):
            raise DeskFailure(f"{name!r} can't be pressed.")

    def open(self, button, name, role):
        """Clicks the button until what it opens shows the element of that name: a window that has
        only just come may not have the pointer yet."""
        def is_open():
            self.click(button, "push button")
            try:
                return self.wait_for(name, role, 3)
            except DeskFailure:
                return None

        wait_until(is_open, 10, f"{button!r} opens nothing with {name!r}")

    def type_into(self, name, text):
        """Into the field of that name, which has the keys or is about to get them: what came too
        early is lost, and all of it is then typed anew."""
        def is_typed():
            self._desk.xdotool("type", text)
            try:
                return wait_until(lambda: text_of(self.wait_for(name, "text")) == text, 3, "")
            except DeskFailure:
                self._desk.xdotool("key", "ctrl+a")
                return False

        wait_until(is_typed, 10, f"The field {name!r} doesn't take {text!r}")

    def slide(self, name, value):
        """As a screen reader does it: sets a slider to a number of its steps."""
        if not atspi().Value.set_current_value(self.wait_for(name, "slider"), value):
            raise DeskFailure(f"{name!r} can't be moved.")

    def key(self, *keys):
        """A key with the main window in front."""
        self.bring_to_front()
        if not self._desk.xdotool("key", "--clearmodifiers", *keys):
            raise DeskFailure(f"The keys {keys} can't be pressed.")

    def bring_to_front(self):
        wait_until(self._is_in_front, 10, "The main window doesn't come to the front")

    def start(self):
        """Starts metering with the Space bar."""
        self.wait_for("Start", "push button")
        self.key("space")
        for _ in range(self._desk.missed_keys):
            try:
                self.wait_for("Stop", "push button", 4)
                return
            except DeskFailure:
                self.key("space")
        self.wait_for("Stop", "push button")

    def dismiss_alert(self):
        self.click("OK", "push button")
        wait_until(lambda: not self.alerts(), 10, "The alert stays")

    def choose(self, entry, instead_of):
        """An entry of the drop-down list that shows the other one."""
        self.click(instead_of, "combo box")

        # A list that has only just opened takes a click for the end of the one that opened it.
        def is_chosen():
            if self.find(entry, "combo box"):
                return True
            if self.find(entry, "list item"):
                self.click(entry, "list item")
                time.sleep(0.5)
            return False

        wait_until(is_chosen, 10, f"{entry!r} can't be chosen")

    def quit(self):
        self.key("ctrl+q")
        wait_until(lambda: not self.is_running(), 10, "The program doesn't end")

    def _is_in_front(self):
        if self.has_state(self.find(MAIN_WINDOW, "frame"), "ACTIVE"):
            return True
        self._desk.xdotool("search", "--onlyvisible", "--pid", str(self.process.pid), "--name",
                           f"^{MAIN_WINDOW}$", "windowactivate")
        return False

    @staticmethod
    def has_state(element, state):
        """One of AT-SPI's, as "CHECKED"."""
        return element is not None and element.get_state_set().contains(
            getattr(atspi().StateType, state))

    # Cost.

    def cpu_shares(self, seconds):
        """CPU seconds per second of the program and of the X server."""
        return cpu_shares((self.process.pid, self._desk.display.pid), seconds)

    def is_running(self):
        return self.process.poll() is None
