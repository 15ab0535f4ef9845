#!/usr/bin/env python3
"""Sources and scripts stay under 600 lines and functions under 80, and most functions are far shorter.
Generated files are exempt. Functions of C++ are found by their braces: no parser, but the sources are
formatted and macros are few."""
import re
import sys
from pathlib import Path

from check_sources import ROOT, is_generated, project_files, report, without_comments
from script_functions import javascript_functions, python_functions, shell_functions

FILE_LINES, FUNCTION_LINES = 600, 80
_SCOPE = re.compile(r"\b(namespace|class|struct|union|enum|extern)\b")
_LAMBDA = re.compile(r"=\s*\[[^\]]*\]")
_ASSIGNMENT = re.compile(r"(?<![=!<>+\-*/%&|^])=(?!=)")
_CALLABLE = re.compile(r"\)\s*(const|noexcept|override|final|->[^;{}]*)*\s*$")
_LABELS = re.compile(
    r"\s*((public|private|protected|slots|signals|Q_OBJECT|Q_GADGET|Q_SLOTS|Q_SIGNALS)\b[\s:]*)*"
)


def matching_brace(text, opening):
    depth = 0
    for match in re.compile(r"[{}]").finditer(text, opening):
        depth += 1 if match[0] == "{" else -1
        if depth == 0:
            return match.start()
    return len(text) - 1


def without_templates(head):
    before = None
    while before != head:
        before, head = head, re.sub(r"<[^<>()]*>", "", head)
    return head


def is_function(head):
    """Whether the text before an opening brace, at the level of a namespace or a class, begins a body."""
    if _LAMBDA.search(head):
        return True
    before_arguments = without_templates(head).split("(", 1)[0]
    return "(" in head and not _ASSIGNMENT.search(before_arguments.split("operator")[0])


def is_scope(head):
    return bool(_SCOPE.search(without_templates(head).split("(", 1)[0])) and not _CALLABLE.search(head)


def functions(source):
    """(name, first line, lines) of every function with a body."""
    text = re.sub(
        r"^[ \t]*#(?:\\\n|[^\n])*",
        lambda m: re.sub(r"[^\n]", " ", m[0]),
        without_comments(source),
        flags=re.M,
    )
    position = start = 0
    while True:
        match = re.compile(r"[;{}]").search(text, position)
        if not match:
            return
        position = match.end()
        if match[0] != "{":
            start = position
            continue
        head = text[start : match.start()]
        if is_scope(head):
            start = position
            continue
        closing = matching_brace(text, match.start())
        position = closing + 1
        following = text[position:].lstrip()[:1]
        if is_function(head) and following in (",", "{"):
            continue  # a member initialised with braces, before the body
        if is_function(head):
            first = text.count("\n", 0, start + _LABELS.match(head).end()) + 1
            name = re.search(r"([~\w:]+|operator\s*\S+)\s*\(", head)
            yield (name[1] if name else "?"), first, text.count("\n", 0, closing) + 2 - first
        if following != ";" or is_function(head):
            start = position


LANGUAGES = (
    ("C++", functions, ("*.cpp", "*.h", "*.c")),
    ("Python", python_functions, ("*.py",)),
    ("JavaScript", javascript_functions, ("*.mjs",)),
    ("shell", shell_functions, ("*.sh",)),
)


def check_language(root, find_functions, patterns):
    """The problems, and the lengths of all functions."""
    problems, lengths = [], []
    for path in project_files(root, *patterns):
        if is_generated(path):
            continue
        source = (Path(root) / path).read_text(encoding="utf-8")
        if source.count("\n") > FILE_LINES:
            problems.append(f"{path}: {source.count(chr(10))} lines; the limit is {FILE_LINES}")
        for name, first, lines in find_functions(source):
            lengths.append(lines)
            if lines > FUNCTION_LINES:
                problems.append(f"{path}:{first}: {name} has {lines} lines; the limit is {FUNCTION_LINES}")
    return problems, sorted(lengths)


def check(root):
    """The problems, and by language the lengths of all functions."""
    problems, lengths = [], {}
    for language, find_functions, patterns in LANGUAGES:
        found, lengths[language] = check_language(root, find_functions, patterns)
        problems += found
    return problems, lengths


def distribution(lengths):
    if not lengths:
        return "no functions"
    over60 = 100 * sum(n > 60 for n in lengths) / len(lengths)
    return (
        f"{len(lengths)} functions: median {lengths[len(lengths) // 2]} lines, nine in ten within "
        f"{lengths[len(lengths) * 9 // 10]}, {over60:.1f} % over 60, longest {lengths[-1]}"
    )


if __name__ == "__main__":
    found, all_lengths = check(ROOT)
    for language, lengths in all_lengths.items():
        print(f"{language}: {distribution(lengths)}", file=sys.stderr)
    sys.exit(report(found, "split by responsibility, not by length"))
