#include <bench/tableanswers.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/messagecodec.h>

#include <cstdlib>
#include <optional>
#include <utility>

namespace opcua::bench {

namespace {

// Every request and every response begins with its header.
std::optional<Bytes> answerTo(NodeTable& table, const Bytes& body)
{
    DecodedMessage request;
    if (OpcUa_IsBad(decodeMessage(body, {}, request)))
        return std::nullopt;
    const OpcUa_EncodeableType* type = NodeTable::responseTypeOf(*request.type);
    if (!type)
        return std::nullopt;
    void* response = OpcUa_EncodeableObject_Create(type);
    if (!response)
        std::abort();
    auto& header = *static_cast<OpcUa_ResponseHeader*>(response);
    header.RequestHandle = static_cast<const OpcUa_RequestHeader*>(request.object)->RequestHandle;
    header.ServiceResult = table.answer(*request.type, request.object, response);
    Bytes bytes;
    const OpcUa_StatusCode status = encodeMessage(*type, response, {}, bytes);
    OpcUa_EncodeableObject_Delete(type, &response);
    return OpcUa_IsGood(status) ? std::optional(std::move(bytes)) : std::nullopt;
}

} // namespace

Answerer answersOf(NodeTable& table)
{
    return [&table](const Bytes& body) { return answerTo(table, body); };
}

} // namespace opcua::bench
