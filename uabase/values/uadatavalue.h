// A value with its quality and its times, OPC 10000-4, 7.11.
#pragma once

#include <uabase/values/uadatetime.h>
#include <uabase/values/uaelement.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

class UaDataValue
{
public:
    UaDataValue() noexcept = default;
    explicit UaDataValue(const OpcUa_DataValue& value) noexcept;
    explicit UaDataValue(const UaVariant& value, UaStatusCode statusCode = 0,
                         const UaDateTime& sourceTimestamp = UaDateTime(),
                         const UaDateTime& serverTimestamp = UaDateTime()) noexcept
        : m_value(value), m_statusCode(statusCode), m_sourceTimestamp(sourceTimestamp),
          m_serverTimestamp(serverTimestamp)
    {
    }

    const UaVariant& value() const noexcept { return m_value; }
    UaStatusCode statusCode() const noexcept { return m_statusCode; }
    UaDateTime sourceTimestamp() const noexcept { return m_sourceTimestamp; }
    UaDateTime serverTimestamp() const noexcept { return m_serverTimestamp; }
    OpcUa_UInt16 sourcePicoseconds() const noexcept { return m_sourcePicoseconds; } ///< in units of 10 ps
    OpcUa_UInt16 serverPicoseconds() const noexcept { return m_serverPicoseconds; }
    void setValue(const UaVariant& value) noexcept { m_value = value; }
    void setStatusCode(UaStatusCode statusCode) noexcept { m_statusCode = statusCode; }
    void setSourceTimestamp(const UaDateTime& time, OpcUa_UInt16 picoseconds = 0) noexcept;
    void setServerTimestamp(const UaDateTime& time, OpcUa_UInt16 picoseconds = 0) noexcept;
    /// "value; status; source time; server time", the parts that say something.
    [[nodiscard]] UaString toString() const;

    /// attach takes over and leaves a null value; detach hands over into raw memory; copyTo copies into raw
    /// memory.
    void attach(OpcUa_DataValue* value) noexcept
    {
        m_value.attach(&value->Value);
        takeScalars(*value);
        UaElement<OpcUa_DataValue>::initialize(value, 1);
    }
    [[nodiscard]] OpcUa_StatusCode detach(OpcUa_DataValue* destination) noexcept;
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_DataValue* destination) const noexcept;

    friend bool operator==(const UaDataValue&, const UaDataValue&) noexcept = default;

private:
    void fillScalars(OpcUa_DataValue* destination) const noexcept;
    void takeScalars(const OpcUa_DataValue& value) noexcept
    {
        m_statusCode = value.StatusCode;
        m_sourceTimestamp = UaDateTime(value.SourceTimestamp);
        m_serverTimestamp = UaDateTime(value.ServerTimestamp);
        m_sourcePicoseconds = value.SourcePicoseconds;
        m_serverPicoseconds = value.ServerPicoseconds;
    }

    UaVariant m_value;
    UaStatusCode m_statusCode;
    OpcUa_UInt16 m_sourcePicoseconds = 0;
    OpcUa_UInt16 m_serverPicoseconds = 0;
    UaDateTime m_sourceTimestamp;
    UaDateTime m_serverTimestamp;
};
