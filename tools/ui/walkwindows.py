#!/usr/bin/python3
"""Walks all windows of a running client as a screen reader sees them: every control has a name.

usage: walkwindows.py --app PID|NAME [-v]

The client has a project with a server that is connected. Each page of each document, each dialog of the menus
and each dialog that a context menu offers is opened, looked at and left with Esc. What has no name is listed;
then the exit code is 1, as it is when hardly anything was seen.
"""

import argparse
import sys
import time

from uidriver import Ui, UiError
from uidriver.node import VIEWS

CONTROLS = VIEWS | {
    "push button",
    "toggle button",
    "check box",
    "radio button",
    "button menu",
    "push button menu",
    "text",
    "password text",
    "combo box",
    "spin box",
    "slider",
    "dial",
    "page tab",
    "menu item",
}
PARTS_OF = {"combo box", "spin box"}  # what they consist of has their name
MAY_NOT_BE_OPENED = {"Recent Projects", "New", "Quit", "Remove", "Connect", "Disconnect", "What's This?"}
ELSEWHERE = {"Report a bug", "Check for Updates"}  # the mail program and the network
OPEN_SECONDS = 1.5
FEWEST_WINDOWS, FEWEST_CONTROLS = 25, 400


def is_nameless(node):
    if node.role not in CONTROLS or (node.parent and node.parent.role in PARTS_OF):
        return False
    if node.role == "combo box":  # its name is the entry that is chosen, its label maybe that of its group
        return not (node.desc or node.label and node.label not in names_above(node))
    return not (node.name.strip() or node.label.strip())


def names_above(node):
    names = []
    while node.parent is not None:
        node = node.parent
        if node.name:
            names.insert(0, node.name)
    return names


def bare(text):
    return text.rstrip(".\u2026").strip()


class Walk:
    def __init__(self, app, is_verbose):
        self.ui = Ui(app, timeout=4)
        self.is_verbose = is_verbose
        self.nameless = {}
        self.seen = set()
        self.offered = set()  # entries of context menus that were tried
        self.windows = set()
        self.skipped = []

    # ---- looking

    def look(self, top, where):
        """Takes the window's controls down, of all pages of its tabs and lists of pages."""
        self.ui.tree(top)
        self._take(top, where)
        for tab in [node for node in top.walk() if node.role == "page tab" and node.shown]:
            if "selected" in tab.states or not tab.usable:
                continue
            self._turn(tab, top, f"{where} > {tab.name}")
        for pages in [
            node for node in top.walk() if node.role == "list" and node.name in ("Pages", "Contents")
        ]:
            for row in range(1, self.ui.size(pages)[0]):
                cell = self.ui.cell(pages, row)
                self._turn(cell, top, f"{where} > {cell.name}")

    def _turn(self, page, top, where):
        try:
            self.ui.click(page)
        except UiError:
            return
        fresh = self.ui.refresh(top)
        self.ui.tree(fresh)
        self._take(fresh, where)

    def _take(self, top, where):
        self.windows.add(where)
        for node in top.walk():
            if node.shown and node.role in CONTROLS:
                self.seen.add((top.name, node.index))
                if is_nameless(node):
                    path = " > ".join(names_above(node)[-3:])
                    self.nameless.setdefault(f"{node.role} in {path}", where)

    # ---- opening

    def tops(self):
        return [kid for kid in self.ui.tree(depth=1).kids if kid.shown]

    def opened(self, before):
        """The window that was not there before, once it is; None when nothing opens."""
        end = time.time() + OPEN_SECONDS
        while time.time() < end:
            new = [top for top in self.tops() if top.ref not in before and top.role != "tool tip"]
            if new:
                return new[-1]
            time.sleep(0.05)
        return None

    def visit(self, where, action):
        before = {top.ref for top in self.tops()}
        try:
            action()
        except UiError as error:
            self.skipped.append(f"{where}: {error}")
            return
        window = self.opened(before)
        if self.is_verbose:
            print(f"# {where}: {window.name if window else 'no window'}", file=sys.stderr)
        if window is None:
            return
        self.look(window, f"{where}: {window.name}")
        self.leave(before)

    def leave(self, before):
        """Esc for what is above the windows that were there before; Alt+F4 for what does not take it."""
        for key in ("Escape", "Escape", "alt+F4", "alt+F4"):
            new = [top for top in self.tops() if top.ref not in before and top.role != "tool tip"]
            if not new:
                return
            try:
                self.ui.activate(new[-1])
                self.ui.key(key)
            except UiError:
                pass
            time.sleep(0.1)
        raise UiError(f"cannot be left: {', '.join(top.name for top in new)}")

    # ---- the walk

    def menus(self):
        for menu in [name for name, _ in self.ui.menu_entries()]:
            for name, states in self.ui.menu_entries(menu):
                is_switch = menu == "View" and not name.endswith("...")  # shows or hides a part of the window
                if name and "enabled" in states and not is_switch:
                    if bare(name) not in MAY_NOT_BE_OPENED | ELSEWHERE:
                        self.visit(f"{menu} > {name}", lambda: self.ui.menu(f"{menu}>{name}"))

    def context_menus(self, place):
        """The dialogs that the context menus and menu buttons of the window in front offer."""
        main = self.main()
        self.ui.tree(main, rows=1)
        for view in [node for node in main.walk() if node.role in VIEWS and node.shown and node.kids]:
            cells = [kid for kid in view.kids if "header" not in kid.role and kid.shown]
            if cells:
                self._entries(f"{place} > {view.name}", lambda cell=cells[0]: self.ui.rclick(cell))
        for button in [node for node in main.walk() if node.role in ("button menu", "push button menu")]:
            if button.shown and button.usable:
                self._entries(f"{place} > {button.name}", lambda it=button: self.ui.click(it))

    def _entries(self, where, opening):
        """Chosen by their place: Qt 5 does not tell the entries of a menu that is opened a second time."""
        try:
            opening()
            entries = [entry for popup in self.ui.popups()[:1] for entry in self._dialogs_of(popup)]
            self.ui.key("Escape")
        except UiError as error:
            self.skipped.append(f"{where}: {error}")
            return
        for entry in entries:
            known = (where.rpartition(" > ")[2], entry.name)
            if known not in self.offered:
                self.offered.add(known)
                middle = entry.rect[0] + entry.rect[2] // 2, entry.rect[1] + entry.rect[3] // 2
                self.visit(f"{where} > {entry.name}", lambda: (opening(), self.ui.click(middle)))

    def _dialogs_of(self, popup):
        return [
            kid for kid in self.ui.children([popup]) if kid.usable and kid.name.endswith(("...", "\u2026"))
        ]

    def main(self):
        return self.ui.find("frame", "*Tavelin - *")

    def documents(self):
        types = self.types()
        for name in types:
            self.ui.key("ctrl+shift+p")
            self.ui.find("dialog", "Command Palette")
            self.ui.type(f"New {name}")
            self.ui.key("Return")
            self.look(self.main(), name)
            self.context_menus(name)

    def types(self):
        self.ui.menu("Document>Add")
        dialog = self.ui.find("dialog", "Add Document")
        entries = [row[0] for row in self.ui.rows(self.ui.view("Document types", within=dialog))]
        self.ui.key("Escape")
        return entries

    def run(self):
        for dock in ("Services", "Find Node"):  # hidden until somebody wants them
            self.ui.menu(f"View>{dock}")
            self._take(self.ui.tree(self.main()), dock)
        self.look(self.main(), "start")
        self.context_menus("start")
        self.ui.click(self.ui.item("Project", "Project>Servers>*"))  # for what is done with a server
        self.menus()
        self.documents()

    def report(self):
        for what, where in sorted(self.nameless.items()):
            print(f"no name: {what}   (seen at {where})")
        for line in self.skipped if self.is_verbose else []:
            print(f"# skipped {line}", file=sys.stderr)
        counts = f"{len(self.windows)} windows and pages, {len(self.seen)} controls"
        print(f"{counts}, {len(self.nameless)} without a name")
        is_enough = len(self.windows) >= FEWEST_WINDOWS and len(self.seen) >= FEWEST_CONTROLS
        return 0 if is_enough and not self.nameless else 1


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--app", required=True)
    parser.add_argument("-v", action="store_true")
    args = parser.parse_args()
    walk = Walk(args.app, args.v)
    try:
        walk.run()
    except UiError as error:
        print(f"walkwindows: {error}", file=sys.stderr)
        walk.report()
        return 1
    return walk.report()


if __name__ == "__main__":
    sys.exit(main())
