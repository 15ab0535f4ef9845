#include <uabase/values/uadatavalue.h>

#include <uabase/values/uadatetime.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant_p.h>

UaDataValue::UaDataValue(const OpcUa_DataValue& value) noexcept : m_value(value.Value)
{
    takeScalars(value);
}

void UaDataValue::setSourceTimestamp(const UaDateTime& time, OpcUa_UInt16 picoseconds) noexcept
{
    m_sourceTimestamp = time;
    m_sourcePicoseconds = picoseconds;
}

void UaDataValue::setServerTimestamp(const UaDateTime& time, OpcUa_UInt16 picoseconds) noexcept
{
    m_serverTimestamp = time;
    m_serverPicoseconds = picoseconds;
}

UaString UaDataValue::toString() const
{
    UaVariant wrapped;
    wrapped.setDataValue(*this);
    return wrapped.toString();
}

OpcUa_StatusCode UaDataValue::detach(OpcUa_DataValue* destination) noexcept
{
    fillScalars(destination);
    const OpcUa_StatusCode status = m_value.detach(&destination->Value);
    *this = UaDataValue();
    return status;
}

OpcUa_StatusCode UaDataValue::copyTo(OpcUa_DataValue* destination) const noexcept
{
    fillScalars(destination);
    return m_value.copyTo(&destination->Value);
}

void UaDataValue::fillScalars(OpcUa_DataValue* destination) const noexcept
{
    OpcUa_DataValue_Initialize(destination);
    destination->StatusCode = m_statusCode.code();
    destination->SourceTimestamp = m_sourceTimestamp.value();
    destination->ServerTimestamp = m_serverTimestamp.value();
    destination->SourcePicoseconds = m_sourcePicoseconds;
    destination->ServerPicoseconds = m_serverPicoseconds;
}
