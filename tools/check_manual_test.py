#!/usr/bin/env python3
"""What the check of the manual has to notice."""
import unittest

from check_manual import bare, english_faults, german_faults, heading_faults, keys_of_code, wordings
from check_sources import ROOT
from translations import Message

ENGLISH = {"Save As": {1}, "Server": {2}, "late by": {3}, "Median": {4}}
GERMAN = {"Speichern unter": {1}, "Server": {2}, "verspätet": {3}, "Median": {4}}


def english(text):
    return list(english_faults(text, ENGLISH, {"Ctrl+S", "F5"}))


def german(text, source):
    return list(german_faults(text, source, ENGLISH, GERMAN))


class Wordings(unittest.TestCase):
    def test_a_text_is_known_as_it_is_spoken_of(self):
        for text, ways in (
            ("Save &As...", {"Save As"}),
            ("&Oldest value:", {"Oldest value"}),
            ("Drag && Drop", {"Drag & Drop"}),
            ("Median [us]", {"Median"}),
            ("late by %1", {"late by"}),
            ("%1 of %n rows", {"rows"}),
            ("<b>Gone</b><br>An old name.", set()),
        ):
            self.assertEqual(wordings(text), ways, text)
        self.assertEqual(bare("Save\nAs..."), "Save As")


class English(unittest.TestCase):
    def test_names_and_keys_are_those_of_the_program(self):
        self.assertEqual(english("<p><b>Server &gt; Save\nAs...</b> or F5, Ctrl+S</p>**Server**"), [])
        self.assertEqual(english("<b>Server &gt; Store</b>"), ["'Store' is no text of the program"])
        self.assertEqual(english("**Store**"), ["'Store' is no text of the program"])
        self.assertEqual(english("<p><tt>Ctrl+Shift+S</tt></p>"), ["the key Ctrl+Shift+S does nothing"])

    def test_the_keys_of_the_code_are_found(self):
        # a name of Qt's, a text, numbers with and without modifiers, one that an event is asked for
        self.assertLessEqual({"F5", "Ctrl+Up", "F2", "Ctrl+Shift+P", "Shift+F10"}, keys_of_code(ROOT))


class German(unittest.TestCase):
    SOURCE = "<p>Press <b>Save As...</b> or Ctrl+S.</p><p><b>late by</b></p>"

    def test_a_page_says_what_the_english_one_does(self):
        good = "<p>Drücken Sie Strg+S oder <b>Speichern unter...</b></p><p><b>verspätet</b></p>"
        self.assertEqual(german(good, self.SOURCE), [])

    def test_what_differs_is_told(self):
        for text, word in (
            ("<p><b>Sichern</b>, Strg+S</p><p><b>verspätet</b></p>", "'Sichern'"),
            ("<p><b>Median</b>, Strg+S</p><p><b>verspätet</b></p>", "'Median'"),
            ("<p>Strg+S</p><p><b>verspätet</b></p>", "is not named"),
            ("<p><b>Speichern unter</b>, Strg+O</p><p><b>verspätet</b></p>", "other keys"),
            ("<p><b>Speichern unter</b>, Strg+S</p>", "other paragraphs"),
        ):
            faults = german(text, self.SOURCE)
            self.assertTrue(any(word in fault for fault in faults), (text, faults))

    def test_help_on_a_control_has_its_name(self):
        def faults(german):
            help_on_it = Message("C", "<b>Save As</b><br>Writes it.", "", False)
            return list(
                heading_faults(
                    {Message("C", "Save &As...", "", False): ["S&ichern..."], help_on_it: [german]}
                )
            )

        self.assertEqual(faults("<b>Sichern</b><br>Schreibt es."), [])
        self.assertEqual(len(faults("<b>Speichern</b><br>Schreibt es.")), 1)


if __name__ == "__main__":
    unittest.main()
