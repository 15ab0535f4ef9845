#!/usr/bin/env python3
"""The documents point at what is there: paths and classes in backticks of docs/map.md, links everywhere."""
import re
import sys
from pathlib import Path

from check_sources import ROOT, project_files, report

CLASS = re.compile(r"(Qlum|Ua)[A-Z]\w+")
LINK = re.compile(r"\]\(([^)#\s]+)[^)]*\)")


def places(root, files, span):
    """Whether what a row of the map names is there: a class by its header, a path, a file of any folder."""
    if "<" in span or " " in span:
        return True
    if CLASS.fullmatch(span):
        header = re.sub("private$", "_p", span.lower()) + ".h"
        return any(file.name == header for file in files)
    if "/" in span:
        return (root / span).exists()
    if "." in span:
        return any(file.name == span for file in files)
    return True


def check(root):
    root = Path(root)
    files = project_files(root)
    problems = []
    for path in files:
        if path.suffix != ".md":
            continue
        for number, line in enumerate((root / path).read_text(encoding="utf-8").splitlines(), 1):
            links = [target for target in LINK.findall(line) if "://" not in target]
            spans = (
                re.findall(r"`([^`]+)`", line) if path == Path("docs/map.md") and line.startswith("|") else []
            )
            problems += [
                f"{path}:{number}: there is no {target}"
                for target in links
                if not (root / path.parent / target).exists()
            ]
            problems += [
                f"{path}:{number}: there is no {span}" for span in spans if not places(root, files, span)
            ]
    return problems


if __name__ == "__main__":
    sys.exit(report(check(ROOT), "mend the document or name what is there"))
