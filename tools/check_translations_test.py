#!/usr/bin/env python3
"""What the check of translations has to notice, and which texts it has to find in sources."""
import tempfile
import unittest
from pathlib import Path

import translations
from translations import Message, faults_of, merge, readable, updated


def message(source, plural=False, context="C"):
    return Message(context, source, "", plural)


class Faults(unittest.TestCase):
    def test_what_is_lost_is_told(self):
        lost = {
            ("%1 of %2", "%1 von"): "places",
            ("<b>Add</b><br>It adds.", "<b>Neu</b>Es kommt dazu."): "tags",
            ("&Save", "Speichern"): "mnemonic",
            ("Save...", "Speichern"): "mark",
            ("Name:", "Name"): "mark",
            (" ms", "ms"): "blanks",
            ("korvanda/tavelin/PKI", "korvanda/tavelin/Schlüssel"): "folder",
        }
        for (source, german), word in lost.items():
            faults = faults_of(message(source), [german], 2)
            self.assertTrue(any(word in fault for fault in faults), (source, faults))

    def test_what_is_kept_passes(self):
        for source, german in (
            ("%1 of %2", "%2: %1"),
            ("Drag &amp; drop &here", "&Hier ziehen &amp; ablegen"),
            ("A & B", "A und B"),
            ("", ""),
        ):
            self.assertEqual(faults_of(message(source), [german], 2), [], source)
        self.assertEqual(faults_of(message("%n row(s)", True), ["eine Zeile", "%n Zeilen"], 2), [])
        self.assertEqual(len(faults_of(message("%n row(s)", True), ["%n Zeilen"], 2)), 1)
        self.assertEqual(faults_of(message("New"), [], 2), ["is not translated"])


class Sources(unittest.TestCase):
    def test_lupdate_finds_texts_behind_short_names(self):
        with tempfile.TemporaryDirectory() as folder:
            room = Path(folder) / "app"
            room.mkdir()
            (room / "a.cpp").write_text(
                '#define WORDS(text) QT_TRANSLATE_NOOP("Words", text)\n'
                'const char* const word = WORDS(\n    "by macro");\n'
                "struct LongText\n{\n    Q_DECLARE_TR_FUNCTIONS(Named)\n};\n"
                "using T = LongText;\n"
                "QString helped(const char* text)\n{\n"
                '    return QCoreApplication::translate("Helper", text);\n}\n'
                "constexpr int million = 1'000'000;\n"
                'QString all() { return T::tr("by alias") + helped("by helper"); }\n'
            )
            found = {(m.context, m.source) for m in translations.sources_of_texts(folder)}
        self.assertEqual(found, {("Words", "by macro"), ("Named", "by alias"), ("Helper", "by helper")})

    def test_texts_without_a_context_are_an_error(self):
        with tempfile.TemporaryDirectory() as folder:
            room = Path(folder) / "app"
            room.mkdir()
            (room / "a.cpp").write_text('class A : public QObject { void f() { tr("lost"); } };\n')
            with self.assertRaises(translations.LupdateError):
                translations.sources_of_texts(folder)

    def test_letters_in_quotes_stay(self):
        self.assertEqual(readable("x = 'a'; y = 0xff'ff;"), "x = 'a'; y = 0xffff;")


class English(unittest.TestCase):
    def test_it_says_only_how_many_there_are(self):
        messages = [message("Add"), message("%n row(s)", True)]
        self.assertEqual(translations.wanted_in("en", messages), messages[1:])
        self.assertEqual(translations.wanted_in("de", messages), messages)


class Merging(unittest.TestCase):
    def test_a_text_keeps_its_translation_in_another_context(self):
        old = {message("Add", context="Old"): ["Neu"]}
        self.assertEqual(
            updated([message("Add", context="New")], old), {message("Add", context="New"): ["Neu"]}
        )

    def test_entries_reach_their_contexts(self):
        texts = {message("Add"): [], message("Add", context="D"): [], message("%n", True): []}
        unused = merge(
            texts,
            [
                {"source": "Add", "translation": "Neu"},
                {"source": "Add", "context": "D", "translation": "Dazu"},
                {"source": "%n", "translation": ["eins", "%n"]},
                {"source": "Gone", "translation": "Weg"},
            ],
        )
        self.assertEqual(list(texts.values()), [["Neu"], ["Dazu"], ["eins", "%n"]])
        self.assertEqual(unused, ["Gone"])


if __name__ == "__main__":
    unittest.main()
