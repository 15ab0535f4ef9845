"""The functions of scripts, as (name, first line, lines). Python is parsed; shell and JavaScript go by
indentation, which the formatters see to: a function ends at the first line that is indented like its head and
begins with its closing bracket."""

import ast
import re

_SHELL_HEAD = re.compile(r"(?:function )?([\w:.-]+)\(\) [{(](.*)")
_SHELL_END = re.compile(r"[})]")
_SHELL_WHOLE = re.compile(r" [^#].*[})]( #.*)?$")
_FUNCTION = re.compile(r"(?:export )?(?:default )?(?:async )?function\*? ?([\w$]*)\(")
_METHOD = re.compile(r"(?:static )?(?:async )?(?:[gs]et )?\*?(#?[\w$]+)\(")
_ARROW = re.compile(r"(?:.*?\b([\w$]+)(?: =|:) (?:async )?(?:\([^()]*\)|[\w$]+))?.*=> \{$")
_STATEMENTS = {"if", "for", "while", "switch", "catch", "with", "return", "await"}
_SCRIPT_END = re.compile(r"\}(?!.*\{$)")


def python_functions(source):
    for node in ast.walk(ast.parse(source)):
        if isinstance(node, (ast.FunctionDef, ast.AsyncFunctionDef)):
            yield node.name, node.lineno, node.end_lineno + 1 - node.lineno


def _indent(line):
    return len(line) - len(line.lstrip())


def _lines_to(end, lines, first):
    """How many lines there are from `first` to the next one that is indented alike and fits `end`."""
    indent = _indent(lines[first])
    for number in range(first + 1, len(lines)):
        line = lines[number]
        if line.strip() and _indent(line) == indent and end.match(line, indent):
            return number + 1 - first
    return len(lines) - first


def shell_functions(source):
    lines = source.splitlines()
    for first, line in enumerate(lines):
        head = _SHELL_HEAD.match(line, _indent(line))
        if head:
            whole = _SHELL_WHOLE.match(head[2])
            yield head[1], first + 1, 1 if whole else _lines_to(_SHELL_END, lines, first)


def javascript_functions(source):
    lines = source.splitlines()
    for first in range(len(lines)):
        name = _script_function(lines, first)
        if name is not None:
            yield name, first + 1, _lines_to(_SCRIPT_END, lines, first)


def _script_function(lines, first):
    """The name of the function with more than one line that begins in this line, None when none does."""
    line, indent = lines[first], _indent(lines[first])
    head = _FUNCTION.match(line, indent) or _METHOD.match(line, indent)
    if head and head[1] not in _STATEMENTS and _opens_body(lines, first):
        return head[1]
    arrow = _ARROW.match(line, indent)
    return (arrow[1] or "=>") if arrow else None


def _opens_body(lines, first):
    """Whether the argument list that begins in this line is followed by a body, and is not that of a call."""
    if lines[first].endswith(") {"):
        return True
    if not lines[first].endswith(("(", "({")):
        return False
    closing = first + _lines_to(re.compile(r"[})]"), lines, first) - 1
    return lines[closing].endswith(") {")
