#include <bench/tableanswers.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/messagecodec.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>

namespace opcua::bench {

Bytes responseTo(const DecodedMessage& request, const OpcUa_EncodeableType& type,
                 const std::function<void(void*)>& fill)
{
    void* response = OpcUa_EncodeableObject_Create(&type);
    Bytes bytes;
    if (response) {
        static_cast<OpcUa_ResponseHeader*>(response)->RequestHandle = // every message begins with its header
            static_cast<const OpcUa_RequestHeader*>(request.object)->RequestHandle;
        fill(response);
    }
    if (!response || OpcUa_IsBad(encodeMessage(type, response, {}, bytes))) {
        std::fprintf(stderr, "no answer of type %u could be made\n", type.TypeId);
        std::abort();
    }
    OpcUa_EncodeableObject_Delete(&type, &response);
    return bytes;
}

namespace {

std::optional<Bytes> answerTo(NodeTable& table, const Bytes& body)
{
    DecodedMessage request;
    if (OpcUa_IsBad(decodeMessage(body, {}, request)))
        return std::nullopt;
    const OpcUa_EncodeableType* type = NodeTable::responseTypeOf(*request.type);
    if (!type)
        return std::nullopt;
    return responseTo(request, *type, [&](void* response) {
        static_cast<OpcUa_ResponseHeader*>(response)->ServiceResult =
            table.answer(*request.type, request.object, response);
    });
}

} // namespace

Answerer answersOf(NodeTable& table)
{
    return [&table](const Bytes& body) { return answerTo(table, body); };
}

} // namespace opcua::bench
