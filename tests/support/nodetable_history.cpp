#include <tests/support/nodetable.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <span>
#include <string_view>
#include <system_error>

namespace {
void requireMemory(bool done)
{
    if (!done)
        std::abort();
}

UaDataValues copies(std::span<const UaDataValue> values)
{
    UaDataValues result(static_cast<OpcUa_UInt32>(values.size()));
    for (OpcUa_UInt32 i = 0; i < result.length(); ++i)
        requireMemory(OpcUa_IsGood(values[i].copyTo(&result[i])));
    return result;
}

template <typename Body>
Body& makeBody(const OpcUa_EncodeableType& type, OpcUa_HistoryReadResult& result)
{
    auto* body = static_cast<Body*>(OpcUa_EncodeableObject_Create(&type));
    requireMemory(body != nullptr);
    UaExtensionObject object;
    object.attachDecoded(type, body);
    requireMemory(OpcUa_IsGood(object.detach(&result.HistoryData)));
    return *static_cast<Body*>(result.HistoryData.Body.EncodeableObject.Object);
}

void setData(UaDataValues&& values, OpcUa_HistoryReadResult& result)
{
    if (values.isEmpty())
        result.StatusCode = OpcUa_GoodNoData;
    auto& data = makeBody<OpcUa_HistoryData>(OpcUa_HistoryData_EncodeableType, result);
    values.detach(&data.NoOfDataValues, &data.DataValues);
}

// A page of what lies between two times, backwards when they run backwards; null times are open ends.
template <typename Item, typename Time>
std::vector<Item> between(const std::vector<Item>& all, OpcUa_DateTime start, OpcUa_DateTime end, Time timeOf)
{
    const bool backwards = start != 0 && end != 0 ? start > end : start == 0;
    const OpcUa_DateTime low = backwards ? end : start;
    const OpcUa_DateTime high = backwards ? start : end;
    std::vector<Item> found;
    for (const Item& item : all)
        if (timeOf(item) >= low && (high == 0 || timeOf(item) <= high))
            found.push_back(item);
    if (backwards)
        std::reverse(found.begin(), found.end());
    return found;
}

// Where a continuation point goes on; nothing when it is none of ours.
bool positionOf(const OpcUa_ByteString& point, std::size_t& position)
{
    const std::string_view text(reinterpret_cast<const char*>(point.Data),
                                static_cast<std::size_t>(std::max(0, point.Length)));
    if (text.empty())
        return true;
    return std::from_chars(text.data(), text.data() + text.size(), position).ec == std::errc();
}
} // namespace

void NodeTable::modifiedHistory(const Node& node, const OpcUa_ReadRawModifiedDetails& details,
                                OpcUa_HistoryReadResult& result)
{
    const std::vector<Modification> found =
        between(node.modifications, details.StartTime, details.EndTime,
                [](const Modification& modification) { return modification.was.sourceTimestamp().value(); });
    UaDataValues values(static_cast<OpcUa_UInt32>(found.size()));
    UaModificationInfos infos(values.length());
    for (OpcUa_UInt32 i = 0; i < infos.length(); ++i) {
        requireMemory(OpcUa_IsGood(found[i].was.copyTo(&values[i])));
        infos[i].ModificationTime = found[i].time.value();
        infos[i].UpdateType = found[i].type;
        requireMemory(OpcUa_IsGood(UaString(found[i].user.c_str()).copyTo(&infos[i].UserName)));
    }
    if (values.isEmpty())
        result.StatusCode = OpcUa_GoodNoData;
    auto& data = makeBody<OpcUa_HistoryModifiedData>(OpcUa_HistoryModifiedData_EncodeableType, result);
    values.detach(&data.NoOfDataValues, &data.DataValues);
    infos.detach(&data.NoOfModificationInfos, &data.ModificationInfos);
}

void NodeTable::rawHistory(const Node& node, const OpcUa_ReadRawModifiedDetails& details,
                           const OpcUa_HistoryReadValueId& asked, OpcUa_HistoryReadResult& result)
{
    const std::vector<UaDataValue> found =
        between(node.history, details.StartTime, details.EndTime,
                [](const UaDataValue& value) { return value.sourceTimestamp().value(); });
    std::size_t first = 0;
    if (!positionOf(asked.ContinuationPoint, first) || first > found.size()) {
        result.StatusCode = OpcUa_BadContinuationPointInvalid;
        return;
    }
    const std::size_t left = found.size() - first;
    const std::size_t count =
        details.NumValuesPerNode == 0 ? left : std::min<std::size_t>(left, details.NumValuesPerNode);
    const bool hasBothTimes =
        details.StartTime != 0 && details.EndTime != 0; // else a number was all they wanted
    if (count < left && hasBothTimes) {
        const std::string point = std::to_string(first + count);
        requireMemory(OpcUa_IsGood(
            UaByteString(std::span(reinterpret_cast<const OpcUa_Byte*>(point.data()), point.size()))
                .copyTo(&result.ContinuationPoint)));
    }
    setData(copies(std::span(found).subspan(first, count)), result);
}

UaDataValues NodeTable::atTimes(const Node& node, const OpcUa_ReadAtTimeDetails& details)
{
    UaDataValues values(static_cast<OpcUa_UInt32>(std::max(0, details.NoOfReqTimes)));
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i) {
        const UaDateTime time(details.ReqTimes[i]);
        const auto found =
            std::find_if(node.history.begin(), node.history.end(),
                         [&](const UaDataValue& value) { return value.sourceTimestamp() == time; });
        const UaDataValue value = found == node.history.end()
                                      ? UaDataValue(UaVariant(), UaStatusCode(OpcUa_BadNoData), time)
                                      : *found;
        requireMemory(OpcUa_IsGood(value.copyTo(&values[i])));
    }
    return values;
}

void NodeTable::eventHistory(const Node& node, const OpcUa_ReadEventDetails& details,
                             OpcUa_HistoryReadResult& result)
{
    std::vector<Event> found = between(node.events, details.StartTime, details.EndTime,
                                       [](const Event& event) { return event.time.value(); });
    if (details.NumValuesPerNode > 0 && found.size() > details.NumValuesPerNode)
        found.resize(details.NumValuesPerNode);
    UaHistoryEventFieldLists lists(static_cast<OpcUa_UInt32>(found.size()));
    const std::span clauses(details.Filter.SelectClauses,
                            static_cast<std::size_t>(std::max(0, details.Filter.NoOfSelectClauses)));
    for (OpcUa_UInt32 i = 0; i < lists.length(); ++i) {
        UaVariantArray fields(static_cast<OpcUa_UInt32>(clauses.size()));
        for (OpcUa_UInt32 j = 0; j < fields.length(); ++j) {
            const OpcUa_SimpleAttributeOperand& clause = clauses[j];
            if (clause.NoOfBrowsePath < 1)
                continue;
            const UaQualifiedName name(clause.BrowsePath[clause.NoOfBrowsePath - 1]);
            const auto field = found[i].fields.find(name.name().toStdString());
            if (field != found[i].fields.end())
                requireMemory(OpcUa_IsGood(field->second.copyTo(&fields[j])));
        }
        fields.detach(&lists[i].NoOfEventFields, &lists[i].EventFields);
    }
    auto& events = makeBody<OpcUa_HistoryEvent>(OpcUa_HistoryEvent_EncodeableType, result);
    lists.detach(&events.NoOfEvents, &events.Events);
}

void NodeTable::historyRead(const OpcUa_EncodeableType& detailsType, const void* details, OpcUa_UInt32 index,
                            const OpcUa_HistoryReadValueId& asked, bool release,
                            OpcUa_HistoryReadResult& result) const
{
    const std::lock_guard lock(m_mutex);
    const UaNodeId id(asked.NodeId);
    result.StatusCode = statusOf(HistoryRead, id);
    if (OpcUa_IsBad(result.StatusCode) || release)
        return;
    const Node& node = *find(id);
    if (&detailsType == &OpcUa_ReadRawModifiedDetails_EncodeableType) {
        const auto& raw = *static_cast<const OpcUa_ReadRawModifiedDetails*>(details);
        if (raw.IsReadModified)
            modifiedHistory(node, raw, result);
        else
            rawHistory(node, raw, asked, result);
    } else if (&detailsType == &OpcUa_ReadAtTimeDetails_EncodeableType) {
        setData(atTimes(node, *static_cast<const OpcUa_ReadAtTimeDetails*>(details)), result);
    } else if (&detailsType == &OpcUa_ReadEventDetails_EncodeableType) {
        eventHistory(node, *static_cast<const OpcUa_ReadEventDetails*>(details), result);
    } else {
        const auto& processed = *static_cast<const OpcUa_ReadProcessedDetails*>(details);
        const auto found = node.processed.find(UaNodeId(processed.AggregateType[index]));
        if (found == node.processed.end())
            result.StatusCode = OpcUa_BadAggregateNotSupported;
        else
            setData(copies(found->second), result);
    }
}
