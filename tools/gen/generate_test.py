#!/usr/bin/env python3
"""What the published schema does not use yet: unions, optional fields, structures that hold themselves."""
import tempfile
import unittest
from pathlib import Path

import emit_types
import schema

BSD = """<opc:TypeDictionary xmlns:opc="http://opcfoundation.org/BinarySchema/">
<opc:StructuredType Name="Tree" BaseType="ua:ExtensionObject">
  <opc:Field Name="LeftSpecified" TypeName="opc:Bit"/>
  <opc:Field Name="NoteSpecified" TypeName="opc:Bit"/>
  <opc:Field Name="Reserved1" TypeName="opc:Bit" Length="30"/>
  <opc:Field Name="Label" TypeName="opc:Byte"/>
  <opc:Field Name="Left" TypeName="tns:Tree" SwitchField="LeftSpecified"/>
  <opc:Field Name="NoOfNote" TypeName="opc:Int32" SwitchField="NoteSpecified"/>
  <opc:Field Name="Note" TypeName="opc:CharArray" LengthField="NoOfNote" SwitchField="NoteSpecified"/>
</opc:StructuredType>
<opc:StructuredType Name="Choice" BaseType="ua:Union">
  <opc:Field Name="SwitchField" TypeName="opc:UInt32"/>
  <opc:Field Name="Number" TypeName="opc:Double" SwitchField="SwitchField" SwitchValue="1"/>
  <opc:Field Name="Corner" TypeName="tns:Corner" SwitchField="SwitchField" SwitchValue="2"/>
</opc:StructuredType>
<opc:StructuredType Name="Corner" BaseType="ua:ExtensionObject">
  <opc:Field Name="X" TypeName="opc:Float"/>
  <opc:Field Name="Flags" TypeName="tns:Flags"/>
</opc:StructuredType>
<opc:EnumeratedType Name="Flags" LengthInBits="16" IsOptionSet="true">
  <opc:EnumeratedValue Name="Hot" Value="1"/>
</opc:EnumeratedType>
</opc:TypeDictionary>"""

NODESET = """<UANodeSet xmlns="http://opcfoundation.org/UA/2011/03/UANodeSet.xsd">
<Aliases><Alias Alias="Float">i=10</Alias></Aliases>
<UADataType NodeId="i=70001" BrowseName="Tree"/>
<UADataType NodeId="i=70002" BrowseName="Choice"/>
<UADataType NodeId="i=70003" BrowseName="Corner">
  <Definition Name="Corner"><Field Name="X" DataType="i=290"/></Definition>
</UADataType>
<UADataType NodeId="i=70004" BrowseName="Flags"/>
<UAObject NodeId="i=70005" BrowseName="Default Binary" SymbolicName="DefaultBinary"><References>
  <Reference ReferenceType="HasEncoding" IsForward="false">i=70001</Reference></References></UAObject>
</UANodeSet>"""


class SmallSchema(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        codes = "\n".join(f'name: "Bad{i}", value: 0x{0x80000000 + (i << 16):X}' for i in range(1, 250))
        ids = "\n".join(f'X[X["Name{i}"] = {i}]' for i in range(1, 1200))
        for name, text in (
            (schema.BSD, BSD),
            (schema.NODESET, NODESET),
            (schema.STATUS_CODES, codes),
            (schema.NODE_IDS, ids),
        ):
            path = Path(folder.name) / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        self.schema = schema.Schema(Path(folder.name))

    def test_recursion_and_optional_fields(self):
        tree = self.schema.structures["Tree"]
        self.assertEqual([field.name for field in tree.fields], ["Label", "Left", "Note"])
        self.assertEqual([field.is_pointer for field in tree.fields], [False, True, False])
        self.assertTrue(tree.has_optional_fields)
        self.assertEqual(tree.binary_id, 70005)
        self.assertEqual(tree.minimum_size, 5)
        source = emit_types.types_source(self.schema)
        self.assertIn("TYPE(Tree, 70001, 70005, 0, fieldsTree, 3, 0, 1, 6u, 5, 0)", source)
        self.assertIn("POINTED(Tree, Left, Tree, 70001)", source)
        self.assertIn(
            "    OpcUa_UInt32 EncodingMask;\n    OpcUa_Byte Label;\n    OpcUa_Tree* Left;\n"
            "    OpcUa_Int32 NoOfNote;\n    OpcUa_String* Note;\n",
            emit_types.types_header(self.schema),
        )

    def test_unions_and_option_sets(self):
        self.assertEqual(list(self.schema.structures), ["Tree", "Corner", "Choice"], "members come first")
        source = emit_types.types_source(self.schema)
        self.assertIn("TYPE(Choice, 70002, 0, 0, fieldsChoice, 2, 1, 0, 0u, 4, 1)", source)
        self.assertIn("SIMPLE(Corner, Flags, 5, 70004)", source)
        self.assertIn(
            "SIMPLE(Corner, X, 10, 290)", source, "the declared data type, not that of the encoding"
        )
        self.assertIn("typedef OpcUa_UInt16 OpcUa_Flags;", emit_types.types_header(self.schema))


if __name__ == "__main__":
    unittest.main()
