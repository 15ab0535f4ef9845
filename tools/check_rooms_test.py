#!/usr/bin/env python3
"""Planted arrows between rooms, and faults of the table, are found."""
import unittest

import check_rooms
from check_test import SmallProject

TABLE = """# comment
part -> # public headers
part/low -> part
part/high -> part part/low   # behind

other/room ->
"""


class RoomsTest(SmallProject):
    def setUp(self):
        super().setUp()
        for header in ("part/face.h", "part/low/a.h", "part/low/deep/b.h", "part/high/c.h", "other/room/d.h"):
            self.write(header, "#pragma once\n")
        self.write(check_rooms.TABLE, TABLE)

    def faults_of(self, path, *includes):
        self.write(path, "".join(f"#include {name}\n" for name in includes))
        return [fault for fault in check_rooms.check(self.root) if fault.startswith(f"{path}:")]

    def table_faults(self, table):
        self.write(check_rooms.TABLE, table)
        return [fault for fault in check_rooms.check(self.root) if fault.startswith(check_rooms.TABLE)]

    def test_arrows_of_the_table_pass(self):
        for path, *includes in (
            ("part/high/c.cpp", "<part/low/a.h>", "<part/low/deep/b.h>", "<part/face.h>", "<vector>"),
            ("part/low/a.cpp", "<part/low/deep/b.h>", "<part/face.h>", '"a.h"', "<other/room/d.h>"),
            ("part/low/deep/b.cpp", "<part/low/a.h>"),
            ("part/face.cpp", "<part/high/c.h>", "<part/low/a.h>"),
            ("part/low/e.cpp", "// <part/high/c.h>"),
        ):
            self.assertEqual(self.faults_of(path, *includes), [], path)

    def test_arrows_against_the_table_are_found(self):
        for path, include in (
            ("part/low/a.cpp", "<part/high/c.h>"),
            ("part/low/deep/b.h", "<part/high/c.h>"),
            ("part/low/a.h", '"../high/c.h"'),
            ("part/face.h", "<part/low/a.h>"),
        ):
            self.assertEqual(len(self.faults_of(path, include)), 1, f"{path} {include}")
            self.write(path, "")

    def test_public_headers_of_the_stack_are_for_all_its_rooms(self):
        self.write(check_rooms.TABLE, "stack/core ->\nstack/generated ->\n")
        self.write("stack/generated/include/opcua/types.h", "#include <stack/core/a.h>\n")
        self.write("stack/generated/names.h", "")
        self.assertEqual(self.faults_of("stack/core/a.h", "<opcua/types.h>"), [])
        self.assertEqual(len(self.faults_of("stack/core/a.h", "<stack/generated/names.h>")), 1)

    def test_a_folder_without_a_room_is_found(self):
        self.assertEqual(len(self.faults_of("other/hall/e.cpp")), 1)
        self.assertEqual(len(self.faults_of("other/e.h")), 1)

    def test_exceptions_hold_for_their_arrow_only_and_end_with_it(self):
        for exception in ("part/low -> part/high", "part/low/a.cpp -> part/high/c.h"):
            self.write(check_rooms.TABLE, f"{TABLE}except {exception}: not yet cut\n")
            self.assertEqual(self.faults_of("part/low/a.cpp", "<part/high/c.h>"), [])
            self.assertEqual(len(self.faults_of("part/face.h", "<part/high/c.h>")), 1)
            self.write("part/face.h", "")
            self.assertEqual(self.table_faults(f"{TABLE}except {exception}: not yet cut\n"), [])
            self.write("part/low/a.cpp", "")
            self.assertEqual(len(self.table_faults(f"{TABLE}except {exception}: not yet cut\n")), 1)
        self.write(check_rooms.TABLE, f"{TABLE}except part/low/b.cpp -> part/high/c.h: not yet cut\n")
        self.assertEqual(len(self.faults_of("part/low/a.cpp", "<part/high/c.h>")), 1)

    def test_faults_of_the_table_are_found(self):
        self.assertEqual(self.table_faults(TABLE), [])
        self.assertEqual(len(self.table_faults(f"{TABLE}part/more -> part/none\n")), 1)
        self.assertEqual(
            len(self.table_faults(TABLE.replace("part/low -> part", "part/low -> part part/high"))), 2
        )
        for line in ("part/low", "except part/low -> part/high", "part/low part", "part/low -> part"):
            with self.assertRaises(SystemExit):
                self.table_faults(f"{TABLE}{line}\n")

    def test_figures(self):
        self.write("part/low/a.h", "#include <part/face.h>\n#include <part/high/c.h>\n")
        self.write("part/high/c.cpp", "#include <part/low/a.h>\n")
        self.assertEqual(
            check_rooms.counts(self.root.resolve(), check_rooms.Rooms(TABLE)),
            (3, {("part/low", "part/high"): 1}, [("part/high", "part/low")]),
        )


if __name__ == "__main__":
    unittest.main()
