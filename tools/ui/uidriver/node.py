"""One accessible object as it was read, and how names are compared."""

import fnmatch
import re

STATES = (
    "invalid active armed busy checked collapsed defunct editable enabled expandable expanded focusable "
    "focused has-tooltip horizontal iconified modal multi-line multiselectable opaque pressed resizable "
    "selectable selected sensitive showing single-line stale transient vertical visible manages-descendants "
    "indeterminate required truncated animated invalid-entry autocompletion selectable-text default visited "
    "checkable has-popup read-only"
).split()
VIEWS = {"table", "tree", "tree table", "list"}  # item views: never ask for all their children
CELLS = {"cell", "table cell", "tree item", "list item", "column header", "row header"}
WINDOWS = {"frame", "dialog", "alert message", "alert", "file chooser", "window", "tool tip", "popup menu"}
ALIAS = {
    "button": {"push button", "toggle button", "check box", "push button menu", "button menu"},
    "edit": {"text", "password text", "entry"},
    "combo": {"combo box"},
    "tab": {"page tab"},
    "check": {"check box", "check menu item"},
    "radio": {"radio button"},
    "spin": {"spin box", "spin button"},
    "menu": {"menu item", "menu", "check menu item", "radio menu item"},
    "window": {"frame", "dialog", "alert message"},
    "messagebox": {"alert message", "alert"},
    "dock": {"frame"},
    "group": {"panel"},
    "view": VIEWS,
    "progress": {"progress bar"},
    "status": {"status bar"},
    "tooltip": {"tool tip"},
    "header": {"column header"},
}
NOWHERE = (0, 0, 0, 0)


class Node:
    """One accessible object as it was when it was read. Places are x, y, width and height on the screen."""

    __slots__ = (
        "bus",  # with path: its address
        "path",
        "parent",
        "index",  # where it stands below its parents: "2/0/5"
        "role",
        "name",
        "desc",
        "label",  # the text of the label that is its buddy
        "states",
        "ifaces",
        "kids",
        "rect",
        "clip",  # what can be seen of rect
        "body",  # of an item view: clip without the headers
        "shown",
        "nkids",  # of an item view: its rows
    )

    def __init__(self, bus, path, parent=None, index=""):
        self.bus, self.path, self.parent, self.index = bus, path, parent, index
        self.role = self.name = self.desc = self.label = ""
        self.states, self.ifaces, self.kids = set(), (), []
        self.rect = self.clip = NOWHERE
        self.shown, self.nkids, self.body = False, 0, None

    @property
    def ref(self):
        return self.bus, self.path

    @property
    def window(self):
        node = self
        while node.parent and node.parent.role != "application":
            node = node.parent
        return node

    @property
    def usable(self):
        return bool(self.states & {"enabled", "sensitive"})

    def walk(self):
        yield self
        for kid in self.kids:
            yield from kid.walk()

    def __repr__(self):
        return f"<{self.role} {self.name!r} {self.rect}>"


def meet(a, b):
    """What two places have in common."""
    x, y = max(a[0], b[0]), max(a[1], b[1])
    return x, y, max(0, min(a[0] + a[2], b[0] + b[2]) - x), max(0, min(a[1] + a[3], b[1] + b[3]) - y)


def state_names(words):
    """The names of the states that the interface gives as two words of bits."""
    bits = words[0] | (words[1] << 32 if len(words) > 1 else 0)
    return {name for number, name in enumerate(STATES) if bits >> number & 1}


def roles_of(role):
    """The roles that a role's name or short name stands for, None for any."""
    return None if role in (None, "*", "") else ALIAS.get(role, {role})


def plain(text):
    """The text without the ends that only say what kind of entry it is."""
    text = text.strip()
    for end in ("...", "\u2026", ":"):
        if text.endswith(end) and len(text) > len(end):
            text = text[: -len(end)].rstrip()
    return text


def matches(pattern, *texts):
    """exact (a final ':' or '...' does not count), 'glob*', or '/regex/'."""
    if pattern in (None, "*"):
        return True
    return any(_fits(pattern, text) for text in texts if text is not None)


def _fits(pattern, text):
    if len(pattern) > 1 and pattern[0] == "/" == pattern[-1]:
        return re.search(pattern[1:-1], text) is not None
    if text == pattern or (text and plain(text) == plain(pattern)):
        return True
    return re.search(r"[*?]", pattern) is not None and fnmatch.fnmatchcase(text, pattern)


def split_path(path):
    return [part.strip() for part in path.split(">")] if isinstance(path, str) else list(path)
