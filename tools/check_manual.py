#!/usr/bin/env python3
"""The manual against the program: what it prints bold is a text of the program, in German that text's own
translation at the same place, and the keys that it names do something.

README.md is read like an English page, with bold texts in its own marks, and the tips of the day with texts
in quotation marks. Help on a control begins with the control's name in German, too. Words that the program
does not say itself (what a server answers, a term that is explained) stand in <i>, keys and paths in <tt>.
"""
import html
import re
import sys
from collections import defaultdict
from pathlib import Path

from check_sources import ROOT, project_files, report
from translations import MNEMONIC, PLACE, ROOMS, TAG, read

PAGES = "app/resources/help"
TIPS = "app/resources/tips_{}.txt"
QUOTED = re.compile('"([^"]+)"|„([^“]+)“')
BLOCK = re.compile(r"</?(?:p|li|h[12]|t[dhr])\b[^>]*>|\n\s*\n")
BOLD = re.compile(r"<b>(.*?)</b>|\*\*(.*?)\*\*", re.S)
PATH = " > "
END = re.compile(r"\s*(?:\[[^\]]*\]|\.\.\.|…|[:.])$")
PIECE = 4

HEADING = re.compile(r"<b>([^<%]*)</b><br>")

KEY = re.compile(r"\b(?:(?:Ctrl|Shift|Alt|Strg|Umschalt)\+)+(?:\w+|[+-])|\bF\d{1,2}\b")
GERMAN_KEYS = {
    "Strg": "Ctrl",
    "Umschalt": "Shift",
    "Links": "Left",
    "Rechts": "Right",
    "Auf": "Up",
    "Ab": "Down",
    "Pos1": "Home",
    "Ende": "End",
}
# What Qt makes of its names of commands on a desktop of ours.
STANDARD = {
    "Back": "Alt+Left",
    "Close": "Ctrl+W",
    "Copy": "Ctrl+C",
    "Find": "Ctrl+F",
    "Forward": "Alt+Right",
    "HelpContents": "F1",
    "New": "Ctrl+N",
    "Open": "Ctrl+O",
    "Paste": "Ctrl+V",
    "Quit": "Ctrl+Q",
    "Refresh": "F5",
    "Save": "Ctrl+S",
    "Undo": "Ctrl+Z",
    "WhatsThis": "Shift+F1",
    "ZoomIn": "Ctrl++",
    "ZoomOut": "Ctrl+-",
}
NAMED = re.compile(r"\bQKeySequence::(\w+)")
WRITTEN = re.compile(r'QKeySequence\(QStringLiteral\("([^"]+)"\)')
PRESSED = re.compile(r"((?:(?:static_cast<int>\()?Qt::(?:CTRL|SHIFT|ALT)\)?\s*\|\s*)*)Qt::Key_(\w+)")
MODIFIER = re.compile(r"CTRL|SHIFT|ALT")
ASKED = re.compile(r"Qt::Key_(\w+) \|\| key->modifiers\(\) != Qt::(Shift|Control|Alt)Modifier")


def bare(text):
    """A text as it is spoken of: without the mark of its letter, its dots or its unit."""
    text = " ".join(MNEMONIC.sub("", text).replace("&&", "&").split())
    while END.search(text):
        text = END.sub("", text)
    return text


def wordings(text):
    """The ways to quote a text of the program: whole, or one stretch between the values it shows."""
    if TAG.search(text):
        return set()
    pieces = PLACE.split(text)
    ways = {bare(text)} if len(pieces) == 1 else set()
    for piece in pieces if len(pieces) > 1 else ():
        piece = bare(piece.strip(" ,;:.()'\"„“"))
        if len(piece) >= PIECE:
            ways.add(piece)
    return ways


def vocabulary(root):
    """Wording -> messages, of the English texts and of the German ones."""
    folder = Path(root) / "translations"
    plurals = read(folder / "tavelin_en.ts")
    english, german = defaultdict(set), defaultdict(set)
    for message, forms in read(folder / "tavelin_de.ts").items():
        for text in plurals.get(message) or [message.source]:
            for way in wordings(text):
                english[way].add(message)
        for text in forms:
            for way in wordings(text):
                german[way].add(message)
    return dict(english), dict(german)


def heading_faults(texts):
    """What's This begins with the name of what was clicked on: the same one in German."""
    names = defaultdict(set)
    for message, forms in texts.items():
        names[bare(message.source)].update(map(bare, forms))
    for message, forms in texts.items():
        heading = HEADING.match(message.source)
        known = names.get(heading[1]) if heading else None
        if not known:
            continue
        for said in (HEADING.match(form) for form in forms):
            if said is None or said[1] not in known:
                fault = f"What's This about '{heading[1]}' has another heading than"
                yield f"{message.context}: {fault} {sorted(known)}"


def keys_of_code(root):
    keys = set()
    for path in project_files(root, *(f"{room}/*.cpp" for room in ROOMS)):
        text = (Path(root) / path).read_text(encoding="utf-8")
        if "Key" not in text:
            continue
        keys.update(STANDARD[name] for name in NAMED.findall(text) if name in STANDARD)
        keys.update(WRITTEN.findall(text))
        for modifiers, key in PRESSED.findall(text):
            with_it = [name.capitalize() for name in MODIFIER.findall(modifiers)]
            keys.add("+".join([*with_it, key]))
        keys.update(f"{modifier.replace('Control', 'Ctrl')}+{key}" for key, modifier in ASKED.findall(text))
    return keys


def quotes(block):
    for match in BOLD.finditer(block):
        whole = " ".join(html.unescape(match[1] or match[2]).split())
        yield from (bare(name) for name in whole.split(PATH))


def keys(block):
    for key in KEY.findall(TAG.sub("", block)):
        yield "+".join(GERMAN_KEYS.get(part, part) for part in re.split(r"\+(?=.)", key))


def english_faults(text, english, known):
    for block in BLOCK.split(text):
        yield from (f"'{name}' is no text of the program" for name in quotes(block) if name not in english)
        yield from (f"the key {key} does nothing" for key in keys(block) if key not in known)


def german_faults(text, source, english, german):
    """Said after its English page, whose blocks it has in the same order."""
    blocks, sources = BLOCK.split(text), BLOCK.split(source)
    if len(blocks) != len(sources):
        yield "has other paragraphs than the English page"
        return
    for block, origin in zip(blocks, sources):
        if sorted(keys(block)) != sorted(keys(origin)):
            yield f"names other keys than the English page: {', '.join(keys(block)) or 'none'}"
        left = list(quotes(origin))
        for name in quotes(block):
            meant = german.get(name, set())
            said = next((one for one in left if english.get(one, set()) & meant), None)
            if said is None:
                yield f"'{name}' is not what the German program says where the English page has {left}"
            else:
                left.remove(said)
        yield from (f"'{name}' of the English page is not named" for name in left if name in english)


def texts_of(root):
    """(name, English, German) of every page and of the tips; None where there is no German one."""
    folder = Path(root) / PAGES
    yield "README.md", (Path(root) / "README.md").read_text(encoding="utf-8"), None
    for path in sorted(folder.glob("*.html")):
        other = folder / "de" / path.name
        yield path.name, path.read_text(encoding="utf-8"), other.read_text(encoding="utf-8")
    tips = ((Path(root) / TIPS.format(language)).read_text(encoding="utf-8") for language in ("en", "de"))
    yield "tips", *(QUOTED.sub(lambda match: f"<b>{match[1] or match[2]}</b>", text) for text in tips)


def check(root):
    english, german = vocabulary(root)
    known = keys_of_code(root)
    problems = list(heading_faults(read(Path(root) / "translations" / "tavelin_de.ts")))
    for name, text, translated in texts_of(root):
        problems += [f"{name}: {fault}" for fault in english_faults(text, english, known)]
        if translated is not None:
            problems += [
                f"German {name}: {fault}" for fault in german_faults(translated, text, english, german)
            ]
    return problems


if __name__ == "__main__":
    sys.exit(report(check(ROOT), "the manual follows the program"))
