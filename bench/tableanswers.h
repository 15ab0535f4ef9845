// Answers of a responder that come out of a table of nodes: a tool's benchmark runs over a real channel
// against the world that its tests state.
#pragma once

#include <bench/responder.h>
#include <opcua/opcua_encodeable.h>
#include <stack/encoding/messagecodec.h>
#include <tests/support/nodetable.h>

#include <functional>

namespace opcua::bench {

/// The answer to a request: a response of the type with the request's handle, filled by the function. Ends
/// the process when there is no memory.
[[nodiscard]] Bytes responseTo(const DecodedMessage& request, const OpcUa_EncodeableType& type,
                               const std::function<void(void*)>& fill);

/// The same for a response as it is called in C.
template <typename Response, typename Fill>
[[nodiscard]] Bytes respond(const OpcUa_EncodeableType& type, const DecodedMessage& request, const Fill& fill)
{
    return responseTo(
        request, type, [&fill](void* response) { fill(*static_cast<Response*>(response)); });
}

/// The table must outlive the responder's construction: its process has a copy of its own, which writes and
/// method calls change.
[[nodiscard]] Answerer answersOf(NodeTable& table);

} // namespace opcua::bench
