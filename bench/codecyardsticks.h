// What any codec must do at the least: hand-written passes between a message's bytes and flat records, with a
// check of the bounds for each record.
#pragma once

#include <opcua/opcua_builtintypes.h>
#include <stack/core/protocol.h>

#include <memory>
#include <span>

namespace opcua::bench {

struct FlatValue
{
    double value;
    OpcUa_DateTime source;
    OpcUa_DateTime server;
};

/// A reference whose texts lie in the message's one block.
struct FlatReference
{
    OpcUa_UInt32 referenceType;
    OpcUa_UInt32 node;
    OpcUa_UInt32 typeDefinition;
    OpcUa_UInt32 nodeClass;
    OpcUa_UInt16 namespaces[4];
    bool forward;
    const char* browseName;
    const char* displayName;
    OpcUa_Int32 browseNameLength;
    OpcUa_Int32 displayNameLength;
};

// All of these: false, or null, when the bytes are not as expected or do not suffice.

/// The values at the end of a ReadResponse of Doubles with two timestamps.
[[nodiscard]] bool takeValues(ByteView message, std::span<FlatValue> values);
/// Writes what takeValues reads, without the response header.
[[nodiscard]] bool placeValues(std::span<const FlatValue> values, MutableByteView out);

/// The references of a BrowseResponse with one result: one pass and one block, the records first, the texts
/// behind them.
[[nodiscard]] std::unique_ptr<char[]> takeReferences(ByteView message, size_t count);
[[nodiscard]] inline const FlatReference* recordsOf(const std::unique_ptr<char[]>& block)
{
    return reinterpret_cast<const FlatReference*>(block.get());
}
[[nodiscard]] bool placeReferences(std::span<const FlatReference> references, MutableByteView out);

} // namespace opcua::bench
