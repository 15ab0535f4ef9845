"""Windows, mouse, keyboard, menus, dialogs."""

import contextlib
import re
import time

from . import desktop
from .bus import UiError
from .desktop import holding
from .node import CELLS, Node, matches, split_path
from .tree import Tree

LEFT, RIGHT, WHEEL_UP, WHEEL_DOWN = 1, 3, 4, 5
KEYS = {
    "enter": "Return",
    "return": "Return",
    "esc": "Escape",
    "escape": "Escape",
    "tab": "Tab",
    "space": "space",
    "del": "Delete",
    "delete": "Delete",
    "backspace": "BackSpace",
    "insert": "Insert",
    "up": "Up",
    "down": "Down",
    "left": "Left",
    "right": "Right",
    "home": "Home",
    "end": "End",
    "pageup": "Prior",
    "pagedown": "Next",
    ",": "comma",
    ".": "period",
}
DIALOGS = {"dialog", "alert message", "alert", "file chooser"}
FIELDS = {"text", "combo box", "spin box", "check box", "radio button", "slider", "progress bar"}


class Actions(Tree):
    """What a user's hands do. Every action ends when the program has taken it."""

    def x(self, *arguments, seconds=None):
        return desktop.xdotool(*arguments, seconds=seconds)

    # ---- windows

    def xwindows(self):
        """The program's windows that the window manager knows, bottom to top."""
        return desktop.windows(self.app()[1])

    def _xwindow_of(self, top):
        windows = self.xwindows()
        for window in windows:
            if _same_place(window.rect, top.rect):
                return window
        return next((window for window in windows if window.title == top.name), None)

    def activate(self, target):
        """Raises and focuses the window with this title (or holding this element)."""
        node = target if isinstance(target, Node) else self.find("window", target)
        window = self._xwindow_of(node.window)
        if not window:
            raise UiError(f"no X window for {node.window}")
        self._raise(window)
        return window

    def _raise(self, window):
        # it never becomes active while a modal dialog is above it
        self.x("windowactivate", "--sync", window.id, seconds=self.timeout)
        self.sync()

    def _front(self, node):
        """When windows of the program may overlap, brings the element's to the front."""
        if node is None or node.index.startswith("popup") or "active" in node.window.states:
            return
        above = node
        while above:
            if above.role == "popup menu":
                return
            above = above.parent
        window = self._xwindow_of(node.window)
        if window:
            self._raise(window)

    # ---- mouse

    def point(self, target, at=None, nth=0):
        """Where to click, and the element: the middle of what can be seen of it, or `at` of it ('10,5' or
        '50%,30%')."""
        if isinstance(target, str):
            offset = re.fullmatch(r"(.*)\{(-?[\d.]+%?),(-?[\d.]+%?)\}", target, re.S)
            if offset:
                target, at = offset[1], (offset[2], offset[3])
        node = self.resolve(target, nth)
        if isinstance(node, tuple):
            return node, None
        if not node.shown:
            raise UiError(f"{node} is not shown")
        x, y, width, height = node.clip
        if at:
            right, down = (_offset(value, size) for value, size in zip(at, (width, height)))
            return (round(x + right), round(y + down)), node
        right = width // 2
        if node.role in CELLS:
            right = min(right, 30)
        elif node.role in ("check box", "radio button") and width > 3 * height:
            right = min(right, height // 2 + 2)  # beside its text a click may miss
        return (x + right, y + height // 2), node

    def click(self, target, button=LEFT, times=1, at=None, nth=0, mods=()):
        (x, y), node = self.point(target, at, nth)
        if node is not None and not node.usable and button == LEFT and node.role not in CELLS:
            raise UiError(f"{node} is disabled")
        self._front(node)
        opens_menu = button == RIGHT or node is not None and "button menu" in node.role
        repeat = ["--repeat", times, "--delay", 40] if times > 1 else []
        with self.catch_shown() if opens_menu else contextlib.nullcontext() as caught:
            self.x("mousemove", x, y, "sleep", "0.02", *holding(mods, "click", *repeat, button))
            self.sync()
        if opens_menu:
            self._remember_popups(list(caught))
        return node

    def dclick(self, target, **options):
        return self.click(target, times=2, **options)

    def rclick(self, target, **options):
        return self.click(target, button=RIGHT, **options)

    def hover(self, target, seconds=1.0):
        (x, y), node = self.point(target)
        self._front(node)
        self.x("mousemove", x - 3, y, "sleep", "0.05", "mousemove", x, y)
        time.sleep(seconds)
        return node

    def drag(self, source, target, button=LEFT, steps=20, mods=(), hold=0.15):
        # find the target first (that may scroll or expand), then the source again just before the press
        self.point(source)
        (x2, y2), target_node = self.point(target)
        (x1, y1), source_node = self.point(source)
        self._front(source_node)
        start = ["mousemove", x1, y1, "sleep", "0.05", "mousedown", button, "sleep", f"{hold:g}"]
        for distance in (4, 8, 12, 16):  # past the start-drag distance, slowly
            start += ["mousemove", x1 + distance, y1 + distance // 4, "sleep", "0.03"]
        way = []
        for i in range(1, steps + 1):
            x, y = x1 + 16 + (x2 - x1 - 16) * i // steps, y1 + 4 + (y2 - y1 - 4) * i // steps
            way += ["mousemove", x, y, "sleep", "0.015"]
        way += ["mousemove", x2 + 2, y2 + 1, "sleep", "0.05", "mousemove", x2, y2]
        way += ["sleep", f"{hold:g}", "mouseup", button]
        self.x(*start, *holding(mods, *way))
        self.sync(0.1)
        return source_node, target_node

    def scroll(self, target, clicks):
        (x, y), node = self.point(target)
        self._front(node)
        button = WHEEL_DOWN if clicks > 0 else WHEEL_UP
        self.x("mousemove", x, y, "click", "--repeat", abs(clicks), "--delay", 4, button)
        self.sync()

    # ---- keyboard

    def type(self, text, delay=6):
        first, *others = text.split("\n")
        self._type_line(first, delay)
        for line in others:
            self.x("key", "Return")
            self._type_line(line, delay)
        self.sync()

    def _type_line(self, line, delay):
        if line:
            self.x("type", "--clearmodifiers", "--delay", delay, "--", line)

    def key(self, *keys):
        """Keys as 'ctrl+s', one after the other."""
        chords = ([KEYS.get(key.lower(), key) for key in re.split(r"\+(?=.)", chord)] for chord in keys)
        self.x("key", "--clearmodifiers", *("+".join(chord) for chord in chords))
        self.sync()

    def _escape(self, times):
        if times:
            self.key(*["Escape"] * times)

    def fill_in(self, target, text):
        """Replaces the text of an edit or spin box by typing."""
        node = self.click(target)
        if node.role == "spin box" and re.fullmatch(r"\d+\D\d+(\D+\d+)+", text):
            # a date or time: an arrow key selects the section at the cursor, a full one moves on by itself
            self.key("Home", "Up", "Down")
            self.type(re.sub(r"\D", "", text))
            return node
        self.key("ctrl+a")
        if text == "":
            self.key("Delete")
        else:
            self.type(text)
        return node

    # ---- buttons

    def press(self, name, window=None, nth=0):
        """Presses a button by its text, in the active window first."""
        within = self.find("window", window) if window else None
        return self.click(self.find("button", name, nth, within=within))

    def tab(self, name, nth=0):
        return self.click(self.find("tab", name, nth))

    def check(self, target, on=True):
        by_name = isinstance(target, str) and ":" not in target
        node = self.find("check", target) if by_name else self.resolve(target)
        if ("checked" in node.states) != on:
            self.click(node, at=("11", "50%") if node.role in CELLS else None)
            self.until(lambda: ("checked" in self.refresh(node).states) == on, f"{node} did not change")
        return node

    # ---- menus

    def menu(self, path):
        """'File>Export>As CSV' from the menu bar, or from the open context menu when there is one."""
        opened = self.popups()
        menu = opened[0] if opened else None
        *submenus, last = split_path(path)
        for depth, name in enumerate(submenus):
            item = self._choose(menu, name, depth + 1 if depth or opened else 0)
            menu = self.until(lambda: self._submenu(item), f"the menu {name!r} did not open")
        item = self._choose(menu, last, len(submenus) + 1 if submenus or opened else 0)
        self._forget_popups()
        return item

    def _choose(self, menu, name, escapes):
        """Clicks an entry of the open menu or of the menu bar; so many `escapes` close what is open."""

        def look():
            entries = self._entries(menu)
            return next(
                (e for e in entries if e.role != "separator" and e.shown and matches(name, e.name)), None
            )

        try:
            item = self.until(look, "", min(self.timeout, 1.5))
        except UiError:
            there = ", ".join(entry.name for entry in self._entries(menu) if entry.name)
            self._escape(escapes)
            raise UiError(f"no menu entry {name!r}; there are: {there}")
        if not item.usable:
            self._escape(escapes)
            raise UiError(f"menu entry {name!r} is disabled")
        if menu is None:
            self._front(item)
        return self.click(item)

    def _entries(self, menu):
        """What an open menu holds; without one, the menu bars."""
        menus = [self.refresh(menu)] if menu is not None else self.find_all("menu bar")
        for one in menus:
            one.kids = []
        return self.children(menus)

    def _submenu(self, item):
        item.kids = []
        return next((kid for kid in self.children([item]) if kid.role == "popup menu" and kid.shown), None)

    def menu_entries(self, path=""):
        """The entries below a menu, as (name, states), without opening it."""
        level = self.popups() or self.find_all("menu bar")
        for name in split_path(path) if path else []:
            item = next((entry for entry in self.children(level) if matches(name, entry.name)), None)
            if item is None:
                raise UiError(f"no menu entry {name!r}")
            level = [kid for kid in self.children([item]) if kid.role == "popup menu"]
        return [(entry.name, entry.states) for entry in self.children(level)]

    # ---- dialogs

    def dialogs(self):
        """Open dialogs and message boxes, the topmost last: dicts with title, role, modal, texts, fields,
        buttons."""
        tops = self.tree(depth=1).kids
        windows = self.xwindows()
        order = {window.rect: i for i, window in enumerate(windows)}
        found = []
        for top in tops:
            window = next((one for one in windows if _same_place(one.rect, top.rect)), None)
            modal = bool(window and "MODAL" in window.states)
            if top.shown and (modal or top.role in DIALOGS):
                found.append(self._dialog(self.tree(top), modal))
        return sorted(found, key=lambda dialog: order.get(dialog["node"].rect, 99))

    def _dialog(self, top, modal):
        nodes = [node for node in top.walk() if node.shown]
        labels = [node for node in nodes if node.role == "label" and node.name]
        fields = [node for node in nodes if node.role in FIELDS]
        buttons = [node for node in nodes if node.role == "push button" and node.name]
        return {
            "title": top.name,
            "role": top.role,
            "modal": modal,
            "node": top,
            "texts": [re.sub(r"<[^>]+>", "", node.name) for node in labels],
            "fields": [(node.role, node.label or node.name, self.value(node)) for node in fields],
            "buttons": [(node.name, "enabled" in node.states, "default" in node.states) for node in buttons],
        }

    def filedialog(self, path, accept=True):
        """Fills in Qt's own file dialog: types the path into 'File name' and accepts."""
        edit = self.find("edit", "/^(File name|Directory):?$/")
        top = edit.window
        self.fill_in(edit, path)
        got = self.value(edit)
        if got != path:
            raise UiError(f"the file name field reads {got!r}")
        self.key("Return" if accept else "Escape")

        def is_over():
            if not self.fill([top]) or not top.shown:
                return True
            dialogs = self.dialogs()
            return dialogs and dialogs[-1]["title"] != top.name  # it asks something

        self.until(is_over, "the file dialog stayed open")

    # ---- what else a user does with the desktop

    def shot(self, path, target=None):
        return desktop.picture(path, self.resolve(target).clip if target else None)

    def pixel(self, target):
        """The colour on the screen at a point or in the middle of an element, as '#rrggbb'."""
        (x, y), _ = self.point(target)
        return desktop.colour(x, y)

    def clipboard(self):
        return desktop.clipboard()


def _same_place(a, b):
    return all(abs(v - w) <= 3 for v, w in zip(a, b))


def _offset(value, size):
    text = str(value)
    return float(text[:-1]) * size / 100 if text.endswith("%") else float(text)
