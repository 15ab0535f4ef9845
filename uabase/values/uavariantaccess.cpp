// The converting getters of UaVariant, declared in uavariant.h.
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uadiagnosticinfo.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaguid.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uabase/values/uavariant_p.h>

#include <string>

namespace {

// Calls take with the C value after conversion to type; Result() when that is not possible.
template <typename C, OpcUa_BuiltInType Type, typename Take>
auto converted(const UaVariant& value, bool* ok, Take take) noexcept
    -> decltype(take(*static_cast<const C*>(nullptr)))
{
    UaVariant scalar(value);
    const void* data = nullptr;
    if (scalar.changeType(Type, false).isGood())
        data = uabase::scalarData(*scalar.get());
    if (ok)
        *ok = data != nullptr;
    if (!data)
        return {};
    return take(*static_cast<const C*>(data));
}

template <typename C, OpcUa_BuiltInType Type>
C number(const UaVariant& value, bool* ok) noexcept
{
    return converted<C, Type>(
        value, ok, [](const C& found) { return found; });
}

template <typename Result, typename C, OpcUa_BuiltInType Type>
Result object(const UaVariant& value, bool* ok) noexcept
{
    return converted<C, Type>(
        value, ok, [](const C& found) { return Result(found); });
}

} // namespace

bool UaVariant::toBool(bool* ok) const noexcept
{
    return number<OpcUa_Boolean, OpcUaType_Boolean>(*this, ok) != 0;
}

// clang-format off
OpcUa_SByte UaVariant::toSByte(bool* ok) const noexcept { return number<OpcUa_SByte, OpcUaType_SByte>(*this, ok); }
OpcUa_Byte UaVariant::toByte(bool* ok) const noexcept { return number<OpcUa_Byte, OpcUaType_Byte>(*this, ok); }
OpcUa_Int16 UaVariant::toInt16(bool* ok) const noexcept { return number<OpcUa_Int16, OpcUaType_Int16>(*this, ok); }
OpcUa_UInt16 UaVariant::toUInt16(bool* ok) const noexcept { return number<OpcUa_UInt16, OpcUaType_UInt16>(*this, ok); }
OpcUa_Int32 UaVariant::toInt32(bool* ok) const noexcept { return number<OpcUa_Int32, OpcUaType_Int32>(*this, ok); }
OpcUa_UInt32 UaVariant::toUInt32(bool* ok) const noexcept { return number<OpcUa_UInt32, OpcUaType_UInt32>(*this, ok); }
OpcUa_Int64 UaVariant::toInt64(bool* ok) const noexcept { return number<OpcUa_Int64, OpcUaType_Int64>(*this, ok); }
OpcUa_UInt64 UaVariant::toUInt64(bool* ok) const noexcept { return number<OpcUa_UInt64, OpcUaType_UInt64>(*this, ok); }
OpcUa_Float UaVariant::toFloat(bool* ok) const noexcept { return number<OpcUa_Float, OpcUaType_Float>(*this, ok); }
OpcUa_Double UaVariant::toDouble(bool* ok) const noexcept { return number<OpcUa_Double, OpcUaType_Double>(*this, ok); }
UaDateTime UaVariant::toDateTime(bool* ok) const noexcept { return object<UaDateTime, OpcUa_DateTime, OpcUaType_DateTime>(*this, ok); }
UaGuid UaVariant::toGuid(bool* ok) const noexcept { return object<UaGuid, OpcUa_Guid, OpcUaType_Guid>(*this, ok); }
UaByteString UaVariant::toByteString(bool* ok) const noexcept { return object<UaByteString, OpcUa_ByteString, OpcUaType_ByteString>(*this, ok); }
UaByteString UaVariant::toXmlElement(bool* ok) const noexcept { return object<UaByteString, OpcUa_ByteString, OpcUaType_XmlElement>(*this, ok); }
UaNodeId UaVariant::toNodeId(bool* ok) const noexcept { return object<UaNodeId, OpcUa_NodeId, OpcUaType_NodeId>(*this, ok); }
UaExpandedNodeId UaVariant::toExpandedNodeId(bool* ok) const noexcept { return object<UaExpandedNodeId, OpcUa_ExpandedNodeId, OpcUaType_ExpandedNodeId>(*this, ok); }
UaStatusCode UaVariant::toStatusCode(bool* ok) const noexcept { return object<UaStatusCode, OpcUa_StatusCode, OpcUaType_StatusCode>(*this, ok); }
UaQualifiedName UaVariant::toQualifiedName(bool* ok) const noexcept { return object<UaQualifiedName, OpcUa_QualifiedName, OpcUaType_QualifiedName>(*this, ok); }
UaLocalizedText UaVariant::toLocalizedText(bool* ok) const noexcept { return object<UaLocalizedText, OpcUa_LocalizedText, OpcUaType_LocalizedText>(*this, ok); }
UaExtensionObject UaVariant::toExtensionObject(bool* ok) const noexcept { return object<UaExtensionObject, OpcUa_ExtensionObject, OpcUaType_ExtensionObject>(*this, ok); }
UaDataValue UaVariant::toDataValue(bool* ok) const noexcept { return object<UaDataValue, OpcUa_DataValue, OpcUaType_DataValue>(*this, ok); }
UaDiagnosticInfo UaVariant::toDiagnosticInfo(bool* ok) const noexcept { return object<UaDiagnosticInfo, OpcUa_DiagnosticInfo, OpcUaType_DiagnosticInfo>(*this, ok); }
// clang-format on

UaString UaVariant::toString() const
{
    std::string text;
    uabase::appendText(text, *this, 0);
    return UaString(text);
}
