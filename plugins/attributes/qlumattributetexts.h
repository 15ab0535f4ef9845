// Texts of the attributes whose values are codes.
#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QList>
#include <QString>

#include <optional>

/// "NodeId", "NodeClass"...; empty for an unknown attribute.
[[nodiscard]] QString qlumAttributeName(int attributeId);
/// The attributes that a node of the class is read for, in order.
[[nodiscard]] QList<int> qlumAttributesOf(OpcUa_NodeClass nodeClass);
/// Those that only some servers have, read after them.
[[nodiscard]] QList<int> qlumFurtherAttributesOf(OpcUa_NodeClass nodeClass);
/// The bit of WriteMask and UserWriteMask that stands for the attribute; 0 for those that have none.
[[nodiscard]] OpcUa_UInt32 qlumWriteMaskBit(int attributeId);
/// What of the attributes the client may write, by WriteMask and UserWriteMask: either restricts the other. A
/// node that has one of them only means that one; none when it has neither.
[[nodiscard]] std::optional<OpcUa_UInt32> qlumWriteMaskOf(const UaVariant& writeMask,
                                                          const UaVariant& userWriteMask);
/// The data type of an attribute whose value alone does not tell how it is edited: those of bits with a
/// name, and of structures in an array; null for the others.
[[nodiscard]] UaNodeId qlumAttributeDataType(int attributeId);
/// Whether nodes of the class may lack the attribute.
[[nodiscard]] bool qlumIsOptionalAttribute(int attributeId, OpcUa_NodeClass nodeClass);
/// The names of the bits, "None" when none is set.
[[nodiscard]] QString qlumEventNotifierText(OpcUa_Byte mask);
/// The same.
[[nodiscard]] QString qlumAccessLevelText(OpcUa_Byte mask);
/// The same, without SemanticChange.
[[nodiscard]] QString qlumUserAccessLevelText(OpcUa_Byte mask);
/// As qlumAccessLevelText, with the bits that the longer mask has besides.
[[nodiscard]] QString qlumAccessLevelExText(OpcUa_UInt32 mask);
/// The names of the bits, "None" when none is set.
[[nodiscard]] QString qlumAccessRestrictionsText(OpcUa_UInt16 mask);
/// "BadTimeout: ..." with what that means for a write, where we know more than the name says.
[[nodiscard]] QString qlumWriteFailureText(OpcUa_StatusCode code);
