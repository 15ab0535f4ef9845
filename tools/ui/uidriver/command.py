"""The command line: uidrive.py [OPTIONS] VERB ..., and files with one command a line."""

import argparse
import contextlib
import keyword
import re
import shlex
import sys
import time

from .bus import UiError
from .node import ALIAS, CELLS, VIEWS, WINDOWS
from .views import Ui

HEADING = "uidrive.py [--app NAME|PID] [--timeout S] [--call-timeout S] [--nth N] [--hidden] [-v] VERB ..."
ENDING = """\
TARGET: ROLE:NAME, NAME, A >> B, item:TREE[Path>To>Item], cell:TABLE[ROW,COL], @INDEX from dump, X,Y;
        {dx,dy} may follow; --nth N and --hidden may stand behind any verb
NAME:   exact (a final ':' or '...' does not count), glob, /regex/, tip:TEXT for the tooltip
"""
# What options behind a verb mean; a verb takes those that it names, and all take --nth and --hidden.
OPTIONS = {
    "at": {"metavar": "X,Y", "type": lambda text: text.split(",")},
    "depth": {"metavar": "N", "type": int, "default": 99},
    "expand": {"metavar": "all|PATH"},
    "first": {"metavar": "N", "type": int, "default": 0},
    "gone": {"action": "store_true"},
    "hidden": {"action": "store_true"},
    "in": {"metavar": "TARGET"},
    "mod": {"metavar": "ctrl", "type": lambda text: tuple(text.split("+")), "default": ()},
    "nth": {"metavar": "N", "type": int},
    "rows": {"metavar": "N", "type": int},
    "state": {"metavar": "[!]S"},
    "steps": {"metavar": "N", "type": int, "default": 20},
    "value": {"metavar": "V"},
}
TYPES = {"CLICKS": int, "SECONDS": float}  # of words; the others are texts
BARE_ROLES = {"label", "panel", "slider", "splitter"}
ROLES = set().union(*ALIAS.values()) | set(ALIAS) | VIEWS | CELLS | WINDOWS | BARE_ROLES | {"*"}


class UsageError(UiError):
    pass


class Parser(argparse.ArgumentParser):
    def __init__(self, **more):
        super().__init__(add_help=False, allow_abbrev=False, **more)

    def error(self, message):
        raise UsageError(message)


class Verb:
    """A function of the command line, and which words and options it takes: "ROLE [NAME] KEY..."."""

    def __init__(self, name, function, words, options):
        self.name, self.function = name, function
        self._parser = Parser(prog=name)
        for word in words.split():
            shown = word.strip("[].")
            count = "?" if word.startswith("[") else "+" if word.endswith("...") else None
            self._parser.add_argument(_attribute(word), nargs=count, metavar=shown, type=TYPES.get(shown))
        for option in (*options.split(), "nth", "hidden"):
            self._parser.add_argument(f"--{option}", dest=_attribute(option), **OPTIONS[option])
        self._flags = {f"--{option}" for option in OPTIONS if "action" in OPTIONS[option]}
        self._valued = {f"--{option}" for option in options.split()} - self._flags | {"--nth"}
        self.usage = " ".join([words, *(_shown(option) for option in options.split())]).strip()

    def parse(self, argv, common):
        """The words and options, with what was said before the verb where they do not say otherwise."""
        options, words, rest = [], [], iter(argv)
        for word in rest:
            if word == "--":
                words += rest
            elif word in self._valued:
                options += [f"{word}={value}" for value in [next(rest, None)] if value is not None] or [word]
            elif word in self._flags:
                options.append(word)
            else:
                words.append(word)  # also one that begins with a dash: a text to type
        values = argparse.Namespace(**vars(common), verb=self.name, common=common)
        try:
            return self._parser.parse_args([*options, *["--"] * bool(words), *words], values)
        except UsageError as error:
            message = str(error).replace("arguments: -- ", "arguments: ")
            raise UsageError(f"{self.name}: {message}\nusage: {self.name} {self.usage}")


def _attribute(word):
    name = re.sub(r"\W+", "_", word.strip("[].")).lower()
    return f"{name}_" if keyword.iskeyword(name) else name


def _shown(option):
    value = OPTIONS[option].get("metavar")
    return f"[--{option} {value}]" if value else f"[--{option}]"


VERBS = {}
HELP_LINES = []
USAGE_WIDTH = 42


def verb(names, words="", options="", says=""):
    """Puts the function into the table of verbs."""

    def add(function):
        for name in names.split("|"):
            VERBS[name] = Verb(name, function, words, options)
        usage = f"{names} {VERBS[name].usage}".strip()
        if says and len(usage) > USAGE_WIDTH:
            HELP_LINES.append(f"  {usage}")
            usage = ""
        HELP_LINES.append(f"  {usage:<{USAGE_WIDTH}}  {says}".rstrip())
        return function

    return add


def help_text():
    return "\n".join([HEADING, *HELP_LINES, ENDING])


def tsv(*cells):
    print(
        "\t".join(
            re.sub(r"[\\\t\n]", lambda m: {"\t": r"\t", "\n": r"\n"}.get(m[0], r"\\"), str(c)) for c in cells
        )
    )


def _target(ui, args):
    """The element that TARGET or ROLE NAME means."""
    if args.name is None:
        return ui.resolve(args.target, args.nth)
    if args.target not in ROLES and " " not in args.target:
        raise UsageError(f"{args.verb}: {args.target!r} is no role")
    return ui.find(args.target, args.name, args.nth)


# ---- looking


@verb("apps", says="programs on the bus")
def _apps(ui, _args):
    for name, pid, ref in ui.apps():
        tsv(name, pid, ref[0])


@verb("windows", says="the program's windows, bottom to top")
def _windows(ui, _args):
    for window in ui.xwindows():
        tsv(window.title, "%d,%d %dx%d" % window.rect, " ".join(window.states).lower())


@verb("dump", "", "depth rows in", "the accessible tree (--hidden: also what is not shown)")
def _dump(ui, args):
    ui.dump(args.depth, 20 if args.rows is None else args.rows, args.hidden, args.in_)


@verb("find", "ROLE [NAME]", "in", "every match, one a line; exit 1 when none")
def _find(ui, args):
    found = ui.find_all(args.role, args.name, args.hidden, ui.resolve(args.in_) if args.in_ else None)
    for node in found:
        print(ui.line(node))
    return 0 if found else 1


@verb("wait", "ROLE NAME [SECONDS]", "gone value state", "until it is there")
def _wait(ui, args):
    node = ui.wait(args.role, args.name, args.seconds, args.gone, args.value, args.state)
    if node:
        print(ui.line(node))


@verb("value", "TARGET [NAME]", says="text, number, on/off or current entry; also as ROLE NAME")
def _value(ui, args):
    print(ui.value(_target(ui, args)))


@verb("table", "NAME", "expand first rows", "TSV; a tree's rows start with level and + - or .")
def _table(ui, args):
    view = ui.view(args.name)
    if args.expand == "all":
        ui.expand_all(view)
    elif args.expand:
        ui.expand(view, args.expand)
    rows = ui.rows(view, args.first, args.rows)
    heads = ui.columns(view) if view.role != "list" else []
    if view.role == "tree":
        _print_tree(ui, view, heads, rows, args.first)
        return
    for row in [heads] * bool(heads) + rows:
        tsv(*row)


def _print_tree(ui, view, heads, rows, first):
    known = {row["row"]: row for row in ui.tree_rows(view)}
    tsv("level", "mark", *heads)
    for number, row in enumerate(rows, first):
        about = known.get(number, {"level": "?", "expandable": False, "expanded": False})
        tsv(about["level"], ("-" if about["expanded"] else "+") if about["expandable"] else ".", *row)


@verb("cell", "TABLE ROW [COL]", says="ROW: number from 0 or a text in it; COL: number or header")
def _cell(ui, args):
    node = ui.cell(args.table, args.row, args.col or 0, scroll=False)
    print(("[x] " if "checked" in node.states else "") + node.name)


@verb("entries", "[MENU]", says='what is in "File", in the menu bar or in the open context menu')
def _entries(ui, args):
    for name, states in ui.menu_entries(args.menu or ""):
        disabled = "disabled" if name and "enabled" not in states else ""
        tsv(name or "-", disabled, "checked" if "checked" in states else "")


@verb("dialogs", says="open dialogs with texts, fields and buttons")
def _dialogs(ui, _args):
    for dialog in ui.dialogs():
        tsv(dialog["role"], dialog["title"], "modal" if dialog["modal"] else "modeless")
        for text in dialog["texts"]:
            tsv("", "text", text)
        for field in dialog["fields"]:
            tsv("", *field)
        for name, enabled, default in dialog["buttons"]:
            tsv("", "button", name, "" if enabled else "disabled", "default" if default else "")


@verb("shot", "FILE.png", "in", "a picture of the screen, or of an element")
def _shot(ui, args):
    print(ui.shot(args.file_png, args.in_))


@verb("pixel", "TARGET", says="colour")
def _pixel(ui, args):
    print(ui.pixel(args.target))


@verb("clipboard")
def _clipboard(ui, _args):
    print(ui.clipboard(), end="")


# ---- acting


@verb("click|dclick|rclick", "TARGET [NAME]", "mod at", "also as ROLE NAME; --at 10,5 or 50%,30% of it")
def _click(ui, args):
    target = args.target if args.name is None else _target(ui, args)
    getattr(ui, args.verb)(target, at=args.at, nth=args.nth, mods=args.mod)


@verb("hover", "TARGET [NAME]")
def _hover(ui, args):
    ui.hover(args.target if args.name is None else _target(ui, args))


@verb("press", "BUTTON", "in")
def _press(ui, args):
    ui.press(args.button, args.in_, args.nth)


@verb("tab", "NAME")
def _tab(ui, args):
    ui.tab(args.name, args.nth)


@verb("check", "NAME [on|off]")
def _check(ui, args):
    ui.check(args.name, args.on_off in (None, "on"))


@verb("combo", "LABEL ENTRY")
def _combo(ui, args):
    ui.combo(args.label, args.entry)


@verb("fill", "TARGET TEXT", says="TARGET or the name of an edit or spin box")
def _fill(ui, args):
    target = args.target
    if ":" not in target and "@" not in target:
        kind = "edit" if ui.find_all("edit", target) else "spin"
        target = ui.resolve(f"{kind}:{target}")
    ui.fill_in(target, args.text)


@verb("menu", "PATH", says='"File>Open" of the menu bar, or of the context menu that rclick opened')
def _menu(ui, args):
    ui.menu(args.path)


@verb("type", "TEXT")
def _type(ui, args):
    ui.type(args.text)


@verb("key", "KEY...", says="ctrl+s")
def _key(ui, args):
    ui.key(*args.key)


@verb("expand", "TREE PATH")
def _expand(ui, args):
    ui.expand(args.tree, args.path)


@verb("collapse", "TREE PATH")
def _collapse(ui, args):
    ui.collapse(args.tree, args.path)


@verb("select", "TREE PATH", "mod")
def _select(ui, args):
    ui.click(ui.item(args.tree, args.path), mods=args.mod)


@verb("edit", "TABLE ROW COL TEXT")
def _edit(ui, args):
    ui.edit(args.table, args.row, args.col, args.text)


@verb("drag", "FROM TO", "mod steps")
def _drag(ui, args):
    ui.drag(args.from_, args.to, steps=args.steps, mods=args.mod)


@verb("scroll", "TARGET CLICKS", says="of the wheel; up when negative")
def _scroll(ui, args):
    ui.scroll(args.target, args.clicks)


@verb("filedialog", "PATH")
def _filedialog(ui, args):
    ui.filedialog(args.path)


@verb("activate", "TITLE")
def _activate(ui, args):
    ui.activate(args.title)


@verb("sleep", "SECONDS")
def _sleep(_ui, args):
    time.sleep(args.seconds)


@verb(
    "run",
    "FILE",
    says="one command a line (FILE -: from stdin), in one process, up to the first failure",
)
def _run(ui, args):
    with _opened(args.file) as file:
        for number, line in enumerate(file, 1):
            words = shlex.split(line, comments=True)
            status = _run_line(ui, words, args.common, f"line {number}", line.strip()) if words else 0
            if status:
                return status
    return 0


def _opened(name):
    if name == "-":
        return contextlib.nullcontext(sys.stdin)
    try:
        return open(name, encoding="utf-8")
    except OSError as error:
        raise UsageError(f"{name}: {error.strerror}")


def _run_line(ui, words, common, place, text):
    started = time.time()
    try:
        status = execute(ui, words, common)
    except UiError as error:
        raise type(error)(f"{place}: {text}: {error}")
    if common.v:
        print(f"# {time.time() - started:6.2f} s  {text}", file=sys.stderr)
    if status:
        print(f"{place} failed: {text}", file=sys.stderr)
    return status


# ---- the program


def parse(argv, common):
    """The verb and its arguments."""
    known = VERBS.get(argv[0])
    if not known:
        raise UsageError(f"unknown verb {argv[0]!r}; uidrive.py help lists them")
    return known, known.parse(argv[1:], common)


def execute(ui, argv, common):
    """Runs one command; returns its exit code."""
    known, args = parse(argv, common)
    return known.function(ui, args) or 0


def _program_options(argv):
    parser = Parser(prog="uidrive.py")
    parser.add_argument("--app")
    parser.add_argument("--timeout", type=float, default=5)
    parser.add_argument("--call-timeout", type=float, default=10)
    parser.add_argument("--nth", type=int, default=0)
    parser.add_argument("--hidden", action="store_true")
    parser.add_argument("-v", action="store_true")
    parser.add_argument("-h", "--help", action="store_true")
    parser.add_argument("command", nargs=argparse.REMAINDER)
    return parser.parse_args(argv)


def main(argv):
    try:
        given = _program_options(argv)
        if given.help or given.command[:1] in ([], ["help"]):
            print(help_text(), end="")
            return 0 if given.help or given.command else 2
        common = argparse.Namespace(nth=given.nth, hidden=given.hidden, v=given.v)
        parse(given.command, common)  # before anything is waited for
        return execute(Ui(given.app, given.timeout, given.call_timeout), given.command, common)
    except UsageError as error:
        print(f"uidrive: {error}", file=sys.stderr)
        return 2
    except UiError as error:
        print(f"uidrive: {error}", file=sys.stderr)
        return 1
