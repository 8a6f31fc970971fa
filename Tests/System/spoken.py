"""What a screen reader is told of a window or of what a button has opened, as the accessibility bus
has it, and what it couldn't tell a user: controls without a name, two of one name, a choice with
none or two chosen, a number without its unit."""

import re
from collections import Counter
from dataclasses import dataclass, field

from desk.program import atspi, text_of

PRESSED = {"push button", "radio button", "check box", "menu item"}
CONTROLS = PRESSED | {"combo box", "list item", "page tab", "slider", "spin button", "text"}
# They pass the focus on to what is in them, or are read as a whole, as a text that can be selected.
HOLDERS = {"chart", "dialog", "frame", "label", "list", "page tab list", "popup menu", "separator",
           "tree"}
POPUPS = {"dialog", "list", "popup menu"}

UNIT = "(?:dB|dBFS|dB SPL|dBTP|LU|LUFS|s|x|%)"
NUMBER = r"[-+±]?\d+(?:\.\d+)?"
# "2.0 s", "-20 dBFS", "50%"
VALUE = re.compile(f"({NUMBER}) ?{UNIT}")
SHOUTED = re.compile(r"\b[A-Z]{4,}\b")
ABBREVIATIONS = {"ATSC", "LKFS", "LUFS", "SMPTE"}


@dataclass
class Spoken:
    """An element and all in it that is shown."""

    element: object
    role: str
    name: str
    label: str = ""  # the text beside it that names it
    description: str = ""
    text: str = ""
    value: float = None
    actions: int = 0
    states: frozenset = frozenset()
    children: list = field(default_factory=list)

    def called(self):
        return self.label if self.role == "combo box" else self.name

    def walk(self, path=()):
        """(named groups around it, element) for itself and all in it."""
        yield path, self
        # What a button has opened is told with the button; a page or a window by its name.
        inner = (*path, self.name) if self.name and self.role not in PRESSED else path
        for child in self.children:
            yield from child.walk(inner)

    def controls(self):
        """(role, name) of what can be worked in it, in reading order."""
        return [(it.role, it.called()) for _, it in self.walk()
                if it is not self and it.role in CONTROLS]


def is_showing(element):
    return element.get_state_set().contains(atspi().StateType.SHOWING)


def children_of(element):
    """But for a folder's files, of which the dialog shows as many as there are."""
    if element.get_role_name() == "tree":
        return []
    children = (element.get_child_at_index(index)
                for index in range(element.get_child_count()))
    return [child for child in children if child is not None]


# A closed menu under an item is read too: it has its items ahead of its first opening.
def is_told(child, role):
    child.clear_cache()
    return role == "menu item" or is_showing(child)


def read(element, is_closed=False):
    Atspi = atspi()
    element.clear_cache()
    interfaces = element.get_interfaces()
    states = element.get_state_set()
    role = element.get_role_name()
    labels = [relation.get_target(0).get_name() for relation in element.get_relation_set()
              if relation.get_relation_type() == Atspi.RelationType.LABELLED_BY]
    is_closed = is_closed or role == "menu item"
    return Spoken(
        element=element, role=role, name=element.get_name() or "",
        label=labels[0] if labels else "", description=element.get_description() or "",
        text=text_of(element),
        value=Atspi.Value.get_current_value(element) if "Value" in interfaces else None,
        actions=Atspi.Action.get_n_actions(element) if "Action" in interfaces else 0,
        states=frozenset(state.value_nick for state in states.get_states()),
        children=[read(child, is_closed) for child in children_of(element)
                  if is_closed or is_told(child, role)])


def popup_of(opener):
    """What a button, a title of the menu bar or a picker has opened; None while it is closed."""
    opener.clear_cache()
    try:
        for child in children_of(opener):
            child.clear_cache()
            if child.get_role_name() in POPUPS and is_showing(child):
                return child
    except Exception:  # went away meanwhile
        pass
    return None


def press(element):
    assert atspi().Action.do_action(element, 0), f"{element.get_name()!r} can't be pressed"


def faults(root):
    """What is wrong with it, a sentence each."""
    said = Counter()
    for path, it in root.walk():
        what = f"{' > '.join((*path, ''))}{it.role} {it.called()!r}"
        takes_focus = "focusable" in it.states
        if it.role in CONTROLS or takes_focus:
            said[what] += it.role != "list item"
            if not it.called().strip():
                yield f"{what} has no name"
        if takes_focus and it.role not in CONTROLS | HOLDERS:
            yield f"{what} takes the focus and is no control"
        if set(SHOUTED.findall(it.called())) - ABBREVIATIONS:
            yield f"{what} is shouted"
        if it.role in PRESSED and "enabled" in it.states and not it.actions:
            yield f"{what} can't be pressed"
        yield from value_faults(it, what)
        yield from choice_faults(it, what)
    yield from (f"{what} is there {count} times" for what, count in said.items() if count > 1)


def value_faults(it, what):
    if it.role == "slider":
        value = VALUE.fullmatch(it.description)
        if not value or abs(float(value[1]) - it.value) > 0.051:
            yield f"{what} says {it.description!r} at {it.value}"
    if it.role == "spin button" and not VALUE.fullmatch(it.text):
        yield f"{what} reads {it.text!r}"
    if it.role == "text" and re.fullmatch(NUMBER, it.text):
        if not re.fullmatch(UNIT, it.description):
            yield f"{what} reads {it.text!r} in no unit"
    if it.role == "combo box" and not it.name:
        yield f"{what} doesn't say what is chosen"


# Radio buttons beside each other are one choice.
def choice_faults(it, what):
    choices = [child for child in it.children if child.role == "radio button"]
    chosen = [choice.name for choice in choices if "checked" in choice.states]
    if choices and len(chosen) != 1:
        yield f"{what} has {chosen} chosen of {[choice.name for choice in choices]}"
