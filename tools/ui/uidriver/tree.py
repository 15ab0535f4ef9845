"""Reading and finding what the program shows."""

import json
import os
import re
import sys
import time

from .bus import ACC, COMP, NULL, PROPS, TABLE, TEXT, VALUE, Bus, UiError, prop
from .desktop import screen
from .node import ALIAS, CELLS, NOWHERE, VIEWS, WINDOWS, Node, matches, meet, roles_of, state_names

# States that nearly everything has, so that a line about an element leaves them out.
QUIET = set(
    "enabled focusable sensitive showing visible selectable transient manages-descendants resizable".split()
)
UNNAMED_INPUTS = {"text", "spin box", "slider", "list", "tree", "table", "progress bar", "panel"}
MOST_COLUMNS = 60
FAR = 99999


def _is_top(node):
    """Whether the place of a node is bounded by the screen, and not by what it is in."""
    parent = node.parent
    if parent is None or parent.role == "application":
        return True
    if node.role in WINDOWS and (node.role != "frame" or node.states & {"resizable", "active"}):
        return True
    return parent.role == "combo box" and node.role == "list"


def _named(node, name):
    if name and name.startswith("tip:"):
        return matches(name[4:], node.desc)
    return matches(name, node.name, node.label or None)


class Tree(Bus):
    """Elements are read anew at each question: what a Node holds is as old as the Node."""

    def __init__(self, app=None, timeout=5.0, call_timeout=10.0):
        super().__init__(app, timeout, call_timeout)
        self.screen = screen()
        self._popup = None

    # ---- reading

    def fill(self, nodes, role=None):
        """Reads name, states and place of the nodes and, unless the role is given, role, description and
        interfaces as well; drops those that are gone."""
        answers = self.batch([request for node in nodes for request in self._questions(node, role)])
        each, alive = 3 if role else 6, []
        for i, node in enumerate(nodes):
            name, states, extents, *more = answers[i * each : (i + 1) * each]
            known_role, desc, ifaces = more or ((role,), None, None)
            if known_role is None or states is None:
                continue
            node.role, node.name, node.desc = known_role[0], name[0] if name else "", desc[0] if desc else ""
            node.states = state_names(states[0])
            node.ifaces = tuple(iface.rsplit(".", 1)[-1] for iface in ifaces[0]) if ifaces else ()
            node.rect = tuple(extents[0]) if extents else NOWHERE
            self._clip(node)
            alive.append(node)
        return alive

    @staticmethod
    def _questions(node, role):
        ref = node.ref
        always = [prop(ref, "Name"), (ref, ACC, "GetState", None, ()), (ref, COMP, "GetExtents", "(u)", (0,))]
        if role:
            return always
        role_name, ifaces = ((ref, ACC, method, None, ()) for method in ("GetRoleName", "GetInterfaces"))
        return always + [role_name, prop(ref, "Description"), ifaces]

    def _clip(self, node):
        """Finds what can be seen of the node."""
        parent, top = node.parent, _is_top(node)
        if top:
            bounds = self.screen
        else:
            bounds = parent.body if parent.body and "header" not in node.role else parent.clip
        node.clip = meet(node.rect, bounds)
        seen = "showing" in node.states and node.clip[2] > 0 and node.clip[3] > 0
        node.shown = seen and (top or parent.shown)

    def refresh(self, node):
        if not self.fill([node]):
            raise UiError(f"{node} is gone")
        return node

    def children(self, nodes, rows=0):
        """The children of the nodes, one level, filled; of item views headers and the first `rows` rows."""
        parents = [node for node in nodes if node.role not in VIEWS]
        answers = self.batch([(node.ref, ACC, "GetChildren", None, ()) for node in parents])
        kids = []
        for node, answer in zip(parents, answers):
            for number, (bus, path) in enumerate(answer[0] if answer else ()):
                if path != NULL:
                    kids.append(
                        Node(bus, path, node, f"{node.index}/{number}" if node.index else str(number))
                    )
        kids = self.fill(kids)
        for kid in kids:
            kid.parent.kids.append(kid)
        for view in nodes:
            if view.role in VIEWS and rows:
                kids += self._read_view(view, rows)
        return kids

    def tree(self, top=None, depth=99, rows=0, hidden=False):
        """Reads the tree below `top` (the program when None), breadth first."""
        if top is None:
            top = Node(*self.app()[2])
            if not self.fill([top]):
                raise UiError(f"{self.app()[0]} has left the accessibility bus")
            top.shown, top.clip = True, self.screen
        top.kids = []
        level = [top]
        while level and depth > 0:
            level = self.children(level, rows)
            self._label(level)
            if not hidden:
                level = [node for node in level if node.shown]
            depth -= 1
        return top

    def _label(self, nodes):
        """Gives combo boxes and unnamed inputs the text of the label that is their buddy."""
        wanting = [n for n in nodes if n.role == "combo box" or not n.name and n.role in UNNAMED_INPUTS]
        answers = self.batch([(node.ref, ACC, "GetRelationSet", None, ()) for node in wanting])
        labelled_by = 2
        buddies = [
            (node, targets[0])
            for node, answer in zip(wanting, answers)
            for kind, targets in (answer[0] if answer else ())
            if kind == labelled_by and targets
        ]
        names = self.batch([prop(buddy, "Name") for _, buddy in buddies])
        for (node, _), name in zip(buddies, names):
            node.label = name[0] if name else ""

    # ---- item views

    def size(self, view):
        """Rows and columns."""
        rows, columns = self.batch([prop(view.ref, "NRows", TABLE), prop(view.ref, "NColumns", TABLE)])
        return (rows[0], columns[0]) if rows and columns else (0, 0)

    def _read_view(self, view, rows):
        view.nkids, columns = self.size(view)
        at = [(r, c) for r in range(min(view.nkids, rows)) for c in range(min(columns, MOST_COLUMNS))]
        view.kids = self.headers(view, columns) + [cell for cell in self.cells(view, at) if cell]
        return view.kids

    def headers(self, view, columns):
        """The column headers of an item view; also finds view.body, the view without its headers."""
        view.body = view.clip
        if view.role == "list" or not columns:
            return []
        by_index = [
            (view.ref, ACC, "GetChildAtIndex", "(i)", (i,)) for i in range(min(columns, MOST_COLUMNS) + 2)
        ]
        sample = min(columns - 1, 1)  # the column of one cell more, which tells where its header really is
        answers = self.batch(by_index + [(view.ref, TABLE, "GetAccessibleAt", "(ii)", (0, sample))])
        nodes = self.fill(
            [Node(*a[0], view, f"{view.index}/h{i}") for i, a in enumerate(answers) if a and a[0][1] != NULL]
        )
        headers = [node for node in nodes if node.role == "column header"]
        left = max([n.rect[0] + n.rect[2] for n in nodes if n.role == "row header"] + [view.clip[0]])
        top = max([n.rect[1] + n.rect[3] for n in headers] + [view.clip[1]])
        view.body = meet(view.clip, (left, top, FAR, FAR))
        cell = next((node for node in nodes if node.index.endswith(f"/h{len(by_index)}")), None)
        if cell and len(headers) > sample and cell.rect[2] and (sample or view.role == "table"):
            self._shift_headers(view, headers, left, cell.rect[0] - headers[sample].rect[0])
        return headers

    @staticmethod
    def _shift_headers(view, headers, left, shift):
        """Qt 5 forgets the horizontal scroll position in the place of a header: a cell's corrects it."""
        bounds = meet(view.clip, (left, view.clip[1], FAR, FAR))
        for header in headers:
            header.rect = (header.rect[0] + shift,) + header.rect[1:]
            header.clip = meet(header.rect, bounds)
            header.shown = view.shown and header.clip[2] > 0

    def cells(self, view, at):
        """Nodes for (row, column) pairs, None where there is none."""
        if view.body is None:
            self.headers(view, self.size(view)[1])
        answers = self.batch([(view.ref, TABLE, "GetAccessibleAt", "(ii)", place) for place in at])
        nodes = [
            Node(*answer[0], view, f"{view.index}/{row}x{column}")
            if answer and answer[0][1] != NULL
            else None
            for answer, (row, column) in zip(answers, at)
        ]
        role = {"tree": "tree item", "list": "list item"}.get(view.role, "cell")
        alive = {id(node) for node in self.fill([node for node in nodes if node], role)}
        return [node if node and id(node) in alive else None for node in nodes]

    # ---- menus without a parent

    def popups(self):
        """The open context or button menu: Qt lists it among no one's children, so click took its reference
        down."""
        if self._popup is None:
            try:
                with open(self._memo(), encoding="utf-8") as file:
                    self._popup = [tuple(ref) for ref in json.load(file)]
            except (OSError, ValueError):
                self._popup = []
        nodes = self.fill([Node(bus, path, None, f"popup{i}") for i, (bus, path) in enumerate(self._popup)])
        return [node for node in nodes if node.shown and node.role == "popup menu"]

    def _memo(self):
        """Where one command leaves for the next what it opened."""
        return os.path.join(os.environ.get("DESK_DIR", "/tmp"), f"uidrive-popup-{self.app()[1]}.json")

    def _remember_popups(self, refs):
        roles = self.batch([(ref, ACC, "GetRoleName", None, ()) for ref in refs])
        self._popup = [ref for ref, role in zip(refs, roles) if role and role[0] == "popup menu"]
        with open(self._memo(), "w", encoding="utf-8") as file:
            json.dump(self._popup, file)

    def _forget_popups(self):
        self._popup = []
        try:
            os.remove(self._memo())
        except OSError:
            pass

    # ---- finding

    def find_all(self, role, name=None, hidden=False, within=None):
        roles = roles_of(role)
        rows = 0 if not roles or not roles & CELLS else 1 if roles <= {"column header"} else 200
        found = []
        for top in self._tops(hidden) if within is None else [within]:
            self.tree(top, rows=rows, hidden=hidden)
            for node in top.walk():
                if (hidden or node.shown) and (roles is None or node.role in roles) and _named(node, name):
                    found.append(node)
        return found

    def _tops(self, hidden):
        """The windows to look in, the active one first."""
        windows = [kid for kid in self.tree(depth=1, hidden=hidden).kids if hidden or kid.shown]
        windows.sort(key=lambda window: (0 if "active" in window.states else 1, -int(window.index)))
        return self.popups() + windows

    def find(self, role, name=None, nth=0, timeout=None, hidden=False, within=None):
        """Waits for a shown element and returns it."""
        end = time.time() + (self.timeout if timeout is None else timeout)
        while True:
            found = self.find_all(role, name, hidden, within)
            if len(found) > nth:
                return found[nth]
            if not self.alive():
                raise UiError(f"{self.app()[0]} has ended")
            if time.time() >= end:
                others = {node.name or node.label for node in self.find_all(role, None, hidden, within)} - {
                    ""
                }
                hint = f"; there are: {', '.join(sorted(others)[:25])}" if others else ""
                raise UiError(f"no {role or '*'} {name!r} shown{hint}")
            time.sleep(0.1)

    def resolve(self, target, nth=0, timeout=None):
        """A target as text becomes a Node (or a point): see TARGET in the help."""
        if isinstance(target, (Node, tuple)):
            return target
        if re.fullmatch(r"-?\d+,-?\d+", target):
            return tuple(int(number) for number in target.split(","))
        if target.startswith("@"):
            return self._by_index(target[1:])
        within = None
        *outer, innermost = [part.strip() for part in target.split(">>")]
        for part in outer:
            within = self._resolve_in(part, within, 0, timeout)
        return self._resolve_in(innermost, within, nth, timeout)

    def _resolve_in(self, target, within, nth, timeout):
        role, colon, name = target.partition(":")
        is_role = role in ALIAS or role == "*" or re.fullmatch(r"[a-z]+( [a-z]+){0,2}", role)
        if not colon or not is_role or role == "tip":
            role, name = "*", target
        return self.find(role, name or "*", nth, timeout, within=within)

    def _by_index(self, path):
        node = self.tree(depth=0)
        for part in path.split("/"):
            kids = self.children([node], rows=10000 if node.role in VIEWS else 0)
            node = next((kid for kid in kids if kid.index.rsplit("/", 1)[-1] == part), None)
            if node is None:
                raise UiError(f"nothing at @{path}")
        return node

    def view(self, name, within=None):
        """An item view by its name, or by 'tree:NAME' and the like."""
        if isinstance(name, Node):
            return name
        role, colon, rest = name.partition(":")
        role, name = (role, rest) if colon and (role in VIEWS or role == "view") else ("view", name)
        return self.find(role, name, within=within)

    # ---- values, waiting

    def value(self, target):
        """What the element shows: its text, its number, its check state, or the combo box's current entry."""
        node = self.resolve(target)
        if "Text" in node.ifaces:
            return self.call(node.ref, TEXT, "GetText", "(ii)", 0, -1)[0]
        if "Value" in node.ifaces:
            return "%g" % self.call(node.ref, PROPS, "Get", "(ss)", VALUE, "CurrentValue")[0]
        if node.role in ("check box", "radio button", "check menu item"):
            return "on" if "checked" in node.states else "off"
        return node.name

    def until(self, test, why, timeout=None):
        """What `test` returns once that is true; UiError(why) when time has passed."""
        end = time.time() + (self.timeout if timeout is None else timeout)
        while True:
            result = test()
            if result:
                return result
            if time.time() > end:
                raise UiError(why)
            time.sleep(0.05)

    def wait(self, role, name=None, seconds=None, gone=False, value=None, state=None):
        """Waits until there is (with gone: no more) such an element, with the value and state if given."""
        seconds = self.timeout if seconds is None else float(seconds)
        self.app(seconds)

        def is_so():
            found = self.find_all(role, name)
            if value is not None:
                found = [node for node in found if matches(value, self.value(node))]
            if state is not None:
                wanted = not state.startswith("!")
                found = [node for node in found if (state.lstrip("!") in node.states) == wanted]
            return not found if gone else found

        what = f"{role} {name!r}{' ' + str(value) if value else ''}"
        found = self.until(is_so, f"{what} {'still' if gone else 'not'} there after {seconds:g} s", seconds)
        return None if gone else found[0]

    # ---- printing

    def line(self, node, indent=0):
        """One line about an element."""

        def quoted(text):
            return json.dumps(text, ensure_ascii=False)

        parts = [f"@{node.index} {node.role} {quoted(node.name)}"]
        if node.label and node.label != node.name:
            parts.append(f"label={quoted(node.label)}")
        if node.desc and node.desc != node.name:
            parts.append(f"tip={quoted(node.desc)}")
        if "Text" in node.ifaces or "Value" in node.ifaces:
            try:
                parts.append(f"value={quoted(self.value(node)[:200])}")
            except UiError:
                pass
        disabled = [] if "enabled" in node.states else ["disabled"]
        parts.append(
            f"[{' '.join(disabled + sorted(node.states - QUIET) + ([] if node.shown else ['hidden']))}]"
        )
        if node.rect[2]:
            parts.append("%d,%d %dx%d" % node.rect)
        return "  " * indent + " ".join(parts)

    def dump(self, depth=99, rows=20, hidden=False, top=None, out=sys.stdout):
        """Prints the tree below `top`, or that of all windows."""

        def show(node, indent):
            print(self.line(node, indent), file=out)
            for kid in node.kids:
                if hidden or kid.shown:
                    show(kid, indent + 1)
            if node.role in VIEWS and node.nkids > rows:
                print("  " * (indent + 1) + f"... {node.nkids} rows", file=out)

        if top:
            tops = [self.resolve(top)]
        else:
            windows = self.tree(depth=1, hidden=hidden).kids
            tops = self.popups() + [window for window in windows if hidden or window.shown]
        for node in tops:
            self.tree(node, depth=depth, rows=rows, hidden=hidden)
            show(node, 0)
