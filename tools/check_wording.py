#!/usr/bin/env python3
"""What the project's files must not say: references to papers that its readers do not have, paths of one
machine, marks of unfinished work. With a range of commits (check_wording.py main..HEAD) their messages are
read too.

The words are put together from pieces, so that this file passes its own check.
"""
import re
import subprocess
import sys
from pathlib import Path

from check_sources import ROOT, is_generated, project_files, report


def join(*pieces):
    return "".join(pieces)


_PAPER = join("sp", "ec")
REFERENCE = re.compile(
    "|".join(
        (
            rf"the {_PAPER}(ification)?\b",
            rf"\b{_PAPER}\.md",
            rf"\b{join('Pa', 'rt')} \d{{1,2}}\.\d\b",
            rf"{join('sha', 'red')}/(design|style|{_PAPER})",
            rf"\bdesign\.{join('m', 'd')}\b",
        )
    ),
    re.I,
)
PUBLISHED = re.compile(r"OPC ?10000|standard|\brfc", re.I)
MACHINE = re.compile(
    "|".join(
        rf"(?<![\w.]){re.escape(path)}"
        for path in (join("/wo", "rk/"), join("/fa", "rm/"), join("/tmp", "/peer"))
    )
)
UNFINISHED = re.compile(
    rf"\b({join('TO', 'DO')}|{join('FIX', 'ME')}|{join('XX', 'X')}|{join('HA', 'CK')})\b"
    rf"|\b{join('not imple', 'mented')}\b"
)
CODE = {".cpp", ".h", ".c", ".py", ".mjs", ".js", ".cmake", ".sh"}
FOREIGN = {"package-lock.json"}


def line_faults(text, is_code):
    for number, line in enumerate(text.splitlines(), 1):
        if REFERENCE.search(line) and not PUBLISHED.search(line):
            yield number, "refers to a paper; say it as this system's own developer would", line
        if MACHINE.search(line):
            yield number, "holds a path of one machine", line
        if is_code and UNFINISHED.search(line):
            yield number, "marks unfinished work", line


def check(root):
    problems = []
    for path in project_files(root):
        if path.name in FOREIGN or path.suffix == ".lock":
            continue
        data = (Path(root) / path).read_bytes()
        if b"\0" in data:
            continue
        is_code = path.suffix in CODE and not is_generated(path)
        problems += [
            f"{path}:{number}: {fault}: {line.strip()[:120]}"
            for number, fault, line in line_faults(data.decode("utf-8", "replace"), is_code)
        ]
    return problems


def check_messages(root, commits):
    log = subprocess.run(
        ["git", "log", "--format=%h %s%n%b", commits], cwd=root, capture_output=True, check=True, text=True
    ).stdout
    return [
        f"message of a commit in {commits}: {fault}: {line.strip()[:120]}"
        for _, fault, line in line_faults(log, False)
    ]


if __name__ == "__main__":
    found = check(ROOT)
    for commit_range in sys.argv[1:]:
        found += check_messages(ROOT, commit_range)
    sys.exit(report(found, "reword"))
