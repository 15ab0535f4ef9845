#!/usr/bin/env python3
"""Rooms inside a part include one another in one direction, by the table of cmake/rooms.txt.

With --count: the include lines between rooms, those against the table, and the pairs of rooms that need each
other; --root looks at another checkout with this one's table.
"""
import argparse
import re
import sys
from collections import Counter
from pathlib import Path

from check_layers import INCLUDE, PUBLIC, resolve, within
from check_sources import ROOT, project_files, report, without_comments

TABLE = "cmake/rooms.txt"
ARROWS = re.compile(r"(\S+) ->((?: \S+)*)$")
EXCEPTION = re.compile(r"except (\S+) -> (\S+): (\S.*)$")


class Rooms:
    """The table: room -> rooms, exceptions (from, to) -> reason."""

    def __init__(self, text):
        self.allow, self.exceptions = {}, {}
        for line in text.splitlines():
            line = line.split("#", 1)[0].rstrip()
            if match := EXCEPTION.match(line):
                self.exceptions[match[1], match[2]] = match[3]
            elif (match := ARROWS.match(line)) and match[1] not in self.allow:
                self.allow[match[1]] = match[2].split()
            elif line:
                raise SystemExit(f"{TABLE}: neither a new room nor an exception: {line}")
        self.parts = sorted({room.split("/")[0] for room in self.allow})

    def room_of(self, path):
        """The longest folder of the table that the file is in; None for files outside the rooms."""
        for folder in path.parents:
            if str(folder) in self.allow:
                return str(folder)
        return None

    def exception_for(self, path, target):
        """The exception that an arrow needs, as its key, or None."""
        for key in ((str(path), str(target)), (self.room_of(path), self.room_of(target))):
            if key in self.exceptions:
                return key
        return None

    def table_faults(self):
        for room, below in self.allow.items():
            yield from (
                f"{TABLE}: {room} -> {other}: there is no such room"
                for other in below
                if other not in self.allow
            )
            if room in self.reached(room):
                yield f"{TABLE}: {room} can be reached from itself"

    def reached(self, room):
        seen, todo = set(), list(self.allow.get(room, ()))
        while todo:
            one = todo.pop()
            if one not in seen:
                seen.add(one)
                todo += self.allow.get(one, ())
        return seen


def arrows(root, rooms):
    """(file, line, included file) for every include line from one room to another of the same part."""
    for path in project_files(
        root, *(f"{part}/*{end}" for part in rooms.parts for end in (".h", ".cpp", ".c"))
    ):
        room = rooms.room_of(path)
        if room is None or within(path, PUBLIC) or is_above(path, room):
            continue
        text = without_comments((root / path).read_text(encoding="utf-8"), keep_strings=True)
        for match in INCLUDE.finditer(text):
            target = resolve(root, path, match[2] or match[3], match[3] is not None)
            if target is None or within(target, PUBLIC) or target.parts[0] != path.parts[0]:
                continue
            if rooms.room_of(target) not in (room, None):
                yield path, text.count("\n", 0, match.start(1)) + 1, target


def is_above(path, room):
    """A source beside its part's public headers puts the rooms together."""
    return "/" not in room and path.suffix != ".h"


def homeless(root, rooms):
    """Files of a part with rooms that are in none, other than parts of their own and generated headers."""
    own = {
        Path("app/api"),
        Path("app/ini"),
        Path("uabase/uapkicpp"),
        Path("app/main.cpp"),
        *map(Path, PUBLIC),
    }
    for path in project_files(
        root, *(f"{part}/*{end}" for part in rooms.parts for end in (".h", ".cpp", ".c"))
    ):
        if rooms.room_of(path) is None and not within(path, own):
            yield f"{path}: belongs to no room; add its folder to {TABLE}"


def check(root):
    root = Path(root).resolve()
    rooms = Rooms((root / TABLE).read_text(encoding="utf-8"))
    problems, needed = [*rooms.table_faults(), *homeless(root, rooms)], set()
    for path, line, target in arrows(root, rooms):
        room, other = rooms.room_of(path), rooms.room_of(target)
        if other in rooms.allow[room]:
            continue
        exception = rooms.exception_for(path, target)
        needed.add(exception)
        if exception is None:
            problems.append(f"{path}:{line}: {room} must not include {target} ({other})")
    stale = sorted(set(rooms.exceptions) - needed)
    return problems + [f"{TABLE}: nothing needs the exception {key[0]} -> {key[1]} any more" for key in stale]


def counts(root, rooms):
    """Include lines between rooms; those against the table; pairs of rooms that reach each other."""
    found = Counter((rooms.room_of(path), rooms.room_of(target)) for path, _, target in arrows(root, rooms))
    upward = {
        (room, other): lines for (room, other), lines in found.items() if other not in rooms.allow[room]
    }
    edges = Rooms("")
    for room, other in found:
        edges.allow.setdefault(room, []).append(other)
    circles = sorted(
        (room, other)
        for room in edges.allow
        for other in edges.reached(room)
        if room < other and room in edges.reached(other)
    )
    return sum(found.values()), upward, circles


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    arguments.add_argument("--count", action="store_true", help="print figures instead of faults")
    arguments.add_argument("--root", type=Path, default=ROOT, help="another checkout to look at")
    options = arguments.parse_args()
    if not options.count:
        return report(check(options.root), f"rooms: {TABLE}")
    lines, upward, circles = counts(options.root.resolve(), Rooms((ROOT / TABLE).read_text(encoding="utf-8")))
    print(
        f"{lines:6} include lines between rooms of a part\n{sum(upward.values()):6} of them against the table"
    )
    for (room, other), number in sorted(upward.items()):
        print(f"{number:10} {room} -> {other}")
    print(f"{len(circles):6} pairs of rooms that need each other")
    for room, other in circles:
        print(f"{'':10} {room} <-> {other}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
