#!/usr/bin/env python3
"""Includes follow the layers: the arrows of cmake/TavelinParts.cmake hold for #include lines as well, and the
libraries from outside are used only where the house allows them.

Tests, fuzz targets and benchmarks may look into any part.
"""
import re
import sys
from pathlib import Path

from check_sources import ROOT, project_files, report, without_comments

# Folder -> part; the longest folder that fits counts. Plugins are parts by their folder's name.
PARTS = {
    "stack/core": "opcuastack_core",
    "stack/encoding": "opcuastack_core",
    "stack/generated": "opcuastack_core",
    "stack/security": "opcuastack_core",
    "stack/include": "opcuastack_core",
    "stack/transport": "opcuastack",
    "stack/capi": "opcuastack",
    "stack/capi/values": "opcuastack_values",
    "stack/server": "opcuastack_server",
    "uabase": "uabase",
    "uabase/uapkicpp": "uapkicpp",
    "uaclientsdk": "uaclientsdk",
    "app/api": "appapi",
    "app/ini": "appini",
    "monitoring": "monitoring",
    "recording": "recording",
    "watching": "watching",
    "uawidgets": "uawidgets",
    "certificates": "certificates",
    "servers": "servers",
    "app": "tavelin_app",
}
PUBLIC = ("stack/include", "stack/generated/include")
EVERYTHING_BELOW = ("tavelin_app", "tavelin")

# Headers from outside -> folders that may include them.
OUTSIDE = (
    (
        "Qt",
        re.compile(r"(Q[A-Z]\w*|Qt\w*/.*|q[a-z]\w*\.h)$"),
        ("app", "uawidgets", "certificates", "recording", "servers", "watching", "plugins"),
    ),
    ("Qwt", re.compile(r"(qwt\w*(\.h|/.*)|Qwt\w+)$"), ("uawidgets", "plugins", "app")),
    ("OpenSSL", re.compile(r"openssl/"), ("stack/security", "stack/transport", "uabase/uapkicpp")),
    # <arpa/inet.h> is not among them: it only writes addresses as text
    (
        "sockets",
        re.compile(
            r"(sys/(socket|un|epoll)\.h|netinet/|netdb\.h|net/|ifaddrs\.h"
            r"|(QtNetwork/)?Q(Abstract|Tcp|Udp|Ssl|Local)Socket$)"
        ),
        # the kernel's news of the network travel on a socket, but no word of a server does
        ("stack/transport", "servers/qlumnetworkwatch.cpp"),
    ),
    ("libxml2", re.compile(r"libxml/"), ("uabase",)),
)
ROOMS = (
    "stack",
    "uabase",
    "uaclientsdk",
    "monitoring",
    "recording",
    "watching",
    "app",
    "uawidgets",
    "certificates",
    "servers",
    "plugins",
)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(<([^>\n]+)>|"([^"\n]+)")', re.M)


class Layers:
    """The table of cmake/TavelinParts.cmake."""

    def __init__(self, cmake_text):
        self.layer, self.allow = {}, {}
        text = re.sub(r"#[^\n]*", "", cmake_text)
        for kind, part, value in re.findall(r"\bset\(TAVELIN_(LAYER|ALLOW)_(\w+)\s+([^)]*)\)", text):
            if kind == "LAYER":
                self.layer[part] = int(value)
            else:
                self.allow[part] = value.replace('"', " ").split()
        if not self.layer or not self.allow:
            raise SystemExit("cmake/TavelinParts.cmake: found no table of layers")

    def layer_of(self, part):
        return self.layer["plugin" if part.startswith("plugin_") else part]

    def sees(self, part):
        """The parts below whose headers the part may include: what it may link, and what that links."""
        if part in EVERYTHING_BELOW:
            mine = self.layer_of(part)
            return None, mine
        todo = list(self.allow.get(part, self.allow["plugin"] if part.startswith("plugin_") else []))
        seen = set()
        while todo:
            one = todo.pop()
            if one not in seen:
                seen.add(one)
                todo += self.allow.get(one, [])
        return seen, self.layer_of(part)

    def may_include(self, part, other):
        if part == other:
            return True
        seen, mine = self.sees(part)
        return other in seen if seen is not None else self.layer_of(other) < mine


def part_of(path):
    """The part that a file belongs to, None for files outside the layers."""
    names = path.parts
    if path == Path("app/main.cpp"):
        return "tavelin"
    if names[0] == "plugins" and len(names) > 2:
        return f"plugin_{names[1]}"
    for length in range(len(names) - 1, 0, -1):
        part = PARTS.get("/".join(names[:length]))
        if part:
            return part
    return None


def resolve(root, path, name, quoted):
    """The project's file that an include line names, or None."""
    places = [Path(path).parent] if quoted else []
    for place in places + [Path("."), *map(Path, PUBLIC)]:
        candidate = (root / place / name).resolve()
        if candidate.is_file() and candidate.is_relative_to(root):
            return candidate.relative_to(root)
    return None


def within(path, folders):
    return any(path.is_relative_to(folder) for folder in folders)


def outside_fault(path, name):
    for library, pattern, folders in OUTSIDE:
        if pattern.match(name):
            if library == "Qt" and name.startswith("qwt"):
                continue
            if within(path, folders):
                continue
            return f"<{name}>: {library} only in {', '.join(folders)}"
    return None


def inside_fault(layers, path, target):
    part, other = part_of(path), part_of(target)
    if other is None:
        return f"{target} belongs to no part"
    public = within(target, PUBLIC)
    if target.parts[0] == "stack" and path.parts[0] != "stack" and not public:
        return f"{target} is inside the stack; use its public headers <opcua/...>"
    if public:
        # the public headers hold the wire types too, so the whole stack includes them
        if path.parts[0] != "stack" and not layers.may_include(part, "opcuastack"):
            return f"{part} must not use the stack"
        return None
    if not layers.may_include(part, other):
        return f"{part} must not include {target} ({other})"
    if target.stem.endswith("_p") and part != other:
        return f"{target} is private to {other}"
    return None


def include_faults(layers, root, path):
    """(line, text) for every include line of the file that breaks a rule."""
    text = without_comments((root / path).read_text(encoding="utf-8"), keep_strings=True)
    for match in INCLUDE.finditer(text):
        name, quoted = match[2] or match[3], match[3] is not None
        target = resolve(root, path, name, quoted)
        if ".." in Path(name).parts:
            fault = f'"{name}": includes name the folder from the top'
        elif target is None:
            fault = outside_fault(path, name)
        else:
            fault = inside_fault(layers, path, target)
        if fault:
            yield text.count("\n", 0, match.start(1)) + 1, fault


def check(root):
    root = Path(root).resolve()
    layers = Layers((root / "cmake/TavelinParts.cmake").read_text(encoding="utf-8"))
    problems = []
    for path in project_files(root, *(f"{room}/*{ext}" for room in ROOMS for ext in (".h", ".cpp", ".c"))):
        if part_of(path) is None:
            problems.append(f"{path}: belongs to no part; add its folder to tools/check_layers.py")
            continue
        problems += [f"{path}:{line}: {fault}" for line, fault in include_faults(layers, root, path)]
    return problems


if __name__ == "__main__":
    sys.exit(report(check(ROOT), "layers: cmake/TavelinParts.cmake"))
