#!/usr/bin/env python3
"""Planted faults of contracts are found in every public header, missing ones where plugin authors look."""
import unittest

import check_contracts
from check_sources import ROOT
from check_test import SmallProject

RIGHT = """#pragma once

/// A row of the view.
class Row
{
public:
    /// The text of a column; empty for one that is not there. As text(int, bool) const.
    /// @param column from 0 on
    int text(int column) const;
    /// Throws nothing, writes `\\n` and `<Name>`.
    int text(int column, bool wide) const;
    int width; ///< in pixels
};
"""


class ContractsTest(SmallProject):
    def setUp(self):
        super().setUp()
        self.write("docs/Doxyfile", (ROOT / "docs/Doxyfile").read_text(encoding="utf-8"))
        self.write("docs/plugin-guide.md", "# Guide\n\nSee [here](glossary.md).\n")
        self.write("docs/glossary.md", "# Words\n")

    def faults_of(self, text, path="uabase/values/row.h"):
        self.write(path, text)
        found = check_contracts.check(self.root, self.root / "build/docs")
        (self.root / path).unlink()
        return found

    def test_right_contracts_pass_and_make_pages(self):
        self.assertEqual(self.faults_of(RIGHT, "app/api/row.h"), [])
        self.assertTrue((self.root / "build/docs/html/classRow.html").is_file())
        self.assertIn("Guide", (self.root / "build/docs/html/index.html").read_text(encoding="utf-8"))

    def test_wrong_contracts_are_found_everywhere(self):
        for wrong, path in (
            (RIGHT.replace("@param column", "@param colum"), "uaclientsdk/row.h"),
            (RIGHT.replace("from 0 on", "from @ref Elsewhere on"), "stack/include/opcua/row.h"),
            (RIGHT.replace("`\\n`", "\\x1B"), "uabase/values/row.h"),
            (RIGHT.replace("`<Name>`", "<Name>"), "uabase/values/row.h"),
            (RIGHT.replace("@param column from", "@parameter column from"), "app/api/row.h"),
        ):
            found = self.faults_of(wrong, path)
            self.assertEqual(len(found), 1, found)
            self.assertTrue(found[0].startswith(f"{path}:"), found)

    def test_hashes_of_our_classes_pass(self):
        hashed = (
            "\ntemplate <>\nstruct std::hash<Row>\n{\n    std::size_t operator()(const Row& row) const;\n};\n"
        )
        self.assertEqual(self.faults_of(RIGHT + hashed), [])

    def test_missing_contracts_are_found_where_plugin_authors_look(self):
        bare = RIGHT.replace("    /// Throws nothing, writes `\\n` and `<Name>`.\n", "").replace(
            " ///< in pixels", ""
        )
        for folder in check_contracts.COMPLETE:
            self.assertEqual(len(self.faults_of(bare, f"{folder}/row.h")), 2, folder)
        self.assertEqual(self.faults_of(bare), [])

    def test_private_headers_and_rooms_behind_the_public_ones_are_left_out(self):
        for path in ("uabase/values/row_p.h", "uaclientsdk/connection/row.h"):
            self.assertEqual(self.faults_of(RIGHT.replace("@param column", "@param colum"), path), [])

    def test_dead_links_of_the_pages_are_found(self):
        self.write("docs/glossary.md", "# Words\n\nSee @ref nowhere.\n")
        self.assertEqual(len(self.faults_of(RIGHT)), 1)


if __name__ == "__main__":
    unittest.main()
