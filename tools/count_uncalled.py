#!/usr/bin/env python3
"""Counts functions that nothing in the program calls, by name; with --names they are listed.

A look, not a check: a name that any class calls counts as called, and what only tests or plugin authors call
is listed too. Overrides, operators, destructors and the C interface are left out.
"""
import argparse
import re
from collections import Counter
from pathlib import Path

from check_sizes import functions
from check_sources import ROOT, is_generated, project_files, without_comments

FOLDERS = (
    "stack",
    "uabase",
    "uaclientsdk",
    "app",
    "uawidgets",
    "monitoring",
    "recording",
    "watching",
    "certificates",
    "servers",
    "plugins",
)
WORD = re.compile(r"\b[A-Za-z_]\w*\b")
VIRTUAL = re.compile(r"\b(?:virtual\b[^;{}()]*?\b(\w+)\(|(\w+)\([^;{}]*\)[^;{}]*\boverride\b)")


def heads_and_bodies(text):
    """(name, lines of the head, lines of the body) of every function, numbered from 0."""
    lines = text.split("\n")
    for name, first, length in functions(text):
        brace = next(i for i in range(first - 1, first - 1 + length) if "{" in lines[i])
        yield name.split("::")[-1], range(first - 1, brace + (length > 1)), range(brace, first - 1 + length)


def look_at(text, is_header, defined, called, virtual):
    code = without_comments(text)
    lines, heads, bodies = code.split("\n"), set(), set()
    for name, head, body in heads_and_bodies(code):
        defined.add(name)
        heads.update(head)
        bodies.update(body)
    virtual.update(name for pair in VIRTUAL.findall(code) for name in pair if name)
    for number, line in enumerate(lines):
        if number in bodies - heads or not is_header and number not in heads:
            called.update(WORD.findall(line))
        elif number in heads and "{" in line:  # a body on the line of its head, and what initialises members
            called.update(WORD.findall(re.split(r"[:{]", line.split(")", 1)[-1], maxsplit=1)[-1]))


def uncalled(root):
    defined, called, virtual = set(), Counter(), set()
    for path in project_files(
        root, *(f"{folder}/*{end}" for folder in FOLDERS for end in (".h", ".cpp", ".c"))
    ):
        text = (Path(root) / path).read_text(encoding="utf-8")
        if is_generated(path):
            called.update(WORD.findall(text))
        else:
            look_at(text, path.suffix == ".h", defined, called, virtual)
    constructors = {name for name in defined if name[:1].isupper()}
    return sorted(
        name
        for name in defined - set(called) - virtual - constructors
        if re.fullmatch(r"[a-z]\w+", name) and name != "main" and not name.startswith("operator")
    )


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    arguments.add_argument("--root", type=Path, default=ROOT, help="another checkout to look at")
    arguments.add_argument("--names", action="store_true", help="list them")
    options = arguments.parse_args()
    found = uncalled(options.root.resolve())
    if options.names:
        print("\n".join(found))
    print(len(found), "functions that nothing in the program calls")


if __name__ == "__main__":
    main()
