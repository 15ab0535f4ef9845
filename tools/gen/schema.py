"""Reads the published type schema, node set and code lists into plain Python values."""

import re
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass, field
from pathlib import Path

BSD = "node-opcua-nodesets/nodesets/Opc.Ua.Types.bsd"
NODESET = "node-opcua-nodesets/nodesets/Opc.Ua.NodeSet2.xml"
STATUS_CODES = "node-opcua-status-code/dist/_generated_status_codes.js"
NODE_IDS = "node-opcua-constants/dist/opcua_node_ids.js"

# name, id, least number of bytes on the wire, owns memory
BUILT_IN_TYPES = {
    "Boolean": (1, 1, False),
    "SByte": (2, 1, False),
    "Byte": (3, 1, False),
    "Int16": (4, 2, False),
    "UInt16": (5, 2, False),
    "Int32": (6, 4, False),
    "UInt32": (7, 4, False),
    "Int64": (8, 8, False),
    "UInt64": (9, 8, False),
    "Float": (10, 4, False),
    "Double": (11, 8, False),
    "String": (12, 4, True),
    "DateTime": (13, 8, False),
    "Guid": (14, 16, False),
    "ByteString": (15, 4, True),
    "XmlElement": (16, 4, True),
    "NodeId": (17, 2, True),
    "ExpandedNodeId": (18, 2, True),
    "StatusCode": (19, 4, False),
    "QualifiedName": (20, 6, True),
    "LocalizedText": (21, 1, True),
    "ExtensionObject": (22, 3, True),
    "DataValue": (23, 1, True),
    "Variant": (24, 1, True),
    "DiagnosticInfo": (25, 1, True),
}

_BITS_TO_TYPE = {8: "Byte", 16: "UInt16", 32: "UInt32", 64: "UInt64"}


@dataclass
class Enumeration:
    name: str
    type_id: int
    built_in: str  # Int32, or the unsigned type of an option set
    is_option_set: bool
    values: list  # (name, number)


@dataclass
class Field:
    name: str
    type_name: str  # a built-in type, an enumeration or a structure
    is_array: bool = False
    is_pointer: bool = False
    data_type_id: int = 0
    switch_value: int = 0  # place in a union
    optional_bit: int = -1


@dataclass
class Structure:
    name: str
    type_id: int
    binary_id: int
    xml_id: int
    fields: list = field(default_factory=list)
    is_union: bool = False
    has_optional_fields: bool = False
    minimum_size: int = 0
    is_flat: bool = True


class Schema:
    """All that the emitters need: enumerations, structures in order of use, ids, status codes."""

    def __init__(self, modules: Path):
        self.status_codes = _read_status_codes(modules / STATUS_CODES)
        nodeset = ElementTree.parse(modules / NODESET).getroot()
        self.identifiers = _read_identifiers(modules / NODE_IDS, nodeset)
        self._definitions = _read_definitions(nodeset)
        root = ElementTree.parse(modules / BSD).getroot()
        self.enumerations = {}
        self.structures = {}
        self._read_types(root)
        self._resolve_field_types()
        self._order_structures()
        self._measure()

    # -- the type schema ------------------------------------------------------------------------

    def _read_types(self, root):
        for element in root:
            kind = _local(element.tag)
            name = element.get("Name")
            if kind == "EnumeratedType" and name in self.identifiers:
                enumeration = self._enumeration(element)
                if enumeration.values:  # the abstract base has none
                    self.enumerations[name] = enumeration
            elif kind == "StructuredType" and element.get("BaseType") and name in self.identifiers:
                self.structures[name] = self._structure(element)

    def _enumeration(self, element):
        name = element.get("Name")
        option_set = element.get("IsOptionSet") == "true"
        built_in = _BITS_TO_TYPE[int(element.get("LengthInBits"))] if option_set else "Int32"
        values = [
            (value.get("Name"), int(value.get("Value")))
            for value in element
            if _local(value.tag) == "EnumeratedValue"
        ]
        return Enumeration(name, self.identifiers[name], built_in, option_set, values)

    def _structure(self, element):
        name = element.get("Name")
        structure = Structure(
            name,
            self.identifiers[name],
            self.identifiers.get(f"{name}_Encoding_DefaultBinary", 0),
            self.identifiers.get(f"{name}_Encoding_DefaultXml", 0),
            is_union=element.get("BaseType").endswith(":Union"),
        )
        fields = [child for child in element if _local(child.tag) == "Field"]
        lengths = {child.get("LengthField") for child in fields}
        bits = {}  # name of a presence bit -> its number
        position = 0
        for child in fields:
            if child.get("TypeName") == "opc:Bit":
                bits[child.get("Name")] = position
                position += int(child.get("Length", "1"))
            elif child.get("Name") in lengths or child.get("Name") == "SwitchField":
                continue
            else:
                structure.fields.append(self._field(child, structure, bits))
        structure.has_optional_fields = bool(bits) and not structure.is_union
        return structure

    def _field(self, child, structure, bits):
        type_name = child.get("TypeName").split(":")[1].replace("CharArray", "String")
        result = Field(child.get("Name"), type_name, child.get("LengthField") is not None)
        switch = child.get("SwitchField")
        if structure.is_union:
            result.switch_value = int(child.get("SwitchValue"))
            if result.switch_value != len(structure.fields) + 1:
                raise ValueError(f"{structure.name}.{result.name}: union values are not consecutive")
        elif switch:
            result.optional_bit = bits[switch]
        return result

    def _resolve_field_types(self):
        for structure in self.structures.values():
            named = self._definitions.get(structure.type_id, {})
            for item in structure.fields:
                if (
                    item.type_name not in BUILT_IN_TYPES
                    and item.type_name not in self.enumerations
                    and item.type_name not in self.structures
                ):
                    raise ValueError(f"{structure.name}.{item.name}: unknown type {item.type_name}")
                item.data_type_id = named.get(item.name) or self._own_type_id(item.type_name)

    def _own_type_id(self, type_name):
        if type_name in BUILT_IN_TYPES:
            return BUILT_IN_TYPES[type_name][0]
        return self.identifiers[type_name]

    def _order_structures(self):
        """Puts members before those that hold them; a structure that contains itself is held by pointer."""
        done, path, ordered = set(), [], {}

        def visit(name):
            if name in done:
                return
            path.append(name)
            for item in self.structures[name].fields:
                if item.type_name not in self.structures or item.is_array:
                    continue
                if item.type_name in path:
                    item.is_pointer = True
                else:
                    visit(item.type_name)
            path.pop()
            done.add(name)
            ordered[name] = self.structures[name]

        for name in list(self.structures):
            visit(name)
        self.structures = ordered

    def _measure(self):
        for structure in self.structures.values():
            size = 4 if structure.is_union or structure.has_optional_fields else 0
            for item in structure.fields:
                nested = self.structures.get(item.type_name)
                if item.is_array or item.is_pointer:
                    least, owns = (4 if item.is_array else 0), True
                elif nested:
                    least, owns = nested.minimum_size, not nested.is_flat
                else:
                    _, least, owns = BUILT_IN_TYPES[self.wire_type(item.type_name)]
                structure.is_flat = structure.is_flat and not owns
                if not structure.is_union and item.optional_bit < 0:
                    size += least
            structure.minimum_size = size

    def wire_type(self, type_name):
        """The built-in type that carries a simple field."""
        enumeration = self.enumerations.get(type_name)
        return enumeration.built_in if enumeration else type_name


def _local(tag):
    return tag.split("}")[-1]


# -- lists of names and numbers ----------------------------------------------------------------------


def _read_status_codes(path):
    found = re.findall(r'name:\s*"(\w+)",\s*value:\s*(0x[0-9a-fA-F]+)', path.read_text(encoding="utf-8"))
    codes = {name: int(value, 16) for name, value in found}
    if len(codes) < 200 or any(value & 0xFFFF for value in codes.values()):
        raise ValueError(f"{path}: not the list of status codes that was expected")
    return dict(sorted(codes.items(), key=lambda item: (item[1], item[0])))


def _read_identifiers(path, nodeset):
    """Names to numbers; names of nodes that the list lacks are made from the node set's hierarchy."""
    found = re.findall(r'\["(\w+)"\] = (\d+)\]', path.read_text(encoding="utf-8"))
    identifiers = {name: int(value) for name, value in found}
    if len(identifiers) < 1000:
        raise ValueError(f"{path}: not the list of node ids that was expected")
    taken = {value: name for name, value in identifiers.items()}
    nodes = {}
    for element in nodeset:
        node_id = element.get("NodeId", "")
        if node_id.startswith("i="):
            nodes[int(node_id[2:])] = element
    for number in sorted(nodes):
        name = _node_name(number, nodes, taken)
        if name and number not in taken:
            if name in identifiers:
                name = f"{name}_{number}"
            identifiers[name] = number
            taken[number] = name
    return dict(sorted(identifiers.items(), key=lambda item: (item[1], item[0])))


def _node_name(number, nodes, taken, depth=0):
    if number in taken:
        return taken[number]
    element = nodes.get(number)
    if element is None or depth > 20:
        return None
    own = element.get("SymbolicName") or element.get("BrowseName").split(":")[-1]
    own = re.sub(r"\W", "", own)
    parent = element.get("ParentNodeId")
    if parent and parent.startswith("i="):
        above = _node_name(int(parent[2:]), nodes, taken, depth + 1)
        return f"{above}_{own}" if above else None
    for reference in element.iter():
        if reference.get("ReferenceType") == "HasEncoding" and reference.get("IsForward") == "false":
            above = _node_name(int(reference.text[2:]), nodes, taken, depth + 1)
            return f"{above}_Encoding_{own}" if above else None
    return own


def _read_definitions(nodeset):
    """Data type ids of fields: {type id: {field name: data type id}}, with those of the base types."""
    aliases, own, bases = {}, {}, {}
    for element in nodeset.iter():
        kind = _local(element.tag)
        if kind == "Alias":
            aliases[element.get("Alias")] = element.text
        elif kind == "UADataType":
            number = int(element.get("NodeId")[2:])
            own[number] = {}
            for child in element.iter():
                if _local(child.tag) == "Field" and child.get("DataType"):
                    text = aliases.get(child.get("DataType"), child.get("DataType"))
                    own[number][child.get("Name")] = int(text[2:])
                if child.get("ReferenceType") == "HasSubtype" and child.get("IsForward") == "false":
                    bases[number] = int(child.text[2:])
    result = {}
    for number in own:
        chain, current = {}, number
        while current in own:
            chain = {**own[current], **chain}
            current = bases.get(current, 0)
        result[number] = chain
    return result
