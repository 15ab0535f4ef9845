#include <tests/support/nodetable.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarray.h>

#include <algorithm>
#include <cstdlib>

namespace {
template <typename Result, typename Element, typename Answer>
void answerAll(OpcUa_Int32 count, const Element* elements, OpcUa_Int32& resultCount, Result*& results,
               Answer answer)
{
    UaArray<Result> made(static_cast<OpcUa_UInt32>(std::max(0, count)));
    for (OpcUa_UInt32 i = 0; i < made.length(); ++i)
        answer(elements[i], made[i], i);
    made.detach(&resultCount, &results);
}

// ---- what is asked

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_ReadRequest& asked, OpcUa_ReadResponse& to)
{
    answerAll(asked.NoOfNodesToRead, asked.NodesToRead, to.NoOfResults, to.Results,
              [&](const auto& item, OpcUa_DataValue& result, OpcUa_UInt32) { table.read(item, result); });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_BrowseRequest& asked, OpcUa_BrowseResponse& to)
{
    answerAll(asked.NoOfNodesToBrowse, asked.NodesToBrowse, to.NoOfResults, to.Results,
              [&](const auto& item, OpcUa_BrowseResult& result, OpcUa_UInt32) {
                  table.browse(item, asked.RequestedMaxReferencesPerNode, result);
              });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_BrowseNextRequest& asked,
                          OpcUa_BrowseNextResponse& to)
{
    answerAll(asked.NoOfContinuationPoints, asked.ContinuationPoints, to.NoOfResults, to.Results,
              [&](const auto& item, OpcUa_BrowseResult& result, OpcUa_UInt32) {
                  table.browseNext(item, asked.ReleaseContinuationPoints, result);
              });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_TranslateBrowsePathsToNodeIdsRequest& asked,
                          OpcUa_TranslateBrowsePathsToNodeIdsResponse& to)
{
    answerAll(asked.NoOfBrowsePaths, asked.BrowsePaths, to.NoOfResults, to.Results,
              [&](const auto& item, OpcUa_BrowsePathResult& result, OpcUa_UInt32) {
                  table.translate(item, result);
              });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_HistoryReadRequest& asked,
                          OpcUa_HistoryReadResponse& to)
{
    const auto& details = asked.HistoryReadDetails;
    if (details.Encoding != OpcUa_ExtensionObjectEncoding_EncodeableObject)
        return OpcUa_BadHistoryOperationInvalid;
    answerAll(asked.NoOfNodesToRead, asked.NodesToRead, to.NoOfResults, to.Results,
              [&](const auto& item, OpcUa_HistoryReadResult& result, OpcUa_UInt32 index) {
                  table.historyRead(*details.Body.EncodeableObject.Type, details.Body.EncodeableObject.Object,
                                    index, item, asked.ReleaseContinuationPoints, result);
              });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_QueryFirstRequest& asked,
                          OpcUa_QueryFirstResponse& to)
{
    return table.query(asked, to);
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_QueryNextRequest& asked, OpcUa_QueryNextResponse& to)
{
    return table.queryNext(asked, to);
}

// ---- what is changed

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_WriteRequest& asked, OpcUa_WriteResponse& to)
{
    answerAll(asked.NoOfNodesToWrite, asked.NodesToWrite, to.NoOfResults, to.Results,
              [&](const auto& item, auto& result, OpcUa_UInt32) { result = table.write(item); });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_CallRequest& asked, OpcUa_CallResponse& to)
{
    answerAll(
        asked.NoOfMethodsToCall, asked.MethodsToCall, to.NoOfResults, to.Results,
        [&](const auto& item, OpcUa_CallMethodResult& result, OpcUa_UInt32) { table.call(item, result); });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_AddNodesRequest& asked, OpcUa_AddNodesResponse& to)
{
    answerAll(asked.NoOfNodesToAdd, asked.NodesToAdd, to.NoOfResults, to.Results,
              [&](const auto& item, OpcUa_AddNodesResult& result, OpcUa_UInt32) { table.add(item, result); });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_AddReferencesRequest& asked,
                          OpcUa_AddReferencesResponse& to)
{
    answerAll(asked.NoOfReferencesToAdd, asked.ReferencesToAdd, to.NoOfResults, to.Results,
              [&](const auto& item, auto& result, OpcUa_UInt32) { result = table.add(item); });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_DeleteNodesRequest& asked,
                          OpcUa_DeleteNodesResponse& to)
{
    answerAll(asked.NoOfNodesToDelete, asked.NodesToDelete, to.NoOfResults, to.Results,
              [&](const auto& item, auto& result, OpcUa_UInt32) { result = table.remove(item); });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_DeleteReferencesRequest& asked,
                          OpcUa_DeleteReferencesResponse& to)
{
    answerAll(asked.NoOfReferencesToDelete, asked.ReferencesToDelete, to.NoOfResults, to.Results,
              [&](const auto& item, auto& result, OpcUa_UInt32) { result = table.remove(item); });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_RegisterNodesRequest& asked,
                          OpcUa_RegisterNodesResponse& to)
{
    answerAll(asked.NoOfNodesToRegister, asked.NodesToRegister, to.NoOfRegisteredNodeIds,
              to.RegisteredNodeIds, [&](const auto& item, OpcUa_NodeId& result, OpcUa_UInt32) {
                  if (OpcUa_IsBad(table.registerNode(UaNodeId(item)).copyTo(&result)))
                      std::abort();
              });
    return OpcUa_Good;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_UnregisterNodesRequest& asked,
                          OpcUa_UnregisterNodesResponse&)
{
    for (OpcUa_Int32 i = 0; i < asked.NoOfNodesToUnregister; ++i)
        table.unregisterNode(UaNodeId(asked.NodesToUnregister[i]));
    return OpcUa_Good;
}

template <typename Details>
bool updateAs(NodeTable& table, const OpcUa_EncodeableType& type, const OpcUa_ExtensionObject& object,
              OpcUa_HistoryUpdateResult& result)
{
    if (object.Body.EncodeableObject.Type != &type)
        return false;
    table.updateHistory(*static_cast<const Details*>(object.Body.EncodeableObject.Object), result);
    return true;
}

OpcUa_StatusCode answerTo(NodeTable& table, const OpcUa_HistoryUpdateRequest& asked,
                          OpcUa_HistoryUpdateResponse& to)
{
    answerAll(asked.NoOfHistoryUpdateDetails, asked.HistoryUpdateDetails, to.NoOfResults, to.Results,
              [&](const auto& item, OpcUa_HistoryUpdateResult& result, OpcUa_UInt32) {
                  const bool isKnown =
                      item.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
                      (updateAs<OpcUa_UpdateDataDetails>(table, OpcUa_UpdateDataDetails_EncodeableType, item,
                                                         result) ||
                       updateAs<OpcUa_UpdateEventDetails>(table, OpcUa_UpdateEventDetails_EncodeableType,
                                                          item, result) ||
                       updateAs<OpcUa_DeleteRawModifiedDetails>(
                           table, OpcUa_DeleteRawModifiedDetails_EncodeableType, item, result) ||
                       updateAs<OpcUa_DeleteAtTimeDetails>(table, OpcUa_DeleteAtTimeDetails_EncodeableType,
                                                           item, result) ||
                       updateAs<OpcUa_DeleteEventDetails>(table, OpcUa_DeleteEventDetails_EncodeableType,
                                                          item, result));
                  if (!isKnown)
                      result.StatusCode = OpcUa_BadHistoryOperationUnsupported;
              });
    return OpcUa_Good;
}

// ---- which request is which

struct Known
{
    const OpcUa_EncodeableType* request;
    const OpcUa_EncodeableType* response;
    OpcUa_StatusCode (*answer)(NodeTable& table, const void* request, void* response);
};

template <typename Request, typename Response>
constexpr Known knownAs(const OpcUa_EncodeableType& request, const OpcUa_EncodeableType& response)
{
    return {&request, &response,
            [](NodeTable& table, const void* asked, void* to) {
                return answerTo(table, *static_cast<const Request*>(asked), *static_cast<Response*>(to));
            }};
}

#define KNOWN(service)                                                                                       \
    knownAs<OpcUa_##service##Request, OpcUa_##service##Response>(OpcUa_##service##Request_EncodeableType,    \
                                                                 OpcUa_##service##Response_EncodeableType)

const Known* knownRequest(const OpcUa_EncodeableType& type)
{
    static const Known all[] = {KNOWN(Read),
                                KNOWN(Write),
                                KNOWN(Browse),
                                KNOWN(BrowseNext),
                                KNOWN(TranslateBrowsePathsToNodeIds),
                                KNOWN(Call),
                                KNOWN(HistoryRead),
                                KNOWN(HistoryUpdate),
                                KNOWN(AddNodes),
                                KNOWN(AddReferences),
                                KNOWN(DeleteNodes),
                                KNOWN(DeleteReferences),
                                KNOWN(RegisterNodes),
                                KNOWN(UnregisterNodes),
                                KNOWN(QueryFirst),
                                KNOWN(QueryNext)};
    const auto* found = std::find_if(std::begin(all), std::end(all),
                                     [&](const Known& known) { return known.request == &type; });
    return found == std::end(all) ? nullptr : found;
}

#undef KNOWN
} // namespace

const OpcUa_EncodeableType* NodeTable::responseTypeOf(const OpcUa_EncodeableType& requestType)
{
    const Known* known = knownRequest(requestType);
    return known ? known->response : nullptr;
}

OpcUa_StatusCode NodeTable::answer(const OpcUa_EncodeableType& type, const void* request, void* response)
{
    const Known* known = knownRequest(type);
    return known ? known->answer(*this, request, response) : OpcUa_BadServiceUnsupported;
}
