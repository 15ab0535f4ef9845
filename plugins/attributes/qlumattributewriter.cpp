#include <plugins/attributes/qlumattributewriter.h>

#include <app/api/qlumcallnote.h>
#include <app/api/qlumcalltimeout.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarray.h>

#include <span>
#include <string>
#include <vector>

QlumAttributeWriter::QlumAttributeWriter(QlumSessionServices& session, const UaNodeId& nodeId,
                                         const QString& purpose)
    : m_session(session), m_nodeId(nodeId), m_purpose(purpose)
{
}

QlumWriteOutcome QlumAttributeWriter::write(int attributeId, const UaVariant& value, const UaVariant& shown,
                                            const UaString& indexRange)
{
    QlumWriteOutcome outcome;
    UaWriteValues nodes(1);
    nodes[0].AttributeId = static_cast<OpcUa_UInt32>(attributeId);
    if (OpcUa_IsBad(m_nodeId.copyTo(&nodes[0].NodeId)) || OpcUa_IsBad(value.copyTo(&nodes[0].Value.Value)) ||
        (!indexRange.isEmpty() && OpcUa_IsBad(indexRange.copyTo(&nodes[0].IndexRange)))) {
        outcome.service = UaStatus(OpcUa_BadOutOfMemory); // a null value must not be written instead
        return outcome;
    }
    UaClientSdk::ServiceSettings settings = qlumServiceSettings(m_purpose);
    qlumTellShown(settings, {{m_nodeId, static_cast<OpcUa_UInt32>(attributeId), shown, QString()}});
    UaStatusCodeArray results;
    outcome.service = m_session.write(settings, nodes, results);
    if (outcome.service.isGood() && results.length() != 1)
        outcome.service = UaStatus(OpcUa_BadUnknownResponse);
    else if (outcome.service.isGood())
        outcome.result = UaStatusCode(results[0]);
    return outcome;
}

UaStatusCode QlumAttributeWriter::read(int attributeId, UaVariant& value)
{
    UaReadValueIds nodes(1);
    nodes[0].AttributeId = static_cast<OpcUa_UInt32>(attributeId);
    if (OpcUa_IsBad(m_nodeId.copyTo(&nodes[0].NodeId)))
        return UaStatusCode(OpcUa_BadOutOfMemory);
    UaClientSdk::ServiceSettings settings = qlumServiceSettings(m_purpose);
    UaDataValues results;
    const UaStatus status = m_session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, results);
    if (!status.isGood() || results.length() != 1)
        return UaStatusCode(status.isGood() ? OpcUa_BadUnknownResponse : status.code());
    if (OpcUa_IsBad(results[0].StatusCode))
        return UaStatusCode(results[0].StatusCode);
    value = UaVariant(results[0].Value);
    return {};
}

bool qlumRefusesRanges(const QlumWriteOutcome& outcome)
{
    if (!outcome.service.isGood())
        return false;
    switch (outcome.result.code()) {
    case OpcUa_BadWriteNotSupported:
    case OpcUa_BadNotSupported:
    case OpcUa_BadIndexRangeInvalid:
    case OpcUa_BadIndexRangeDataMismatch:
    case OpcUa_BadTypeMismatch:
        return true;
    default:
        return false;
    }
}

UaString qlumElementRange(const UaVariant& array, int index, const UaVariant& element, UaVariant& sent)
{
    const UaArray<OpcUa_Int32> dimensions = array.dimensions();
    if (array.isScalar() || index < 0 || static_cast<OpcUa_UInt32>(index) >= array.elementCount() ||
        OpcUa_IsBad(sent.setArray(array.type(), std::span(&element, 1))))
        return {};
    std::string range;
    int rest = index;
    for (OpcUa_UInt32 i = dimensions.length(); i-- > 0;) {
        range = std::to_string(rest % dimensions[i]) + (range.empty() ? "" : "," + range);
        rest /= dimensions[i];
    }
    const std::vector<OpcUa_Int32> ones(dimensions.length(), 1);
    if (array.isMatrix() && OpcUa_IsBad(sent.setDimensions(ones)))
        return {};
    return UaString(range.c_str());
}
