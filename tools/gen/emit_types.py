"""C enumerations, structures and their tables."""

from schema import BUILT_IN_TYPES
from text import c_header, c_source


def types_header(schema):
    lines = []
    for enumeration in schema.enumerations.values():
        lines += _option_set(enumeration) if enumeration.is_option_set else _enumeration(enumeration)
    lines += ["/* structures; an empty one holds a byte, for C knows none without members */"]
    lines += [f"typedef struct OpcUa_{name} OpcUa_{name};" for name in schema.structures]
    lines.append("")
    for structure in schema.structures.values():
        lines += _structure(schema, structure)
    lines += _FUNCTIONS.splitlines()
    lines += [f"OPCUA_STRUCTURE_FUNCTIONS({name})" for name in schema.structures]
    return c_header("OPCUA_TYPES_H", ["opcua_encodeable.h"], lines)


_FUNCTIONS = """
#define OPCUA_STRUCTURE_FUNCTIONS(T) \\
    OPCUA_EXPORT extern const OpcUa_EncodeableType OpcUa_##T##_EncodeableType; \\
    static inline void OpcUa_##T##_Initialize(OpcUa_##T* value) \\
    { OpcUa_EncodeableObject_Initialize(&OpcUa_##T##_EncodeableType, value); } \\
    static inline void OpcUa_##T##_Clear(OpcUa_##T* value) \\
    { OpcUa_EncodeableObject_Clear(&OpcUa_##T##_EncodeableType, value); } \\
    OPCUA_NODISCARD static inline OpcUa_StatusCode OpcUa_##T##_Copy(const OpcUa_##T* source, OpcUa_##T* destination) \\
    { return OpcUa_EncodeableObject_Copy(&OpcUa_##T##_EncodeableType, source, destination); } \\
    static inline int OpcUa_##T##_Compare(const OpcUa_##T* left, const OpcUa_##T* right) \\
    { return OpcUa_EncodeableObject_Compare(&OpcUa_##T##_EncodeableType, left, right); }
"""  # noqa: E501


def _enumeration(enumeration):
    name = enumeration.name
    lines = [f"typedef enum OpcUa_{name} OPCUA_ENUM_BASE {{"]
    lines += [f"    OpcUa_{name}_{member} = {value}," for member, value in enumeration.values]
    return lines + [f"}} OpcUa_{name};", ""]


def _option_set(enumeration):
    name = enumeration.name
    lines = [f"typedef OpcUa_{enumeration.built_in} OpcUa_{name};"]
    lines += [f"#define OpcUa_{name}_{member} {value}u" for member, value in enumeration.values]
    return lines + [""]


def _structure(schema, structure):
    lines = [f"struct OpcUa_{structure.name} {{"]
    if structure.is_union:
        lines.append("    OpcUa_UInt32 SwitchField;")
    elif structure.has_optional_fields:
        lines.append("    OpcUa_UInt32 EncodingMask;")
    for item in structure.fields:
        if item.is_array:
            lines.append(f"    OpcUa_Int32 NoOf{item.name};")
        star = "*" if item.is_array or item.is_pointer else ""
        lines.append(f"    OpcUa_{item.type_name}{star} {item.name};")
    if len(lines) == 1:
        lines.append("    OpcUa_Byte Empty;")
    return lines + ["};", ""]


# -- tables ------------------------------------------------------------------------------------------

_MACROS = """
#define FIELD(T, name, kind, pointer, type, dataType) \\
    {#name, kind, 0, pointer, offsetof(OpcUa_##T, name), 0, type, dataType}
#define ARRAY(T, name, kind, pointer, type, dataType) \\
    {#name, kind, 1, pointer, offsetof(OpcUa_##T, name), offsetof(OpcUa_##T, NoOf##name), type, dataType}
#define SIMPLE(T, name, kind, dataType) FIELD(T, name, kind, 0, NULL, dataType)
#define SIMPLES(T, name, kind, dataType) ARRAY(T, name, kind, 0, NULL, dataType)
#define NESTED(T, name, type, dataType) FIELD(T, name, OpcUa_FieldKind_Structure, 0, &OpcUa_##type##_EncodeableType, dataType)
#define POINTED(T, name, type, dataType) FIELD(T, name, OpcUa_FieldKind_Structure, 1, &OpcUa_##type##_EncodeableType, dataType)
#define NESTEDS(T, name, type, dataType) ARRAY(T, name, OpcUa_FieldKind_Structure, 0, &OpcUa_##type##_EncodeableType, dataType)
#define TYPE(T, id, binary, xml, fields, count, isUnion, optional, mask, minimum, flat) \\
    const OpcUa_EncodeableType OpcUa_##T##_EncodeableType = {#T, id, binary, xml, sizeof(OpcUa_##T), fields, \\
        count, isUnion, optional, mask, minimum, flat};
"""  # noqa: E501


def types_source(schema):
    body = ["#include <stack/encoding/nametables.h>", ""] + _MACROS.strip().splitlines() + [""]
    for structure in schema.structures.values():
        body += _table(schema, structure)
    by_type = sorted(schema.structures.values(), key=lambda item: item.type_id)
    by_encoding = sorted((item for item in by_type if item.binary_id), key=lambda item: item.binary_id)
    body += _index("opcua_typesByTypeId", by_type) + _index("opcua_typesByBinaryId", by_encoding)
    body += _enumeration_tables(schema)
    return c_source(["opcua/opcua_types.h"], body)


def _table(schema, structure):
    name = structure.name
    lines = []
    if structure.fields:
        lines.append(f"static const OpcUa_FieldDescriptor fields{name}[] = {{")
        lines += ["    " + _descriptor(schema, structure, item) + "," for item in structure.fields]
        lines.append("};")
    # an optional field's place in the mask is its place in the table
    mask = sum(1 << index for index, item in enumerate(structure.fields) if item.optional_bit >= 0)
    fields = f"fields{name}" if structure.fields else "NULL"
    flags = f"{int(structure.is_union)}, {int(structure.has_optional_fields)}, {mask}u"
    lines.append(
        f"TYPE({name}, {structure.type_id}, {structure.binary_id}, {structure.xml_id}, {fields}, "
        f"{len(structure.fields)}, {flags}, {structure.minimum_size}, {int(structure.is_flat)})"
    )
    return lines


def _descriptor(schema, structure, item):
    place = f"{structure.name}, {item.name}"
    if item.type_name in schema.structures:
        macro = "NESTEDS" if item.is_array else "POINTED" if item.is_pointer else "NESTED"
        return f"{macro}({place}, {item.type_name}, {item.data_type_id})"
    enumeration = schema.enumerations.get(item.type_name)
    if enumeration and not enumeration.is_option_set:
        kind = 30
    else:
        kind = BUILT_IN_TYPES[schema.wire_type(item.type_name)][0]
    return f"{'SIMPLES' if item.is_array else 'SIMPLE'}({place}, {kind}, {item.data_type_id})"


def _index(name, structures):
    lines = [f"const OpcUa_EncodeableType* const {name}[] = {{"]
    lines += [f"    &OpcUa_{item.name}_EncodeableType," for item in structures]
    return lines + ["};", f"const unsigned {name}Count = {len(structures)}u;"]


def _enumeration_tables(schema):
    ordered = sorted(schema.enumerations.values(), key=lambda item: item.type_id)
    lines = []
    for item in ordered:
        lines.append(f"static const OpcUa_EnumeratedValue values{item.name}[] = {{")
        lines += [f'    {{"{member}", {value}}},' for member, value in item.values]
        lines.append("};")
    lines.append("const OpcUa_EnumeratedType opcua_enumeratedTypes[] = {")
    for item in ordered:
        kind = BUILT_IN_TYPES[item.built_in][0]
        lines.append(
            f'    {{"{item.name}", {item.type_id}, {kind}, {int(item.is_option_set)}, values{item.name}, '
            f"{len(item.values)}}},"
        )
    return lines + ["};", f"const unsigned opcua_enumeratedTypeCount = {len(ordered)}u;"]
