#include <tests/support/nodetable.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <span>

namespace {
template <typename Element>
std::span<const Element> spanOf(OpcUa_Int32 count, const Element* elements)
{
    return {elements, static_cast<std::size_t>(std::max(0, count))};
}

// One status for each of the elements.
template <typename Element, typename Change>
void changeEach(std::span<const Element> elements, OpcUa_HistoryUpdateResult& result, Change change)
{
    UaStatusCodeArray statuses(static_cast<OpcUa_UInt32>(elements.size()));
    for (OpcUa_UInt32 i = 0; i < statuses.length(); ++i)
        statuses[i] = change(elements[i]);
    statuses.detach(&result.NoOfOperationResults, &result.OperationResults);
}

bool inserts(OpcUa_PerformUpdateType how)
{
    return how == OpcUa_PerformUpdateType_Insert || how == OpcUa_PerformUpdateType_Update;
}

// What becomes of an entry that is there or is not.
OpcUa_StatusCode outcome(OpcUa_PerformUpdateType how, bool isThere)
{
    if (!isThere)
        return inserts(how) ? OpcUa_GoodEntryInserted : OpcUa_BadNoEntryExists;
    if (how == OpcUa_PerformUpdateType_Insert)
        return OpcUa_BadEntryExists;
    return how == OpcUa_PerformUpdateType_Remove ? OpcUa_Good : OpcUa_GoodEntryReplaced;
}

// A range of one time holds that time, any other one not its end.
bool isWithin(const UaDateTime& time, OpcUa_DateTime start, OpcUa_DateTime end)
{
    const OpcUa_DateTime value = time.value();
    return start == end ? value == start : value >= start && value < end;
}

template <typename Fields>
UaVariant fieldOf(const Fields& fields, const char* name)
{
    const auto found = fields.find(name);
    return found == fields.end() ? UaVariant() : found->second;
}
} // namespace

void NodeTable::historyIsChangedBy(const char* user, const UaDateTime& time)
{
    const std::lock_guard lock(m_mutex);
    m_historyUser = user;
    m_historyTime = time;
}

NodeTable::Node* NodeTable::changedNode(const OpcUa_NodeId& id, OpcUa_HistoryUpdateResult& result)
{
    result.StatusCode = statusOf(HistoryUpdate, UaNodeId(id));
    return OpcUa_IsBad(result.StatusCode) ? nullptr : find(UaNodeId(id));
}

// ---- values

void NodeTable::remember(Node& node, const UaDataValue& was, OpcUa_HistoryUpdateType type) const
{
    const auto later = std::find_if(node.modifications.begin(), node.modifications.end(),
                                    [&](const Modification& modification) {
                                        return modification.was.sourceTimestamp() > was.sourceTimestamp();
                                    });
    node.modifications.insert(later, {was, type, m_historyTime, m_historyUser});
}

OpcUa_StatusCode NodeTable::change(Node& node, OpcUa_PerformUpdateType how, const UaDataValue& value)
{
    const auto place =
        std::lower_bound(node.history.begin(), node.history.end(), value,
                         [](const UaDataValue& left, const UaDataValue& right) {
                             return left.sourceTimestamp().value() < right.sourceTimestamp().value();
                         });
    const bool isThere = place != node.history.end() && place->sourceTimestamp() == value.sourceTimestamp();
    const OpcUa_StatusCode status = outcome(how, isThere);
    if (status == OpcUa_GoodEntryInserted) {
        node.history.insert(place, value);
    } else if (status == OpcUa_GoodEntryReplaced) {
        remember(node, *place, OpcUa_HistoryUpdateType_Replace);
        *place = value;
    } else if (status == OpcUa_Good) {
        remember(node, *place, OpcUa_HistoryUpdateType_Delete);
        node.history.erase(place);
    }
    return status;
}

void NodeTable::updateHistory(const OpcUa_UpdateDataDetails& details, OpcUa_HistoryUpdateResult& result)
{
    const std::lock_guard lock(m_mutex);
    if (Node* node = changedNode(details.NodeId, result))
        changeEach(spanOf(details.NoOfUpdateValues, details.UpdateValues), result,
                   [&](const OpcUa_DataValue& value) {
                       return change(*node, details.PerformInsertReplace, UaDataValue(value));
                   });
}

void NodeTable::updateHistory(const OpcUa_DeleteRawModifiedDetails& details,
                              OpcUa_HistoryUpdateResult& result)
{
    const std::lock_guard lock(m_mutex);
    Node* node = changedNode(details.NodeId, result);
    if (!node)
        return;
    std::size_t removed = 0;
    if (details.IsDeleteModified) {
        removed = std::erase_if(
            node->modifications,
            [&](const Modification& modification) {
                return isWithin(modification.was.sourceTimestamp(), details.StartTime, details.EndTime);
            });
    } else {
        removed = std::erase_if(
            node->history,
            [&](const UaDataValue& value) {
                const bool goes = isWithin(value.sourceTimestamp(), details.StartTime, details.EndTime);
                if (goes)
                    remember(*node, value, OpcUa_HistoryUpdateType_Delete);
                return goes;
            });
    }
    if (removed == 0)
        result.StatusCode = OpcUa_BadNoData;
}

void NodeTable::updateHistory(const OpcUa_DeleteAtTimeDetails& details, OpcUa_HistoryUpdateResult& result)
{
    const std::lock_guard lock(m_mutex);
    if (Node* node = changedNode(details.NodeId, result))
        changeEach(spanOf(details.NoOfReqTimes, details.ReqTimes), result, [&](OpcUa_DateTime time) {
            return change(*node, OpcUa_PerformUpdateType_Remove,
                          UaDataValue(UaVariant(), UaStatusCode(), UaDateTime(time)));
        });
}

// ---- events

OpcUa_StatusCode NodeTable::change(Node& node, OpcUa_PerformUpdateType how, Event event)
{
    const UaVariant id = fieldOf(event.fields, "EventId");
    const auto place = std::find_if(node.events.begin(), node.events.end(), [&](const Event& other) {
        return !id.isNull() && fieldOf(other.fields, "EventId") == id;
    });
    const OpcUa_StatusCode status = outcome(how, place != node.events.end());
    if (status == OpcUa_GoodEntryInserted) {
        const auto later = std::find_if(node.events.begin(), node.events.end(),
                                        [&](const Event& other) { return other.time > event.time; });
        node.events.insert(later, std::move(event));
    } else if (status == OpcUa_GoodEntryReplaced) {
        *place = std::move(event);
    } else if (status == OpcUa_Good) {
        node.events.erase(place);
    }
    return status;
}

void NodeTable::updateHistory(const OpcUa_UpdateEventDetails& details, OpcUa_HistoryUpdateResult& result)
{
    const std::lock_guard lock(m_mutex);
    Node* node = changedNode(details.NodeId, result);
    if (!node)
        return;
    const auto clauses = spanOf(details.Filter.NoOfSelectClauses, details.Filter.SelectClauses);
    changeEach(spanOf(details.NoOfEventData, details.EventData), result,
               [&](const OpcUa_HistoryEventFieldList& given) -> OpcUa_StatusCode {
                   const auto values = spanOf(given.NoOfEventFields, given.EventFields);
                   if (values.size() != clauses.size())
                       return OpcUa_BadInvalidArgument;
                   Event event;
                   for (std::size_t i = 0; i < values.size(); ++i) {
                       const OpcUa_SimpleAttributeOperand& clause = clauses[i];
                       if (clause.NoOfBrowsePath < 1)
                           continue;
                       const UaQualifiedName name(clause.BrowsePath[clause.NoOfBrowsePath - 1]);
                       event.fields[name.name().toStdString()] = UaVariant(values[i]);
                   }
                   event.time = fieldOf(event.fields, "Time").toDateTime();
                   return change(*node, details.PerformInsertReplace, std::move(event));
               });
}

void NodeTable::updateHistory(const OpcUa_DeleteEventDetails& details, OpcUa_HistoryUpdateResult& result)
{
    const std::lock_guard lock(m_mutex);
    if (Node* node = changedNode(details.NodeId, result))
        changeEach(spanOf(details.NoOfEventIds, details.EventIds), result, [&](const OpcUa_ByteString& id) {
            Event event;
            event.fields["EventId"] = UaVariant(UaByteString(id));
            const OpcUa_StatusCode status = change(*node, OpcUa_PerformUpdateType_Remove, std::move(event));
            return status == OpcUa_BadNoEntryExists ? OpcUa_BadEventIdUnknown : status;
        });
}
