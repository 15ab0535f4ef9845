#!/usr/bin/env python3
"""Include lines have one order, and every file includes what it uses.

Order: the own header; the project's headers in angle brackets with their folder; Qt and other libraries; the
standard library and the system. A blank line parts the groups, names ascend within each. clang-format 14
knows an own header in quotes only, so the order is kept here. With --fix, ./dev fmt writes what can be.
"""
import argparse
import re
import sys
from functools import lru_cache
from pathlib import Path

from check_sources import ROOT, is_generated, project_files, report, without_comments

PUBLIC = ("stack/include", "stack/generated/include")
OWN, PROJECT, LIBRARY, STANDARD = range(4)
INCLUDE = re.compile(r'#[ \t]*include[ \t]*(<[^>\n]+>|"[^"\n]+")[^\n]*')
_LIBRARY = re.compile(
    r"(Q\w+|Qt\w*/.*|q[a-z]+\.h|qwt.*|gtest/.*|gmock/.*|benchmark/.*|openssl/.*|libxml/.*"
    r"|http_parser\.h|linux/.*|sanitizer/.*)$"
)
_QUOTED_ONLY = re.compile(r".*\.(moc|inc)$|moc_.*")

# std name -> header; a name that any of several headers gives has the first as its home
_HOMES = {
    "algorithm": (
        "all_of any_of none_of find find_if find_if_not count_if copy copy_n copy_backward fill fill_n "
        "generate max min minmax clamp sort stable_sort nth_element remove_if remove reverse rotate "
        "transform unique lower_bound upper_bound equal_range binary_search is_sorted max_element "
        "min_element equal mismatch search replace for_each partition stable_partition "
        "lexicographical_compare includes set_difference set_union set_intersection merge adjacent_find "
        "partial_sort shuffle sample"
    ),
    "array": "array to_array",
    "atomic": (
        "atomic atomic_bool atomic_flag atomic_thread_fence memory_order_relaxed memory_order_acquire "
        "memory_order_release"
    ),
    "bit": "bit_cast endian countr_zero popcount bit_width has_single_bit",
    "bitset": "bitset",
    "charconv": "from_chars to_chars from_chars_result",
    "chrono": "chrono",
    "cmath": (
        "isnan isinf isfinite floor ceil round fabs pow log10 trunc lround llround nextafter signbit fmod "
        "ldexp"
    ),
    "compare": "strong_ordering weak_ordering partial_ordering",
    "condition_variable": "condition_variable condition_variable_any cv_status",
    "csignal": "raise signal",
    "cstddef": "byte ptrdiff_t max_align_t nullptr_t",
    "cstdint": "int8_t int16_t int32_t int64_t uint8_t uint16_t uint32_t uint64_t uintptr_t",
    "cstdio": "fopen fclose fread fwrite fprintf printf snprintf fflush rename FILE fputs fgets perror puts",
    "cstdlib": "abort exit getenv free malloc calloc realloc strtol strtoul strtod atoi",
    "cstring": "memcpy memcmp memset memmove strlen strcmp strncmp memchr strerror strchr strstr",
    "ctime": "time_t time tm",
    "deque": "deque",
    "exception": "exception exception_ptr current_exception terminate rethrow_exception",
    "filesystem": "filesystem",
    "fstream": "ifstream ofstream fstream filebuf",
    "functional": "function bind hash less greater equal_to invoke ref cref reference_wrapper mem_fn",
    "future": "future promise async packaged_task future_status shared_future launch",
    "initializer_list": "initializer_list",
    "iomanip": "setw setfill setprecision",
    "iostream": "cout cerr cin clog",
    "istream": "istream",
    "iterator": (
        "back_inserter inserter istreambuf_iterator istream_iterator make_move_iterator ostream_iterator "
        "reverse_iterator"
    ),
    "limits": "numeric_limits",
    "list": "list",
    "map": "map multimap",
    "memory": (
        "unique_ptr shared_ptr weak_ptr make_unique make_shared enable_shared_from_this addressof "
        "static_pointer_cast dynamic_pointer_cast construct_at destroy_at uninitialized_copy_n "
        "default_delete"
    ),
    "mutex": (
        "mutex recursive_mutex lock_guard unique_lock scoped_lock once_flag call_once timed_mutex defer_lock "
        "adopt_lock try_to_lock"
    ),
    "new": "bad_alloc nothrow nothrow_t align_val_t launder",
    "numbers": "numbers",
    "numeric": "accumulate iota gcd lcm midpoint",
    "optional": "optional nullopt nullopt_t",
    "ostream": "ostream endl",
    "queue": "queue priority_queue",
    "random": "mt19937 mt19937_64 uniform_int_distribution random_device uniform_real_distribution",
    "ranges": "ranges views",
    "regex": "regex smatch regex_search regex_match",
    "semaphore": "binary_semaphore counting_semaphore",
    "set": "set multiset",
    "shared_mutex": "shared_mutex shared_lock",
    "source_location": "source_location",
    "span": "span as_bytes as_writable_bytes dynamic_extent",
    "sstream": "stringstream ostringstream istringstream",
    "stdexcept": "runtime_error logic_error out_of_range invalid_argument length_error",
    "stop_token": "stop_token stop_source stop_callback",
    "string": "string to_string stoi stol stoul stoull getline char_traits u16string wstring u8string",
    "string_view": "string_view",
    "system_error": "error_code system_error errc generic_category error_condition system_category",
    "thread": "thread jthread this_thread",
    "tuple": "tuple tie make_tuple tuple_size ignore forward_as_tuple apply",
    "type_traits": (
        "is_same_v is_same decay_t remove_cvref_t remove_const_t conditional_t enable_if_t is_integral_v "
        "is_enum_v is_base_of_v underlying_type_t is_invocable_v is_arithmetic_v is_signed_v is_unsigned_v "
        "is_void_v is_trivially_copyable_v is_floating_point_v make_unsigned_t make_signed_t invoke_result_t "
        "is_convertible_v true_type false_type remove_pointer_t remove_reference_t is_pointer_v "
        "integral_constant is_constructible_v is_nothrow_move_constructible_v is_const_v common_type_t "
        "is_class_v is_member_function_pointer_v type_identity_t"
    ),
    "unordered_map": "unordered_map unordered_multimap",
    "unordered_set": "unordered_set",
    "utility": (
        "pair move forward swap exchange make_pair as_const index_sequence make_index_sequence in_range "
        "cmp_less cmp_greater declval"
    ),
    "variant": "variant visit holds_alternative get_if monostate",
    "vector": "vector",
}
HOME = {name: header for header, names in _HOMES.items() for name in names.split()}
# what else gives a name, so that nobody has to write both
ALSO = {
    "algorithm": ("ranges",),
    "cstddef": ("cstdlib", "cstring", "cstdio"),
    "ostream": ("iostream", "sstream", "fstream", "iomanip"),
    "istream": ("iostream", "sstream", "fstream"),
    "utility": ("map", "unordered_map", "tuple"),
    "iterator": ("ranges",),
    "exception": ("stdexcept",),
    "initializer_list": ("vector", "string"),
    "ctime": ("chrono",),
}
_STD = re.compile(r"\bstd::(\w+)")
_FORWARD = re.compile(r"\b(?:class|struct|enum class|enum)\s+(?:\w+::)*(\w+)(?:\s*:\s*[\w:]+)?\s*;")
_DEFINED = re.compile(
    r"\b(?:class|struct|enum class|enum|union)\s+(?:\[\[\w+\]\]\s*)?(\w+)(?:\s+final)?\s*[:{]"
    r"|\busing\s+(\w+)\s*="
)
_OURS = re.compile(r"(?<![\w~])(?:Ua|Qlum)[A-Z]\w+\b")
_QT = re.compile(r"(?<![\w:])Q[A-Z][a-z]\w*\b")
# below the name of the machine's architecture
_QT_ROOT = next(Path("/usr/include").glob("*/qt5"), None)
_WITH_QSTRING = {"QStringLiteral", "QLatin1String", "QLatin1Char"}
_QT_MODULES = (
    "QtCore",
    "QtGui",
    "QtWidgets",
    "QtNetwork",
    "QtSvg",
    "QtPrintSupport",
    "QtHelp",
    "QtSql",
    "QtConcurrent",
    "QtTest",
)


def own_header(root, path):
    """The header that a source implements: of its own name, or of the name before an underscore."""
    if path.suffix not in (".cpp", ".c"):
        return None
    pieces = path.stem.split("_")
    for length in range(len(pieces), 0, -1):
        for suffix in (".h", "_p.h"):
            candidate = path.with_name("_".join(pieces[:length]) + suffix)
            if (root / candidate).is_file():
                return candidate
    return None


def resolve(root, path, name, quoted):
    """The project's file that an include line names, relative to root, or None."""
    for place in ([path.parent] if quoted else []) + [Path("."), *map(Path, PUBLIC)]:
        candidate = root / place / name
        if candidate.is_file():
            return candidate.resolve().relative_to(root)
    return None


def written(target):
    """How an include line names one of the project's headers."""
    for public in PUBLIC:
        if target.is_relative_to(public):
            return f"<{target.relative_to(public)}>"
    return f"<{target}>"


class Preamble:
    """The first run of include lines of a file, with what is in between."""

    def __init__(self, lines):
        self.lines = lines
        self.first = next((i for i, line in enumerate(lines) if INCLUDE.match(line)), None)
        self.end = self.first
        if self.first is None:
            return
        for i in range(self.first, len(lines)):
            if INCLUDE.match(lines[i]):
                self.end = i + 1
            elif lines[i].strip():
                break

    def includes(self):
        return (
            [line.rstrip() for line in self.lines[self.first : self.end] if line.strip()]
            if self.first is not None
            else []
        )


def category(root, path, line):
    name = INCLUDE.match(line)[1]
    target = resolve(root, path, name[1:-1], name[0] == '"')
    if target is not None:
        return OWN if target == own_header(root, path) else PROJECT
    return LIBRARY if _LIBRARY.match(name[1:-1]) else STANDARD


def with_brackets(root, path, line):
    """A project's header in angle brackets with its folder; other lines as they are."""
    name = INCLUDE.match(line)[1]
    if name[0] != '"' or _QUOTED_ONLY.match(name[1:-1]):
        return line
    target = resolve(root, path, name[1:-1], True)
    return line.replace(name, written(target), 1) if target else line


def arranged(root, path, includes):
    """The include lines in groups, as they should stand."""
    groups = [set() for _ in range(4)]
    for line in includes:
        line = re.sub(r"#[ \t]*include[ \t]*", "#include ", with_brackets(root, path, line))
        groups[category(root, path, line)].add(line)
    text = []
    for group in groups:
        if group and text:
            text.append("")
        text += sorted(group)
    return text


@lru_cache(maxsize=None)
def qt_header(name):
    """Whether Qt has a header of that name, other than those that come with <QString>."""
    if name in _WITH_QSTRING:
        return False
    if _QT_ROOT is None:
        raise SystemExit("check_includes.py: Qt 5 is not installed; run ./dev setup")
    return any((_QT_ROOT / module / name).is_file() for module in _QT_MODULES)


@lru_cache(maxsize=None)
def project_headers(root):
    """Class in lower case -> its header, where only one has that name."""
    found = {}
    for path in project_files(root, "*.h"):
        found.setdefault(path.stem, []).append(path)
    return {stem: paths[0] for stem, paths in found.items() if len(paths) == 1}


def direct_includes(root, path):
    text = (root / path).read_text(encoding="utf-8")
    names = set()
    for match in re.finditer(r"^[ \t]*" + INCLUDE.pattern, text, re.M):
        name = match[1]
        target = resolve(root, path, name[1:-1], name[0] == '"')
        names.add(written(target) if target else name)
    return names


def wanted(root, path, text):
    """Include lines' names for what the text uses, by rules that need no compiler."""
    code = without_comments(re.sub(r"^[ \t]*#[ \t]*include[^\n]*", "", text, flags=re.M))
    declared = set(_FORWARD.findall(code)) | {
        name for pair in _DEFINED.findall(code) for name in pair if name
    }
    for name in set(_STD.findall(code)):
        if name in HOME:
            yield f"<{HOME[name]}>", [f"<{other}>" for other in ALSO.get(HOME[name], ())], f"std::{name}"
    for name in set(_QT.findall(code)) - declared:
        if qt_header(name):
            yield f"<{name}>", [], name
        elif name in _WITH_QSTRING:
            yield "<QString>", ["<QStringList>"], name
    headers = project_headers(root)
    for name in set(_OURS.findall(code)) - declared:
        target = headers.get(name.lower())
        if target is not None and target != path and not target.is_relative_to("stack"):
            yield written(target), [], name


def missing(root, path, text):
    """(include name, what wants it) of every header that the file should include itself."""
    have = direct_includes(root, path)
    own = own_header(root, path)
    if own:
        have |= direct_includes(root, own)
        have.add(written(own))
    return sorted(
        {
            (name, why)
            for name, also, why in wanted(root, path, text)
            if name not in have and not have.intersection(also)
        }
    )


def repaired(root, path, text, order=True, uses=True):
    lines = text.split("\n")
    preamble = Preamble(lines)
    includes = preamble.includes()
    added = (
        {f"#include {name}" for name, _ in missing(root, path, text)}
        if uses and path.suffix != ".c"
        else set()
    )
    if not includes and not added:
        return text
    block = arranged(root, path, includes + sorted(added)) if order else includes
    if preamble.first is None:
        start = next((i for i, line in enumerate(lines) if line == "#pragma once"), -1) + 1
        return "\n".join(
            lines[:start] + [""] * bool(start) + block + [""] * bool(lines[start].strip()) + lines[start:]
        )
    return "\n".join(lines[: preamble.first] + block + lines[preamble.end :])


def check(root):
    root, problems = Path(root).resolve(), []
    for path in sources(root):
        text = (root / path).read_text(encoding="utf-8")
        preamble = Preamble(text.split("\n"))
        includes = preamble.includes()
        if includes and arranged(root, path, includes) != preamble.lines[preamble.first : preamble.end]:
            problems.append(f"{path}:{preamble.first + 1}: include lines are not in order")
        if path.suffix != ".c":
            problems += [
                f"{path}: uses {why} and does not include {name}" for name, why in missing(root, path, text)
            ]
    return problems


def sources(root):
    return [
        path
        for path in project_files(root, "*.cpp", "*.h", "*.c")
        if not is_generated(path) and not path.is_relative_to("stack/include")
    ]


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    arguments.add_argument("--fix", action="store_true", help="write the include lines as they should be")
    fix = arguments.parse_args().fix
    for path in sources(ROOT) if fix else ():
        text = (ROOT / path).read_text(encoding="utf-8")
        better = repaired(ROOT, path, text)
        if better != text:
            (ROOT / path).write_text(better, encoding="utf-8")
    return report(check(ROOT), "./dev fmt mends it")


if __name__ == "__main__":
    sys.exit(main())
