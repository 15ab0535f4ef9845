#!/usr/bin/env python3
"""Names that the documents have and the sources have not are found."""
import unittest

import check_names
from check_test import SmallProject

HEADER = """namespace opcua {
class Reader final : public Base
{
public:
    bool structure(const Type& type, void* object);
    // oldStructure(int)
    struct Row
    {
        int rowCount;
    };
};
class Later;
} // namespace opcua
"""


class NamesTest(SmallProject):
    def setUp(self):
        super().setUp()
        self.write("stack/reader.h", HEADER)
        self.write("tests/test_reader.cpp", "TEST(Reader, FindsWhatIsThere)\n{\n    Later::dropAll();\n}\n")
        self.write("cmake/a.cmake", "function(tavelin_add_row)\nendfunction()\n")

    def faults_of(self, text, path="docs/architecture.md"):
        self.write(path, text)
        return [fault.split("sources have no ")[1] for fault in check_names.check(self.root)]

    def test_names_that_are_there_pass(self):
        spans = (
            "Reader::structure Row::rowCount FindsWhatIsThere tavelin_add_row std::span put_together".split()
        )
        self.assertEqual(self.faults_of("\n".join(f"`{span}`" for span in spans)), [])
        self.assertEqual(self.faults_of("`someRow is`, someRow, Writer::structure\n"), [])
        self.assertEqual(self.faults_of("`goneAway`", "docs/decisions/0001.md"), [])

    def test_names_that_are_not_there_are_found(self):
        for span in (
            "Reader::oldStructure",
            "Writer::structure",
            "Later::structure",
            "Reader::dropAll",
            "FindsNothing",
            "test_gone",
            "oldRow",
        ):
            for path in ("docs/architecture.md", "CONTRIBUTING.md"):
                self.assertEqual(self.faults_of(f"see `{span}`\n", path), [span])
                (self.root / path).unlink()


if __name__ == "__main__":
    unittest.main()
