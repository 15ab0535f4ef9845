#!/usr/bin/env python3
"""Classes and functions that the documents name are there: `Class::function`, `functionName`, `ClassName`."""
import re
import sys
from pathlib import Path

from check_sources import ROOT, project_files, report, without_comments

MEMBER = re.compile(r"([A-Za-z_]\w*)::(~?[A-Za-z_]\w*)$")
# words of one hump may be anything: a command, a label; names with underscores are often put together
NAME = re.compile(r"(?:(?:OpcUa|TAVELIN|tavelin|test|fuzz)_\w+|[A-Za-z][a-z0-9]+[A-Z]\w*)$")
SPAN = re.compile(r"`([^`\n]+)`")
WORD = re.compile(r"\w+")
DEFINES = r"\b(?:class|struct|namespace|enum)\s+(?:\[\[\w+\]\]\s*)?{}\b[^;]*$"


class Sources:
    """What the sources name, generated ones and other languages' among them."""

    def __init__(self, root):
        self.texts = {}
        for path in project_files(
            root, "*.h", "*.cpp", "*.c", "*.cmake", "*CMakeLists.txt", "*.sh", "*.py", "*.mjs"
        ):
            text = (Path(root) / path).read_text(encoding="utf-8", errors="replace")
            self.texts[path] = without_comments(text) if path.suffix in (".h", ".cpp", ".c") else text
        self.words = {word for text in self.texts.values() for word in WORD.findall(text)}

    def has_member(self, scope, name):
        """A file defines the class or namespace and names the member with an argument list."""
        if scope not in self.words or name.lstrip("~") not in self.words:
            return False
        defines, called = re.compile(DEFINES.format(scope), re.M), re.compile(
            rf"{re.escape(name)}\b\s*[(;={{]"
        )
        return any(
            scope in text and defines.search(text) and called.search(text) for text in self.texts.values()
        )

    def has(self, span):
        member = MEMBER.match(span)
        if member:
            return member[1] in ("std", "Qt") or self.has_member(member[1], member[2])
        return not NAME.match(span) or span in self.words


def check(root):
    root, problems = Path(root), []
    sources = Sources(root)
    for path in project_files(root, "docs/*.md", "CONTRIBUTING.md"):
        if path.is_relative_to("docs/decisions"):
            continue  # those say what was
        for number, line in enumerate((root / path).read_text(encoding="utf-8").splitlines(), 1):
            problems += [
                f"{path}:{number}: the sources have no {span}"
                for span in SPAN.findall(line)
                if not sources.has(span)
            ]
    return problems


if __name__ == "__main__":
    sys.exit(report(check(ROOT), "name what is there"))
