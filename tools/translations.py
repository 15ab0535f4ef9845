#!/usr/bin/env python3
"""The translations of the program's texts, translations/tavelin_LANGUAGE.ts.

update    brings every file up to the texts of the sources; what has gone is dropped
missing   lists what a language lacks, as JSON: context, source, comment, plural
merge     takes such a list back, each entry with its translation, a list of the plural forms where plural is
          true; an entry without context and comment serves every context
check     everything is translated, and nothing is lost of what a text has to keep
new       begins a language, for example: new fr
"""
import argparse
import collections
import json
import re
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path
from xml.sax.saxutils import escape

from check_sources import ROOT, report

FOLDER = "translations"
ROOMS = (
    "app",
    "certificates",
    "monitoring",
    "plugins",
    "recording",
    "servers",
    "uaclientsdk",
    "uawidgets",
    "watching",
)
SEPARATOR = re.compile(r"(?<=[0-9a-fA-F])'(?=[0-9a-fA-F])")
ALIAS = re.compile(r"\busing (\w+) = (\w+);")
MARKER = re.compile(r"^#define (\w+)\((\w+)\) (QT_TRANSLATE_NOOP\(\"\w+\", )\2\)$", re.M)
HELPER = re.compile(
    r"\bQString (\w+)\(const char\* (\w+)\)\s*\{\s*return (QCoreApplication::translate\(\"\w+\", )\2\);\s*\}"
)
FORMS = {"ja": 1, "ko": 1, "zh": 1, "pl": 3, "ru": 3, "uk": 3, "cs": 3}

PLACE = re.compile(r"%(?:L?\d{1,2}|n)")
TAG = re.compile(r"</?[a-zA-Z][^<>]*>")
MNEMONIC = re.compile(r"&(?=[^\s&;])(?!\w+;)")
END = re.compile(r"(\.\.\.|…|:)\s*$")

Message = collections.namedtuple("Message", "context source comment plural")


class LupdateError(Exception):
    """Texts of the sources that would find no translation at run time."""


def readable(text):
    """As lupdate takes it, which knows neither separators in numbers nor names that stand for a context."""
    text = SEPARATOR.sub("", text)
    for pattern in (MARKER, HELPER):
        for name, _, full in pattern.findall(text):
            text = re.sub(rf'\b{name}\(\s*(?=")', lambda _, full=full: full, text)
    for alias, name in ALIAS.findall(text):
        text = re.sub(rf"\b{alias}::tr\(", f"{name}::tr(", text)
    return text


def sources_of_texts(root):
    """What the sources of the program say, in the order of contexts and texts."""
    with tempfile.TemporaryDirectory() as folder:
        copy = Path(folder)
        for room in ROOMS:
            for path in sorted((Path(root) / room).rglob("*")):
                if path.suffix in (".cpp", ".h"):
                    target = copy / path.relative_to(root)
                    target.parent.mkdir(parents=True, exist_ok=True)
                    target.write_text(readable(path.read_text(encoding="utf-8")), encoding="utf-8")
        out = copy / "texts.ts"
        run = subprocess.run(
            [
                shutil.which("lupdate") or "lupdate",
                "-silent",
                "-locations",
                "none",
                "-I",
                folder,
                folder,
                "-ts",
                out,
            ],
            capture_output=True,
            text=True,
            check=False,
        )
        words = [line.replace(folder + "/", "") for line in run.stderr.splitlines() if line.strip()]
        if run.returncode or words:
            raise LupdateError("\n".join(words or [f"lupdate ended with {run.returncode}"]))
        return sorted(read(out))


def read(path):
    """The messages of a file and their translations: a list of forms; empty where there is none."""
    texts = {}
    for context in ElementTree.parse(path).getroot().findall("context"):
        name = context.findtext("name", "")
        for message in context.findall("message"):
            plural = message.get("numerus") == "yes"
            key = Message(name, message.findtext("source", ""), message.findtext("comment", ""), plural)
            translation = message.find("translation")
            if plural:
                forms = [form.text or "" for form in translation.findall("numerusform")]
            else:
                forms = [translation.text or ""]
            unfinished = translation.get("type") is not None or not all(forms)
            texts[key] = [] if unfinished else forms
    return texts


def lines_of(message, forms):
    def quoted(text):
        return escape(text, {"'": "&apos;", '"': "&quot;"})

    yield '    <message numerus="yes">' if message.plural else "    <message>"
    yield f"        <source>{quoted(message.source)}</source>"
    if message.comment:
        yield f"        <comment>{quoted(message.comment)}</comment>"
    state = "" if forms else ' type="unfinished"'
    if message.plural:
        yield f"        <translation{state}>"
        for form in forms or [""]:
            yield f"            <numerusform>{quoted(form)}</numerusform>"
        yield "        </translation>"
    else:
        yield f"        <translation{state}>{quoted(forms[0]) if forms else ''}</translation>"
    yield "    </message>"


def write(path, language, texts):
    """Always in the same order, so that a new text changes few lines."""
    lines = ['<?xml version="1.0" encoding="utf-8"?>', "<!DOCTYPE TS>"]
    lines.append(f'<TS version="2.1" language="{language}" sourcelanguage="en">')
    context = None
    for message in sorted(texts):
        if message.context != context:
            if context is not None:
                lines.append("</context>")
            context = message.context
            lines += ["<context>", f"    <name>{escape(context)}</name>"]
        lines += lines_of(message, texts[message])
    if context is not None:
        lines.append("</context>")
    path.write_text("\n".join(lines + ["</TS>", ""]), encoding="utf-8")


def updated(messages, old):
    """A text that moved to another context keeps its translation."""
    elsewhere = {(m.source, m.comment, m.plural): forms for m, forms in old.items() if forms}
    return {m: old.get(m) or elsewhere.get((m.source, m.comment, m.plural), []) for m in messages}


def merge(texts, entries):
    """Puts the entries in; tells of those that no text wants."""
    unused = []
    for entry in entries:
        forms = entry["translation"]
        forms = forms if isinstance(forms, list) else [forms]
        wanted = [
            m
            for m in texts
            if m.source == entry["source"]
            and entry.get("context", m.context) == m.context
            and ("context" not in entry or entry.get("comment", "") == m.comment)
        ]
        for message in wanted:
            if message.plural == (len(forms) > 1):
                texts[message] = forms
        if not wanted:
            unused.append(entry["source"])
    return unused


def faults_of(message, forms, count):
    """What a translation has lost of its text."""
    if not forms:
        return ["is not translated"]
    faults = [] if len(forms) == (count if message.plural else 1) else ["has a wrong number of plural forms"]
    for form in forms:
        source = message.source
        places, kept = set(PLACE.findall(source)), set(PLACE.findall(form))
        if places - {"%n"} != kept - {"%n"} or (len(forms) == 1 and places != kept):
            faults.append("has other places than " + (" ".join(sorted(places)) or "none"))
        if sorted(TAG.findall(source)) != sorted(TAG.findall(form)):
            faults.append("has other tags")
        if len(MNEMONIC.findall(source)) != len(MNEMONIC.findall(form)):
            faults.append("has lost or gained its mnemonic")
        ends, kept_ends = END.search(source), END.search(form)
        if (ends and ends[1]) != (kept_ends and kept_ends[1]):
            faults.append("ends in another mark")
        if (source[:1].isspace(), source[-1:].isspace()) != (form[:1].isspace(), form[-1:].isspace()):
            faults.append("begins or ends in other blanks")
        if source.startswith(("korvanda/", "/korvanda/")) and form != source:
            faults.append("moves a folder")
    return faults


def forms_in(language):
    return FORMS.get(language.split("_")[0], 2)


def files(root):
    return sorted((Path(root) / FOLDER).glob("tavelin_*.ts"))


def language_of(path):
    return path.stem.removeprefix("tavelin_")


def check(root):
    try:
        messages = sources_of_texts(root)
    except LupdateError as error:
        return str(error).splitlines()
    problems = []
    for path in files(root):
        texts, language = read(path), language_of(path)
        wanted = wanted_in(language, messages)
        problems += [
            f"{path.name}: {m.context}: '{m.source}' {fault}"
            for m in wanted
            for fault in faults_of(m, texts.get(m, []), forms_in(language))
        ]
        gone = len(texts.keys() - set(wanted))
        if gone:
            problems.append(f"{path.name}: {gone} texts are no longer in the program")
    if problems:
        problems.append("tools/translations.py missing and merge put it right")
    return problems


def wanted_in(language, messages):
    """The texts are English already; only how many there are of something is said in two ways."""
    return [m for m in messages if m.plural] if language == "en" else messages


def update(root):
    messages = sources_of_texts(root)
    for path in files(root):
        language = language_of(path)
        write(path, language, updated(wanted_in(language, messages), read(path)))


def command(arguments, root):
    if arguments.command == "check":
        return report(check(root), "translations")
    if arguments.command == "new":
        path = Path(root) / FOLDER / f"tavelin_{arguments.language}.ts"
        if not path.exists():
            write(path, arguments.language, {})
    update(root)
    if arguments.command in ("missing", "merge"):
        path = Path(root) / FOLDER / f"tavelin_{arguments.language}.ts"
        texts = read(path)
    if arguments.command == "missing":
        lacking = [m._asdict() for m in sorted(texts) if not texts[m]]
        json.dump(lacking, sys.stdout, indent=1, ensure_ascii=False)
        print()
    elif arguments.command == "merge":
        for source in merge(texts, json.loads(Path(arguments.file).read_text(encoding="utf-8"))):
            print(f"no text of the program: {source}", file=sys.stderr)
        write(path, arguments.language, texts)
    return 0


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("command", choices=("update", "missing", "merge", "check", "new"))
    parser.add_argument("--language", default="de")
    parser.add_argument("file", nargs="?", help="of merge; - of the others")
    arguments = parser.parse_args()
    if arguments.command == "new" and arguments.file:
        arguments.language = arguments.file
    try:
        return command(arguments, ROOT)
    except LupdateError as error:
        print(error, file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main())
