#include <uaclientsdk/historyresults.h>

#include <opcua/opcua_statuscodes.h>
#include <uaclientsdk/calls/stackcall.h>

namespace UaClientSdk {

namespace {

template <typename Body>
Body* bodyOf(OpcUa_ExtensionObject& data, const OpcUa_EncodeableType& type)
{
    const bool decoded = data.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject;
    return decoded && data.Body.EncodeableObject.Type == &type
               ? static_cast<Body*>(data.Body.EncodeableObject.Object)
               : nullptr;
}

// What all results have; true when there is a body to take.
template <typename Result>
bool takeCommon(OpcUa_HistoryReadResult& from, Result& to)
{
    to.status = UaStatus(from.StatusCode);
    to.continuationPoint.attach(&from.ContinuationPoint);
    const bool empty = from.HistoryData.Encoding == OpcUa_ExtensionObjectEncoding_None;
    return !empty && !to.status.isBad();
}

void takeModified(OpcUa_HistoryModifiedData& from, HistoryReadDataResult& to)
{
    if (from.NoOfModificationInfos > 0 && from.NoOfModificationInfos != from.NoOfDataValues) {
        to.status = UaStatus(wrongResultCount);
        return;
    }
    to.values.attachFrom(&from.NoOfDataValues, &from.DataValues);
    to.modificationInfos.attachFrom(&from.NoOfModificationInfos, &from.ModificationInfos);
}

HistoryReadDataResult takeData(OpcUa_HistoryReadResult& from)
{
    HistoryReadDataResult to;
    if (!takeCommon(from, to))
        return to;
    if (auto* data = bodyOf<OpcUa_HistoryData>(from.HistoryData, OpcUa_HistoryData_EncodeableType))
        to.values.attachFrom(&data->NoOfDataValues, &data->DataValues);
    else if (auto* modified = bodyOf<OpcUa_HistoryModifiedData>(from.HistoryData,
                                                                OpcUa_HistoryModifiedData_EncodeableType))
        takeModified(*modified, to);
    else
        to.status = UaStatus(OpcUa_BadTypeMismatch);
    return to;
}

HistoryReadEventResult takeEvents(OpcUa_HistoryReadResult& from)
{
    HistoryReadEventResult to;
    if (!takeCommon(from, to))
        return to;
    if (auto* events = bodyOf<OpcUa_HistoryEvent>(from.HistoryData, OpcUa_HistoryEvent_EncodeableType))
        to.events.attachFrom(&events->NoOfEvents, &events->Events);
    else
        to.status = UaStatus(OpcUa_BadTypeMismatch);
    return to;
}

template <typename Result>
std::vector<Result> takeAll(UaHistoryReadResults& from, Result (*take)(OpcUa_HistoryReadResult&))
{
    std::vector<Result> to;
    to.reserve(from.length());
    for (OpcUa_HistoryReadResult& result : from)
        to.push_back(take(result));
    from.clear();
    return to;
}

} // namespace

HistoryReadDataResults takeHistoryData(UaHistoryReadResults& results)
{
    return takeAll(results, takeData);
}

HistoryReadEventResults takeHistoryEvents(UaHistoryReadResults& results)
{
    return takeAll(results, takeEvents);
}

} // namespace UaClientSdk
