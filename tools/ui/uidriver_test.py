#!/usr/bin/python3
"""The driver without a desktop: what the command line takes apart, how names and targets are understood."""

import argparse
import io
import os
import tempfile
import unittest
from contextlib import redirect_stderr, redirect_stdout

from uidriver import Ui, UiError, command, node

COMMON = argparse.Namespace(nth=3, hidden=False, v=False)


def parsed(*argv):
    return command.parse(argv, COMMON)[1]


class CommandLineTest(unittest.TestCase):
    def test_options_stand_anywhere_and_texts_may_begin_with_a_dash(self):
        for argv in (("wait", "window", "A*", "2.5", "--gone"), ("wait", "--gone", "window", "A*", "2.5")):
            args = parsed(*argv)
            self.assertEqual((args.role, args.name, args.seconds, args.gone), ("window", "A*", 2.5, True))
        args = parsed("click", "--at", "-5,50%", "button", "OK", "--mod", "ctrl+shift")
        self.assertEqual((args.at, args.mod, args.name), (["-5", "50%"], ("ctrl", "shift"), "OK"))
        self.assertEqual(parsed("type", "--expand").text, "--expand")
        self.assertEqual(parsed("fill", "edit:A", "-1").text, "-1")
        self.assertEqual(parsed("press", "--", "--in").button, "--in")
        self.assertEqual(parsed("cell", "T", "-1").row, "-1")
        self.assertEqual(parsed("scroll", "T", "-3").clicks, -3)
        self.assertEqual(parsed("key", "a", "ctrl+b").key, ["a", "ctrl+b"])

    def test_what_was_said_before_the_verb_holds_unless_said_behind_it(self):
        self.assertEqual((parsed("tab", "A").nth, parsed("tab", "A", "--nth", "1").nth), (3, 1))
        self.assertEqual((parsed("dump").hidden, parsed("dump", "--hidden").hidden), (False, True))

    def test_wrong_words_are_refused(self):
        for argv in (
            ("nothing",),
            ("cell", "T"),
            ("tab", "A", "B"),
            ("dump", "--depth", "x"),
            ("dump", "--in"),
        ):
            with self.assertRaises(command.UsageError, msg=argv):
                parsed(*argv)

    def run_main(self, *argv):
        out, err = io.StringIO(), io.StringIO()
        with redirect_stdout(out), redirect_stderr(err):
            status = command.main(argv)
        return status, out.getvalue(), err.getvalue()

    def test_help_names_every_verb_and_needs_no_program(self):
        status, out, _ = self.run_main("help")
        self.assertEqual(status, 0)
        for verb, known in command.VERBS.items():
            self.assertRegex(out, rf"(?m)^  (\w+\|)*{verb}(\|\w+)*( |$)")
            self.assertIn(known.usage, out)
        self.assertEqual(self.run_main()[:2], (2, out))
        self.assertEqual(self.run_main("--app")[0], 2)
        self.assertEqual(self.run_main("nothing")[0], 2)

    def test_a_file_of_commands_stops_at_the_first_failure_and_names_its_line(self):
        with tempfile.NamedTemporaryFile("w", suffix=".ui") as file:
            file.write("# comment\n\nsleep 0\nclipboard\nsleep 0\n")
            file.flush()
            ui = Ui.__new__(Ui)
            ui.clipboard = self.refuse
            with self.assertRaisesRegex(UiError, "^line 4: clipboard: nothing there$"):
                command.execute(ui, ["run", file.name], COMMON)
        with self.assertRaisesRegex(command.UsageError, "No such file"):
            command.execute(ui, ["run", os.devnull + ".none"], COMMON)

    @staticmethod
    def refuse():
        raise UiError("nothing there")

    def test_cells_stay_in_their_columns(self):
        out = io.StringIO()
        with redirect_stdout(out):
            command.tsv("a\tb", "c\nd", "e\\f", 1)
        self.assertEqual(out.getvalue(), "a\\tb\tc\\nd\te\\\\f\t1\n")


class NamesTest(unittest.TestCase):
    def test_names_match_exactly_by_glob_or_by_expression(self):
        for pattern, text in (
            (None, "a"),
            ("Save As", "Save As..."),
            ("Name:", "Name"),
            ("S*e", "Save"),
            ("/^S/", "Save"),
        ):
            self.assertTrue(node.matches(pattern, None, text), pattern)
        for pattern, text in (("Save", "Save As"), ("s*", "Save"), ("/^a/", "Save"), ("", "Save"), (":", "")):
            self.assertFalse(node.matches(pattern, None, text), pattern)

    def test_targets_in_brackets_are_taken_apart(self):
        class Recorder(Ui):
            def __init__(self):
                self.seen = None

            def item(self, view, path, within=None):
                self.seen = ("item", view, path, within)

            def cell(self, view, row, col=0, within=None, scroll=True):
                self.seen = ("cell", view, row, col, within)

            def find(self, role, name=None, nth=0, timeout=None, hidden=False, within=None):
                self.seen = ("find", role, name, nth, within)
                return "outer"

        ui = Recorder()
        for target, seen in (
            ("item:tree:Nodes[Root>a[1]]", ("item", "tree:Nodes", "Root>a[1]", None)),
            ("cell:List[a, b, Name ]", ("cell", "List", "a, b", "Name", None)),
            ("window:Main >> item:Nodes[Root]", ("item", "Nodes", "Root", "outer")),
            ("push button:OK", ("find", "push button", "OK", 0, None)),
            ("tip:Saves it", ("find", "*", "tip:Saves it", 0, None)),
            ("C:\\file: one", ("find", "*", "C:\\file: one", 0, None)),
        ):
            ui.resolve(target)
            self.assertEqual(ui.seen, seen)
        self.assertEqual(ui.resolve("-3,14"), (-3, 14))


if __name__ == "__main__":
    unittest.main()
