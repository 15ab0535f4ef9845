#!/usr/bin/env python3
"""One dialect: what clang-format leaves open is written one way everywhere.

Headings are "// ---- name"; templates say typename; constants are camelCase; test names are sentences in
PascalCase; contracts stand in headers behind three slashes and code's comments behind two; a few words have
one spelling; a function that needs a lock asserts it. With --count the faults of every rule are counted, of
another checkout with --root.
"""
import argparse
import re
import sys
from collections import Counter
from pathlib import Path

from check_sizes import functions
from check_sources import ROOT, comments, is_generated, project_files, report, without_comments

SOURCES = (".cpp", ".h", ".c")
HEADING = re.compile(r"// ---- [^\s-](.*[^-\s])?$")
RULE = re.compile(r"//\s*([-=*#~+_])\1{3,}\s*$")
TAIL = re.compile(r"//.*[^-=*#~+_].*?\s([-=*#~+_])\1{3,}$")
OTHER_HEADING = re.compile(r"//+\s*([-=*#~+_])\1+(\s|$)")
PARAMETER = re.compile(r"/\*\w+=?\*/$")

TEMPLATE_CLASS = re.compile(r"\btemplate\s*<(?:[^<>(){};]|<[^<>]*>)*?(?<!\w)class\b")
CONSTANT = re.compile(
    r"^[ \t]*(?:(?:static|inline|thread_local|extern)\s+)*(?:constexpr|const)\s+"
    r"(?:(?:static|inline|constexpr|const|unsigned|signed|long|explicit)\s+)*"
    r"(?!explicit\b)[A-Za-z_][\w:]*(?:<[^;{}=()]*>)?(?:\s*[*&]+\s*(?:const\s+)?|\s+(?:const\s+)?)"
    r"(\w+)\s*(?:\[[^\]]*\]\s*)*(?:=(?!=)|[{(])",
    re.M,
)
CAMEL = re.compile(r"([mt]_)?(?!k[A-Z])[a-z][A-Za-z0-9]*$")
# Names of the public interfaces are kept as their callers know them.
C_NAMES = re.compile(r"OpcUa_|opcua_|qt_")
C_FOLDERS = ("stack/include",)
KNOWN_NAMES = {
    "app/api/qlumapplicationinterface.h": set("Error Warning Info Function Data Paranoid All".split())
}

TEST = re.compile(r"^[ \t]*(?:TYPED_)?TEST(?:_F|_P)?\(\s*\w+\s*,\s*(\w+)\s*\)", re.M)
SENTENCE = re.compile(r"(DISABLED_)?[A-Z][A-Za-z0-9]*[a-z][A-Za-z0-9]*$")

# Spelling; put together from pieces, so that this file passes its own check.
WORDS = (
    (
        "can" + "not",
        re.compile(r"\b[Cc]an" + r"(?:[ \t]+|[ \t]*\n[ \t]*(?://+|#|\*)?[ \t]*)not\b(?!\s+only)"),
    ),
    ("Can" + "not", re.compile(r"[Cc]an" + r"Not(?![a-z])")),
    ("call" + "back", re.compile(r"\bcall" + r"-backs?\b", re.I)),
)
# Lines of trace and log that users' tools look for.
KNOWN_TEXTS = re.compile(r"connection error - can" + r" not call|[^\n]{19}can" + r" not be displayed")
TEXTS = (*SOURCES, ".md", ".py", ".sh", ".cmake", ".txt", ".html", ".mjs", ".in", "")


def line_of(text, position):
    return text.count("\n", 0, position) + 1


def heading_faults(found):
    for number, comment, alone in found:
        if not comment.startswith("//") or HEADING.match(comment):
            continue
        if RULE.match(comment):
            yield number, "heading", "a line of dashes says nothing; a heading is one line: // ---- name"
        elif OTHER_HEADING.match(comment) or alone and TAIL.match(comment):
            yield number, "heading", f"headings are // ---- name: {comment}"


def slash_faults(path, found):
    for number, comment, _ in found:
        if path.suffix == ".cpp" and re.match(r"///(?!/)", comment):
            yield number, "slashes", "contracts stand in headers; in a source two slashes do"
        if comment.startswith("/*") and path.suffix != ".c" and not PARAMETER.match(comment):
            yield number, "slashes", "comments begin with two slashes"


def contract_faults(path, text, found):
    """Comments of two slashes above a declaration of a header, outside functions."""
    if path.suffix != ".h":
        return
    lines, code = text.split("\n"), without_comments(text).split("\n")
    inside = {number for _, first, length in functions(text) for number in range(first + 1, first + length)}
    own = {number for number, comment, alone in found if alone and comment.startswith("//")}
    for number, comment, alone in found:
        plain = alone and comment.startswith("//") and not comment.startswith("///")
        if (
            not plain
            or HEADING.match(comment)
            or number in inside
            or number + 1 in own
            or number == len(lines)
        ):
            continue
        below = code[number]
        if declares(below) and indent(below) == indent(lines[number - 1]):
            yield number, "contract", "the contract of a declaration begins with three slashes"


def declares(line):
    """Whether a declaration begins there; not with a row of a macro's table, whose comments head groups."""
    other = r"\s*(#|namespace\b|using namespace\b|[}\])]|public:|private:|protected:|[A-Z][A-Z0-9_]+\()"
    return bool(line.strip()) and not re.match(other, line)


def indent(line):
    return len(line) - len(line.lstrip())


def name_faults(path, code):
    for match in TEMPLATE_CLASS.finditer(code):
        yield line_of(code, match.end()), "typename", "template parameters say typename"
    if path.suffix != ".c" and not any(path.is_relative_to(folder) for folder in C_FOLDERS):
        known = KNOWN_NAMES.get(str(path), ())
        for match in CONSTANT.finditer(code):
            name = match[1]
            if not (CAMEL.match(name) or C_NAMES.match(name) or name in known):
                yield line_of(
                    code, match.start(1)
                ), "constant", f"constants are camelCase without prefix: {name}"
    for match in TEST.finditer(code):
        if not SENTENCE.match(match[1]):
            yield line_of(
                code, match.start(1)
            ), "test name", f"a test's name is a sentence in PascalCase: {match[1]}"


def word_faults(text):
    for right, pattern in WORDS:
        for match in pattern.finditer(text):
            if not KNOWN_TEXTS.match(text, max(0, match.start() - len("connection error - "))):
                yield line_of(text, match.start()), "word", f'"{right}" is one word'


def lock_faults(text):
    """Functions that need a lock, end in Locked, and neither assert it nor are handed it."""
    lines = without_comments(text).split("\n")
    for name, first, length in functions(text):
        if name.endswith("Locked") and not name.endswith("ssertLocked"):
            body = "\n".join(lines[first - 1 : first - 1 + length])
            forwards = length == 1 and body.count("Locked(") > 1
            if not forwards and not re.search(r"\bassertLocked\(|\b\w*(Lock|Guard)&", body):
                yield first, "lock", f"{name} begins with assertLocked, or is handed the lock"


def faults(path, text):
    """(line, rule, text) of everything in a file that is not written the one way."""
    found = list(word_faults(text))
    if path.suffix in SOURCES:
        all_comments = list(comments(text))
        found += heading_faults(all_comments)
        found += slash_faults(path, all_comments)
        found += contract_faults(path, text, all_comments)
        found += name_faults(path, without_comments(text))
        found += lock_faults(text)
    return sorted(found)


def check(root):
    """(path, line, rule, text) of every fault of the project."""
    for path in project_files(root):
        if path.suffix not in TEXTS or is_generated(path) or path.is_relative_to("tests/data"):
            continue
        data = (Path(root) / path).read_bytes()
        if b"\0" not in data:
            for line, rule, fault in faults(path, data.decode("utf-8", "replace")):
                yield path, line, rule, fault


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    arguments.add_argument("--count", action="store_true", help="print how many faults each rule finds")
    arguments.add_argument("--root", type=Path, default=ROOT, help="another checkout to look at")
    options = arguments.parse_args()
    found = list(check(options.root.resolve()))
    if options.count:
        counts = Counter(rule for _, _, rule, _ in found)
        for rule in ("heading", "typename", "constant", "test name", "slashes", "contract", "word", "lock"):
            print(f"{counts[rule]:6} {rule}")
        return 0
    return report(
        [f"{path}:{line}: {fault}" for path, line, _, fault in found], "CONTRIBUTING.md has the dialect"
    )


if __name__ == "__main__":
    sys.exit(main())
