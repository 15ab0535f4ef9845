#!/usr/bin/env python3
"""Which services have items and results, and what they are called."""
import unittest
from types import SimpleNamespace

import emit_service_traits
from emit_services import SERVICES
from schema import Field, Structure


def _structure(*fields):
    return Structure("", 0, 0, 0, [Field(name, kind, is_array=array) for name, kind, array in fields])


class Traits(unittest.TestCase):
    def _header(self, request, response):
        structures = {
            service + suffix: _structure() for service in SERVICES for suffix in ("Request", "Response")
        }
        structures["ReadRequest"] = _structure(*request)
        structures["ReadResponse"] = _structure(*response)
        text = emit_service_traits.traits_header(SimpleNamespace(structures=structures))
        return text[text.index("struct Read\n") : text.index("struct HistoryRead\n")]

    def test_one_array_is_the_items_and_results_come_before_others(self):
        read = self._header(
            [("MaxAge", "Double", False), ("NodesToRead", "ReadValueId", True)],
            [
                ("Numbers", "UInt32", True),
                ("Results", "DataValue", True),
                ("DiagnosticInfos", "DiagnosticInfo", True),
            ],
        )
        self.assertIn("using Item = OpcUa_ReadValueId;", read)
        self.assertIn("items = &OpcUa_ReadRequest::NodesToRead;", read)
        self.assertIn("resultCount = &OpcUa_ReadResponse::NoOfResults;", read)
        self.assertIn("using Result = OpcUa_DataValue;", read)
        self.assertIn('beginMethod = "beginRead";', read)
        self.assertIn('completion = "readComplete";', read)

    def test_without_one_array_there_are_no_items(self):
        read = self._header(
            [("First", "UInt32", True), ("Second", "UInt32", True)],
            [("DiagnosticInfos", "DiagnosticInfo", True)],
        )
        self.assertNotIn("Item", read)
        self.assertNotIn("Result ", read)


if __name__ == "__main__":
    unittest.main()
