// Structures of an imagined server, and a dictionary that answers from a map.
#pragma once

#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uanodeid.h>

#include <map>

namespace testdefinitions {

inline UaStructureDefinition point()
{
    UaStructureDefinition definition("Point", UaNodeId(10, 2), UaNodeId(11, 2));
    definition.addField(UaStructureField("X", UaNodeId(11), OpcUaType_Double));
    definition.addField(UaStructureField("Y", UaNodeId(11), OpcUaType_Double));
    definition.addField(UaStructureField("Label", UaNodeId(12), OpcUaType_String));
    return definition;
}

inline UaStructureDefinition options()
{
    UaStructureDefinition definition("Options", UaNodeId(12, 2), UaNodeId(13, 2));
    definition.addField(UaStructureField("Limit", UaNodeId(3), OpcUaType_Byte, -1, true));
    definition.addField(UaStructureField("Count", UaNodeId(6), OpcUaType_Int32));
    definition.addField(UaStructureField("Remark", UaNodeId(12), OpcUaType_String, -1, true));
    return definition;
}

inline UaEnumDefinition mode()
{
    UaEnumDefinition definition("Mode", UaNodeId(20, 2));
    definition.addValue(1, "Slow");
    definition.addValue(2, "Fast");
    return definition;
}

inline UaStructureDefinition shape()
{
    UaStructureDefinition definition("Shape", UaNodeId(14, 2), UaNodeId(15, 2));
    definition.addField(UaStructureField("Name", UaNodeId(12), OpcUaType_String));
    UaStructureField center("Center", UaNodeId(10, 2), OpcUaType_ExtensionObject);
    center.setStructureDefinition(point());
    definition.addField(center);
    UaStructureField corners("Corners", UaNodeId(10, 2), OpcUaType_ExtensionObject, 1);
    corners.setStructureDefinition(point());
    definition.addField(corners);
    UaStructureField modeField("Mode", UaNodeId(20, 2), OpcUaType_Int32);
    modeField.setEnumDefinition(mode());
    definition.addField(modeField);
    return definition;
}

inline UaStructureDefinition arrays()
{
    UaStructureDefinition definition("Arrays", UaNodeId(16, 2), UaNodeId(17, 2));
    definition.addField(UaStructureField("Numbers", UaNodeId(4), OpcUaType_Int16, 1));
    definition.addField(UaStructureField("Texts", UaNodeId(12), OpcUaType_String, 1));
    definition.addField(UaStructureField("Grid", UaNodeId(3), OpcUaType_Byte, 2));
    definition.addField(UaStructureField("Any", UaNodeId(24), OpcUaType_Variant));
    definition.addField(UaStructureField("Values", UaNodeId(24), OpcUaType_Variant, 1));
    return definition;
}

inline UaStructureDefinition measure()
{
    UaStructureDefinition definition("Measure", UaNodeId(18, 2), UaNodeId(19, 2));
    definition.setUnion(true);
    definition.addField(UaStructureField("Number", UaNodeId(6), OpcUaType_Int32));
    definition.addField(UaStructureField("Text", UaNodeId(12), OpcUaType_String));
    UaStructureField place("Place", UaNodeId(10, 2), OpcUaType_ExtensionObject);
    place.setStructureDefinition(point());
    definition.addField(place);
    return definition;
}

class Dictionary : public UaDataTypeDictionary
{
public:
    void add(const UaStructureDefinition& definition) { m_structures[definition.dataTypeId()] = definition; }
    DefinitionType definitionType(const UaNodeId& dataTypeId) override
    {
        return m_structures.contains(dataTypeId) ? StructureType : UndefinedType;
    }
    UaStructureDefinition structureDefinition(const UaNodeId& dataTypeId) override
    {
        const auto found = m_structures.find(dataTypeId);
        return found == m_structures.end() ? UaStructureDefinition() : found->second;
    }
    UaEnumDefinition enumDefinition(const UaNodeId&) override { return {}; }
    UaOptionSetDefinition optionSetDefinition(const UaNodeId&) override { return {}; }

private:
    std::map<UaNodeId, UaStructureDefinition> m_structures;
};

} // namespace testdefinitions
