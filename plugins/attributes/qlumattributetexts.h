// Texts of the attributes whose values are codes.
#pragma once
#include <opcua/opcua_types.h>

#include <QList>
#include <QString>

/// "NodeId", "NodeClass"...; empty for an unknown attribute.
[[nodiscard]] QString qlumAttributeName(int attributeId);
/// The attributes that a node of the class is read for, in order.
[[nodiscard]] QList<int> qlumAttributesOf(OpcUa_NodeClass nodeClass);
/// Those that only some servers have, read after them.
[[nodiscard]] QList<int> qlumFurtherAttributesOf(OpcUa_NodeClass nodeClass);
/// The bit of WriteMask and UserWriteMask that stands for the attribute; 0 for those that have none.
[[nodiscard]] OpcUa_UInt32 qlumWriteMaskBit(int attributeId);
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
/// "BadTimeout (0x800A0000)"
[[nodiscard]] QString qlumStatusCodeText(OpcUa_StatusCode code);
