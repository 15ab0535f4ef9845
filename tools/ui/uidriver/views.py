"""Tables, trees, lists and combo boxes: what their rows say, and items brought into sight."""

import time

from .actions import WHEEL_DOWN, WHEEL_UP, Actions
from .bus import ACC, NULL, TABLE, UiError, prop
from .node import VIEWS, Node, matches, split_path, state_names

WHEEL_LEFT, WHEEL_RIGHT = 6, 7
CHUNK = 2000  # cells that are asked for at once
SCROLL_BAR = 18  # a horizontal one may cover this much of the last row
ENOUGH_WIDTH = 24


def _row(number, node):
    return {
        "row": number,
        "name": node.name,
        "expandable": "expandable" in node.states,
        "expanded": "expanded" in node.states,
        "selected": "selected" in node.states,
        "node": node,
    }


def _is_number(value):
    return str(value).lstrip("-").isdigit()


class Ui(Actions):
    """The whole driver."""

    # ---- what views say

    def columns(self, view):
        view = self.view(view)
        count = self.size(view)[1]
        answers = self.batch([(view.ref, TABLE, "GetColumnDescription", "(i)", (c,)) for c in range(count)])
        return [answer[0] if answer else "" for answer in answers]

    def rows(self, view, first=0, count=None, states=False):
        """The texts of the rows (a checked cell reads '[x] text'; with states also (selected, ...))."""
        view = self.view(view)
        height, width = self.size(view)
        if not width:
            return []
        last = height if count is None else min(height, first + count)
        at = [(row, column) for row in range(first, last) for column in range(width)]
        cells = []
        for i in range(0, len(at), CHUNK):
            cells += self._texts(view, at[i : i + CHUNK])
        table = [cells[i : i + width] for i in range(0, len(cells), width)]
        return table if states else [[text for text, _ in row] for row in table]

    def _texts(self, view, at):
        """(text, states) of the cells at (row, column) pairs."""
        found = self.batch([(view.ref, TABLE, "GetAccessibleAt", "(ii)", place) for place in at])
        refs = [tuple(answer[0]) if answer and answer[0][1] != NULL else None for answer in found]
        requests = [(prop(ref, "Name"), (ref, ACC, "GetState", None, ())) for ref in refs if ref]
        answers = iter(self.batch([request for pair in requests for request in pair]))
        texts = []
        for ref in refs:
            if ref is None:
                texts.append(("", set()))
                continue
            name, states = next(answers), next(answers)
            text, states = name[0] if name else "", state_names(states[0]) if states else set()
            texts.append((("[x] " + text).rstrip() if "checked" in states else text, states))
        return texts

    def tree_rows(self, view):
        """The visible rows of a tree: dicts with row, level, name, expandable, expanded, selected, node.
        Qt 5 does not tell the level; it is taken from the indentation."""
        view = self.view(view)
        found, indents = [], []
        for number, node in enumerate(self.cells(view, [(r, 0) for r in range(self.size(view)[0])])):
            if node is None:
                continue
            while indents and indents[-1] >= node.rect[0]:
                indents.pop()
            found.append({**_row(number, node), "level": len(indents)})
            indents.append(node.rect[0])
        return found

    def _first_cell(self, view, row):
        return self.cells(view, [(row, 0)])[0]

    # ---- items of trees and lists

    def _resolve_in(self, target, within, nth, timeout):
        kind, colon, rest = target.partition(":")
        name, bracket, place = rest[:-1].partition("[")
        if colon and bracket and rest.endswith("]"):
            if kind == "item":
                return self.item(name, place, within=within)
            row, comma, column = place.rpartition(",")
            if kind == "cell" and comma:
                return self.cell(name, row.strip(), column.strip(), within=within)
        return super()._resolve_in(target, within, nth, timeout)

    def _walk_path(self, view, names):
        """The row of the path's deepest part that is there, how many parts are, all rows, and which of them
        stand below it."""
        rows = self.tree_rows(view)
        low, high, hit = 0, len(rows), None
        for depth, name in enumerate(names):
            at = (i for i in range(low, high) if rows[i]["level"] == depth and matches(name, rows[i]["name"]))
            next_hit = next(at, None)
            if next_hit is None:
                return hit, depth, rows, (low, high)
            hit, low = rows[next_hit], next_hit + 1
            high = next((i for i in range(low, len(rows)) if rows[i]["level"] <= depth), len(rows))
        return hit, len(names), rows, (low, high)

    def item(self, view, path, within=None):
        """The item of a tree (or list) at a path, scrolled into sight; expands what is closed and waits for
        children that come late."""
        view, names = self.view(view, within), split_path(path)
        end = time.time() + self.timeout
        while True:
            hit, depth, rows, (low, high) = self._walk_path(view, names)
            if depth == len(names):
                return self._scroll_to(view, lambda: self._first_cell(view, hit["row"]))
            if hit is not None and hit["expandable"] and not hit["expanded"]:
                self._toggle(view, hit["row"])
                end = time.time() + self.timeout
            elif time.time() > end:
                there = [row["name"] for row in rows[low:high] if row["level"] == depth][:30]
                above = ">".join(names[:depth]) or view.name
                raise UiError(f"no {names[depth]!r} below {above!r}; there are: {', '.join(there)}")
            else:
                time.sleep(0.1)

    def expand(self, view, path, wait=True):
        """Expands an item and waits until its children are there and their number rests."""
        view, names = self.view(view), split_path(path)
        self.item(view, path)
        hit = self._walk_path(view, names)[0]
        if not hit["expandable"]:
            raise UiError(f"{path!r} has no children")
        if not hit["expanded"]:
            self._open(view, hit["row"], wait)
        return self._walk_path(view, names)[0]

    def collapse(self, view, path):
        view, names = self.view(view), split_path(path)
        hit, depth, _, _ = self._walk_path(view, names)
        if depth < len(names):
            raise UiError(f"{path!r} is not visible in {view.name!r}")
        self._toggle(view, hit["row"], False)

    def expand_all(self, view, limit=500):
        """Expands what is closed, top down, until nothing is or `limit` rows are visible."""
        view = self.view(view)
        rows, i = self.tree_rows(view), 0
        while i < len(rows) and len(rows) < limit:
            if rows[i]["expandable"] and not rows[i]["expanded"]:
                first = i + 1
                added = range(first, first + self._open(view, i))
                nodes = self.cells(view, [(row, 0) for row in added])
                rows[first:first] = [_row(row, node) for row, node in zip(added, nodes) if node]
            i += 1

    def _toggle(self, view, row, open_it=True):
        """Clicks the branch indicator left of the item; the arrow key when that is out of sight."""

        def is_done():
            return ("expanded" in self._first_cell(view, row).states) == open_it

        if is_done():
            return
        item = self._scroll_to(view, lambda: self._first_cell(view, row))
        x, y = item.rect[0] - 10, item.clip[1] + item.clip[3] // 2
        if x > view.clip[0]:
            self._front(view)
            self.x("mousemove", x, y, "click", 1)
            self.sync()
            try:
                self.until(is_done, "", 0.5)
                return
            except UiError:
                pass
        self.click(item)
        self.key("Right" if open_it else "Left")
        self.until(is_done, f"{item} did not {'expand' if open_it else 'collapse'}")

    def _open(self, view, row, wait=True):
        """Expands a row; returns how many rows that added once their number rests (0: it was empty)."""
        before, end = self.size(view)[0], time.time() + self.timeout
        self._toggle(view, row)
        last, since = before, time.time()
        while wait and time.time() < end:
            now = self.size(view)[0]
            if now != last:
                last, since = now, time.time()
            if time.time() - since > 0.12 and (now > before or self._is_leaf(view, row)):
                break
            time.sleep(0.03)
        return last - before

    def _is_leaf(self, view, row):
        return "expandable" not in self._first_cell(view, row).states

    # ---- cells of tables

    def cell(self, view, row, col=0, within=None, scroll=True):
        """A cell of a table; row: number from 0, or the text of a cell in the row; col: number or header."""
        view = self.view(view, within)

        def look():
            height, width = self.size(view)
            column = self._column_number(view, col, width)
            number = self._row_number(view, row, height, width)
            return (number, column) if number is not None and 0 <= number < height else None

        place = self.until(look, f"no row {row!r} in {view.name!r}")
        if not scroll:
            return self.cells(view, [place])[0]
        return self._scroll_to(view, lambda: self.cells(view, [place])[0])

    def _column_number(self, view, col, width):
        if str(col).isdigit():
            heads, number = [], int(col)
        else:
            heads = self.columns(view)
            number = next((i for i, head in enumerate(heads) if matches(col, head)), None)
        if number is None or number >= width:
            raise UiError(f"no column {col!r}; there are: {', '.join(heads)}")
        return number

    def _row_number(self, view, row, height, width):
        if _is_number(row):
            return int(row) + (height if int(row) < 0 else 0)
        for column in range(width):
            for number, text in enumerate(self._column_texts(view, column, height)):
                if text and matches(str(row), text):
                    return number
        return None

    def _column_texts(self, view, column, height):
        cells = self.batch([(view.ref, TABLE, "GetAccessibleAt", "(ii)", (r, column)) for r in range(height)])
        refs = [tuple(cell[0]) if cell else (view.bus, NULL) for cell in cells]
        return [name[0] if name else "" for name in self.batch([prop(ref, "Name") for ref in refs])]

    def edit(self, view, row, col, text):
        """Types a new value into a cell through its editor."""
        self.dclick(self.cell(view, row, col))
        time.sleep(0.1)
        self.key("ctrl+a")
        self.type(text)
        self.key("Return")

    # ---- combo boxes

    def combo(self, target, value):
        """Chooses an entry of a combo box by mouse. target: its label's text, its current text or
        'tip:TOOLTIP'."""
        is_target = isinstance(target, Node) or target.startswith(("combo:", "@")) or ">>" in target
        box = self.resolve(target) if is_target else self.find("combo", target)
        before = box.name
        # click the arrow at the right end: an editable combo box opens nowhere else
        self.click(box, at=(str(box.clip[2] - 8), "50%"))
        view = self.until(lambda: self._list_of(box), f"the list of {box} did not open")
        items = self.cells(view, [(row, 0) for row in range(self.size(view)[0])])
        row = next((row for row, item in enumerate(items) if item and matches(value, item.name)), None)
        if row is None:
            self.key("Escape")
            there = ", ".join(item.name for item in items if item)
            raise UiError(f"no entry {value!r} in the combo box; there are: {there}")
        wanted = self.click(self._scroll_to(view, lambda: self._first_cell(view, row)))
        if before != wanted.name:
            self.until(lambda: self.refresh(box).name == wanted.name, f"the combo box shows {box.name!r}")
        return box

    def _list_of(self, box):
        box.kids = []
        return next((kid for kid in self.children([box]) if kid.role in VIEWS and kid.rect[2] > 0), None)

    # ---- scrolling

    def _scroll_to(self, view, read):
        """Turns the wheel over the view until the item that `read` returns can be seen; returns it."""
        view.body = stuck_at = None
        for _ in range(40):
            item = read()
            if item is None:
                raise UiError(f"the item left {view.name!r}")
            above, below, covered = _distances(view, item)
            if above <= 0 and (below <= 0 or below <= covered and stuck_at == item.rect[1]):
                if not _is_aside(item):
                    return item
                self._wheel_sideways(view, item)
                now = read()
                if now.rect != item.rect:
                    continue
                item = now
                break
            stuck_at = item.rect[1]
            self._wheel(view, item, above, below)
            now = read()
            stays = now and now.rect[1] == stuck_at
            if stays and now.clip[3] > now.rect[3] // 2 and now.clip[2] >= min(now.rect[2], ENOUGH_WIDTH):
                return now  # the end of the range: what shows is enough
        if item.shown:
            return item
        raise UiError(f"{item} could not be scrolled into sight")

    def _wheel(self, view, item, above, below):
        button = WHEEL_UP if above > 0 else WHEEL_DOWN
        distance, page = above if above > 0 else below, max(1, view.body[3])
        each = 3 * max(1, item.rect[3])
        fast = distance > 4 * page  # with Ctrl the wheel moves by pages
        turns = distance // page - 1 if fast else distance // each + (0 if distance > each else 1)
        turns = max(1, min(2000, turns))
        x, y = view.clip[0] + view.clip[2] // 2, view.body[1] + page // 2
        click = ("click", "--repeat", turns, "--delay", 2, button)
        self._front(view)
        self.x("mousemove", x, y, *(["keydown", "ctrl", *click, "keyup", "ctrl"] if fast else click))
        self.sync()

    def _wheel_sideways(self, view, item):
        x, y = view.body[0] + view.body[2] // 2, view.body[1] + view.body[3] // 2
        self._front(view)
        self.x("mousemove", x, y, "click", WHEEL_LEFT if item.rect[0] < view.body[0] else WHEEL_RIGHT)
        self.sync()


def _distances(view, item):
    """How far the item reaches above and below what the view shows, and how much a scroll bar may cover."""
    low, high = view.body[1], view.body[1] + view.body[3]
    covered = SCROLL_BAR if view.clip[3] > 60 else 0
    return low - item.rect[1], item.rect[1] + max(1, item.rect[3]) - (high - covered), covered


def _is_aside(item):
    return item.rect[2] and item.clip[2] < min(item.rect[2], ENOUGH_WIDTH)
