#include <plugins/attributes/qlumattributetexts.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>

#include <QCoreApplication>
#include <QList>
#include <QStringList>

#include <algorithm>
#include <array>
#include <iterator>
#include <span>

namespace {
struct Bit
{
    unsigned int mask;
    const char* name;
};

constexpr std::array<Bit, 3> eventNotifier{
    {{1, "SubscribeToEvents"}, {4, "HistoryRead"}, {8, "HistoryWrite"}}};
constexpr std::array<Bit, 7> accessLevel{{{1, "CurrentRead"},
                                          {2, "CurrentWrite"},
                                          {4, "HistoryRead"},
                                          {8, "HistoryWrite"},
                                          {16, "SemanticChange"},
                                          {32, "StatusWrite"},
                                          {64, "TimestampWrite"}}};
constexpr std::array<Bit, 6> accessLevelEx{{{256, "NonatomicRead"},
                                            {512, "NonatomicWrite"},
                                            {1024, "WriteFullArrayOnly"},
                                            {2048, "NoSubDataTypes"},
                                            {4096, "NonVolatile"},
                                            {8192, "Constant"}}};
constexpr std::array<Bit, 4> accessRestrictions{{{1, "SigningRequired"},
                                                 {2, "EncryptionRequired"},
                                                 {4, "SessionRequired"},
                                                 {8, "ApplyRestrictionsToBrowse"}}};
constexpr unsigned int semanticChange = 16; // says nothing of what the user may do

struct MaskBit
{
    int attributeId;
    OpcUa_UInt32 mask;
};

// NodeId and NodeClass have bits, too, but who changes them makes another node of it.
constexpr MaskBit writeMaskBits[] = {
    {OpcUa_Attributes_AccessLevel, OpcUa_AttributeWriteMask_AccessLevel},
    {OpcUa_Attributes_ArrayDimensions, OpcUa_AttributeWriteMask_ArrayDimensions},
    {OpcUa_Attributes_BrowseName, OpcUa_AttributeWriteMask_BrowseName},
    {OpcUa_Attributes_ContainsNoLoops, OpcUa_AttributeWriteMask_ContainsNoLoops},
    {OpcUa_Attributes_DataType, OpcUa_AttributeWriteMask_DataType},
    {OpcUa_Attributes_Description, OpcUa_AttributeWriteMask_Description},
    {OpcUa_Attributes_DisplayName, OpcUa_AttributeWriteMask_DisplayName},
    {OpcUa_Attributes_EventNotifier, OpcUa_AttributeWriteMask_EventNotifier},
    {OpcUa_Attributes_Executable, OpcUa_AttributeWriteMask_Executable},
    {OpcUa_Attributes_Historizing, OpcUa_AttributeWriteMask_Historizing},
    {OpcUa_Attributes_InverseName, OpcUa_AttributeWriteMask_InverseName},
    {OpcUa_Attributes_IsAbstract, OpcUa_AttributeWriteMask_IsAbstract},
    {OpcUa_Attributes_MinimumSamplingInterval, OpcUa_AttributeWriteMask_MinimumSamplingInterval},
    {OpcUa_Attributes_Symmetric, OpcUa_AttributeWriteMask_Symmetric},
    {OpcUa_Attributes_UserAccessLevel, OpcUa_AttributeWriteMask_UserAccessLevel},
    {OpcUa_Attributes_UserExecutable, OpcUa_AttributeWriteMask_UserExecutable},
    {OpcUa_Attributes_UserWriteMask, OpcUa_AttributeWriteMask_UserWriteMask},
    {OpcUa_Attributes_ValueRank, OpcUa_AttributeWriteMask_ValueRank},
    {OpcUa_Attributes_WriteMask, OpcUa_AttributeWriteMask_WriteMask},
    {OpcUa_Attributes_DataTypeDefinition, OpcUa_AttributeWriteMask_DataTypeDefinition},
    {OpcUa_Attributes_RolePermissions, OpcUa_AttributeWriteMask_RolePermissions},
    {OpcUa_Attributes_AccessRestrictions, OpcUa_AttributeWriteMask_AccessRestrictions},
    {OpcUa_Attributes_AccessLevelEx, OpcUa_AttributeWriteMask_AccessLevelEx},
};

struct Reason
{
    OpcUa_StatusCode code;
    const char* words;
};

#define WORDS(text) QT_TRANSLATE_NOOP("QlumWriteFailure", text)
// What a status means for a write in particular; what it means at all stands elsewhere.
constexpr Reason writeReasons[] = {
    {OpcUa_BadNotWritable, WORDS("nobody may write this value")},
    {OpcUa_BadUserAccessDenied, WORDS("the user who is logged in may not write it")},
    {OpcUa_BadSecurityModeInsufficient, WORDS("the connection is not secure enough for it")},
    {OpcUa_BadWriteNotSupported, WORDS("the server cannot write a value of this kind")},
    {OpcUa_BadAttributeIdInvalid, WORDS("the node has no such attribute")},
    {OpcUa_BadTypeMismatch, WORDS("the server expects a value of another type or shape")},
    {OpcUa_BadIndexRangeNoData, WORDS("the array has become shorter")},
    {OpcUa_BadLocked, WORDS("somebody else has locked it")},
    {OpcUa_BadInvalidState, WORDS("it cannot be written in the present state")},
    {OpcUa_BadOutOfService, WORDS("its source is out of service")},
    {OpcUa_BadDeviceFailure, WORDS("the device behind the server has failed")},
    {OpcUa_BadNoCommunication, WORDS("the server does not reach the device")},
    {OpcUa_BadNotConnected, WORDS("the server does not reach the device")},
    {OpcUa_BadTimeout, WORDS("no answer in time; it may have been written all the same")},
    {OpcUa_BadRequestTimeout, WORDS("no answer in time; it may have been written all the same")},
};
#undef WORDS

QString bitNames(unsigned int mask, std::span<const Bit> bits)
{
    QStringList names;
    for (const Bit& bit : bits)
        if (mask & bit.mask)
            names.append(QLatin1String(bit.name));
    return names.isEmpty() ? QStringLiteral("None") : names.join(QLatin1String(", "));
}
} // namespace

QString qlumAttributeName(int attributeId)
{
    return attributeId > 0 ? QLatin1String(OpcUa_AttributeId_Name(static_cast<OpcUa_UInt32>(attributeId)))
                           : QString();
}

QList<int> qlumAttributesOf(OpcUa_NodeClass nodeClass)
{
    QList<int> ids{OpcUa_Attributes_NodeId,       OpcUa_Attributes_NodeClass,   OpcUa_Attributes_BrowseName,
                   OpcUa_Attributes_DisplayName,  OpcUa_Attributes_Description, OpcUa_Attributes_WriteMask,
                   OpcUa_Attributes_UserWriteMask};
    switch (nodeClass) {
    case OpcUa_NodeClass_Object:
        return ids << OpcUa_Attributes_EventNotifier;
    case OpcUa_NodeClass_Variable:
        return ids << OpcUa_Attributes_Value << OpcUa_Attributes_DataType << OpcUa_Attributes_ValueRank
                   << OpcUa_Attributes_ArrayDimensions << OpcUa_Attributes_AccessLevel
                   << OpcUa_Attributes_UserAccessLevel << OpcUa_Attributes_MinimumSamplingInterval
                   << OpcUa_Attributes_Historizing;
    case OpcUa_NodeClass_Method:
        return ids << OpcUa_Attributes_Executable << OpcUa_Attributes_UserExecutable;
    case OpcUa_NodeClass_ObjectType:
    case OpcUa_NodeClass_DataType:
        return ids << OpcUa_Attributes_IsAbstract;
    case OpcUa_NodeClass_VariableType:
        return ids << OpcUa_Attributes_Value << OpcUa_Attributes_DataType << OpcUa_Attributes_ValueRank
                   << OpcUa_Attributes_ArrayDimensions << OpcUa_Attributes_IsAbstract;
    case OpcUa_NodeClass_ReferenceType:
        return ids << OpcUa_Attributes_IsAbstract << OpcUa_Attributes_Symmetric
                   << OpcUa_Attributes_InverseName;
    case OpcUa_NodeClass_View:
        return ids << OpcUa_Attributes_ContainsNoLoops << OpcUa_Attributes_EventNotifier;
    default:
        return ids;
    }
}

QList<int> qlumFurtherAttributesOf(OpcUa_NodeClass nodeClass)
{
    QList<int> ids{OpcUa_Attributes_RolePermissions, OpcUa_Attributes_UserRolePermissions,
                   OpcUa_Attributes_AccessRestrictions};
    if (nodeClass == OpcUa_NodeClass_DataType)
        ids.prepend(OpcUa_Attributes_DataTypeDefinition);
    if (nodeClass == OpcUa_NodeClass_Variable)
        ids.append(OpcUa_Attributes_AccessLevelEx);
    return ids;
}

OpcUa_UInt32 qlumWriteMaskBit(int attributeId)
{
    const auto* found =
        std::find_if(std::begin(writeMaskBits), std::end(writeMaskBits),
                     [attributeId](const MaskBit& bit) { return bit.attributeId == attributeId; });
    return found == std::end(writeMaskBits) ? 0 : found->mask;
}

std::optional<OpcUa_UInt32> qlumWriteMaskOf(const UaVariant& writeMask, const UaVariant& userWriteMask)
{
    std::optional<OpcUa_UInt32> allowed;
    for (const UaVariant& mask : {writeMask, userWriteMask})
        if (mask.type() == OpcUaType_UInt32 && mask.isScalar())
            allowed = allowed.value_or(~OpcUa_UInt32{0}) & mask.toUInt32();
    return allowed;
}

UaNodeId qlumAttributeDataType(int attributeId)
{
    switch (attributeId) {
    case OpcUa_Attributes_WriteMask:
    case OpcUa_Attributes_UserWriteMask:
        return UaNodeId(OpcUaId_AttributeWriteMask);
    case OpcUa_Attributes_EventNotifier:
        return UaNodeId(OpcUaId_EventNotifierType);
    case OpcUa_Attributes_AccessLevel:
    case OpcUa_Attributes_UserAccessLevel:
        return UaNodeId(OpcUaId_AccessLevelType);
    case OpcUa_Attributes_AccessLevelEx:
        return UaNodeId(OpcUaId_AccessLevelExType);
    case OpcUa_Attributes_AccessRestrictions:
        return UaNodeId(OpcUaId_AccessRestrictionType);
    case OpcUa_Attributes_RolePermissions:
    case OpcUa_Attributes_UserRolePermissions:
        return UaNodeId(OpcUaId_RolePermissionType);
    default:
        return {};
    }
}

bool qlumIsOptionalAttribute(int attributeId, OpcUa_NodeClass nodeClass)
{
    switch (attributeId) {
    case OpcUa_Attributes_Description:
    case OpcUa_Attributes_WriteMask:
    case OpcUa_Attributes_UserWriteMask:
        return true;
    case OpcUa_Attributes_ArrayDimensions:
        return nodeClass == OpcUa_NodeClass_Variable || nodeClass == OpcUa_NodeClass_VariableType;
    case OpcUa_Attributes_MinimumSamplingInterval:
        return nodeClass == OpcUa_NodeClass_Variable;
    case OpcUa_Attributes_Value:
        return nodeClass == OpcUa_NodeClass_VariableType;
    case OpcUa_Attributes_InverseName:
        return nodeClass == OpcUa_NodeClass_ReferenceType;
    default:
        return false;
    }
}

QString qlumEventNotifierText(OpcUa_Byte mask)
{
    return bitNames(mask, eventNotifier);
}

QString qlumAccessLevelText(OpcUa_Byte mask)
{
    return bitNames(mask, accessLevel);
}

QString qlumAccessLevelExText(OpcUa_UInt32 mask)
{
    constexpr OpcUa_UInt32 shortMask = 0xFF;
    const QString more = bitNames(mask & ~shortMask, accessLevelEx);
    const QString first = bitNames(mask & shortMask, accessLevel);
    if (!(mask & ~shortMask))
        return first;
    return mask & shortMask ? first + QStringLiteral(", ") + more : more;
}

QString qlumAccessRestrictionsText(OpcUa_UInt16 mask)
{
    return bitNames(mask, accessRestrictions);
}

QString qlumUserAccessLevelText(OpcUa_Byte mask)
{
    return bitNames(mask & ~semanticChange, accessLevel);
}

QString qlumWriteFailureText(OpcUa_StatusCode code)
{
    const QString name = qlumStatusText(code);
    const auto* const found = std::find_if(std::begin(writeReasons), std::end(writeReasons),
                                           [code](const Reason& reason) { return reason.code == code; });
    const QString words = found != std::end(writeReasons)
                              ? QCoreApplication::translate("QlumWriteFailure", found->words)
                              : qlumStatusWords(name);
    return words.isEmpty() ? name : QStringLiteral("%1: %2").arg(name, words);
}
